#pragma once

#include <string>
#include <vector>

#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"

class ZentuJobDocument;

// One entry of a job's outline: a command with its items as children, or an item.
struct ZentuOutlineEntry {
    // A command's identifier (its keyword when it has none), or an item's name.
    std::string name;
    // A command's keyword, or an item's value.
    std::string detail;
    // From the keyword or name to the end of the last line that belongs to it.
    ZentuTextRange range;
    // The keyword or name.
    ZentuTextRange selection;
    std::vector<ZentuOutlineEntry> children;
};

// The commands of the document in file order, each with its items.
ZENTU_JOB_DOCUMENT_API std::vector<ZentuOutlineEntry> zentu_outline(
    const ZentuJobDocument& document);
