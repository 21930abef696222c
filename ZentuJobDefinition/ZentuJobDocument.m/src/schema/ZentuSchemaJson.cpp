#include "ZentuJobSchema.h"

// A schema as the JSON document that reads back to it.

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::DataType;

namespace {

using Json = ZentuJson;
using ItemSchema = ZentuItemSchema;
using CommandSchema = ZentuCommandSchema;
using RuleSchema = ZentuRuleSchema;

}  // namespace

Json ZentuJobSchema::ToJson() const {
    const ZentuJobSchema& schema = *this;
    Json commands = Json::array();
    for (const CommandSchema& command : schema.commands) {
        Json items = Json::array();
        for (const ItemSchema& item : command.items) {
            Json entry = {
                {"name", item.name},
                {"kind", ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(item.kind)]},
                {"type", zentu_data_type_name(item.type)}};
            if (item.type == DataType::ENUM) {
                Json keywords = Json::object();
                for (const auto& [keyword, value] : item.keywords) {
                    keywords[keyword] = value;
                }
                entry["keywords"] = keywords;
            }
            if (item.references != Cmd::CMD_PLACEHOLDER) {
                entry["references"] =
                    ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(item.references)];
            }
            if (!item.default_value.is_null()) {
                entry["default"] = item.default_value;
            }
            if (item.required) {
                entry["required"] = true;
            }
            if (item.multiple) {
                entry["multiple"] = true;
            }
            if (item.min) {
                entry["min"] = *item.min;
            }
            if (item.max) {
                entry["max"] = *item.max;
            }
            if (!item.description.empty()) {
                entry["description"] = item.description;
            }
            items.push_back(entry);
        }
        Json entry = {{"keyword", command.keyword},
                      {"kind", ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(command.kind)]},
                      {"create_default", command.create_default}};
        if (!command.description.empty()) {
            entry["description"] = command.description;
        }
        entry["items"] = items;
        commands.push_back(entry);
    }
    Json rules = Json::array();
    for (const RuleSchema& rule : schema.rules) {
        Json entry = {{"rule", rule.rule}};
        entry.update(rule.parameters);
        if (!rule.description.empty()) {
            entry["description"] = rule.description;
        }
        rules.push_back(entry);
    }
    Json document = Json::object();
    if (!schema.description.empty()) {
        document["description"] = schema.description;
    }
    document["commands"] = commands;
    document["rules"] = rules;
    return document;
}
