#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "ZentuCmdDefs.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"

namespace zentu_cmd {

// JSON that keeps the order of its keys, so that keywords and fields stay in the order in which a
// schema file writes them.
using Json = nlohmann::ordered_json;

// One item that a command may hold, as a schema file describes it.
struct ItemSchema {
    std::string name;
    ZentuCmdItemDefs::CmdItem kind = ZentuCmdItemDefs::CmdItem::PLACEHOLDER;
    ZentuCmdItemDefs::DataType type = ZentuCmdItemDefs::DataType::AUTO;
    // The default as the file gives it (a number for INTEGER and REAL, else a text); null if none.
    Json default_value;
    // The keywords of an ENUM item with their values, in the order of the file.
    std::vector<std::pair<std::string, int>> keywords;
    // The command kind that a REFERENCE item names.
    ZentuCmdDefs::Cmd references = ZentuCmdDefs::Cmd::CMD_PLACEHOLDER;
    std::string description;
};

// One command keyword of the schema with the items its commands may hold.
struct CommandSchema {
    std::string keyword;
    ZentuCmdDefs::Cmd kind = ZentuCmdDefs::Cmd::CMD_PLACEHOLDER;
    bool create_default = false;
    std::string description;
    std::vector<ItemSchema> items;
};

// One rule to run after reading, chosen by name from the library's rule functions.
struct RuleSchema {
    std::string rule;
    // Everything of the rule's entry but its name and description: the rule's parameters.
    Json parameters;
    std::string description;
};

// A whole schema: the commands a job may hold and the rules that complete it.
struct Schema {
    std::string description;
    std::vector<CommandSchema> commands;
    std::vector<RuleSchema> rules;
};

// The schema compiled into the program.
Schema builtin_schema();

// The text of the built-in schema, a JSON document.
const char* builtin_schema_text();

// Reads a schema from a JSON file; throws ToolError naming the file and the entry at fault.
Schema load_schema_file(const std::string& path);

// Reads a schema from a JSON document; throws ToolError naming the entry at fault, after source.
Schema parse_schema(const Json& document, const std::string& source);

// The schema as a JSON document in the format that parse_schema reads.
Json to_json(const Schema& schema);

// What a configuration built from a schema completes a job with.
enum class Completion {
    // Default items, default commands and the schema's rules, as a full read does.
    FULL,
    // Nothing: the job stays as the file writes it.
    NONE
};

// The library configuration that the schema describes.
ZentuCmdIoConfig build_config(const Schema& schema, Completion completion);

// Writes the schema as readable tables, one per command keyword, then the rules.
void print_schema_table(const Schema& schema, std::ostream& out);

// The name of a data type, as schema files write it.
const std::string& data_type_name(ZentuCmdItemDefs::DataType type);

}  // namespace zentu_cmd
