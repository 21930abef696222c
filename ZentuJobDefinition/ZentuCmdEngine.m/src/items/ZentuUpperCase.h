#pragma once

#include <string>

namespace ZentuUpperCase {

// The text with every byte from 'a' to 'z' before its first NUL raised to upper case. No locale
// is consulted, so every host gets the same identifiers whatever its locale.
inline std::string to_upper(std::string text) {
    for (char& c : text) {
        if (c == '\0') {
            break;
        }
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - ('a' - 'A'));
        }
    }
    return text;
}

}  // namespace ZentuUpperCase
