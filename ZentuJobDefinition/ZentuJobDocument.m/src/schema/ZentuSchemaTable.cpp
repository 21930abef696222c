#include "ZentuJobSchema.h"

#include <algorithm>
#include <ostream>
#include <sstream>

// A schema as the table that `zentu-cmd schema` prints for people.

using ZentuCmdItemDefs::DataType;

namespace {

// The default as a schema file writes it, texts without their quotes.
std::string default_text(const ZentuItemSchema& item) {
    if (item.default_value.is_null()) {
        return {};
    }
    return item.default_value.is_string() ? item.default_value.get<std::string>()
                                          : item.default_value.dump();
}

// ", required, multiple, min 0, max 1" as far as the item has them.
std::string constraints_text(const ZentuItemSchema& item) {
    std::ostringstream text;
    text << (item.required ? ", required" : "") << (item.multiple ? ", multiple" : "");
    if (item.min) {
        text << ", min " << *item.min;
    }
    if (item.max) {
        text << ", max " << *item.max;
    }
    return text.str();
}

// What values the item takes: the kind of command it refers to or its keywords.
std::string values_text(const ZentuItemSchema& item) {
    if (item.references != ZentuCmdDefs::Cmd::CMD_PLACEHOLDER) {
        return std::string(item.type == DataType::LIST ? "each element " : "") + "refers to " +
               ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(item.references)];
    }
    std::string text;
    for (const auto& [keyword, value] : item.keywords) {
        text += (text.empty() ? "one of " : ", ") + keyword;
    }
    return text;
}

}  // namespace

void ZentuJobSchema::PrintTable(std::ostream& out) const {
    const ZentuJobSchema& schema = *this;
    if (!schema.description.empty()) {
        out << schema.description << "\n\n";
    }
    for (const ZentuCommandSchema& command : schema.commands) {
        out << command.keyword << " ("
            << ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(command.kind)]
            << (command.create_default ? ", created by default" : "") << ")";
        if (!command.description.empty()) {
            out << ": " << command.description;
        }
        out << "\n";
        std::size_t width = 4;
        for (const ZentuItemSchema& item : command.items) {
            width = std::max(width, item.name.size());
        }
        for (const ZentuItemSchema& item : command.items) {
            std::ostringstream line;
            line << "  " << item.name << std::string(width - item.name.size() + 2, ' ')
                 << zentu_data_type_name(item.type);
            if (!item.default_value.is_null()) {
                line << ", default " << default_text(item);
            }
            if (const std::string values = values_text(item); !values.empty()) {
                line << ", " << values;
            }
            line << constraints_text(item);
            if (!item.description.empty()) {
                line << ": " << item.description;
            }
            out << line.str() << "\n";
        }
        out << "\n";
    }
    out << "Rules, in the order in which they run:\n";
    for (const ZentuRuleSchema& rule : schema.rules) {
        out << "  " << rule.rule;
        if (!rule.parameters.empty()) {
            out << " " << rule.parameters.dump();
        }
        if (!rule.description.empty()) {
            out << ": " << rule.description;
        }
        out << "\n";
    }
}
