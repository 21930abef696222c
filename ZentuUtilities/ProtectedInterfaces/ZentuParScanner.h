#pragma once

#include <cstddef>
#include <string_view>

#include "ZentuUtilitiesExport.h"

// What one line of a parameter file is. Ranges are byte offsets into the line as handed to the
// scanner (without its line feed), end exclusive, with the blanks around names and values cut.
struct ZentuParLine {
    // The kinds of line, with the kinds that break the file's structure last.
    enum class Kind {
        // Nothing but blanks, outside a multi-line value.
        BLANK,
        // A line whose first non-blank character is '#'.
        COMMENT,
        // The keyword that opens a command (range: the keyword).
        KEYWORD,
        // END_, which closes the open command.
        END,
        // NAME = value inside a command (ranges: name and value).
        ITEM,
        // An item name alone on its line (range: the name); value lines follow.
        NAME,
        // A line of the open multi-line value (range: the line's text, possibly empty).
        VALUE,
        // END_ outside a command.
        END_OUTSIDE_COMMAND,
        // A line holding '=' outside a command (range: the line's text).
        ITEM_OUTSIDE_COMMAND,
        // A line of several words outside a command (range: the line's text).
        COMMAND_LINE_NOT_ONE_WORD,
        // A keyword holding a control character (range: the keyword).
        COMMAND_WORD_NOT_PRINTABLE,
    };

    Kind kind = Kind::BLANK;
    // The name, keyword or text of the line.
    std::size_t nameBegin = 0;
    std::size_t nameEnd = 0;
    // The value of an ITEM line.
    std::size_t valueBegin = 0;
    std::size_t valueEnd = 0;

    // Whether the line breaks the file's structure.
    bool IsProblem() const { return kind >= Kind::END_OUTSIDE_COMMAND; }
    // The name, keyword or text of the line.
    std::string_view Name(std::string_view line) const {
        return line.substr(nameBegin, nameEnd - nameBegin);
    }
    // The value of an ITEM line.
    std::string_view Value(std::string_view line) const {
        return line.substr(valueBegin, valueEnd - valueBegin);
    }
};

// The one reading of the parameter-file syntax: classifies the lines of a file one after the
// other, keeping track of the open command and the open multi-line value. Every reader of the
// syntax (the strict file reader, the lossless job document) is built on it, so that they never
// disagree on what a line is.
//
// Inside a command, a line holding '=' is an item, END_ (any case) closes the command, and a line
// without '=' names an item alone; the lines after it are its value lines until a line holding
// '=' or END_, except that a line after at least one value line that is a single name (a letter,
// then letters, digits or '_') names the next item when the value line before it does not end
// with ','. Comment lines are skipped everywhere; blank lines are value lines inside a value and
// skipped elsewhere. A UTF-8 byte-order mark before the first line is skipped.
class ZENTU_UTILITIES_API ZentuParScanner {
  public:
    // Classifies the next line, given without its line feed (a CR before it is a blank).
    ZentuParLine Scan(std::string_view line);

    // Whether a command is open.
    bool InsideCommand() const { return insideCommand_; }
    // Whether a multi-line value is open.
    bool InsideValue() const { return insideValue_; }
    // Forgets the open command, as a reader that recovers from a missing END_ does.
    void CloseCommand();

  private:
    ZentuParLine ScanOutsideCommand(std::string_view line, std::size_t begin, std::size_t end);
    ZentuParLine ScanInsideCommand(std::string_view line, std::size_t begin, std::size_t end);

    bool firstLine_ = true;
    bool insideCommand_ = false;
    bool insideValue_ = false;
    // The open value has a line.
    bool valueHasLines_ = false;
    // The last line of the open value ends with ','.
    bool valueContinues_ = false;
};
