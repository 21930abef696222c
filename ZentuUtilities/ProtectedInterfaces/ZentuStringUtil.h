#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ZentuUtilitiesExport.h"

namespace ZentuStringUtil {

// Cuts blanks, tabs, CR, LF, VT and FF from both ends of the text, in place.
ZENTU_UTILITIES_API void Trim(std::string& text);

// Appends the parts of text between occurrences of separator to parts and returns how many it
// appended: none for the empty text, otherwise one more than the separators (empty parts kept).
ZENTU_UTILITIES_API std::size_t Split(const std::string& text, const char* separator,
                                      std::vector<std::string>& parts);

// Whether the text has at least two characters and begins and ends with quote.
ZENTU_UTILITIES_API bool is_quoted_str(const std::string& text, char quote);

// Whether the text equals a word of capitals, comparing the ASCII letters of text in any case.
ZENTU_UTILITIES_API bool equals_ignoring_case(std::string_view text, std::string_view capitals);

// The text with every byte from 'a' to 'z' before its first NUL raised to upper case. No locale
// is consulted, so every host gets the same identifiers whatever its locale.
ZENTU_UTILITIES_API std::string to_upper(std::string text);

// Sets result to text upper-cased as to_upper does it, reusing result's room, for a caller that
// upper-cases many texts only to look them up.
ZENTU_UTILITIES_API void to_upper_into(std::string_view text, std::string& result);

// Whether a byte would stop or garble a message: NUL ends a C text, others move terminals about.
ZENTU_UTILITIES_API bool is_control_byte(unsigned char byte);

// Whether a byte continues a UTF-8 sequence, so that cutting before it would split a character.
inline bool is_utf8_continuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

// The text with its control bytes written as \xNN, so that a message stays one readable line.
ZENTU_UTILITIES_API std::string printable(std::string_view text);

// The start of a text as a message quotes it: printable, at most 80 bytes cut at a character
// boundary and marked "...", so that a binary file or a 100 MB line still gives a short message.
ZENTU_UTILITIES_API std::string excerpt(std::string_view text);

// The decimal text of an integer.
ZENTU_UTILITIES_API std::string String(int value);

// The shortest text that reads back to the same double: 2.0 gives "2", 0.1 gives "0.1".
ZENTU_UTILITIES_API std::string String(double value);

}  // namespace ZentuStringUtil
