#pragma once

#include <string_view>

// Keeps a function out of its callers, so that counting the frames above it stays reliable.
#if defined(__GNUC__) || defined(__clang__)
#define ZENTU_NOINLINE __attribute__((noinline))
#elif defined(_MSC_VER)
#define ZENTU_NOINLINE __declspec(noinline)
#else
#define ZENTU_NOINLINE
#endif

// The texts and character sets that the utility library itself writes or reads, in one place.
namespace ZentuUtilitiesTexts {

// The white space that the text helpers cut and skip: blank, tab, CR, LF, VT and FF.
constexpr std::string_view BLANK_CHARACTERS = " \t\r\n\v\f";

// Whether a byte is one of BLANK_CHARACTERS (a blank, or a code from 9 to 13); loops over the bytes
// of a line ask it of each, where searching the set would cost a call per byte.
constexpr bool IsBlankCharacter(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// The line prefixes of the default log handler, by message kind.
constexpr std::string_view LOG_ERROR_PREFIX = "error: ";
constexpr std::string_view LOG_WARNING_PREFIX = "warning: ";
constexpr std::string_view LOG_INFO_PREFIX = "info: ";
constexpr std::string_view LOG_TRACE_PREFIX = "trace: ";

// The class name that KPL_Failure reports.
constexpr const char* FAILURE_TYPE_NAME = "KPL_Failure";

// Stands for the module of a frame whose file name the loader does not know.
constexpr std::string_view UNKNOWN_MODULE = "<unknown>";

}  // namespace ZentuUtilitiesTexts
