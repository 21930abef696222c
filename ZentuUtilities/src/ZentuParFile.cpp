#include "ZentuParFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuFileUtil.h"
#include "ZentuParScanner.h"
#include "ZentuStringUtil.h"
#include "ZentuUtilitiesInternal.h"
#include "ZentuUtilitiesMessages.h"

namespace Messages = ZentuUtilitiesMessages;

namespace {

// Few reads for a 100 MB line, yet small enough to stay in the cache while its line feeds are
// searched.
constexpr std::size_t CHUNK_SIZE = std::size_t{1} << 16;

// The item whose value identifies a command, compared in any case.
constexpr std::string_view ID_NAME = "ID_NAME";

// The line feed that ends a line in the file and joins the lines of a multi-line value.
constexpr char LINE_FEED = '\n';

// Throws the failure that every error of a parameter file ends in.
[[noreturn]] void Fail(const std::string& message) {
    throw KPL_Failure(message, Messages::PAR_FILE_TAG);
}

// The system's description of an error number, taken right after the call that set it.
std::string SystemReason(int error) {
    return std::generic_category().message(error);
}

// Closes the file however reading ends.
struct FileCloser {
    // Closes a file that was open; the result does not matter for a file only read.
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// An open file, closed when it goes out of scope.
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

// Whether an open file is a directory; some systems open one for reading without complaint and
// only its reads fail, with a less telling reason.
bool IsDirectory(std::FILE* file) {
#if defined(_WIN32)
    struct _stat64 status;
    return _fstat64(_fileno(file), &status) == 0 && (status.st_mode & _S_IFMT) == _S_IFDIR;
#else
    struct stat status;
    return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
#endif
}

// Opens a file for reading as bytes, so that line ends and NUL bytes reach the parser unchanged.
FileHandle OpenForReading(const std::wstring& path, const std::string& shownPath) {
    errno = 0;
    FileHandle file(ZentuFileUtil::wfopen(path, L"rb"));
    if (!file) {
        Fail(KPL_Failure::Format(Messages::PAR_FILE_CANNOT_BE_OPENED, shownPath.c_str(),
                                 SystemReason(errno).c_str()));
    }
    if (IsDirectory(file.get())) {
        Fail(KPL_Failure::Format(Messages::PAR_FILE_IS_A_DIRECTORY, shownPath.c_str()));
    }
    return file;
}

// Hands out the lines of a file one by one. It reads fixed chunks and hands out a line that lies
// within one chunk in place; only a line that crosses chunks is gathered, each of its bytes once,
// so time and memory grow with the file however long its lines are.
class LineSource {
  public:
    // Reads from an open file; the path names it in failures.
    LineSource(std::FILE* file, const std::string& shownPath)
        : file_(file), shownPath_(shownPath), chunk_(CHUNK_SIZE) {}

    // Sets line to the next line without its line feed, valid until the next call; false when no
    // line is left. A last line without line feed still counts, an empty text after the last line
    // feed does not.
    bool Next(std::string_view& line) {
        gathered_.clear();
        for (;;) {
            const char* start = chunk_.data() + begin_;
            const std::size_t available = end_ - begin_;
            const auto* lineEnd =
                static_cast<const char*>(std::memchr(start, LINE_FEED, available));
            if (lineEnd != nullptr) {
                begin_ += static_cast<std::size_t>(lineEnd - start) + 1;
                line = Finished(start, lineEnd);
                return true;
            }
            gathered_.append(start, available);
            begin_ = end_;
            if (!Refill()) {
                line = gathered_;
                return !gathered_.empty() && Counted();
            }
        }
    }

    // The number of the line last handed out, counted from 1; 0 before the first.
    std::size_t LineNumber() const { return lineNumber_; }

  private:
    // The line that ends at lineEnd in the chunk: in place, or the gathered bytes before it and
    // those up to lineEnd.
    std::string_view Finished(const char* start, const char* lineEnd) {
        Counted();
        if (gathered_.empty()) {
            return std::string_view(start, static_cast<std::size_t>(lineEnd - start));
        }
        gathered_.append(start, lineEnd);
        return gathered_;
    }

    // Counts a line handed out; always true.
    bool Counted() {
        ++lineNumber_;
        return true;
    }

    // Reads the next chunk; false at the end of the file.
    bool Refill() {
        errno = 0;
        end_ = std::fread(chunk_.data(), 1, chunk_.size(), file_);
        begin_ = 0;
        if (end_ == 0 && std::ferror(file_) != 0) {
            Fail(KPL_Failure::Format(Messages::PAR_FILE_CANNOT_BE_READ, shownPath_.c_str(),
                                     SystemReason(errno).c_str()));
        }
        return end_ > 0;
    }

    std::FILE* file_;
    const std::string& shownPath_;
    std::vector<char> chunk_;
    std::string gathered_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t lineNumber_ = 0;
};

// Whether an item's name is ID_NAME, in any case.
bool IsIdName(std::string_view name) {
    return ZentuStringUtil::equals_ignoring_case(name, ID_NAME);
}

// Turns the lines of a file, as the scanner classifies them, into commands with their items, and
// hands each to a visitor once its END_ line is read; the first line that breaks the structure
// ends the reading with a failure.
//
// Blank lines inside a multi-line value, trailing ones included, are value lines: the writer puts
// a value on the lines after its name exactly as it is and the next item or END_ right behind it,
// so keeping them gives back every value it wrote, an empty one or one ending in a line feed
// alike. Comment lines are skipped there too and neither end the value nor add to it. Nothing is
// appended to the text while a value is open but its lines, so the value stays one piece.
//
// The texts of one command are gathered in one buffer that every command reuses, so reading keeps
// no more of the file at a time than the command at hand.
class CommandBuilder {
  public:
    // A builder that hands its commands to visit, and whose failures name the file so.
    CommandBuilder(const ZentuParFileCommands::Visitor& visit, const std::string& shownPath)
        : visit_(visit), shownPath_(shownPath) {}

    // Takes the next line of the file.
    void Take(std::string_view line, std::size_t number) {
        const ZentuParLine scanned = scanner_.Scan(line);
        const std::string_view name = scanned.Name(line);
        switch (scanned.kind) {
            case ZentuParLine::Kind::BLANK:
            case ZentuParLine::Kind::COMMENT:
                return;
            case ZentuParLine::Kind::KEYWORD:
                OpenCommand(name, number);
                return;
            case ZentuParLine::Kind::END:
                CloseCommand();
                return;
            case ZentuParLine::Kind::ITEM:
                CloseValue();
                items_.push_back({Append(name), Append(scanned.Value(line)), number});
                return;
            case ZentuParLine::Kind::NAME:
                CloseValue();
                value_ = OpenValue{Append(name), {text_.size(), 0}, number, false};
                return;
            case ZentuParLine::Kind::VALUE:
                AddValueLine(name);
                return;
            case ZentuParLine::Kind::END_OUTSIDE_COMMAND:
                Fail(KPL_Failure::Format(Messages::PAR_FILE_END_OUTSIDE_COMMAND, shownPath_.c_str(),
                                         number));
            case ZentuParLine::Kind::ITEM_OUTSIDE_COMMAND:
                Fail(Problem(Messages::PAR_FILE_ITEM_OUTSIDE_COMMAND, number, name));
            case ZentuParLine::Kind::COMMAND_LINE_NOT_ONE_WORD:
                Fail(Problem(Messages::PAR_FILE_COMMAND_LINE_NOT_ONE_WORD, number, name));
            case ZentuParLine::Kind::COMMAND_WORD_NOT_PRINTABLE:
                Fail(Problem(Messages::PAR_FILE_COMMAND_WORD_NOT_PRINTABLE, number, name));
        }
    }

    // Checks, once the file's last line, numbered lastLine, has been taken, that no command is
    // left open.
    void Finish(std::size_t lastLine) const {
        if (open_) {
            Fail(KPL_Failure::Format(Messages::PAR_FILE_ENDS_INSIDE_COMMAND, shownPath_.c_str(),
                                     lastLine, ZentuStringUtil::excerpt(View(keyword_)).c_str(),
                                     keywordLine_));
        }
    }

  private:
    // A name, value or keyword: where it starts in the command's text and how long it is.
    struct Piece {
        std::size_t offset;
        std::size_t length;
    };

    // An item as gathered.
    struct StoredItem {
        Piece name;
        Piece value;
        std::size_t line;
    };

    // An item named alone on its line, gathering the value lines that follow it.
    struct OpenValue {
        Piece name;
        Piece value;
        std::size_t line;
        bool hasLines;
    };

    // The message of a line that breaks the structure, quoting the line.
    std::string Problem(const char* format, std::size_t number, std::string_view text) const {
        return KPL_Failure::Format(format, shownPath_.c_str(), number,
                                   ZentuStringUtil::excerpt(text).c_str());
    }

    // The view of a piece of the command's text.
    std::string_view View(Piece piece) const {
        return std::string_view(text_).substr(piece.offset, piece.length);
    }

    // Appends a name, value or keyword to the command's text.
    Piece Append(std::string_view text) {
        const Piece piece{text_.size(), text.size()};
        text_.append(text);
        return piece;
    }

    // Starts a command at its keyword line, in place of the texts of the one before.
    void OpenCommand(std::string_view keyword, std::size_t number) {
        text_.clear();
        items_.clear();
        keyword_ = Append(keyword);
        keywordLine_ = number;
        open_ = true;
    }

    // Appends a line to the value being gathered.
    void AddValueLine(std::string_view line) {
        if (value_->hasLines) {
            text_ += LINE_FEED;
        }
        text_.append(line);
        value_->value.length = text_.size() - value_->value.offset;
        value_->hasLines = true;
    }

    // Adds the item whose value was being gathered, if any.
    void CloseValue() {
        if (value_) {
            items_.push_back({value_->name, value_->value, value_->line});
            value_.reset();
        }
    }

    // Hands the open command, with its last item, to the visitor; its texts no longer move.
    void CloseCommand() {
        CloseValue();
        open_ = false;
        views_.clear();
        std::string_view idName;
        bool identified = false;
        for (const StoredItem& item : items_) {
            views_.push_back({View(item.name), View(item.value), item.line});
            if (!identified && IsIdName(views_.back().name)) {
                idName = views_.back().value;
                identified = true;
            }
        }
        visit_(ZentuParFileCommands::Command{View(keyword_), keywordLine_, views_, idName});
    }

    const ZentuParFileCommands::Visitor& visit_;
    const std::string& shownPath_;
    ZentuParScanner scanner_;
    std::string text_;
    std::vector<StoredItem> items_;
    std::vector<ZentuParFileCommands::Item> views_;
    Piece keyword_{0, 0};
    std::size_t keywordLine_ = 0;
    bool open_ = false;
    std::optional<OpenValue> value_;
};

// The value of the first item named ID_NAME, or the empty text.
std::string IdNameOf(const std::vector<ZentuParSubCommand>& items) {
    const auto found = std::find_if(items.begin(), items.end(), [](const ZentuParSubCommand& item) {
        return IsIdName(item.GetName());
    });
    return found != items.end() ? found->retrieveValue() : std::string();
}

// The items of a command, each with strings of its own.
std::vector<ZentuParSubCommand> SubCommandsOf(const ZentuParFileCommands::Command& command) {
    std::vector<ZentuParSubCommand> items;
    items.reserve(command.items.size());
    for (const ZentuParFileCommands::Item& item : command.items) {
        items.emplace_back(std::string(item.name), std::string(item.value), item.line);
    }
    return items;
}

}  // namespace

ZentuParSubCommand::ZentuParSubCommand(std::string name, std::string value, std::size_t line)
    : name_(std::move(name)), value_(std::move(value)), line_(line) {}

ZentuParCommand::ZentuParCommand(std::string keyword, std::size_t line,
                                 std::vector<ZentuParSubCommand> items)
    : keyword_(std::move(keyword)),
      idName_(IdNameOf(items)),
      line_(line),
      items_(std::move(items)) {}

ZentuParFile::ZentuParFile(const std::wstring& path) {
    ZentuParFileCommands::read(path, [this](const ZentuParFileCommands::Command& command) {
        commands_.emplace_back(std::string(command.keyword), command.line, SubCommandsOf(command));
    });
}

namespace ZentuParFileCommands {

void read(const std::wstring& path, const Visitor& visit) {
    const std::string shownPath = ZentuStringUtil::printable(ZentuFileUtil::to_utf8(path));
    const FileHandle file = OpenForReading(path, shownPath);
    LineSource lines(file.get(), shownPath);
    CommandBuilder builder(visit, shownPath);
    std::string_view line;
    while (lines.Next(line)) {
        builder.Take(line, lines.LineNumber());
    }
    builder.Finish(lines.LineNumber());
}

}  // namespace ZentuParFileCommands
