#pragma once

// The texts of the job-document library's failures and findings, in one place.
namespace ZentuJobDocumentMessages {

// The tag of a refused schema.
inline constexpr const char* SCHEMA_TAG = "|%P|ZentuJobDocument|ZentuJobSchema";
// The tag of a failure of the bound rules.
inline constexpr const char* BOUND_RULES_TAG = "|%P|ZentuJobDocument|ZentuBoundRules";

// The tag of a failure to write a job file.
inline constexpr const char* FILES_TAG = "|%P|ZentuJobDocument|ZentuJobFiles";
// The tag of a refused edit.
inline constexpr const char* EDITS_TAG = "|%P|ZentuJobDocument|ZentuJobEdits";

// An edit names an item with a text that would not read back as that name (%s).
inline constexpr const char* NOT_AN_ITEM_NAME =
    "'%s' cannot name an item: a name is one word without '=' that does not begin with '#'";

// A schema binds more rules of one type than the library has functions for (%zu, %s).
inline constexpr const char* TOO_MANY_BOUND_RULES =
    "a schema may bind at most %zu %s rules; split the schema or use fewer rules";
// A bound rule's function ran on a thread where no read with its schema is going on.
inline constexpr const char* BOUND_RULE_OUTSIDE_SCOPE =
    "a rule bound from a schema ran outside a read with that schema";

// The structure of a job file; each quotes what it is about.
inline constexpr const char* END_OUTSIDE_COMMAND = "END_ outside a command";
inline constexpr const char* ITEM_OUTSIDE_COMMAND = "item line outside a command: '%s'";
inline constexpr const char* COMMAND_LINE_NOT_ONE_WORD = "a command line must hold one word: '%s'";
inline constexpr const char* COMMAND_WORD_NOT_PRINTABLE =
    "a command keyword must not hold control characters: '%s'";
inline constexpr const char* FILE_ENDS_INSIDE_COMMAND =
    "the file ends inside command %s opened on line %zu";
inline constexpr const char* COMMAND_NOT_CLOSED =
    "command %s opened on line %zu has no END_ before the next command %s";
// A file that cannot be read (the path, the system's reason).
inline constexpr const char* FILE_CANNOT_BE_OPENED = "cannot be opened: %s";
inline constexpr const char* FILE_CANNOT_BE_READ = "cannot be read: %s";
inline constexpr const char* FILE_IS_A_DIRECTORY = "is a directory";

// Typing and completing a job.
inline constexpr const char* UNKNOWN_COMMAND = "the schema describes no command '%s'";
inline constexpr const char* UNKNOWN_ITEM = "Unknown item '%s' found in command %s%s.";
inline constexpr const char* WITH_ID_NAME = " with ID_NAME ";
inline constexpr const char* DID_YOU_MEAN = "; did you mean %s?";
inline constexpr const char* EXPRESSION_NAMES_NO_RESPONSE =
    "%%%s%% in the expression names no DRESP or OPERATOR command";
inline constexpr const char* REFERENCE_NAMES_NO_COMMAND = "%s%s: %s '%s' names no command";
inline constexpr const char* KEYWORD_NOT_UPPER_CASE =
    "the rules look command keywords up as written, and '%s' is not in upper case: %s";

// Expressions over responses.
inline constexpr const char* EXPRESSION_PART_UNSUPPORTED =
    "the expansion into weighted responses drops %s: '%s'";
inline constexpr const char* EXPRESSION_MISMATCH = "expands to %s but reads %s";
inline constexpr const char* EXPRESSION_MEANT = "; write it as %s";
inline constexpr const char* EXPRESSION_TOO_DEEP =
    "the expression nests %zu levels deep, more than the %zu that are expanded";

// What reads fine but is wrong.
inline constexpr const char* DUPLICATE_IDENTIFIER =
    "identifier '%s' is given to %s on line %zu already; references always name that one";
inline constexpr const char* DUPLICATE_ITEM =
    "%s is given again (first on line %zu); only the "
    "first one counts";
inline constexpr const char* MISSING_ITEM = "%s%s has no %s, which the schema requires";
inline constexpr const char* BELOW_MIN = "%s = %s is below its smallest allowed value %s";
inline constexpr const char* ABOVE_MAX = "%s = %s is above its largest allowed value %s";
inline constexpr const char* LOWER_ABOVE_UPPER = "%s = %s is above %s = %s (line %zu)";
inline constexpr const char* LIST_NUMBER_OUT_OF_RANGE =
    "%s lies outside the integer range, so the list reads as %s";
inline constexpr const char* LIST_RANGE_BACKWARDS =
    "the range %s runs backwards and adds only its start, so the list reads as %s; write %s";
inline constexpr const char* LIST_OVER_BOUND =
    "the list names %s numbers, more than the %s a list of numbers holds, so it reads as %s";
inline constexpr const char* LIST_ELEMENT_NAMES_NO_COMMAND = "%s '%s' names no %s command";
inline constexpr const char* REFERENCE_CYCLE =
    "OPERATOR '%s' refers to itself through other operators (%s), so it cannot be evaluated";
inline constexpr const char* UNUSED_COMMAND =
    "%s '%s' is not used: no objective, constraint, operator or optimisation refers to it";

// What writing a job in the library writer's layout would lose: verbs, the things counted (an
// "s" is added for more than one), and where they are.
inline constexpr const char* LOSS_DROP = "drop";
inline constexpr const char* LOSS_REWRITE = "rewrite";
inline constexpr const char* LOSS_CUT = "cut";
inline constexpr const char* LOSS_COMMENT_LINE = "comment line";
inline constexpr const char* LOSS_UNDESCRIBED_COMMAND = "undescribed command";
inline constexpr const char* LOSS_UNDESCRIBED_ITEM = "undescribed item";
inline constexpr const char* LOSS_NUMBER_TEXT = "number text";
inline constexpr const char* LOSS_VALUE = "value";
inline constexpr const char* LOSS_PLURAL = "s";
inline constexpr const char* LOSS_COUNT = "%zu %s%s";
inline constexpr const char* LOSS_LINE = "line %zu";
inline constexpr const char* LOSS_LINES = "lines ";
inline constexpr const char* LOSS_REWRITTEN = "line %zu: %s -> %s";
inline constexpr const char* LOSS_PLACES = " (%s)";
// Joins the parts of a list, and its last part; ends a list cut short.
inline constexpr const char* LIST_SEPARATOR = ", ";
inline constexpr const char* LIST_LAST_SEPARATOR = " and ";
inline constexpr const char* LIST_CUT_SHORT = ", ...";

// A folder settings file that cannot name a schema (its path).
inline constexpr const char* SETTINGS_NOT_AN_OBJECT = "%s: not a JSON object";
inline constexpr const char* SETTINGS_SCHEMA_NOT_TEXT = "%s: \"schema\" must be a path";

}  // namespace ZentuJobDocumentMessages
