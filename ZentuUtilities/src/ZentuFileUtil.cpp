#include "ZentuFileUtil.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>

namespace ZentuFileUtil {
namespace {

// Stands for every code unit or byte sequence that does not encode a character.
constexpr char32_t REPLACEMENT_CHARACTER = 0xFFFD;

// The highest code point of Unicode.
constexpr char32_t MAX_CODE_POINT = 0x10FFFF;

// The range of UTF-16 surrogates, which are no characters of their own.
constexpr char32_t HIGH_SURROGATE_FIRST = 0xD800;
constexpr char32_t LOW_SURROGATE_FIRST = 0xDC00;
constexpr char32_t SURROGATE_LAST = 0xDFFF;

// The first code point that UTF-16 writes as a surrogate pair.
constexpr char32_t FIRST_SUPPLEMENTARY = 0x10000;

// The bits that a surrogate adds to a code point.
constexpr unsigned SURROGATE_BITS = 10;
constexpr char32_t SURROGATE_PAYLOAD_MASK = 0x3FF;

// Whether wide texts hold UTF-16 code units rather than whole code points.
constexpr bool WIDE_IS_UTF16 = sizeof(wchar_t) == 2;

// Whether the value is a code point that UTF-8 and UTF-16 can encode.
bool IsScalarValue(char32_t value) {
    return value <= MAX_CODE_POINT && (value < HIGH_SURROGATE_FIRST || value > SURROGATE_LAST);
}

// The code unit as an unsigned value; wchar_t is signed on some platforms.
char32_t CodeUnit(wchar_t unit) {
    return static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(unit));
}

// Reads the code point at position, advances position past it; bad units give U+FFFD.
char32_t NextCodePoint(const std::wstring& text, std::size_t& position) {
    const char32_t unit = CodeUnit(text[position++]);
    if (!WIDE_IS_UTF16 || unit < HIGH_SURROGATE_FIRST || unit > SURROGATE_LAST) {
        return IsScalarValue(unit) ? unit : REPLACEMENT_CHARACTER;
    }
    const bool isHigh = unit < LOW_SURROGATE_FIRST;
    if (!isHigh || position == text.size()) {
        return REPLACEMENT_CHARACTER;
    }
    const char32_t low = CodeUnit(text[position]);
    if (low < LOW_SURROGATE_FIRST || low > SURROGATE_LAST) {
        return REPLACEMENT_CHARACTER;
    }
    ++position;
    return FIRST_SUPPLEMENTARY + ((unit & SURROGATE_PAYLOAD_MASK) << SURROGATE_BITS) +
           (low & SURROGATE_PAYLOAD_MASK);
}

// Appends the UTF-8 bytes of a scalar value.
void AppendUtf8(char32_t value, std::string& utf8) {
    if (value < 0x80) {
        utf8 += static_cast<char>(value);
    } else if (value < 0x800) {
        utf8 += static_cast<char>(0xC0 | (value >> 6));
        utf8 += static_cast<char>(0x80 | (value & 0x3F));
    } else if (value < 0x10000) {
        utf8 += static_cast<char>(0xE0 | (value >> 12));
        utf8 += static_cast<char>(0x80 | ((value >> 6) & 0x3F));
        utf8 += static_cast<char>(0x80 | (value & 0x3F));
    } else {
        utf8 += static_cast<char>(0xF0 | (value >> 18));
        utf8 += static_cast<char>(0x80 | ((value >> 12) & 0x3F));
        utf8 += static_cast<char>(0x80 | ((value >> 6) & 0x3F));
        utf8 += static_cast<char>(0x80 | (value & 0x3F));
    }
}

// Appends a scalar value as one or, for UTF-16 beyond the basic plane, two code units.
void AppendWide(char32_t value, std::wstring& wide) {
    if (WIDE_IS_UTF16 && value >= FIRST_SUPPLEMENTARY) {
        const char32_t offset = value - FIRST_SUPPLEMENTARY;
        wide += static_cast<wchar_t>(HIGH_SURROGATE_FIRST + (offset >> SURROGATE_BITS));
        wide += static_cast<wchar_t>(LOW_SURROGATE_FIRST + (offset & SURROGATE_PAYLOAD_MASK));
    } else {
        wide += static_cast<wchar_t>(value);
    }
}

// The byte at index as an unsigned value.
unsigned char ByteAt(const std::string& text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

// The rules for a UTF-8 sequence that starts with a given byte: how many bytes follow, the
// payload bits of the first byte, and the range of the second byte, which is what excludes
// overlong forms, surrogates and values beyond U+10FFFF.
struct SequenceRule {
    std::size_t continuationBytes;
    unsigned leadPayloadMask;
    unsigned secondMin;
    unsigned secondMax;
};

// The rule for a lead byte; continuationBytes is 0 for a byte that cannot start a sequence
// longer than one byte.
SequenceRule RuleFor(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {1, 0x1F, 0x80, 0xBF};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return {2, 0x0F, lead == 0xE0 ? 0xA0u : 0x80u, lead == 0xED ? 0x9Fu : 0xBFu};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return {3, 0x07, lead == 0xF0 ? 0x90u : 0x80u, lead == 0xF4 ? 0x8Fu : 0xBFu};
    }
    return {0, 0, 0, 0};
}

// Reads the character at position and advances past it. A malformed sequence gives one U+FFFD
// for its longest valid start, and reading goes on at the first byte that does not fit it.
char32_t NextUtf8CodePoint(const std::string& text, std::size_t& position) {
    const unsigned char lead = ByteAt(text, position++);
    if (lead < 0x80) {
        return lead;
    }
    const SequenceRule rule = RuleFor(lead);
    if (rule.continuationBytes == 0) {
        return REPLACEMENT_CHARACTER;
    }
    char32_t value = lead & rule.leadPayloadMask;
    for (std::size_t index = 0; index < rule.continuationBytes; ++index) {
        if (position == text.size()) {
            return REPLACEMENT_CHARACTER;
        }
        const unsigned char byte = ByteAt(text, position);
        const unsigned min = index == 0 ? rule.secondMin : 0x80;
        const unsigned max = index == 0 ? rule.secondMax : 0xBF;
        if (byte < min || byte > max) {
            return REPLACEMENT_CHARACTER;
        }
        value = (value << 6) | (byte & 0x3F);
        ++position;
    }
    return value;
}

}  // namespace

std::FILE* wfopen(const std::wstring& path, const std::wstring& mode) {
    // fopen would stop at an embedded NUL and open another file than the one named.
    if (path.find(L'\0') != std::wstring::npos || mode.find(L'\0') != std::wstring::npos) {
        errno = EINVAL;
        return nullptr;
    }
    return std::fopen(to_utf8(path).c_str(), to_utf8(mode).c_str());
}

std::string to_utf8(const std::wstring& text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        AppendUtf8(NextCodePoint(text, position), utf8);
    }
    return utf8;
}

std::wstring from_utf8(const std::string& text) {
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        AppendWide(NextUtf8CodePoint(text, position), wide);
    }
    return wide;
}

}  // namespace ZentuFileUtil
