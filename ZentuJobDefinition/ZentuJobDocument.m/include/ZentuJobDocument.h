#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"
#include "ZentuParScanner.h"

// One item of a command as the file writes it.
struct ZentuDocumentItem {
    // The name in the case of the file, blanks around it cut; it may be empty.
    std::string name;
    // The value as the strict reader gives it: blanks cut, the lines of a multi-line value
    // joined by line feeds.
    std::string value;
    // The name stands alone on its line and the value on the lines after it.
    bool name_alone = false;
    // The line of the name and the last line that belongs to the item.
    std::size_t line = 0;
    std::size_t last_line = 0;
    ZentuTextRange name_range;
    // From the value's first character to the end of its last line; empty where the value is.
    ZentuTextRange value_range;
};

// One command as the file writes it.
struct ZentuDocumentCommand {
    // The keyword in the case of the file.
    std::string keyword;
    std::size_t line = 0;
    ZentuTextRange keyword_range;
    // The line of its END_; 0 when the command is not closed.
    std::size_t end_line = 0;
    std::vector<ZentuDocumentItem> items;

    // The value of the first item named ID_NAME in any case; empty when there is none.
    const std::string& IdName() const;
};

// What a line of the file is and where it belongs.
struct ZentuDocumentLine {
    // Offsets of the line's bytes in the text, without its line feed.
    std::size_t begin = 0;
    std::size_t end = 0;
    // The scanner's reading of the line; a line skipped in recovery keeps its problem kind.
    ZentuParLine scanned;
    // The command and item that the line belongs to, or NONE.
    std::size_t command = NONE;
    std::size_t item = NONE;

    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);
};

// A job file as written, every byte kept: its commands and items with their places, and the
// findings about its structure. Reading never stops at a problem; the recovery rules are:
// - a line that breaks the structure outside a command (END_, an item line, several words, a
//   keyword with control characters) is reported and skipped;
// - inside a command, a name alone on its line that is a command keyword (as the caller's
//   IsKeyword tells) and not an item of the open command closes the open command before it,
//   reported as a command without END_, and opens the next command;
// - a file that ends inside a command is reported, and the command is kept as if closed there.
class ZENTU_JOB_DOCUMENT_API ZentuJobDocument {
  public:
    // Tells whether a name alone on its line inside the open command (both as written) starts
    // another command instead of naming an item.
    using KeywordTest = std::function<bool(std::string_view name, std::string_view openKeyword)>;

    // Reads a text; path names it in findings. Without keyword test no command is closed early.
    static ZentuJobDocument FromText(std::string text, std::string path,
                                     const KeywordTest& startsCommand = {});
    // Reads a file (path in UTF-8); a file that cannot be read gives an empty document with an
    // io finding.
    static ZentuJobDocument FromFile(const std::string& path,
                                     const KeywordTest& startsCommand = {});

    // The path as given.
    const std::string& Path() const { return path_; }
    // The text exactly as read: writing it back gives the input byte for byte.
    const std::string& Text() const { return text_; }
    // The lines, in file order; line n is Lines()[n - 1]. Most readings never look at them and
    // they take several times the text's memory, so they are worked out when first asked for,
    // on any thread, by a second pass over the text.
    const std::vector<ZentuDocumentLine>& Lines() const;
    // The number of lines, without working the lines out.
    std::size_t LineCount() const { return lineBegins_.size(); }
    // The text of line n (1-based), without its line feed.
    std::string_view LineText(std::size_t number) const;
    // The commands in file order.
    const std::vector<ZentuDocumentCommand>& Commands() const { return commands_; }
    // The findings about the file's structure (codes io and syntax), in file order.
    const std::vector<ZentuFinding>& Findings() const { return findings_; }
    // Whether a finding is an error.
    bool HasErrors() const;
    // The range of bytes [begin, end) of line n as lines and columns.
    ZentuTextRange RangeOf(std::size_t number, std::size_t begin, std::size_t end) const;
    // The range of bytes [begin, end) of an item's value text; the whole value where the value
    // spans lines.
    ZentuTextRange ValueRange(const ZentuDocumentItem& item, std::size_t begin,
                              std::size_t end) const;
    // The column (1-based, in characters) of a byte offset of line n.
    std::size_t ColumnOf(std::size_t number, std::size_t offset) const;
    // The byte offset in line n of a column (1-based, in characters); the line's end for a column
    // past it.
    std::size_t OffsetOf(std::size_t number, std::size_t column) const;

  private:
    friend class ZentuJobDocumentReader;

    std::string path_;
    std::string text_;
    // Where each line begins in the text.
    std::vector<std::size_t> lineBegins_;
    // The lines on which the caller's keyword test closed the open command, in file order, so
    // that the lines can be worked out without the test.
    std::vector<std::size_t> closedEarly_;
    // The lines, worked out on first demand; shared by copies, which hold the same text.
    struct LazyLines;
    std::shared_ptr<LazyLines> lines_;
    std::vector<ZentuDocumentCommand> commands_;
    std::vector<ZentuFinding> findings_;
};
