#pragma once

#include <map>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "ZentuSchemaCache.h"
#include "lsp/LspDocument.h"

namespace zentu_cmd::lsp {

// The documents open in the editor, each read with the schema it discovers (or the one that the
// client's initialization options name).
class LspWorkspace {
  public:
    // Makes the schema at path (or discovery, for none) serve the documents read from now on.
    void UseSchema(std::optional<std::string> path);
    // Loads the schemas anew when they are next needed, since their files may have changed.
    void ForgetSchemas();

    // Reads a document anew from its whole text; returns it.
    const LspDocument& Update(const std::string& uri, std::string text);
    // Forgets a document.
    void Close(const std::string& uri);
    // The open document of the URI; throws std::out_of_range for one not open.
    const LspDocument& Find(const std::string& uri) const;

  private:
    // The document's schema, or the built-in one with a finding when its own does not load.
    const ZentuJobSchema& SchemaOf(LspDocument& document, const std::string& text);

    std::optional<std::string> schemaPath_;
    ZentuSchemaCache schemas_;
    ZentuJobSchema builtin_ = ZentuJobSchema::Builtin();
    std::map<std::string, LspDocument> documents_;
};

// The notification that publishes a document's findings.
nlohmann::json diagnostics_notification(const LspDocument& document);

}  // namespace zentu_cmd::lsp
