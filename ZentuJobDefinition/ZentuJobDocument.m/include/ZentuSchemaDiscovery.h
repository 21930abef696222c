#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "ZentuJobDocumentExport.h"

// How a job file finds its schema by itself, so that jobs of several schemas can live side by
// side and every front end reads each with the right one: a comment "# zentu-cmd: schema=PATH"
// among the file's first lines (PATH relative to the file), else the "schema" of a
// .zentu-cmd.json in the file's folder or the nearest parent that names one (relative to that
// file), else the built-in schema.
namespace ZentuSchemaDiscovery {

// How many lines at the top of a job file are searched for the schema comment.
inline constexpr std::size_t COMMENT_LINES = 10;
// The name of the folder settings file.
inline constexpr const char* SETTINGS_FILE = ".zentu-cmd.json";

// The schema file for a job at jobPath (UTF-8; empty for a text without file, which looks in the
// working folder) whose text is text; none for the built-in schema. Throws KPL_Failure for a
// settings file that is not a JSON object whose "schema" is a text.
ZENTU_JOB_DOCUMENT_API std::optional<std::string> schema_path(const std::string& jobPath,
                                                              std::string_view text);

// As above, reading the first lines of the job file itself.
ZENTU_JOB_DOCUMENT_API std::optional<std::string> schema_path(const std::string& jobPath);

}  // namespace ZentuSchemaDiscovery
