#include "ZentuJobDocument.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <system_error>
#include <utility>

#include "KPL_Failure.h"
#include "ZentuFileUtil.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuStringUtil.h"

namespace Messages = ZentuJobDocumentMessages;
using Kind = ZentuParLine::Kind;

namespace {

// The item whose value identifies a command, compared in any case.
constexpr std::string_view ID_NAME = "ID_NAME";

// The UTF-8 byte-order mark, which the scanner skips and columns do not count.
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

// Bytes read from a file at a time.
constexpr std::size_t CHUNK_SIZE = std::size_t{1} << 16;

// Closes a file however reading ends.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// The line that closes a command, compared in any case.
constexpr std::string_view END_LINE = "END_";

std::string SystemReason(int error) {
    return std::generic_category().message(error);
}

// A line's text without the CR of a CR LF line end, which is no character of the line.
std::string_view without_carriage_return(std::string_view line) {
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    return line;
}

// How many characters the UTF-8 text holds.
std::size_t characters_in(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return !ZentuStringUtil::is_utf8_continuation(static_cast<unsigned char>(c));
    }));
}

// Whether every byte of the text is ASCII, so that its characters are its bytes.
bool is_ascii(std::string_view text) {
    unsigned char bits = 0;
    for (const char c : text) {
        bits |= static_cast<unsigned char>(c);
    }
    return bits < 0x80;
}

// How many lines a text holds, and how many of them start with END_ after blanks: room for the
// lines and, closely enough, for the commands is then taken at once, where growing the vectors
// would move them and fill fresh memory twice over.
struct LineCounts {
    std::size_t lines = 0;
    std::size_t ends = 0;
};

// Whether a line's first word begins with END_, in any case.
bool starts_with_end(std::string_view line) {
    const std::size_t first = line.find_first_not_of(" \t");
    return first != std::string_view::npos &&
           ZentuStringUtil::equals_ignoring_case(line.substr(first, END_LINE.size()), END_LINE);
}

// The lines of a text as Read splits them, and those that start with END_.
LineCounts count_lines(std::string_view text) {
    LineCounts counts;
    for (std::size_t begin = 0; begin < text.size(); ++counts.lines) {
        const std::size_t feed = std::min(text.find('\n', begin), text.size());
        counts.ends += starts_with_end(text.substr(begin, feed - begin)) ? 1 : 0;
        begin = feed + 1;
    }
    return counts;
}

// The size of a regular file, as room to read it into; 0 when it is unknown.
std::size_t expected_size(const std::string& path) {
    std::error_code error;
    const std::filesystem::path file = std::filesystem::u8path(path);
    if (!std::filesystem::is_regular_file(file, error)) {
        return 0;
    }
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return error ? 0 : static_cast<std::size_t>(size);
}

// Reads a file to its end into text, straight into the text's room: first the size expected and
// a byte more, to meet the end, then pieces of CHUNK_SIZE for a file that holds more.
void read_into(std::FILE* file, std::size_t expected, std::string& text) {
    std::size_t size = 0;
    for (std::size_t room = std::max(expected + 1, CHUNK_SIZE);; room = CHUNK_SIZE) {
        text.resize(size + room);
        const std::size_t read = std::fread(&text[size], 1, room, file);
        size += read;
        if (read < room) {
            break;
        }
    }
    text.resize(size);
}

}  // namespace

const std::string& ZentuDocumentCommand::IdName() const {
    static const std::string none;
    const auto found = std::find_if(items.begin(), items.end(), [](const ZentuDocumentItem& item) {
        return ZentuStringUtil::equals_ignoring_case(item.name, ID_NAME);
    });
    return found != items.end() ? found->value : none;
}

// Builds a document line by line on the shared scanner, recovering from every problem.
class ZentuJobDocumentReader {
  public:
    ZentuJobDocumentReader(ZentuJobDocument& document,
                           const ZentuJobDocument::KeywordTest& startsCommand)
        : document_(document), startsCommand_(startsCommand) {}

    // Splits the text into lines and takes each; a last line without line feed counts, an
    // empty text after the last line feed does not.
    void Read() {
        const std::string& text = document_.text_;
        const LineCounts counts = count_lines(text);
        document_.lines_.reserve(counts.lines);
        document_.commands_.reserve(counts.ends);
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t feed = text.find('\n', begin);
            const std::size_t end = feed == std::string::npos ? text.size() : feed;
            document_.lines_.push_back(ZentuDocumentLine{begin, end, {}, NONE, NONE});
            Take(document_.lines_.size());
            begin = end + 1;
        }
        Finish();
    }

  private:
    static constexpr std::size_t NONE = ZentuDocumentLine::NONE;

    void Take(std::size_t number) {
        ZentuDocumentLine& line = document_.lines_[number - 1];
        const std::string_view text = document_.LineText(number);
        line.scanned = scanner_.Scan(text);
        if (line.scanned.kind == Kind::NAME && StartsCommand(line.scanned.Name(text))) {
            ReportUnclosed(line.scanned.Name(text));
            scanner_.CloseCommand();
            line.scanned = scanner_.Scan(text);
        }
        const ZentuParLine& scanned = line.scanned;
        switch (scanned.kind) {
            case Kind::KEYWORD:
                OpenCommand(number, scanned);
                break;
            case Kind::ITEM:
            case Kind::NAME:
                AddItem(number, scanned);
                break;
            case Kind::VALUE:
                AddValueLine(number, scanned);
                break;
            case Kind::END:
                Command().end_line = number;
                break;
            case Kind::BLANK:
            case Kind::COMMENT:
                break;
            case Kind::END_OUTSIDE_COMMAND:
                Report(number, scanned, Messages::END_OUTSIDE_COMMAND);
                break;
            case Kind::ITEM_OUTSIDE_COMMAND:
                Report(number, scanned, Messages::ITEM_OUTSIDE_COMMAND);
                break;
            case Kind::COMMAND_LINE_NOT_ONE_WORD:
                Report(number, scanned, Messages::COMMAND_LINE_NOT_ONE_WORD);
                break;
            case Kind::COMMAND_WORD_NOT_PRINTABLE:
                Report(number, scanned, Messages::COMMAND_WORD_NOT_PRINTABLE);
                break;
        }
        Place(line);
        if (scanned.kind == Kind::END) {
            CloseCommand();
        }
    }

    // Whether a name alone inside the open command starts the next command.
    bool StartsCommand(std::string_view name) const {
        return startsCommand_ && openCommand_ != NONE && startsCommand_(name, Command().keyword);
    }

    ZentuDocumentCommand& Command() { return document_.commands_[openCommand_]; }
    const ZentuDocumentCommand& Command() const { return document_.commands_[openCommand_]; }

    // Records which command and item a line belongs to.
    void Place(ZentuDocumentLine& line) const {
        line.command = openCommand_;
        const bool ofItem = line.scanned.kind == Kind::ITEM || line.scanned.kind == Kind::NAME ||
                            line.scanned.kind == Kind::VALUE ||
                            (scanner_.InsideValue() && line.scanned.kind == Kind::COMMENT);
        line.item = ofItem && openCommand_ != NONE ? items_.size() - 1 : NONE;
    }

    void OpenCommand(std::size_t number, const ZentuParLine& scanned) {
        CloseCommand();
        const std::string_view text = document_.LineText(number);
        ZentuDocumentCommand& command = document_.commands_.emplace_back();
        command.keyword = std::string(scanned.Name(text));
        command.line = number;
        command.keyword_range = Range(number, scanned.nameBegin, scanned.nameEnd);
        openCommand_ = document_.commands_.size() - 1;
    }

    // RangeOf of line n, the line being read: on a line of ASCII bytes after the first, which
    // holds no byte-order mark, a column is the offset, without counting characters.
    ZentuTextRange Range(std::size_t number, std::size_t begin, std::size_t end) {
        const std::string_view line = without_carriage_return(document_.LineText(number));
        if (rangeLine_ != number) {
            rangeLine_ = number;
            rangeLineAscii_ = number != 1 && is_ascii(line);
        }
        if (!rangeLineAscii_) {
            return document_.RangeOf(number, begin, end);
        }
        return ZentuTextRange{number, 1 + std::min(begin, line.size()), number,
                              1 + std::min(end, line.size())};
    }

    // Gives the open command its items, in room of their number.
    void CloseCommand() {
        if (openCommand_ == NONE) {
            return;
        }
        Command().items.assign(std::make_move_iterator(items_.begin()),
                               std::make_move_iterator(items_.end()));
        items_.clear();
        openCommand_ = NONE;
    }

    void AddItem(std::size_t number, const ZentuParLine& scanned) {
        const std::string_view text = document_.LineText(number);
        ZentuDocumentItem& item = items_.emplace_back();
        item.name = std::string(scanned.Name(text));
        item.name_alone = scanned.kind == Kind::NAME;
        item.line = number;
        item.last_line = number;
        item.name_range = Range(number, scanned.nameBegin, scanned.nameEnd);
        if (item.name_alone) {
            item.value_range = Range(number, scanned.nameEnd, scanned.nameEnd);
        } else {
            item.value = std::string(scanned.Value(text));
            item.value_range = Range(number, scanned.valueBegin, scanned.valueEnd);
        }
        valueHasLines_ = false;
    }

    void AddValueLine(std::size_t number, const ZentuParLine& scanned) {
        ZentuDocumentItem& item = items_.back();
        const ZentuTextRange range = Range(number, scanned.nameBegin, scanned.nameEnd);
        if (valueHasLines_) {
            item.value += '\n';
        } else {
            item.value_range.line = range.line;
            item.value_range.column = range.column;
        }
        item.value += scanned.Name(document_.LineText(number));
        item.value_range.end_line = range.end_line;
        item.value_range.end_column = range.end_column;
        item.last_line = number;
        valueHasLines_ = true;
    }

    // A line that breaks the structure outside a command, quoted.
    void Report(std::size_t number, const ZentuParLine& scanned, const char* format) {
        const std::string quoted =
            ZentuStringUtil::excerpt(scanned.Name(document_.LineText(number)));
        document_.findings_.push_back(
            zentu_finding(ZentuFindingCodes::SYNTAX, KPL_Failure::Format(format, quoted.c_str()),
                          document_.RangeOf(number, scanned.nameBegin, scanned.nameEnd)));
    }

    void ReportUnclosed(std::string_view nextKeyword) {
        const ZentuDocumentCommand& command = Command();
        document_.findings_.push_back(zentu_finding(
            ZentuFindingCodes::SYNTAX,
            KPL_Failure::Format(Messages::COMMAND_NOT_CLOSED,
                                ZentuStringUtil::excerpt(command.keyword).c_str(), command.line,
                                ZentuStringUtil::excerpt(nextKeyword).c_str()),
            command.keyword_range));
    }

    // A file that ends inside a command is reported at the end of its last line.
    void Finish() {
        if (scanner_.InsideCommand() && openCommand_ != NONE) {
            ReportFileEndsInsideCommand();
        }
        CloseCommand();
    }

    void ReportFileEndsInsideCommand() {
        const ZentuDocumentCommand& command = Command();
        const std::size_t last = document_.lines_.size();
        const std::size_t end = document_.LineText(last).size();
        document_.findings_.push_back(zentu_finding(
            ZentuFindingCodes::SYNTAX,
            KPL_Failure::Format(Messages::FILE_ENDS_INSIDE_COMMAND,
                                ZentuStringUtil::excerpt(command.keyword).c_str(), command.line),
            document_.RangeOf(last, end, end)));
    }

    ZentuJobDocument& document_;
    const ZentuJobDocument::KeywordTest& startsCommand_;
    ZentuParScanner scanner_;
    std::size_t openCommand_ = NONE;
    // The items of the open command, which it takes when it closes: a vector grown item by item
    // would hold room for more than it keeps.
    std::vector<ZentuDocumentItem> items_;
    // The line that Range looked at last, and whether its bytes are all ASCII.
    std::size_t rangeLine_ = 0;
    bool rangeLineAscii_ = false;
    bool valueHasLines_ = false;
};

ZentuJobDocument ZentuJobDocument::FromText(std::string text, std::string path,
                                            const KeywordTest& startsCommand) {
    ZentuJobDocument document;
    document.path_ = std::move(path);
    document.text_ = std::move(text);
    ZentuJobDocumentReader(document, startsCommand).Read();
    return document;
}

ZentuJobDocument ZentuJobDocument::FromFile(const std::string& path,
                                            const KeywordTest& startsCommand) {
    errno = 0;
    const std::unique_ptr<std::FILE, FileCloser> file(
        ZentuFileUtil::wfopen(ZentuFileUtil::from_utf8(path), L"rb"));
    std::string problem;
    std::string text;
    if (!file) {
        problem = KPL_Failure::Format(Messages::FILE_CANNOT_BE_OPENED, SystemReason(errno).c_str());
    } else {
        errno = 0;
        read_into(file.get(), expected_size(path), text);
        if (std::ferror(file.get()) != 0) {
            problem = errno == EISDIR ? std::string(Messages::FILE_IS_A_DIRECTORY)
                                      : KPL_Failure::Format(Messages::FILE_CANNOT_BE_READ,
                                                            SystemReason(errno).c_str());
        }
    }
    if (!problem.empty()) {
        ZentuJobDocument document;
        document.path_ = path;
        document.findings_.push_back(zentu_finding(ZentuFindingCodes::IO, problem, {}));
        return document;
    }
    return FromText(std::move(text), path, startsCommand);
}

std::string_view ZentuJobDocument::LineText(std::size_t number) const {
    const ZentuDocumentLine& line = lines_[number - 1];
    return std::string_view(text_).substr(line.begin, line.end - line.begin);
}

bool ZentuJobDocument::HasErrors() const {
    return std::any_of(findings_.begin(), findings_.end(), [](const ZentuFinding& finding) {
        return finding.severity == ZentuSeverity::ERROR;
    });
}

std::size_t ZentuJobDocument::ColumnOf(std::size_t number, std::size_t offset) const {
    // An offset past the CR of a CR LF line end stops before it.
    const std::string_view line = without_carriage_return(LineText(number));
    std::string_view text = line.substr(0, std::min(offset, line.size()));
    if (number == 1 && text.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK) {
        text.remove_prefix(BYTE_ORDER_MARK.size());
    }
    return 1 + characters_in(text);
}

std::size_t ZentuJobDocument::OffsetOf(std::size_t number, std::size_t column) const {
    const std::string_view line = without_carriage_return(LineText(number));
    std::size_t offset = 0;
    if (number == 1 && line.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK) {
        offset = BYTE_ORDER_MARK.size();
    }
    for (std::size_t characters = 1; offset < line.size(); ++offset) {
        const bool starts =
            !ZentuStringUtil::is_utf8_continuation(static_cast<unsigned char>(line[offset]));
        if (starts && characters++ == column) {
            break;
        }
    }
    return offset;
}

ZentuTextRange ZentuJobDocument::RangeOf(std::size_t number, std::size_t begin,
                                         std::size_t end) const {
    const std::size_t first = ColumnOf(number, begin);
    // The first line may begin with a byte-order mark, which columns do not count.
    if (number == 1 || end < begin) {
        return ZentuTextRange{number, first, number, ColumnOf(number, end)};
    }
    // The end's column counts on from the begin's instead of from the line's start again.
    const std::string_view line = without_carriage_return(LineText(number));
    const std::size_t from = std::min(begin, line.size());
    return ZentuTextRange{
        number, first, number,
        first + characters_in(line.substr(from, std::min(end, line.size()) - from))};
}

ZentuTextRange ZentuJobDocument::ValueRange(const ZentuDocumentItem& item, std::size_t begin,
                                            std::size_t end) const {
    if (item.name_alone) {
        return item.value_range;
    }
    const std::string_view line = LineText(item.line);
    const std::size_t start = line.find(item.value, line.find('=') + 1);
    return RangeOf(item.line, start + std::min(begin, item.value.size()),
                   start + std::min(end, item.value.size()));
}
