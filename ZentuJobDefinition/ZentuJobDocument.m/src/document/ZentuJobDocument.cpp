#include "ZentuJobDocument.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <mutex>
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

// Whether a line's first word begins with END_, in any case.
bool starts_with_end(std::string_view line) {
    const std::size_t first = line.find_first_not_of(" \t");
    return first != std::string_view::npos &&
           ZentuStringUtil::equals_ignoring_case(line.substr(first, END_LINE.size()), END_LINE);
}

// Where each line of a text begins, as Read splits them (a last line without line feed counts,
// an empty text after the last line feed does not), and how many lines start with END_: room for
// the commands is then taken at once, closely enough, where growing the vector would move them
// and fill fresh memory twice over.
struct LineIndex {
    std::vector<std::size_t> begins;
    std::size_t ends = 0;
};

LineIndex index_lines(std::string_view text) {
    LineIndex index;
    for (std::size_t begin = 0; begin < text.size();) {
        index.begins.push_back(begin);
        const std::size_t feed = std::min(text.find('\n', begin), text.size());
        index.ends += starts_with_end(text.substr(begin, feed - begin)) ? 1 : 0;
        begin = feed + 1;
    }
    return index;
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

// Builds a document line by line on the shared scanner, recovering from every problem; or,
// walking the lines of a document read before in the same way, works out its lines.
class ZentuJobDocumentReader {
  public:
    // A reader that builds the document's commands, items and findings from its text.
    ZentuJobDocumentReader(ZentuJobDocument& document,
                           const ZentuJobDocument::KeywordTest& startsCommand)
        : source_(document), built_(&document), startsCommand_(&startsCommand) {}

    // A reader that works out the lines of a document that has been read, into lines.
    ZentuJobDocumentReader(const ZentuJobDocument& document, std::vector<ZentuDocumentLine>& lines)
        : source_(document), lines_(&lines), nextClosedEarly_(document.closedEarly_.begin()) {}

    // Indexes the lines of the document's text and builds the document from them.
    void Read() {
        LineIndex index = index_lines(built_->text_);
        built_->lineBegins_ = std::move(index.begins);
        built_->commands_.reserve(index.ends);
        Walk();
    }

    // Takes every line of the document in order, then ends the file.
    void Walk() {
        if (lines_ != nullptr) {
            lines_->reserve(source_.LineCount());
        }
        for (std::size_t number = 1; number <= source_.LineCount(); ++number) {
            Take(number);
        }
        Finish();
    }

  private:
    static constexpr std::size_t NONE = ZentuDocumentLine::NONE;

    void Take(std::size_t number) {
        const std::string_view text = source_.LineText(number);
        ZentuParLine scanned = scanner_.Scan(text);
        if (scanned.kind == Kind::NAME && StartsCommand(number, scanned.Name(text))) {
            ReportUnclosed(scanned.Name(text));
            scanner_.CloseCommand();
            scanned = scanner_.Scan(text);
        }
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
                EndCommand(number);
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
        Place(text, scanned);
        if (scanned.kind == Kind::END) {
            CloseCommand();
        }
    }

    // Whether a name alone inside the open command starts the next command: the caller's
    // keyword test tells while building, and the lines where it did are noted for working out
    // the lines later, when the test may be gone.
    bool StartsCommand(std::size_t number, std::string_view name) {
        if (built_ == nullptr) {
            const bool noted =
                nextClosedEarly_ != source_.closedEarly_.end() && *nextClosedEarly_ == number;
            nextClosedEarly_ += noted ? 1 : 0;
            return noted;
        }
        const bool starts =
            *startsCommand_ && openCommand_ != NONE && (*startsCommand_)(name, Command().keyword);
        if (starts) {
            built_->closedEarly_.push_back(number);
        }
        return starts;
    }

    ZentuDocumentCommand& Command() { return built_->commands_[openCommand_]; }

    // Records which command and item the line's text belongs to, when working out the lines.
    void Place(std::string_view text, const ZentuParLine& scanned) {
        if (lines_ == nullptr) {
            return;
        }
        const bool ofItem = scanned.kind == Kind::ITEM || scanned.kind == Kind::NAME ||
                            scanned.kind == Kind::VALUE ||
                            (scanner_.InsideValue() && scanned.kind == Kind::COMMENT);
        const auto begin = static_cast<std::size_t>(text.data() - source_.Text().data());
        lines_->push_back(
            ZentuDocumentLine{begin, begin + text.size(), scanned, openCommand_,
                              ofItem && openCommand_ != NONE ? itemsOpened_ - 1 : NONE});
    }

    void OpenCommand(std::size_t number, const ZentuParLine& scanned) {
        CloseCommand();
        openCommand_ = commandsOpened_++;
        if (built_ == nullptr) {
            return;
        }
        ZentuDocumentCommand& command = built_->commands_.emplace_back();
        command.keyword = std::string(scanned.Name(source_.LineText(number)));
        command.line = number;
        command.keyword_range = Range(number, scanned.nameBegin, scanned.nameEnd);
    }

    void EndCommand(std::size_t number) {
        if (built_ != nullptr) {
            Command().end_line = number;
        }
    }

    // RangeOf of line n, the line being read: on a line of ASCII bytes after the first, which
    // holds no byte-order mark, a column is the offset, without counting characters.
    ZentuTextRange Range(std::size_t number, std::size_t begin, std::size_t end) {
        const std::string_view line = without_carriage_return(source_.LineText(number));
        if (rangeLine_ != number) {
            rangeLine_ = number;
            rangeLineAscii_ = number != 1 && is_ascii(line);
        }
        if (!rangeLineAscii_) {
            return source_.RangeOf(number, begin, end);
        }
        return ZentuTextRange{number, 1 + std::min(begin, line.size()), number,
                              1 + std::min(end, line.size())};
    }

    // Gives the open command its items, in room of their number.
    void CloseCommand() {
        if (openCommand_ == NONE) {
            return;
        }
        if (built_ != nullptr) {
            Command().items.assign(std::make_move_iterator(items_.begin()),
                                   std::make_move_iterator(items_.end()));
            items_.clear();
        }
        itemsOpened_ = 0;
        openCommand_ = NONE;
    }

    void AddItem(std::size_t number, const ZentuParLine& scanned) {
        ++itemsOpened_;
        valueHasLines_ = false;
        if (built_ == nullptr) {
            return;
        }
        const std::string_view text = source_.LineText(number);
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
    }

    void AddValueLine(std::size_t number, const ZentuParLine& scanned) {
        if (built_ == nullptr) {
            return;
        }
        ZentuDocumentItem& item = items_.back();
        const ZentuTextRange range = Range(number, scanned.nameBegin, scanned.nameEnd);
        if (valueHasLines_) {
            item.value += '\n';
        } else {
            item.value_range.line = range.line;
            item.value_range.column = range.column;
        }
        item.value += scanned.Name(source_.LineText(number));
        item.value_range.end_line = range.end_line;
        item.value_range.end_column = range.end_column;
        item.last_line = number;
        valueHasLines_ = true;
    }

    // A line that breaks the structure outside a command, quoted.
    void Report(std::size_t number, const ZentuParLine& scanned, const char* format) {
        if (built_ == nullptr) {
            return;
        }
        const std::string quoted = ZentuStringUtil::excerpt(scanned.Name(source_.LineText(number)));
        built_->findings_.push_back(
            zentu_finding(ZentuFindingCodes::SYNTAX, KPL_Failure::Format(format, quoted.c_str()),
                          source_.RangeOf(number, scanned.nameBegin, scanned.nameEnd)));
    }

    void ReportUnclosed(std::string_view nextKeyword) {
        if (built_ == nullptr) {
            return;
        }
        const ZentuDocumentCommand& command = Command();
        built_->findings_.push_back(zentu_finding(
            ZentuFindingCodes::SYNTAX,
            KPL_Failure::Format(Messages::COMMAND_NOT_CLOSED,
                                ZentuStringUtil::excerpt(command.keyword).c_str(), command.line,
                                ZentuStringUtil::excerpt(nextKeyword).c_str()),
            command.keyword_range));
    }

    // A file that ends inside a command is reported at the end of its last line.
    void Finish() {
        if (scanner_.InsideCommand() && openCommand_ != NONE && built_ != nullptr) {
            ReportFileEndsInsideCommand();
        }
        CloseCommand();
    }

    void ReportFileEndsInsideCommand() {
        const ZentuDocumentCommand& command = Command();
        const std::size_t last = source_.LineCount();
        const std::size_t end = source_.LineText(last).size();
        built_->findings_.push_back(zentu_finding(
            ZentuFindingCodes::SYNTAX,
            KPL_Failure::Format(Messages::FILE_ENDS_INSIDE_COMMAND,
                                ZentuStringUtil::excerpt(command.keyword).c_str(), command.line),
            source_.RangeOf(last, end, end)));
    }

    const ZentuJobDocument& source_;
    // The document being built, or null when working out lines.
    ZentuJobDocument* built_ = nullptr;
    const ZentuJobDocument::KeywordTest* startsCommand_ = nullptr;
    // The lines being worked out, or null when building.
    std::vector<ZentuDocumentLine>* lines_ = nullptr;
    std::vector<std::size_t>::const_iterator nextClosedEarly_;
    ZentuParScanner scanner_;
    std::size_t openCommand_ = NONE;
    std::size_t commandsOpened_ = 0;
    std::size_t itemsOpened_ = 0;
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
    document.lines_ = std::make_shared<LazyLines>();
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
    const std::size_t begin = lineBegins_[number - 1];
    // A line ends before the line feed that the next line begins after; the last line at the
    // text's end, or before its line feed.
    const std::size_t end = number < lineBegins_.size()              ? lineBegins_[number] - 1
                            : !text_.empty() && text_.back() == '\n' ? text_.size() - 1
                                                                     : text_.size();
    return std::string_view(text_).substr(begin, end - begin);
}

// The lines of a document and whether they have been worked out; a line is asked for at every
// step of formatting, so a finished reading costs one check of the flag.
struct ZentuJobDocument::LazyLines {
    std::once_flag workedOut;
    std::vector<ZentuDocumentLine> lines;
};

const std::vector<ZentuDocumentLine>& ZentuJobDocument::Lines() const {
    static const std::vector<ZentuDocumentLine> none;
    if (lines_ == nullptr) {
        return none;
    }
    std::call_once(lines_->workedOut,
                   [this] { ZentuJobDocumentReader(*this, lines_->lines).Walk(); });
    return lines_->lines;
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
