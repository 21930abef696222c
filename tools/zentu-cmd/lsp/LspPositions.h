#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "ZentuFinding.h"

class ZentuJobDocument;

namespace zentu_cmd::lsp {

// Places in the protocol's terms: 0-based lines, and columns in UTF-16 code units, converted
// from and to the job document's 1-based lines and character columns.

// A position of the protocol ({"line", "character"}) as a document position.
ZentuTextPosition position_from(const ZentuJobDocument& document, const nlohmann::json& position);

// A document position as a protocol position.
nlohmann::json position_of(const ZentuJobDocument& document, std::size_t line, std::size_t column);

// A document range as a protocol range.
nlohmann::json range_of(const ZentuJobDocument& document, const ZentuTextRange& range);

// The range of the whole text, from its start to the end of its last line.
nlohmann::json whole_text_range(const std::string& text);

// The path of a file: URI, percent escapes decoded; empty for a URI of another scheme.
std::string path_of_uri(const std::string& uri);

}  // namespace zentu_cmd::lsp
