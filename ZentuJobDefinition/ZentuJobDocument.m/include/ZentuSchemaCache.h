#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "ZentuJobDocumentExport.h"
#include "ZentuJobSchema.h"

// The schemas of many job files, each schema file loaded once: what a front end holds while it
// reads a batch of files or serves an editor.
class ZENTU_JOB_DOCUMENT_API ZentuSchemaCache {
  public:
    // A schema path given by the user serves every file instead of the discovered ones.
    explicit ZentuSchemaCache(std::optional<std::string> overridePath = {});

    // The schema for the job at jobPath with that text (as ZentuSchemaDiscovery finds it).
    // Throws KPL_Failure when the schema cannot be loaded.
    const ZentuJobSchema& For(const std::string& jobPath, std::string_view text);
    // The schema for the job file at jobPath, reading its first lines.
    const ZentuJobSchema& For(const std::string& jobPath);
    // The schema that serves files without a schema of their own: the override, else built-in.
    const ZentuJobSchema& Default();

  private:
    // The schema at path, or the built-in one for none, loaded on first use.
    const ZentuJobSchema& Loaded(const std::optional<std::string>& path);

    std::optional<std::string> override_;
    // By normalised path; the empty key stands for the built-in schema.
    std::map<std::string, ZentuJobSchema> schemas_;
};
