#pragma once

#include <string>
#include <vector>

#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"

class ZentuJobNavigator;

// One text that may be written at a place of a job file, with what the schema says of it.
struct ZentuCompletionCandidate {
    enum class Kind { KEYWORD, ITEM, VALUE, IDENTIFIER };

    Kind kind = Kind::KEYWORD;
    // The text to write.
    std::string label;
    // A short word on what it is: a type, an item name or a command keyword.
    std::string detail;
    // The schema's description.
    std::string documentation;
};

// What may be written at the position: command keywords between commands; inside a command, the
// items of its description not given yet (or any that may be given more than once); after '='
// (or on the value lines of an item), the keywords of an ENUM item, the identifiers of the
// commands of the kind that a reference names, or %ID% terms of responses in an expression.
ZENTU_JOB_DOCUMENT_API std::vector<ZentuCompletionCandidate> zentu_completions(
    const ZentuJobNavigator& navigator, const ZentuTextPosition& position);
