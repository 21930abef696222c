#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "ZentuJobDocumentExport.h"

// A stretch of a job file: 1-based lines and columns, columns counting characters (not bytes),
// the end exclusive.
struct ZentuTextRange {
    std::size_t line = 1;
    std::size_t column = 1;
    std::size_t end_line = 1;
    std::size_t end_column = 1;

    bool operator==(const ZentuTextRange& other) const {
        return line == other.line && column == other.column && end_line == other.end_line &&
               end_column == other.end_column;
    }
};

// A place in a job file: 1-based line and column, the column counting characters.
struct ZentuTextPosition {
    std::size_t line = 1;
    std::size_t column = 1;
};

// Whether the position lies in the range or right after its end, where a cursor that has just
// written its text stands.
inline bool zentu_range_touches(const ZentuTextRange& range, const ZentuTextPosition& position) {
    const bool afterStart = position.line > range.line ||
                            (position.line == range.line && position.column >= range.column);
    const bool beforeEnd = position.line < range.end_line ||
                           (position.line == range.end_line && position.column <= range.end_column);
    return afterStart && beforeEnd;
}

// How bad a finding is.
enum class ZentuSeverity { ERROR, WARNING, NOTE };

// One problem found in a job file, located: the stream that every front end (check, the
// language server, Python) reports.
struct ZentuFinding {
    ZentuSeverity severity = ZentuSeverity::ERROR;
    // A stable kebab-case code, one of ZentuFindingCodes.
    std::string code;
    // One line of text for a person.
    std::string message;
    ZentuTextRange range;
    // The text probably meant, when one is close.
    std::optional<std::string> suggestion;

    // Whether the two findings are the same in every field.
    bool operator==(const ZentuFinding& other) const {
        return severity == other.severity && code == other.code && message == other.message &&
               range == other.range && suggestion == other.suggestion;
    }
};

// Whether the finding belongs to a place in its file; one about a file that cannot be read does
// not.
ZENTU_JOB_DOCUMENT_API bool zentu_has_place(const ZentuFinding& finding);

// "error", "warning" or "note".
ZENTU_JOB_DOCUMENT_API const char* zentu_severity_name(ZentuSeverity severity);

// The codes of findings, each with its one severity.
namespace ZentuFindingCodes {
inline constexpr const char* IO = "io";
inline constexpr const char* SYNTAX = "syntax";
inline constexpr const char* UNKNOWN_COMMAND = "unknown-command";
inline constexpr const char* UNKNOWN_ITEM = "unknown-item";
inline constexpr const char* BAD_VALUE = "bad-value";
inline constexpr const char* DANGLING_REFERENCE = "dangling-reference";
inline constexpr const char* EXPRESSION_SYNTAX = "expression-syntax";
inline constexpr const char* EXPRESSION_UNSUPPORTED = "expression-unsupported";
inline constexpr const char* EXPRESSION_MISMATCH = "expression-mismatch";
inline constexpr const char* DUPLICATE_IDENTIFIER = "duplicate-identifier";
inline constexpr const char* DUPLICATE_ITEM = "duplicate-item";
inline constexpr const char* KEYWORD_CASE = "keyword-case";
inline constexpr const char* INTEGER_LIST = "integer-list";
inline constexpr const char* MISSING_ITEM = "missing-item";
inline constexpr const char* OUT_OF_RANGE = "out-of-range";
inline constexpr const char* UNUSED_COMMAND = "unused-command";
inline constexpr const char* REFERENCE_CYCLE = "reference-cycle";

// The severity that findings of the code carry; ERROR for a code that is not in the table.
ZENTU_JOB_DOCUMENT_API ZentuSeverity severity_of(const std::string& code);
// Every code of the table, in its documented order, so that a report can list them all.
ZENTU_JOB_DOCUMENT_API std::vector<std::string> all();
}  // namespace ZentuFindingCodes

// A finding of the code, with the code's severity.
ZENTU_JOB_DOCUMENT_API ZentuFinding zentu_finding(const char* code, std::string message,
                                                  const ZentuTextRange& range,
                                                  std::optional<std::string> suggestion = {});
