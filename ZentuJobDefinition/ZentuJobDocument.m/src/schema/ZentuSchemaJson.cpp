#include "ZentuJobSchema.h"

// A schema as the JSON document that reads back to it.

using ZentuCmdItemDefs::DataType;

ZentuJson ZentuJobSchema::ToJson() const {
    const ZentuJobSchema& schema = *this;
    ZentuJson commands = ZentuJson::array();
    for (const ZentuCommandSchema& command : schema.commands) {
        ZentuJson items = ZentuJson::array();
        for (const ZentuItemSchema& item : command.items) {
            ZentuJson entry = {
                {"name", item.name},
                {"kind", ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(item.kind)]},
                {"type", zentu_data_type_name(item.type)}};
            if (item.type == DataType::ENUM) {
                ZentuJson keywords = ZentuJson::object();
                for (const auto& [keyword, value] : item.keywords) {
                    keywords[keyword] = value;
                }
                entry["keywords"] = keywords;
            }
            if (item.references != ZentuCmdDefs::Cmd::CMD_PLACEHOLDER) {
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
        ZentuJson entry = {
            {"keyword", command.keyword},
            {"kind", ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(command.kind)]},
            {"create_default", command.create_default}};
        if (!command.description.empty()) {
            entry["description"] = command.description;
        }
        entry["items"] = items;
        commands.push_back(entry);
    }
    ZentuJson rules = ZentuJson::array();
    for (const ZentuRuleSchema& rule : schema.rules) {
        ZentuJson entry = {{"rule", rule.rule}};
        entry.update(rule.parameters);
        if (!rule.description.empty()) {
            entry["description"] = rule.description;
        }
        rules.push_back(entry);
    }
    ZentuJson document = ZentuJson::object();
    if (!schema.description.empty()) {
        document["description"] = schema.description;
    }
    document["commands"] = commands;
    document["rules"] = rules;
    return document;
}
