#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "ZentuBoundRules.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuJobDocumentExport.h"

// JSON that keeps the order of its keys, so that keywords and fields stay in the order in which a
// schema file writes them.
using ZentuJson = nlohmann::ordered_json;

// One item that a command may hold, as a schema file describes it.
// Its implicit moves only move strings and json values, whose checks the analysis takes for throws.
// NOLINTNEXTLINE(bugprone-exception-escape)
struct ZentuItemSchema {
    std::string name;
    ZentuCmdItemDefs::CmdItem kind = ZentuCmdItemDefs::CmdItem::PLACEHOLDER;
    ZentuCmdItemDefs::DataType type = ZentuCmdItemDefs::DataType::AUTO;
    // The default as the file gives it (a number for INTEGER and REAL, else a text); null if none.
    ZentuJson default_value;
    // The keywords of an ENUM item with their values, in the order of the file.
    std::vector<std::pair<std::string, int>> keywords;
    // The command kind that a REFERENCE item names, or that each element of a LIST item names;
    // CMD_PLACEHOLDER for none.
    ZentuCmdDefs::Cmd references = ZentuCmdDefs::Cmd::CMD_PLACEHOLDER;
    std::string description;
    // A command of the keyword must hold the item.
    bool required = false;
    // The item may appear more than once in one command.
    bool multiple = false;
    // The smallest and largest number that an INTEGER or REAL item takes.
    std::optional<double> min;
    std::optional<double> max;
};

// One command keyword of the schema with the items its commands may hold.
struct ZentuCommandSchema {
    std::string keyword;
    ZentuCmdDefs::Cmd kind = ZentuCmdDefs::Cmd::CMD_PLACEHOLDER;
    bool create_default = false;
    std::string description;
    std::vector<ZentuItemSchema> items;

    // The description of the item of that name, or null.
    const ZentuItemSchema* FindItem(const std::string& name) const;
};

// One rule to run after reading, chosen by name from the library's rule functions.
// Its implicit moves only move strings and json values, whose checks the analysis takes for throws.
// NOLINTNEXTLINE(bugprone-exception-escape)
struct ZentuRuleSchema {
    std::string rule;
    // Everything of the rule's entry but its name and description: the rule's parameters.
    ZentuJson parameters;
    std::string description;
};

// What a configuration built from a schema completes a job with.
enum class ZentuCompletion {
    // Default items, default commands and the schema's rules, as a full read does.
    FULL,
    // Nothing: the job stays as the file writes it.
    NONE
};

// A whole schema: the commands a job may hold and the rules that complete it. The built-in one
// and schema files are loaded here, so that every front end reads jobs with the same schemas.
class ZENTU_JOB_DOCUMENT_API ZentuJobSchema {
  public:
    // A schema without commands or rules.
    ZentuJobSchema();

    // The schema compiled into the library.
    static ZentuJobSchema Builtin();
    // The text of the built-in schema, a JSON document.
    static const char* BuiltinText();
    // Reads a schema from a JSON file; throws KPL_Failure naming the file and the entry at fault.
    static ZentuJobSchema Load(const std::string& path);
    // Reads a schema from a JSON document; throws KPL_Failure naming the entry at fault, after
    // source. Its rules are bound to their parameters here.
    static ZentuJobSchema Parse(const ZentuJson& document, const std::string& source);

    // The schema as a JSON document in the format that Parse reads.
    ZentuJson ToJson() const;
    // The library configuration that the schema describes. Its bound rules run only while
    // BoundRules() is active on the reading thread (ZentuBoundRules::Scope).
    ZentuCmdIoConfig BuildConfig(ZentuCompletion completion) const;
    // The configuration that BuildConfig gives, built once and shared by the readings of this
    // schema and its copies, on any thread, for as long as their commands stay as they were;
    // building one takes milliseconds, more than reading a small job.
    std::shared_ptr<const ZentuCmdIoConfig> SharedConfig(ZentuCompletion completion) const;
    // The rules of the schema bound to their parameters.
    const ZentuBoundRules& BoundRules() const;
    // Writes the schema as readable tables, one per command keyword, then the rules.
    void PrintTable(std::ostream& out) const;
    // The description of the command keyword (upper case), or null.
    const ZentuCommandSchema* FindCommand(const std::string& keyword) const;

    std::string description;
    std::vector<ZentuCommandSchema> commands;
    std::vector<ZentuRuleSchema> rules;

  private:
    std::shared_ptr<ZentuBoundRules> bound_ = std::make_shared<ZentuBoundRules>();
    // Adds each parsed rule, bound, to a configuration, in the order of rules.
    std::vector<std::function<void(ZentuCmdIoConfig&)>> ruleAdders_;
    // The configurations that SharedConfig built, with the commands they were built from.
    struct ConfigCache;
    std::shared_ptr<ConfigCache> configs_;
};

// The name of a data type, as schema files write it.
ZENTU_JOB_DOCUMENT_API const std::string& zentu_data_type_name(ZentuCmdItemDefs::DataType type);
