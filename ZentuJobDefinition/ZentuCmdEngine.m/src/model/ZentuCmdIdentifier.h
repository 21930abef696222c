#pragma once

#include <string>
#include <string_view>

#include "ZentuCmd.h"
#include "items/ZentuOwnItems.h"
#include "model/ZentuTextIndex.h"

namespace ZentuCmdIdentifier {

// The item that carries the command's identifier, its first ID_NAME item; null when it has none.
inline const ZentuCmdItem* item_of(const ZentuCmd& cmd) {
    return cmd.HasItem(ZentuCmdItemDefs::CmdItem::ID_NAME, 0)
               ? &cmd.Item(ZentuCmdItemDefs::CmdItem::ID_NAME, 0)
               : nullptr;
}

// The command's identifier; empty when it has none.
inline std::string text_of(const ZentuCmd& cmd) {
    const ZentuCmdItem* item = item_of(cmd);
    return item != nullptr ? item->GetString() : std::string();
}

// Identifier to the first command that bears it.
using Index = ZentuTextIndex<const ZentuCmd*>;

// Adds the commands of a sequence of command pointers, in its order, to the index; a command
// whose identifier is indexed already, and one without identifier, is passed over.
template <typename Sequence>
void add_first_by_identifier(const Sequence& commands, Index& index) {
    for (const auto& cmd : commands) {
        if (const ZentuCmdItem* item = item_of(*cmd)) {
            ZentuOwnItems::WithText(*item, [&](std::string_view text) { index.Add(text, &*cmd); });
        }
    }
}

}  // namespace ZentuCmdIdentifier
