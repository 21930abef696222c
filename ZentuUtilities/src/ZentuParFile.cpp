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

// The size of an open file in bytes, or 0 when the system does not tell; a hint for reserving.
std::size_t SizeOf(std::FILE* file) {
#if defined(_WIN32)
    struct _stat64 status;
    const bool known = _fstat64(_fileno(file), &status) == 0;
#else
    struct stat status;
    const bool known = fstat(fileno(file), &status) == 0;
#endif
    return known && status.st_size > 0 ? static_cast<std::size_t>(status.st_size) : 0;
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

}  // namespace

// Turns the lines of a file, as the scanner classifies them, into the commands and items of a
// ZentuParFileText; the first line that breaks the structure ends the reading with a failure.
//
// Blank lines inside a multi-line value, trailing ones included, are value lines: the writer puts
// a value on the lines after its name exactly as it is and the next item or END_ right behind it,
// so keeping them gives back every value it wrote, an empty one or one ending in a line feed
// alike. Comment lines are skipped there too and neither end the value nor add to it. Nothing is
// appended to the text while a value is open but its lines, so the value stays one piece.
class ZentuParFileTextBuilder {
  public:
    // A builder that fills file, whose failures name the file so.
    ZentuParFileTextBuilder(ZentuParFileText& file, const std::string& shownPath)
        : file_(file), shownPath_(shownPath) {}

    // Takes the next line of the file.
    void Take(std::string_view line, std::size_t number) {
        const ZentuParLine scanned = scanner_.Scan(line);
        const std::string_view name = scanned.Name(line);
        switch (scanned.kind) {
            case ZentuParLine::Kind::BLANK:
            case ZentuParLine::Kind::COMMENT:
                return;
            case ZentuParLine::Kind::KEYWORD:
                command_ = ZentuParFileText::StoredCommand{Append(name), number, 0};
                return;
            case ZentuParLine::Kind::END:
                CloseCommand();
                return;
            case ZentuParLine::Kind::ITEM:
                CloseValue();
                AddItem({Append(name), Append(scanned.Value(line)), number});
                return;
            case ZentuParLine::Kind::NAME:
                CloseValue();
                value_ = OpenValue{Append(name), {file_.text_.size(), 0}, number, false};
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
        if (command_) {
            Fail(KPL_Failure::Format(
                Messages::PAR_FILE_ENDS_INSIDE_COMMAND, shownPath_.c_str(), lastLine,
                ZentuStringUtil::excerpt(file_.View(command_->keyword)).c_str(), command_->line));
        }
    }

  private:
    // An item named alone on its line, gathering the value lines that follow it.
    struct OpenValue {
        ZentuParFileText::Piece name;
        ZentuParFileText::Piece value;
        std::size_t line;
        bool hasLines;
    };

    // The message of a line that breaks the structure, quoting the line.
    std::string Problem(const char* format, std::size_t number, std::string_view text) const {
        return KPL_Failure::Format(format, shownPath_.c_str(), number,
                                   ZentuStringUtil::excerpt(text).c_str());
    }

    // Appends a name, value or keyword to the file's text.
    ZentuParFileText::Piece Append(std::string_view text) {
        const ZentuParFileText::Piece piece{file_.text_.size(), text.size()};
        file_.text_.append(text);
        return piece;
    }

    // Appends a line to the value being gathered.
    void AddValueLine(std::string_view line) {
        if (value_->hasLines) {
            file_.text_ += LINE_FEED;
        }
        file_.text_.append(line);
        value_->value.length = file_.text_.size() - value_->value.offset;
        value_->hasLines = true;
    }

    // Stores an item, in a new block when the last one is full.
    void AddItem(const ZentuParFileText::StoredItem& item) {
        const std::size_t place = file_.itemCount_ % ZentuParFileText::ITEMS_PER_BLOCK;
        if (place == 0) {
            file_.itemBlocks_.emplace_back(
                new ZentuParFileText::StoredItem[ZentuParFileText::ITEMS_PER_BLOCK]);
        }
        file_.itemBlocks_.back()[place] = item;
        ++file_.itemCount_;
    }

    // Adds the item whose value was being gathered, if any.
    void CloseValue() {
        if (value_) {
            AddItem({value_->name, value_->value, value_->line});
            value_.reset();
        }
    }

    // Adds the open command, with its last item.
    void CloseCommand() {
        CloseValue();
        command_->itemEnd = file_.itemCount_;
        file_.commands_.push_back(*command_);
        command_.reset();
    }

    ZentuParFileText& file_;
    const std::string& shownPath_;
    ZentuParScanner scanner_;
    std::optional<ZentuParFileText::StoredCommand> command_;
    std::optional<OpenValue> value_;
};

namespace {

// Whether an item's name is ID_NAME, in any case.
bool IsIdName(std::string_view name) {
    return ZentuStringUtil::equals_ignoring_case(name, ID_NAME);
}

// The value of the first item named ID_NAME, or the empty text.
std::string IdNameOf(const std::vector<ZentuParSubCommand>& items) {
    const auto found = std::find_if(items.begin(), items.end(), [](const ZentuParSubCommand& item) {
        return IsIdName(item.GetName());
    });
    return found != items.end() ? found->retrieveValue() : std::string();
}

// The items of a command, each with strings of its own.
std::vector<ZentuParSubCommand> SubCommandsOf(const ZentuParFileText& file,
                                              const ZentuParFileText::Command& command) {
    std::vector<ZentuParSubCommand> items;
    items.reserve(command.itemEnd - command.firstItem);
    for (std::size_t index = command.firstItem; index < command.itemEnd; ++index) {
        const ZentuParFileText::Item item = file.ItemAt(index);
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
    const ZentuParFileText file(path);
    commands_.reserve(file.CommandCount());
    for (std::size_t index = 0; index < file.CommandCount(); ++index) {
        const ZentuParFileText::Command command = file.CommandAt(index);
        commands_.emplace_back(std::string(command.keyword), command.line,
                               SubCommandsOf(file, command));
    }
}

// The text is reserved at the file's size, which its names and values never exceed, so that it is
// not copied as it grows.
ZentuParFileText::ZentuParFileText(const std::wstring& path) {
    const std::string shownPath = ZentuStringUtil::printable(ZentuFileUtil::to_utf8(path));
    const FileHandle file = OpenForReading(path, shownPath);
    text_.reserve(SizeOf(file.get()));
    LineSource lines(file.get(), shownPath);
    ZentuParFileTextBuilder builder(*this, shownPath);
    std::string_view line;
    while (lines.Next(line)) {
        builder.Take(line, lines.LineNumber());
    }
    builder.Finish(lines.LineNumber());
}

ZentuParFileText::Command ZentuParFileText::CommandAt(std::size_t index) const {
    const StoredCommand& command = commands_[index];
    const std::size_t firstItem = index == 0 ? 0 : commands_[index - 1].itemEnd;
    return Command{View(command.keyword), command.line, firstItem, command.itemEnd};
}

ZentuParFileText::Item ZentuParFileText::ItemAt(std::size_t index) const {
    const StoredItem& item = Stored(index);
    return Item{View(item.name), View(item.value), item.line};
}

std::string_view ZentuParFileText::IdNameOf(const Command& command) const {
    for (std::size_t index = command.firstItem; index < command.itemEnd; ++index) {
        if (IsIdName(View(Stored(index).name))) {
            return View(Stored(index).value);
        }
    }
    return {};
}
