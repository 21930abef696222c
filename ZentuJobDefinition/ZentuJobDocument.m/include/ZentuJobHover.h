#pragma once

#include <optional>
#include <string>

#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"

class ZentuJobNavigator;

// What an editor shows about the text under the pointer, in Markdown.
struct ZentuHover {
    std::string text;
    // The text it is about.
    ZentuTextRange range;
};

// What there is to say about the position: for a keyword or item name, the schema's
// description, type, default and keywords; for an identifier, a reference or an expression term,
// the command it names; for the rest of an expression, the weight per response that it expanded
// into and its mismatch finding. Nothing elsewhere.
ZENTU_JOB_DOCUMENT_API std::optional<ZentuHover> zentu_hover(const ZentuJobNavigator& navigator,
                                                             const ZentuTextPosition& position);
