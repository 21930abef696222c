#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "ZentuJobSchema.h"

// Looking a keyword or an item name up in a schema as the file writes it, in any case, without
// making an upper-case copy of every name of a job first.
namespace ZentuSchemaLookup {

// Whether upper-casing written as ZentuStringUtil::to_upper does (the letters before the first
// NUL) gives capitals.
inline bool is_upper_case_of(std::string_view written, const std::string& capitals) {
    if (written.size() != capitals.size()) {
        return false;
    }
    bool raising = true;
    for (std::size_t i = 0; i < written.size(); ++i) {
        char c = written[i];
        raising = raising && c != '\0';
        if (raising && c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - ('a' - 'A'));
        }
        if (c != capitals[i]) {
            return false;
        }
    }
    return true;
}

// What schema.FindCommand gives for the keyword upper-cased.
inline const ZentuCommandSchema* find_command(const ZentuJobSchema& schema,
                                              std::string_view keyword) {
    const auto found = std::find_if(schema.commands.begin(), schema.commands.end(),
                                    [&](const ZentuCommandSchema& command) {
                                        return is_upper_case_of(keyword, command.keyword);
                                    });
    return found == schema.commands.end() ? nullptr : &*found;
}

// What command.FindItem gives for the name upper-cased.
inline const ZentuItemSchema* find_item(const ZentuCommandSchema& command, std::string_view name) {
    const auto found = std::find_if(
        command.items.begin(), command.items.end(),
        [&](const ZentuItemSchema& item) { return is_upper_case_of(name, item.name); });
    return found == command.items.end() ? nullptr : &*found;
}

}  // namespace ZentuSchemaLookup
