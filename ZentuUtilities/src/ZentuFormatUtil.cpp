#include "ZentuFormatUtil.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <system_error>

#include "ZentuUtilitiesInternal.h"

namespace ZentuFormatUtil {
namespace {

// An exponent magnitude far beyond the range of double, at which reading more digits stops.
constexpr long long EXPONENT_SATURATION = 1000000000;

// The outcome of reading a number: its value and the position after it (its start when none).
struct Conversion {
    double value;
    const char* end;
};

// Whether c is one of '0' to '9', whatever the locale.
bool IsDecimalDigit(char c) {
    return c >= '0' && c <= '9';
}

// Whether c is a digit of a decimal or a hexadecimal number.
bool IsDigitOf(char c, bool hexadecimal) {
    return IsDecimalDigit(c) || (hexadecimal && ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F')));
}

// Whether c starts the exponent of a decimal ('e') or a hexadecimal ('p') number.
bool IsExponentMarker(char c, bool hexadecimal) {
    return hexadecimal ? c == 'p' || c == 'P' : c == 'e' || c == 'E';
}

// Whether c is a sign that strtod accepts.
bool IsSign(char c) {
    return c == '+' || c == '-';
}

// The first non-blank character of a NUL-terminated text.
const char* SkipBlanks(const char* text) {
    while (ZentuUtilitiesTexts::IsBlankCharacter(*text)) {
        ++text;
    }
    return text;
}

// The text without the blanks around it.
std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && ZentuUtilitiesTexts::IsBlankCharacter(text.back())) {
        text.remove_suffix(1);
    }
    while (!text.empty() && ZentuUtilitiesTexts::IsBlankCharacter(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

// The first length characters of text, or fewer when a NUL comes earlier; memchr looks at many
// bytes at once, which counts for a long text such as an integer list.
std::string_view LeadingText(const char* text, std::size_t length) {
    const auto* nul = static_cast<const char*>(std::memchr(text, '\0', length));
    return std::string_view(text, nul != nullptr ? static_cast<std::size_t>(nul - text) : length);
}

// The position after the digits that start at p.
const char* SkipDigits(const char* p, const char* last, bool hexadecimal) {
    while (p != last && IsDigitOf(*p, hexadecimal)) {
        ++p;
    }
    return p;
}

// Whether [p, last) starts with a digit, or with a point and a digit.
bool StartsWithDigits(const char* p, const char* last, bool hexadecimal) {
    if (p != last && *p == '.') {
        ++p;
    }
    return p != last && IsDigitOf(*p, hexadecimal);
}

// The position after a complete decimal exponent at p ("e5", "E-3"), or p when there is none.
const char* SkipExponent(const char* p, const char* last) {
    if (p == last || !IsExponentMarker(*p, false)) {
        return p;
    }
    const char* digits = p + 1;
    if (digits != last && IsSign(*digits)) {
        ++digits;
    }
    const char* digitsEnd = SkipDigits(digits, last, false);
    return digitsEnd != digits ? digitsEnd : p;
}

// The end of the decimal number that starts [first, last), or first when there is none:
// [sign] (digits [. digits] | . digits) [(e|E) [sign] digits], without inf, nan or hexadecimal.
const char* ScanDecimalNumber(const char* first, const char* last) {
    const char* p = first;
    if (p != last && IsSign(*p)) {
        ++p;
    }
    if (!StartsWithDigits(p, last, false)) {
        return first;
    }
    p = SkipDigits(p, last, false);
    if (p != last && *p == '.') {
        p = SkipDigits(p + 1, last, false);
    }
    return SkipExponent(p, last);
}

// The value of a well-formed exponent at p ("e-12", "P+3"), saturated far beyond the range of
// double so that no digit string can overflow it; 0 when there is no exponent.
long long ExponentValue(const char* p, const char* last) {
    if (p == last) {
        return 0;
    }
    ++p;
    const bool negative = p != last && *p == '-';
    if (p != last && IsSign(*p)) {
        ++p;
    }
    long long value = 0;
    for (; p != last && IsDecimalDigit(*p); ++p) {
        value = std::min(value * 10 + (*p - '0'), EXPONENT_SATURATION);
    }
    return negative ? -value : value;
}

// Whether an unsigned number in [first, last) that does not fit a double lies above its range
// rather than below it. The position of its leading non-zero digit plus its exponent tells,
// since such a number is far from 1 either way.
bool LiesAboveRange(const char* first, const char* last, bool hexadecimal) {
    long long leadingPosition = 0;
    bool leadingFound = false;
    const char* p = first;
    for (; p != last && IsDigitOf(*p, hexadecimal); ++p) {
        leadingFound = leadingFound || *p != '0';
        leadingPosition += leadingFound ? 1 : 0;
    }
    if (p != last && *p == '.') {
        for (++p; p != last && IsDigitOf(*p, hexadecimal); ++p) {
            leadingFound = leadingFound || *p != '0';
            leadingPosition -= leadingFound ? 0 : 1;
        }
    }
    const long long bitsPerDigit = hexadecimal ? 4 : 1;
    return leadingPosition * bitsPerDigit + ExponentValue(p, last) > 0;
}

// Reads an unsigned number in the given format the way strtod does: out of range it gives
// HUGE_VAL above and zero below.
Conversion ConvertUnsignedAs(const char* first, const char* last, std::chars_format format) {
    // from_chars takes a minus sign of its own, which strtod does not take after the sign.
    if (first == last || *first == '-') {
        return {0.0, first};
    }
    double value = 0.0;
    const std::from_chars_result result = std::from_chars(first, last, value, format);
    if (result.ec == std::errc::invalid_argument) {
        return {0.0, first};
    }
    if (result.ec == std::errc::result_out_of_range) {
        const bool hexadecimal = format == std::chars_format::hex;
        value = LiesAboveRange(first, result.ptr, hexadecimal) ? HUGE_VAL : 0.0;
    }
    return {value, result.ptr};
}

// Reads an unsigned decimal or "0x" hexadecimal number, infinity or NaN the way strtod does.
Conversion ConvertUnsigned(const char* first, const char* last) {
    const bool hexPrefix =
        last - first >= 2 && first[0] == '0' && (first[1] == 'x' || first[1] == 'X');
    // "0x" without a hexadecimal digit after it is the number 0 followed by other text.
    if (hexPrefix && StartsWithDigits(first + 2, last, true)) {
        return ConvertUnsignedAs(first + 2, last, std::chars_format::hex);
    }
    return ConvertUnsignedAs(first, last, std::chars_format::general);
}

}  // namespace

bool is_int(const char* text) {
    if (text == nullptr) {
        return false;
    }
    const char* p = SkipBlanks(text);
    const bool negative = *p == '-';
    if (IsSign(*p)) {
        ++p;
    }
    const std::int64_t limit = negative ? -std::int64_t{std::numeric_limits<std::int32_t>::min()}
                                        : std::numeric_limits<std::int32_t>::max();
    const char* digits = p;
    std::int64_t magnitude = 0;
    for (; IsDecimalDigit(*p); ++p) {
        // Past the limit the exact value no longer matters, and not adding keeps it from
        // overflowing however many digits follow.
        if (magnitude <= limit) {
            magnitude = magnitude * 10 + (*p - '0');
        }
    }
    return p != digits && magnitude <= limit && *SkipBlanks(p) == '\0';
}

bool is_double(const char* text, std::size_t length) {
    if (text == nullptr) {
        return false;
    }
    const std::string_view number = TrimBlanks(LeadingText(text, length));
    const char* first = number.data();
    const char* last = first + number.size();
    if (number.empty() || ScanDecimalNumber(first, last) != last) {
        return false;
    }
    const char* magnitude = IsSign(*first) ? first + 1 : first;
    return std::isfinite(ConvertUnsignedAs(magnitude, last, std::chars_format::general).value);
}

double str_to_double(const char* text, const char** end) {
    double value = 0.0;
    const char* numberEnd = text;
    if (text != nullptr) {
        const char* sign = SkipBlanks(text);
        const char* magnitude = IsSign(*sign) ? sign + 1 : sign;
        const Conversion conversion =
            ConvertUnsigned(magnitude, magnitude + std::strlen(magnitude));
        if (conversion.end != magnitude) {
            value = *sign == '-' ? -conversion.value : conversion.value;
            numberEnd = conversion.end;
        }
    }
    if (end != nullptr) {
        *end = numberEnd;
    }
    return value;
}

}  // namespace ZentuFormatUtil
