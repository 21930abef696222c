#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "ZentuFinding.h"

namespace zentu_test {

// A range as "line:column-line:column".
inline std::string At(const ZentuTextRange& range) {
    return std::to_string(range.line) + ":" + std::to_string(range.column) + "-" +
           std::to_string(range.end_line) + ":" + std::to_string(range.end_column);
}

// A finding as one line, "code at message", then " => suggestion" when it has one.
inline std::string FindingLine(const ZentuFinding& finding) {
    return finding.code + " " + At(finding.range) + " " + finding.message +
           (finding.suggestion ? " => " + *finding.suggestion : "");
}

// The lines of a case field, none for an empty one.
inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace zentu_test
