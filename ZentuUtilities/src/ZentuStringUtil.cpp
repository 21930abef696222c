#include "ZentuStringUtil.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <utility>

#include "ZentuUtilitiesInternal.h"

namespace ZentuStringUtil {
namespace {

// Room for the longest shortest-form double, "-2.2250738585072014e-308", and its kin.
constexpr std::size_t DOUBLE_TEXT_CAPACITY = 32;

// The most bytes of a text that a message quotes; a 100 MB line must not fill the message.
constexpr std::size_t EXCERPT_LENGTH = 80;

// Marks a quotation cut short.
constexpr std::string_view EXCERPT_CUT_MARK = "...";

// The length up to which a text is searched for a NUL byte by byte rather than with memchr.
constexpr std::size_t SHORT_TEXT_LENGTH = 32;

// Room for "\xNN" and its terminating NUL.
constexpr std::size_t ESCAPE_CAPACITY = 5;

// Room for the decimal text of any int, sign included.
constexpr std::size_t INT_TEXT_CAPACITY = 16;

// The parts of a non-empty text between the occurrences of a non-empty separator.
std::vector<std::string> PartsBetween(const std::string& text, const char* separator,
                                      std::size_t separatorLength) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = text.find(separator, begin, separatorLength);
        if (end == std::string::npos) {
            parts.push_back(text.substr(begin));
            return parts;
        }
        parts.push_back(text.substr(begin, end - begin));
        begin = end + separatorLength;
    }
}

// Moves the new parts behind the existing ones; only the reservation can throw, and it does so
// before anything has changed.
void AppendAll(std::vector<std::string>&& found, std::vector<std::string>& parts) {
    parts.reserve(parts.size() + found.size());
    parts.insert(parts.end(), std::make_move_iterator(found.begin()),
                 std::make_move_iterator(found.end()));
}

// The end of the bytes before the first NUL. A short text is walked byte by byte, as a call to
// memchr would cost more than the walk.
std::size_t EndBeforeNul(const char* bytes, std::size_t size) {
    if (size <= SHORT_TEXT_LENGTH) {
        std::size_t end = 0;
        while (end < size && bytes[end] != '\0') {
            ++end;
        }
        return end;
    }
    const auto* nul = static_cast<const char*>(std::memchr(bytes, '\0', size));
    return nul != nullptr ? static_cast<std::size_t>(nul - bytes) : size;
}

// Raises every byte from 'a' to 'z' before the first NUL to upper case. The NUL is found first so
// that the loop over the bytes before it has no exit and can work on many bytes at once.
void RaiseBeforeNul(char* bytes, std::size_t size) {
    const std::size_t end = EndBeforeNul(bytes, size);
    for (std::size_t i = 0; i < end; ++i) {
        const bool lower = bytes[i] >= 'a' && bytes[i] <= 'z';
        bytes[i] = static_cast<char>(bytes[i] - (lower ? 'a' - 'A' : 0));
    }
}

}  // namespace

void Trim(std::string& text) {
    std::size_t end = text.size();
    while (end > 0 && ZentuUtilitiesTexts::IsBlankCharacter(text[end - 1])) {
        --end;
    }
    std::size_t begin = 0;
    while (begin < end && ZentuUtilitiesTexts::IsBlankCharacter(text[begin])) {
        ++begin;
    }
    text.erase(end);
    text.erase(0, begin);
}

std::size_t Split(const std::string& text, const char* separator, std::vector<std::string>& parts) {
    if (text.empty()) {
        return 0;
    }
    const std::size_t separatorLength = separator != nullptr ? std::strlen(separator) : 0;
    if (separatorLength == 0) {
        parts.push_back(text);
        return 1;
    }
    std::vector<std::string> found = PartsBetween(text, separator, separatorLength);
    const std::size_t count = found.size();
    AppendAll(std::move(found), parts);
    return count;
}

bool is_quoted_str(const std::string& text, char quote) {
    return text.size() >= 2 && text.front() == quote && text.back() == quote;
}

bool equals_ignoring_case(std::string_view text, std::string_view capitals) {
    return std::equal(text.begin(), text.end(), capitals.begin(), capitals.end(),
                      [](char character, char capital) {
                          return character == capital || (character >= 'a' && character <= 'z' &&
                                                          character - 'a' + 'A' == capital);
                      });
}

void to_upper_into(std::string_view text, std::string& result) {
    result.assign(text);
    RaiseBeforeNul(result.data(), result.size());
}

std::string to_upper(std::string text) {
    RaiseBeforeNul(text.data(), text.size());
    return text;
}

bool is_control_byte(unsigned char byte) {
    return byte < 0x20 || byte == 0x7F;
}

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (is_control_byte(byte)) {
            char escaped[ESCAPE_CAPACITY];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
            result += escaped;
        } else {
            result += character;
        }
    }
    return result;
}

std::string excerpt(std::string_view text) {
    std::size_t length = std::min(text.size(), EXCERPT_LENGTH);
    while (length < text.size() && length > 0 &&
           is_utf8_continuation(static_cast<unsigned char>(text[length]))) {
        --length;
    }
    std::string quoted = printable(text.substr(0, length));
    if (length < text.size()) {
        quoted += EXCERPT_CUT_MARK;
    }
    return quoted;
}

std::string String(int value) {
    char text[INT_TEXT_CAPACITY];
    const auto result = std::to_chars(text, text + sizeof text, value);
    return std::string(text, result.ptr);
}

std::string String(double value) {
    char text[DOUBLE_TEXT_CAPACITY];
    const auto result = std::to_chars(text, text + sizeof text, value);
    return std::string(text, result.ptr);
}

}  // namespace ZentuStringUtil
