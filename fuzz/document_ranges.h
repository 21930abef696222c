#pragma once

#include <algorithm>
#include <cstddef>

#include "ZentuFinding.h"
#include "ZentuJobDocument.h"
#include "fuzz_support.h"

// Where places in a job document may lie, for the fuzzers that read documents.
namespace zentu_fuzz {

// The characters of a line that a column can stand on, plus the place after the last one.
inline std::size_t LastColumn(const ZentuJobDocument& document, std::size_t line) {
    if (line > document.LineCount()) {
        return 1;
    }
    return document.ColumnOf(line, document.LineText(line).size());
}

// A range starts no later than it ends, and both ends stand on a line of the text (line 1 of an
// empty text) within its characters.
inline bool Inside(const ZentuJobDocument& document, const ZentuTextRange& range) {
    const std::size_t lines = std::max<std::size_t>(1, document.LineCount());
    const bool ordered = range.line < range.end_line ||
                         (range.line == range.end_line && range.column <= range.end_column);
    return ordered && range.line >= 1 && range.end_line <= lines && range.column >= 1 &&
           range.column <= LastColumn(document, range.line) &&
           range.end_column <= LastColumn(document, range.end_line);
}

inline void RequireInside(const ZentuJobDocument& document, const ZentuTextRange& range,
                          const char* promise) {
    Require(Inside(document, range), promise);
}

}  // namespace zentu_fuzz
