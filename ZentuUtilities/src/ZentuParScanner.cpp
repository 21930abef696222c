#include "ZentuParScanner.h"

#include <algorithm>

#include "ZentuStringUtil.h"
#include "ZentuUtilitiesInternal.h"

namespace {

using Kind = ZentuParLine::Kind;

// The UTF-8 byte-order mark, which some editors put before the first line.
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

// The line that closes a command, compared in any case.
constexpr std::string_view END_LINE = "END_";

// The first character of a comment line.
constexpr char COMMENT_MARK = '#';

// What parts an item's name from its value.
constexpr char NAME_VALUE_SEPARATOR = '=';

// What a value line ends with when the value goes on with a name on the next line.
constexpr char LIST_SEPARATOR = ',';

bool IsBlank(char character) {
    return ZentuUtilitiesTexts::IsBlankCharacter(character);
}

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A letter, then letters, digits or '_'.
bool IsSingleName(std::string_view text) {
    return !text.empty() && IsLetter(text.front()) &&
           std::all_of(text.begin() + 1, text.end(),
                       [](char c) { return IsLetter(c) || IsDigit(c) || c == '_'; });
}

ZentuParLine Line(Kind kind, std::size_t begin, std::size_t end) {
    ZentuParLine line;
    line.kind = kind;
    line.nameBegin = begin;
    line.nameEnd = end;
    return line;
}

}  // namespace

ZentuParLine ZentuParScanner::Scan(std::string_view line) {
    std::size_t begin = 0;
    if (firstLine_ && line.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK) {
        begin = BYTE_ORDER_MARK.size();
    }
    firstLine_ = false;
    std::size_t end = line.size();
    while (begin < end && IsBlank(line[begin])) {
        ++begin;
    }
    while (end > begin && IsBlank(line[end - 1])) {
        --end;
    }
    if (begin < end && line[begin] == COMMENT_MARK) {
        return Line(Kind::COMMENT, begin, end);
    }
    return insideCommand_ ? ScanInsideCommand(line, begin, end)
                          : ScanOutsideCommand(line, begin, end);
}

void ZentuParScanner::CloseCommand() {
    insideCommand_ = false;
    insideValue_ = false;
}

ZentuParLine ZentuParScanner::ScanOutsideCommand(std::string_view line, std::size_t begin,
                                                 std::size_t end) {
    const std::string_view text = line.substr(begin, end - begin);
    if (text.empty()) {
        return Line(Kind::BLANK, begin, end);
    }
    if (ZentuStringUtil::equals_ignoring_case(text, END_LINE)) {
        return Line(Kind::END_OUTSIDE_COMMAND, begin, end);
    }
    if (text.find(NAME_VALUE_SEPARATOR) != std::string_view::npos) {
        return Line(Kind::ITEM_OUTSIDE_COMMAND, begin, end);
    }
    if (std::any_of(text.begin(), text.end(), IsBlank)) {
        return Line(Kind::COMMAND_LINE_NOT_ONE_WORD, begin, end);
    }
    // A keyword is written back as a line of text; a control byte in it (a NUL above all) would
    // not survive that, so the file is refused rather than silently changed.
    if (std::any_of(text.begin(), text.end(), [](char c) {
            return ZentuStringUtil::is_control_byte(static_cast<unsigned char>(c));
        })) {
        return Line(Kind::COMMAND_WORD_NOT_PRINTABLE, begin, end);
    }
    insideCommand_ = true;
    insideValue_ = false;
    return Line(Kind::KEYWORD, begin, end);
}

ZentuParLine ZentuParScanner::ScanInsideCommand(std::string_view line, std::size_t begin,
                                                std::size_t end) {
    const std::string_view text = line.substr(begin, end - begin);
    if (ZentuStringUtil::equals_ignoring_case(text, END_LINE)) {
        CloseCommand();
        return Line(Kind::END, begin, end);
    }
    const std::size_t separator = text.find(NAME_VALUE_SEPARATOR);
    if (separator != std::string_view::npos) {
        insideValue_ = false;
        ZentuParLine item = Line(Kind::ITEM, begin, begin + separator);
        while (item.nameEnd > item.nameBegin && IsBlank(line[item.nameEnd - 1])) {
            --item.nameEnd;
        }
        item.valueBegin = begin + separator + 1;
        item.valueEnd = end;
        while (item.valueBegin < item.valueEnd && IsBlank(line[item.valueBegin])) {
            ++item.valueBegin;
        }
        return item;
    }
    const bool opensNextItem = valueHasLines_ && !valueContinues_ && IsSingleName(text);
    if (insideValue_ && !opensNextItem) {
        valueHasLines_ = true;
        valueContinues_ = !text.empty() && text.back() == LIST_SEPARATOR;
        return Line(Kind::VALUE, begin, end);
    }
    if (text.empty()) {
        return Line(Kind::BLANK, begin, end);
    }
    insideValue_ = true;
    valueHasLines_ = false;
    valueContinues_ = false;
    return Line(Kind::NAME, begin, end);
}
