#include "ZentuFinding.h"

#include <string_view>
#include <utility>

namespace {

// Every code with its severity.
struct CodeSeverity {
    const char* code;
    ZentuSeverity severity;
};

constexpr CodeSeverity kCodes[] = {
    {ZentuFindingCodes::IO, ZentuSeverity::ERROR},
    {ZentuFindingCodes::SYNTAX, ZentuSeverity::ERROR},
    {ZentuFindingCodes::UNKNOWN_COMMAND, ZentuSeverity::WARNING},
    {ZentuFindingCodes::UNKNOWN_ITEM, ZentuSeverity::WARNING},
    {ZentuFindingCodes::BAD_VALUE, ZentuSeverity::ERROR},
    {ZentuFindingCodes::DANGLING_REFERENCE, ZentuSeverity::WARNING},
    {ZentuFindingCodes::EXPRESSION_SYNTAX, ZentuSeverity::ERROR},
    {ZentuFindingCodes::EXPRESSION_UNSUPPORTED, ZentuSeverity::ERROR},
    {ZentuFindingCodes::EXPRESSION_MISMATCH, ZentuSeverity::ERROR},
    {ZentuFindingCodes::DUPLICATE_IDENTIFIER, ZentuSeverity::ERROR},
    {ZentuFindingCodes::DUPLICATE_ITEM, ZentuSeverity::WARNING},
    {ZentuFindingCodes::KEYWORD_CASE, ZentuSeverity::ERROR},
    {ZentuFindingCodes::INTEGER_LIST, ZentuSeverity::WARNING},
    {ZentuFindingCodes::MISSING_ITEM, ZentuSeverity::ERROR},
    {ZentuFindingCodes::OUT_OF_RANGE, ZentuSeverity::ERROR},
    {ZentuFindingCodes::UNUSED_COMMAND, ZentuSeverity::WARNING},
    {ZentuFindingCodes::REFERENCE_CYCLE, ZentuSeverity::ERROR},
};

// The severity of a code; ERROR for a code that is not in the table. A view, so that making a
// finding makes no string of its code only to look the severity up.
ZentuSeverity severity_of_view(std::string_view code) {
    for (const CodeSeverity& entry : kCodes) {
        if (code == entry.code) {
            return entry.severity;
        }
    }
    return ZentuSeverity::ERROR;
}

}  // namespace

bool zentu_has_place(const ZentuFinding& finding) {
    return finding.code != ZentuFindingCodes::IO;
}

const char* zentu_severity_name(ZentuSeverity severity) {
    switch (severity) {
        case ZentuSeverity::ERROR:
            return "error";
        case ZentuSeverity::WARNING:
            return "warning";
        case ZentuSeverity::NOTE:
            return "note";
    }
    return "error";
}

ZentuSeverity ZentuFindingCodes::severity_of(const std::string& code) {
    return severity_of_view(code);
}

std::vector<std::string> ZentuFindingCodes::all() {
    std::vector<std::string> codes;
    for (const CodeSeverity& entry : kCodes) {
        codes.emplace_back(entry.code);
    }
    return codes;
}

ZentuFinding zentu_finding(const char* code, std::string message, const ZentuTextRange& range,
                           std::optional<std::string> suggestion) {
    return ZentuFinding{severity_of_view(code), code, std::move(message), range,
                        std::move(suggestion)};
}
