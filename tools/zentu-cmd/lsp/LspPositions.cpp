#include "lsp/LspPositions.h"

#include <algorithm>

#include "ZentuJobDocument.h"
#include "ZentuStringUtil.h"

namespace zentu_cmd::lsp {

namespace {

// The scheme of file URIs.
constexpr std::string_view FILE_SCHEME = "file://";
// The lowest lead byte of a UTF-8 sequence beyond the basic plane, which UTF-16 writes as two
// code units.
constexpr unsigned char FOUR_BYTE_LEAD = 0xF0;

// How many UTF-16 code units the character that starts with this byte takes; none for a byte
// inside a character.
std::size_t utf16_units(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    if (ZentuStringUtil::is_utf8_continuation(value)) {
        return 0;
    }
    return value >= FOUR_BYTE_LEAD ? 2 : 1;
}

// The UTF-16 length of bytes [0, offset) of a line.
std::size_t utf16_length(std::string_view line, std::size_t offset) {
    std::size_t units = 0;
    for (std::size_t i = 0; i < offset && i < line.size(); ++i) {
        units += utf16_units(line[i]);
    }
    return units;
}

int hex_value(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char upper = static_cast<char>(c & ~0x20);
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

}  // namespace

ZentuTextPosition position_from(const ZentuJobDocument& document, const nlohmann::json& position) {
    const std::size_t line = position.at("line").get<std::size_t>() + 1;
    const std::size_t units = position.at("character").get<std::size_t>();
    if (line < 1 || line > document.LineCount()) {
        return {line, units + 1};  // no line of the text: nothing is there
    }
    const std::string_view text = document.LineText(line);
    std::size_t offset = 0;
    for (std::size_t walked = 0; offset < text.size(); ++offset) {
        walked += utf16_units(text[offset]);
        if (walked > units) {
            break;
        }
    }
    return {line, document.ColumnOf(line, offset)};
}

nlohmann::json position_of(const ZentuJobDocument& document, std::size_t line, std::size_t column) {
    const std::size_t row = std::max<std::size_t>(line, 1) - 1;
    if (line < 1 || line > document.LineCount()) {
        return {{"line", row}, {"character", std::max<std::size_t>(column, 1) - 1}};
    }
    const std::string_view text = document.LineText(line);
    const std::size_t offset = document.OffsetOf(line, column);
    const std::size_t start = document.OffsetOf(line, 1);
    return {{"line", row}, {"character", utf16_length(text, offset) - utf16_length(text, start)}};
}

nlohmann::json range_of(const ZentuJobDocument& document, const ZentuTextRange& range) {
    return {{"start", position_of(document, range.line, range.column)},
            {"end", position_of(document, range.end_line, range.end_column)}};
}

nlohmann::json whole_text_range(const std::string& text) {
    const std::size_t lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    const std::size_t lastStart = text.rfind('\n') == std::string::npos ? 0 : text.rfind('\n') + 1;
    const std::string_view last = std::string_view(text).substr(lastStart);
    return {{"start", {{"line", 0}, {"character", 0}}},
            {"end", {{"line", lines}, {"character", utf16_length(last, last.size())}}}};
}

std::string path_of_uri(const std::string& uri) {
    if (uri.compare(0, FILE_SCHEME.size(), FILE_SCHEME) != 0) {
        return {};
    }
    std::string path;
    for (std::size_t i = FILE_SCHEME.size(); i < uri.size(); ++i) {
        const int high = i + 2 < uri.size() && uri[i] == '%' ? hex_value(uri[i + 1]) : -1;
        const int low = high >= 0 ? hex_value(uri[i + 2]) : -1;
        if (low >= 0) {
            path += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            path += uri[i];
        }
    }
    return path;
}

}  // namespace zentu_cmd::lsp
