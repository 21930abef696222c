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

// The findings, or those of the code when one is given, one a line: "code at message", then
// " => suggestion" when it has one.
inline std::vector<std::string> FindingLines(const std::vector<ZentuFinding>& findings,
                                             const std::string& code = "") {
    std::vector<std::string> lines;
    for (const ZentuFinding& finding : findings) {
        if (code.empty() || finding.code == code) {
            lines.push_back(finding.code + " " + At(finding.range) + " " + finding.message +
                            (finding.suggestion ? " => " + *finding.suggestion : ""));
        }
    }
    return lines;
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
