#pragma once

#include <cstddef>
#include <functional>
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

// A parameter file handed over command by command, split as ZentuParFile splits it and with the
// same failures, so that a reader that goes through the file once keeps no more of it at a time
// than one command's texts.
namespace ZentuParFileCommands {

// One item: its name and value text as ZentuParSubCommand holds them, and the line of its name.
struct Item {
    std::string_view name;
    std::string_view value;
    std::size_t line;
};

// One command: its keyword, the line that holds it, its items in file order, and the value of its
// first item named ID_NAME in any case (empty when there is none).
struct Command {
    std::string_view keyword;
    std::size_t line;
    const std::vector<Item>& items;
    std::string_view idName;
};

// Receives the commands of a file; the views that a command holds live until it returns.
using Visitor = std::function<void(const Command&)>;

// Reads the file and hands its commands to visit in file order, each once its END_ line is read;
// the first problem ends the reading with a KPL_Failure that names the file and, for a syntax
// error, the line, after the commands before it have been handed over.
ZENTU_UTILITIES_API void read(const std::wstring& path, const Visitor& visit);

}  // namespace ZentuParFileCommands
