#pragma once

#include <cstddef>

#include "ZentuUtilitiesExport.h"

namespace ZentuFormatUtil {

// Whether the whole text is one signed 32-bit decimal integer, blanks around it allowed.
ZENTU_UTILITIES_API bool is_int(const char* text);

// Whether the first length characters are one finite decimal number as strtod reads it, blanks
// around it allowed; integers count, "inf", "nan" and hexadecimal numbers do not.
ZENTU_UTILITIES_API bool is_double(const char* text, std::size_t length);

// Converts the number at the start of text as strtod does, but independently of the locale;
// when end is not null it receives the position after the number (text when there is none).
ZENTU_UTILITIES_API double str_to_double(const char* text, const char** end);

}  // namespace ZentuFormatUtil
