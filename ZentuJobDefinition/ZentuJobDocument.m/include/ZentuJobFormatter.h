#pragma once

#include <optional>
#include <string>

#include "ZentuJobDocumentExport.h"

class ZentuJobDocument;
class ZentuJobSchema;

// The house layout of a job file, which changes nothing but layout: comments, the order of
// commands and items, undescribed commands and items and every value text stay as written.
//
// The layout: exactly one empty line between commands; no empty line inside a command except
// one where the file separates items by empty lines, and the empty lines that a multi-line value
// holds (they are part of the value); items, their value lines and the comments inside a
// command indented by two blanks, comments outside commands not indented; NAME = value with one
// blank around '='; a name alone on its line for a multi-line value, its value lines after it;
// keywords and item names that the schema describes in upper case, undescribed ones as written;
// END_ in upper case; LF line ends, no trailing blanks, no byte-order mark. Every line keeps its
// kind, so the formatted text reads to the same commands and items, and formatting it again
// gives it unchanged.
namespace ZentuJobFormatter {

// Whether the document can be formatted: it was read and its structure holds (no finding of the
// codes io or syntax), so that every line is known for what it is.
ZENTU_JOB_DOCUMENT_API bool can_format(const ZentuJobDocument& document);

// The document's text in the house layout; nothing when the document cannot be formatted.
ZENTU_JOB_DOCUMENT_API std::optional<std::string> format_document(const ZentuJobDocument& document,
                                                                  const ZentuJobSchema& schema);

}  // namespace ZentuJobFormatter
