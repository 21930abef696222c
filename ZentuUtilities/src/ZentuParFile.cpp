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

// Hands out the lines of a file one by one. It reads fixed chunks and appends each line's bytes
// once, so time and memory grow with the file however long its lines are.
class LineSource {
  public:
    // Reads from an open file; the path names it in failures.
    LineSource(std::FILE* file, const std::string& shownPath)
        : file_(file), shownPath_(shownPath), chunk_(CHUNK_SIZE) {}

    // Replaces line by the next line without its line feed; false when no line is left. A last
    // line without line feed still counts, an empty text after the last line feed does not.
    bool Next(std::string& line) {
        line.clear();
        while (!TakeUpToLineFeed(line)) {
            if (!Refill()) {
                if (line.empty()) {
                    return false;
                }
                break;
            }
        }
        ++lineNumber_;
        return true;
    }

    // The number of the line last handed out, counted from 1; 0 before the first.
    std::size_t LineNumber() const { return lineNumber_; }

  private:
    // Appends the bytes read up to the next line feed to line and passes the feed; false when
    // the bytes read ran out before a line feed.
    bool TakeUpToLineFeed(std::string& line) {
        const char* start = chunk_.data() + begin_;
        const std::size_t available = end_ - begin_;
        const auto* lineEnd = static_cast<const char*>(std::memchr(start, LINE_FEED, available));
        if (lineEnd == nullptr) {
            line.append(start, available);
            begin_ = end_;
            return false;
        }
        line.append(start, lineEnd);
        begin_ += static_cast<std::size_t>(lineEnd - start) + 1;
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
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t lineNumber_ = 0;
};

// Turns the lines of a file, as the scanner classifies them, into commands and items; the first
// line that breaks the structure ends the reading with a failure.
//
// Blank lines inside a multi-line value, trailing ones included, are value lines: the writer puts
// a value on the lines after its name exactly as it is and the next item or END_ right behind it,
// so keeping them gives back every value it wrote, an empty one or one ending in a line feed
// alike. Comment lines are skipped there too and neither end the value nor add to it.
class ParFileParser {
  public:
    // A parser whose failures name the file so.
    explicit ParFileParser(const std::string& shownPath) : shownPath_(shownPath) {}

    // Takes the next line of the file.
    void Take(const std::string& line, std::size_t number) {
        const ZentuParLine scanned = scanner_.Scan(line);
        const std::string_view name = scanned.Name(line);
        switch (scanned.kind) {
            case ZentuParLine::Kind::BLANK:
            case ZentuParLine::Kind::COMMENT:
                return;
            case ZentuParLine::Kind::KEYWORD:
                command_ = OpenCommand{std::string(name), number, {}};
                return;
            case ZentuParLine::Kind::END:
                CloseCommand();
                return;
            case ZentuParLine::Kind::ITEM:
                CloseValue();
                command_->items.emplace_back(std::string(name), std::string(scanned.Value(line)),
                                             number);
                return;
            case ZentuParLine::Kind::NAME:
                CloseValue();
                value_ = OpenValue{std::string(name), number, {}};
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

    // The commands read, once the file's last line, numbered lastLine, has been taken.
    std::vector<ZentuParCommand> Finish(std::size_t lastLine) {
        if (command_) {
            Fail(KPL_Failure::Format(Messages::PAR_FILE_ENDS_INSIDE_COMMAND, shownPath_.c_str(),
                                     lastLine, ZentuStringUtil::excerpt(command_->keyword).c_str(),
                                     command_->line));
        }
        return std::move(commands_);
    }

  private:
    // A command whose END_ has not come yet.
    struct OpenCommand {
        std::string keyword;
        std::size_t line;
        std::vector<ZentuParSubCommand> items;
    };

    // An item named alone on its line, gathering the value lines that follow it.
    struct OpenValue {
        std::string name;
        std::size_t line;
        std::string text;
        bool hasLines = false;
    };

    // The message of a line that breaks the structure, quoting the line.
    std::string Problem(const char* format, std::size_t number, std::string_view text) const {
        return KPL_Failure::Format(format, shownPath_.c_str(), number,
                                   ZentuStringUtil::excerpt(text).c_str());
    }

    // Appends a line to the value being gathered.
    void AddValueLine(std::string_view line) {
        if (value_->hasLines) {
            value_->text += LINE_FEED;
        }
        value_->text += line;
        value_->hasLines = true;
    }

    // Adds the item whose value was being gathered, if any.
    void CloseValue() {
        if (value_) {
            command_->items.emplace_back(std::move(value_->name), std::move(value_->text),
                                         value_->line);
            value_.reset();
        }
    }

    // Adds the open command, with its last item.
    void CloseCommand() {
        CloseValue();
        commands_.emplace_back(std::move(command_->keyword), command_->line,
                               std::move(command_->items));
        command_.reset();
    }

    const std::string& shownPath_;
    ZentuParScanner scanner_;
    std::vector<ZentuParCommand> commands_;
    std::optional<OpenCommand> command_;
    std::optional<OpenValue> value_;
};

// The value of the first item named ID_NAME, or the empty text.
std::string IdNameOf(const std::vector<ZentuParSubCommand>& items) {
    const auto found = std::find_if(items.begin(), items.end(), [](const ZentuParSubCommand& item) {
        return ZentuStringUtil::equals_ignoring_case(item.GetName(), ID_NAME);
    });
    return found != items.end() ? found->retrieveValue() : std::string();
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
    const std::string shownPath = ZentuStringUtil::printable(ZentuFileUtil::to_utf8(path));
    const FileHandle file = OpenForReading(path, shownPath);
    LineSource lines(file.get(), shownPath);
    ParFileParser parser(shownPath);
    std::string line;
    while (lines.Next(line)) {
        parser.Take(line, lines.LineNumber());
    }
    commands_ = parser.Finish(lines.LineNumber());
}
