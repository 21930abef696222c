#pragma once

#include <cstdint>
#include <string>

namespace ZentuIntegerText {

// The integer at the start of text: white space (space, codes 9 to 13) skipped, one sign, then
// decimal digits accumulated in unsigned 32-bit arithmetic that wraps. Without digits it is 0.
// Callers validate the whole text separately; this only converts.
inline int to_wrapping_int(const std::string& text) {
    const char* c = text.c_str();
    while (*c == ' ' || (*c >= '\t' && *c <= '\r')) {
        ++c;
    }
    const bool negative = *c == '-';
    if (*c == '+' || *c == '-') {
        ++c;
    }
    std::uint32_t magnitude = 0;
    for (; *c >= '0' && *c <= '9'; ++c) {
        magnitude = magnitude * 10U + static_cast<std::uint32_t>(*c - '0');
    }
    if (negative) {
        magnitude = 0U - magnitude;
    }
    return static_cast<int>(magnitude);
}

}  // namespace ZentuIntegerText
