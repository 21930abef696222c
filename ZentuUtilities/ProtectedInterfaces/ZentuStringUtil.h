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

// The decimal text of an integer.
ZENTU_UTILITIES_API std::string String(int value);

// The shortest text that reads back to the same double: 2.0 gives "2", 0.1 gives "0.1".
ZENTU_UTILITIES_API std::string String(double value);

}  // namespace ZentuStringUtil
