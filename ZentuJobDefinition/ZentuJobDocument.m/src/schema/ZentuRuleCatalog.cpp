#include "ZentuRuleCatalog.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuDrespExpressionParser.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::KeywordMap;
namespace Rules = ZentuCmdContainerRules;

namespace ZentuRuleCatalog {

namespace {

// What is wrong with one parameter of a rule entry, ready to be shown as it stands.
class ParameterError : public std::runtime_error {
  public:
    explicit ParameterError(const std::string& message) : std::runtime_error(message) {}
};

// The parameters of one rule entry, read with the type that each parameter calls for.
class Parameters {
  public:
    explicit Parameters(const ZentuJson& values) : values_(values) {}

    Cmd Kind(const char* name) const {
        return Named<Cmd>(ZentuCmdDefs::CMD_NAMES, name, "command kind");
    }

    CmdItem Item(const char* name) const {
        return Named<CmdItem>(ZentuCmdItemDefs::CMD_ITEM_NAMES, name, "item kind");
    }

    DataType Type(const char* name) const {
        const std::string text = Text(name);
        for (std::size_t type = 0; type < ZentuCmdItemDefs::DATA_TYPE_COUNT; ++type) {
            if (zentu_data_type_name(static_cast<DataType>(type)) == text) {
                return static_cast<DataType>(type);
            }
        }
        throw ParameterError("\"" + std::string(name) + "\": unknown data type \"" + text + "\"");
    }

    ZentuCmdItemDefs::EnumValue Keyword(const char* name) const {
        const std::string text = Text(name);
        const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
        const auto found = keywords.find(text);
        if (found == keywords.end()) {
            throw ParameterError("\"" + std::string(name) + "\": \"" + text +
                                 "\" is not one of the library's keywords");
        }
        return found->second;
    }

    std::string Text(const char* name) const {
        const ZentuJson& value = Value(name);
        if (!value.is_string()) {
            throw ParameterError("\"" + std::string(name) + "\" must be a text");
        }
        return value.get<std::string>();
    }

    std::string OptionalText(const char* name) const {
        return values_.contains(name) ? Text(name) : std::string();
    }

    bool Flag(const char* name) const {
        if (!values_.contains(name)) {
            return false;
        }
        const ZentuJson& value = values_[name];
        if (!value.is_boolean()) {
            throw ParameterError("\"" + std::string(name) + "\" must be true or false");
        }
        return value.get<bool>();
    }

    bool Has(const char* name) const { return values_.contains(name); }

  private:
    const ZentuJson& Value(const char* name) const {
        const auto found = values_.find(name);
        if (found == values_.end()) {
            throw ParameterError("missing parameter \"" + std::string(name) + "\"");
        }
        return *found;
    }

    template <typename Enum, std::size_t N>
    Enum Named(const std::array<std::string, N>& names, const char* name, const char* what) const {
        const std::string text = Text(name);
        const auto found = std::find(names.begin(), names.end(), text);
        if (found == names.end()) {
            throw ParameterError("\"" + std::string(name) + "\": unknown " + what + " \"" + text +
                                 "\"");
        }
        return static_cast<Enum>(found - names.begin());
    }

    const ZentuJson& values_;
};

// The body of a per-command rule, once its parameters are bound.
using CommandRule = std::function<void(ZentuCmd&, const ZentuCmdContainer&, const KeywordMap&)>;

RuleAdder command_rule(const Parameters& parameters, CommandRule rule, ZentuBoundRules& bound) {
    const Rules::DefaultValueRule bound_rule{
        parameters.Kind("cmd"),
        bound.Bind([rule = std::move(rule)](ZentuCmd& command, const ZentuCmdContainer& container,
                                            const ZentuCmdMetaData&, const KeywordMap& keywords) {
            rule(command, container, keywords);
        }),
        parameters.Flag("create_if_missing")};
    return [bound_rule](ZentuCmdIoConfig& config) { config.AddRule(bound_rule); };
}

RuleAdder container_rule(Rules::ContainerManipulatorRule rule) {
    return [rule](ZentuCmdIoConfig& config) { config.AddRule(rule); };
}

RuleAdder add_reference(const Parameters& p, ZentuBoundRules& bound) {
    return command_rule(
        p,
        [item = p.Item("item"), name = p.Text("name"), kind = p.Kind("target_kind"),
         id = p.Text("target_id")](ZentuCmd& command, const ZentuCmdContainer& container,
                                   const KeywordMap&) {
            Rules::Rule_AddReference(command, container, item, name, kind, id);
        },
        bound);
}

RuleAdder add_reference_to_first_cmd(const Parameters& p, ZentuBoundRules& bound) {
    return command_rule(
        p,
        [item = p.Item("item"), name = p.Text("name"), kind = p.Kind("target_kind")](
            ZentuCmd& command, const ZentuCmdContainer& container, const KeywordMap&) {
            Rules::Rule_AddReferenceToFirstCmd(command, container, item, name, kind);
        },
        bound);
}

RuleAdder add_value_if_enum_present(const Parameters& p, ZentuBoundRules& bound) {
    return command_rule(
        p,
        [enumItem = p.Item("enum_item"), value = p.Keyword("enum_value"), item = p.Item("item"),
         name = p.Text("name"), text = p.Text("value")](
            ZentuCmd& command, const ZentuCmdContainer& container, const KeywordMap& keywords) {
            Rules::Rule_AddValueIfEnumPresent(command, container, enumItem, value, item, name, text,
                                              keywords);
        },
        bound);
}

RuleAdder add_value_if_not_present(const Parameters& p, ZentuBoundRules& bound) {
    return command_rule(
        p,
        [item = p.Item("item"), name = p.Text("name"), text = p.Text("value")](
            ZentuCmd& command, const ZentuCmdContainer& container, const KeywordMap& keywords) {
            Rules::Rule_AddValueIfNotPresent(command, container, item, name, text, keywords);
        },
        bound);
}

RuleAdder copy_type_to_cmd(const Parameters& p, ZentuBoundRules& bound) {
    const CmdItem item = p.Item("item");
    const CmdItem sourceItem = p.Has("source_item") ? p.Item("source_item") : item;
    return command_rule(
        p,
        [source = p.Kind("source_kind"), refItem = p.Item("ref_item"), sourceItem, item,
         name = p.OptionalText("name"), type = p.Type("type"), replace = p.Flag("replace")](
            ZentuCmd& command, const ZentuCmdContainer& container, const KeywordMap& keywords) {
            Rules::Rule_CopyTypeToCmd(command, container, source, refItem, sourceItem, item, name,
                                      type, keywords, replace);
        },
        bound);
}

RuleAdder reference_to_collection(const Parameters& p, ZentuBoundRules& bound) {
    return container_rule(bound.Bind(ZentuBoundRules::ContainerRule(
        [collection = p.Kind("collection_kind"), member = p.Item("member_item"),
         target = p.Kind("target_kind"), backRef = p.Item("back_ref_item"), name = p.Text("name"),
         fallback = p.Flag("fallback_to_first")](ZentuCmdContainer& container, const KeywordMap&) {
            Rules::rule_add_reference_to_collection_cmd(container, collection, member, target,
                                                        backRef, name, fallback);
        })));
}

// A plain rule function of the library needs no binding.
RuleAdder dresp_expressions(const Parameters&, ZentuBoundRules&) {
    return container_rule(&ZentuDrespExpressionParser::dresp_expression_rule);
}

struct RuleEntry {
    RuleInfo info;
    std::function<RuleAdder(const Parameters&, ZentuBoundRules&)> bind;
};

const std::vector<RuleEntry>& rule_table() {
    static const std::vector<RuleEntry> table = {
        {{"add_reference",
          "gives each command of kind cmd that lacks item a reference named name to the first "
          "target_kind command whose identifier is target_id",
          {"cmd", "item", "name", "target_kind", "target_id", "create_if_missing?"}},
         add_reference},
        {{"add_reference_to_first_cmd",
          "gives each command of kind cmd that lacks item a reference named name to the first "
          "target_kind command",
          {"cmd", "item", "name", "target_kind", "create_if_missing?"}},
         add_reference_to_first_cmd},
        {{"add_value_if_enum_present",
          "gives each command of kind cmd whose first enum_item holds the keyword enum_value and "
          "that lacks item the value text as item name",
          {"cmd", "enum_item", "enum_value", "item", "name", "value", "create_if_missing?"}},
         add_value_if_enum_present},
        {{"add_value_if_not_present",
          "gives each command of kind cmd that lacks item the value text as item name",
          {"cmd", "item", "name", "value", "create_if_missing?"}},
         add_value_if_not_present},
        {{"copy_type_to_cmd",
          "copies into each command of kind cmd the first source_item of type type found through "
          "the ref_item references of the first source_kind command (replacing a different one "
          "when replace is true)",
          {"cmd", "source_kind", "ref_item", "item", "type", "source_item?", "name?", "replace?",
           "create_if_missing?"}},
         copy_type_to_cmd},
        {{"reference_to_collection",
          "turns the member_item references of collection_kind commands into back_ref_item "
          "references named name held by their target_kind targets",
          {"collection_kind", "member_item", "target_kind", "back_ref_item", "name",
           "fallback_to_first?"}},
         reference_to_collection},
        {{"dresp_expressions",
          "expands the expressions of OPERATOR commands (first ADD_FILE item, references "
          "written %ID_NAME%) into weighted combinations of responses",
          {}},
         dresp_expressions},
    };
    return table;
}

const RuleEntry* find_rule(const std::string& name) {
    const auto& table = rule_table();
    const auto found = std::find_if(table.begin(), table.end(), [&](const RuleEntry& entry) {
        return entry.info.name == name;
    });
    return found == table.end() ? nullptr : &*found;
}

std::string unknown_parameter(const ZentuRuleSchema& rule, const RuleInfo& info) {
    for (const auto& [name, value] : rule.parameters.items()) {
        const bool known = std::any_of(
            info.parameters.begin(), info.parameters.end(),
            [&name = name](const std::string& p) { return p == name || p == name + "?"; });
        if (!known) {
            return "unknown parameter \"" + name + "\" of rule \"" + rule.rule + "\"";
        }
    }
    return {};
}

}  // namespace

const std::vector<RuleInfo>& known_rules() {
    static const std::vector<RuleInfo> infos = [] {
        std::vector<RuleInfo> result;
        for (const RuleEntry& entry : rule_table()) {
            result.push_back(entry.info);
        }
        return result;
    }();
    return infos;
}

std::string rule_problem(const ZentuRuleSchema& rule) {
    const RuleEntry* entry = find_rule(rule.rule);
    if (entry == nullptr) {
        std::string names;
        for (const RuleEntry& known : rule_table()) {
            names += (names.empty() ? "" : ", ") + known.info.name;
        }
        return "unknown rule \"" + rule.rule + "\" (expected one of " + names + ")";
    }
    if (std::string problem = unknown_parameter(rule, entry->info); !problem.empty()) {
        return problem;
    }
    try {
        ZentuBoundRules scratch;
        entry->bind(Parameters(rule.parameters), scratch);
    } catch (const ParameterError& error) {
        return error.what();
    }
    return {};
}

RuleAdder bind_rule(const ZentuRuleSchema& rule, ZentuBoundRules& bound) {
    return find_rule(rule.rule)->bind(Parameters(rule.parameters), bound);
}

}  // namespace ZentuRuleCatalog
