#pragma once

// The log lines, failure texts and log tags of the utility library, in one place; each comment
// names the printf arguments that the text takes.
namespace ZentuUtilitiesMessages {

// The tag of every log line and failure of the integer list; not a format, its "%P" stays.
inline constexpr const char* BRELT_LIST_TAG = "|%P|LIBUTIL|BreltList";

// Trace line at the start of a reading; no arguments.
inline constexpr const char* BRELT_LIST_READ_STARTED =
    "Starting parsing of BreltList from input stream";

// Trace line for a text holding nothing but white space; no arguments.
inline constexpr const char* BRELT_LIST_READ_EMPTY = "Parsed empty BreltList from input stream";

// Trace line for each number read; %s: the number.
inline constexpr const char* BRELT_LIST_PARSED_ELEMENT = "Parsed element %s of BreltList";

// Trace line for each separator read; %c: the separator.
inline constexpr const char* BRELT_LIST_PARSED_SEPARATOR = "Parsed separator %c in BRELT list";

// Trace line for a single value added; %s: the value.
inline constexpr const char* BRELT_LIST_ADDING_SINGLE = "Adding single list element %s";

// Trace line for a range added; %s, %s, %s: its start, end and step.
inline constexpr const char* BRELT_LIST_ADDING_RANGE = "Adding multiple list elements %s-%s:%s";

// Warning for a range whose step does not move; %s: the step.
inline constexpr const char* BRELT_LIST_INVALID_STEP =
    "Invalid stepsize %s given in BreltList. Adding the step resulted in the same element";

// Trace line at the end of a successful reading; no arguments.
inline constexpr const char* BRELT_LIST_READ_SUCCEEDED = "Successfully parsed BreltList";

// Trace line after writing an empty list; no arguments.
inline constexpr const char* BRELT_LIST_WRITTEN_EMPTY = "Empty BreltList written";

// Trace line after writing a list of one value; no arguments.
inline constexpr const char* BRELT_LIST_WRITTEN_SINGLE = "BreltList with a size of 1 written";

// Trace line after writing a longer list; %zu: the number of values.
inline constexpr const char* BRELT_LIST_WRITTEN = "Written BreltList with %zu elements";

// The message of every reading failure; %s, %s: the reason and the values read so far.
inline constexpr const char* BRELT_LIST_FAILURE = "%s. Successfully read values are: %s";

// Reason: no number where one is due; no arguments.
inline constexpr const char* BRELT_LIST_NUMBER_UNREADABLE = "Reading BreltList failed";

// Reason: the stream gave no separator character; no arguments.
inline constexpr const char* BRELT_LIST_SEPARATOR_UNREADABLE =
    "Failed to read a separator character";

// Reason: a separator out of place or unknown; %c: the separator.
inline constexpr const char* BRELT_LIST_SEPARATOR_UNEXPECTED =
    "Unexpected separator character %c in BRELT list";

// Reason: the list would hold more values than the bound; %zu: the bound.
inline constexpr const char* BRELT_LIST_TOO_LONG = "BreltList exceeds the limit of %zu values";

// --- Parameter files (ZentuParFile) ---
// Every failure names the file first, then the line where there is one, as compilers do.

// The tag of every failure of the parameter-file reader; no arguments.
inline constexpr const char* PAR_FILE_TAG = "|%P|LIBUTIL|ZentuParFile";

// The file cannot be opened; %s, %s: the path and the system's reason.
inline constexpr const char* PAR_FILE_CANNOT_BE_OPENED = "%s: cannot be opened: %s";

// The path names a directory; %s: the path.
inline constexpr const char* PAR_FILE_IS_A_DIRECTORY = "%s: is a directory";

// Reading the open file failed; %s, %s: the path and the system's reason.
inline constexpr const char* PAR_FILE_CANNOT_BE_READ = "%s: cannot be read: %s";

// No END_ before the end of the file; %s, %zu, %s, %zu: the path, the file's last line, the
// keyword and the line of the keyword.
inline constexpr const char* PAR_FILE_ENDS_INSIDE_COMMAND =
    "%s:%zu: the file ends inside command %s opened on line %zu";

// END_ with no command open; %s, %zu: the path and the line.
inline constexpr const char* PAR_FILE_END_OUTSIDE_COMMAND = "%s:%zu: END_ outside a command";

// A line holding '=' with no command open; %s, %zu, %s: the path, the line and its text.
inline constexpr const char* PAR_FILE_ITEM_OUTSIDE_COMMAND =
    "%s:%zu: item line outside a command: '%s'";

// A keyword line holding several words; %s, %zu, %s: the path, the line and its text.
inline constexpr const char* PAR_FILE_COMMAND_LINE_NOT_ONE_WORD =
    "%s:%zu: a command line must hold one word: '%s'";
// Path, line, the keyword as written (control bytes shown as \xNN).
inline constexpr const char* PAR_FILE_COMMAND_WORD_NOT_PRINTABLE =
    "%s:%zu: a command keyword must not hold control characters: '%s'";

// --- Expressions (ZentuMathExpressions) ---
// Every failure names the position, counted in bytes from 1, and quotes the expression last, so
// that a long expression cut to the message limit keeps the position.

// The tag of every failure of the expression reader; no arguments.
inline constexpr const char* MATH_EXPRESSIONS_TAG = "|%P|LIBUTIL|ZentuMathExpressions";

// No description matches; %c, %zu, %s: the character, its position and the expression.
inline constexpr const char* MATH_EXPRESSION_UNKNOWN_CHARACTER =
    "Unknown character '%c' at position %zu in expression \"%s\"";

// An operator or ')' where a term must start; %s, %zu, %s: the token, its position, the expression.
inline constexpr const char* MATH_EXPRESSION_OPERAND_EXPECTED =
    "Expected an operand instead of \"%s\" at position %zu in expression \"%s\"";

// The text ends after an operator or '('; %zu, %s: the position after the end and the expression.
inline constexpr const char* MATH_EXPRESSION_OPERAND_MISSING_AT_END =
    "Expected an operand at position %zu, the end of expression \"%s\"";

// A term or '(' right after a term; %s, %zu, %s: the token, its position and the expression.
inline constexpr const char* MATH_EXPRESSION_OPERATOR_EXPECTED =
    "Expected an operator instead of \"%s\" at position %zu in expression \"%s\"";

// A ')' without its '('; %zu, %s: its position and the expression.
inline constexpr const char* MATH_EXPRESSION_PARENTHESIS_NOT_OPENED =
    "Parenthesis closed at position %zu was not opened in expression \"%s\"";

// A '(' without its ')'; %zu, %s: the position of the innermost one and the expression.
inline constexpr const char* MATH_EXPRESSION_PARENTHESIS_NOT_CLOSED =
    "Parenthesis opened at position %zu is not closed in expression \"%s\"";

// A token type that build_single_token does not know; %d, %d, %d: the type and the known range.
inline constexpr const char* MATH_EXPRESSION_UNKNOWN_TOKEN_TYPE =
    "Unknown token type %d; the known types are %d to %d";

}  // namespace ZentuUtilitiesMessages
