#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ZentuUtilitiesExport.h"

// One item of a parameter-file command: a name and its value text, both as the file writes them
// with the blanks around them cut.
class ZENTU_UTILITIES_API ZentuParSubCommand {
  public:
    // An item read from the given line of its file.
    ZentuParSubCommand(std::string name, std::string value, std::size_t line);

    // The name in the case of the file; it may be empty.
    const std::string& GetName() const { return name_; }

    // The line, counted from 1, that holds the name.
    std::size_t GetLine() const { return line_; }

    // The value text; the lines of a multi-line value are joined by line feeds.
    const std::string& retrieveValue() const { return value_; }

  private:
    std::string name_;
    std::string value_;
    std::size_t line_;
};

// One command of a parameter file: the keyword line, the items up to END_, and the ID name that
// the host identifies the command by.
class ZENTU_UTILITIES_API ZentuParCommand {
  public:
    // Walks the items in file order.
    using const_iterator = std::vector<ZentuParSubCommand>::const_iterator;

    // A command whose keyword stands on the given line, holding its items in file order.
    ZentuParCommand(std::string keyword, std::size_t line, std::vector<ZentuParSubCommand> items);

    // The keyword in the case of the file.
    const std::string& GetKeyword() const { return keyword_; }

    // The value of the first item named ID_NAME in any case; empty when there is none.
    const std::string& GetIdName() const { return idName_; }

    // The line, counted from 1, that holds the keyword.
    std::size_t GetLine() const { return line_; }

    // The first item.
    const_iterator begin() const { return items_.begin(); }

    // Past the last item.
    const_iterator end() const { return items_.end(); }

  private:
    std::string keyword_;
    std::string idName_;
    std::size_t line_;
    std::vector<ZentuParSubCommand> items_;
};

// A parameter file split into commands and items; the whole file is read at construction, so a
// file that cannot be read or is malformed leaves no object behind but a KPL_Failure.
class ZENTU_UTILITIES_API ZentuParFile {
  public:
    // Walks the commands in file order.
    using const_iterator = std::vector<ZentuParCommand>::const_iterator;

    // Reads the file; the failure's message names the file and, for a syntax error, the line.
    explicit ZentuParFile(const std::wstring& path);

    // The first command.
    const_iterator begin() const { return commands_.begin(); }

    // Past the last command.
    const_iterator end() const { return commands_.end(); }

  private:
    std::vector<ZentuParCommand> commands_;
};

// A parameter file split as ZentuParFile splits it, with the same failures, but holding every name
// and value in one text: a reader that goes through the file once takes views of them rather than
// a string per item and a vector per command.
class ZENTU_UTILITIES_API ZentuParFileText {
  public:
    // One item: its name and value text as ZentuParSubCommand holds them, and the line of its name.
    struct Item {
        std::string_view name;
        std::string_view value;
        std::size_t line;
    };

    // One command: its keyword, the line that holds it, and the numbers of its items, from
    // firstItem up to but not including itemEnd.
    struct Command {
        std::string_view keyword;
        std::size_t line;
        std::size_t firstItem;
        std::size_t itemEnd;
    };

    // Reads the file; the failure's message names the file and, for a syntax error, the line.
    explicit ZentuParFileText(const std::wstring& path);

    // The number of commands.
    std::size_t CommandCount() const { return commands_.size(); }

    // The command of the given number, counted from 0 in file order; its views live as long as
    // this object.
    Command CommandAt(std::size_t index) const;

    // The item of the given number, counted from 0 in file order; its views live as long as this
    // object.
    Item ItemAt(std::size_t index) const;

    // The value of the command's first item named ID_NAME in any case; empty when there is none.
    std::string_view IdNameOf(const Command& command) const;

  private:
    // Fills the containers below while the file is read.
    friend class ZentuParFileTextBuilder;

    // A name, value or keyword: where it starts in text_ and how long it is.
    struct Piece {
        std::size_t offset;
        std::size_t length;
    };

    // An item as stored.
    struct StoredItem {
        Piece name;
        Piece value;
        std::size_t line;
    };

    // A command as stored; its items end where the next command's begin.
    struct StoredCommand {
        Piece keyword;
        std::size_t line;
        std::size_t itemEnd;
    };

    // The view of a piece of text_.
    std::string_view View(Piece piece) const {
        return std::string_view(text_).substr(piece.offset, piece.length);
    }

    // The item of the given number as stored.
    const StoredItem& Stored(std::size_t index) const {
        return itemBlocks_[index / ITEMS_PER_BLOCK][index % ITEMS_PER_BLOCK];
    }

    // Items are kept in blocks that never move, so that the items of a large file are written
    // once rather than copied, into memory fetched anew, each time their storage grows.
    static constexpr std::size_t ITEMS_PER_BLOCK = 4096;

    std::string text_;
    std::vector<std::unique_ptr<StoredItem[]>> itemBlocks_;
    std::size_t itemCount_ = 0;
    std::vector<StoredCommand> commands_;
};
