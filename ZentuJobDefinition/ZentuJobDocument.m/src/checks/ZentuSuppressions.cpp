#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "ZentuJobChecks.h"
#include "ZentuJobDocument.h"
#include "ZentuStringUtil.h"

namespace {

// What a comment says to silence findings: "# zentu-cmd: ignore CODE, CODE".
constexpr std::string_view SUPPRESSION_MARK = "zentu-cmd: ignore ";

// A silenced code on a stretch of lines.
struct Suppression {
    std::string code;
    std::size_t first = 0;
    std::size_t last = 0;
};

// The codes that a comment line names, empty when it is no suppression comment.
std::vector<std::string> codes_of(std::string_view comment) {
    comment.remove_prefix(std::min(comment.find_first_not_of("# \t"), comment.size()));
    if (comment.substr(0, SUPPRESSION_MARK.size()) != SUPPRESSION_MARK) {
        return {};
    }
    std::vector<std::string> codes;
    ZentuStringUtil::Split(std::string(comment.substr(SUPPRESSION_MARK.size())), ",", codes);
    for (std::string& code : codes) {
        ZentuStringUtil::Trim(code);
    }
    return codes;
}

// The last line of the command or item that begins on a line, or 0 when none begins there.
std::size_t end_of_what_begins(const ZentuJobDocument& document, std::size_t line) {
    if (line > document.LineCount()) {
        return 0;
    }
    const ZentuDocumentLine& info = document.Lines()[line - 1];
    if (info.command == ZentuDocumentLine::NONE) {
        return 0;
    }
    const ZentuDocumentCommand& command = document.Commands()[info.command];
    if (command.line == line) {
        return command.end_line != 0 ? command.end_line : document.LineCount();
    }
    if (info.item != ZentuDocumentLine::NONE && command.items[info.item].line == line) {
        return command.items[info.item].last_line;
    }
    return 0;
}

}  // namespace

void ZentuJobChecks::apply_suppressions(const ZentuJobDocument& document,
                                        std::vector<ZentuFinding>& findings) {
    // Most files silence nothing, and then their lines need not be worked out.
    if (document.Text().find(SUPPRESSION_MARK) == std::string::npos) {
        return;
    }
    std::vector<Suppression> suppressions;
    const std::vector<ZentuDocumentLine>& lines = document.Lines();
    for (std::size_t line = 1; line <= lines.size(); ++line) {
        if (lines[line - 1].scanned.kind != ZentuParLine::Kind::COMMENT) {
            continue;
        }
        const std::size_t last = end_of_what_begins(document, line + 1);
        for (std::string& code : codes_of(document.LineText(line))) {
            if (last != 0) {
                suppressions.push_back({std::move(code), line + 1, last});
            }
        }
    }
    findings.erase(std::remove_if(findings.begin(), findings.end(),
                                  [&](const ZentuFinding& finding) {
                                      return std::any_of(suppressions.begin(), suppressions.end(),
                                                         [&](const Suppression& s) {
                                                             return s.code == finding.code &&
                                                                    finding.range.line >= s.first &&
                                                                    finding.range.line <= s.last;
                                                         });
                                  }),
                   findings.end());
}
