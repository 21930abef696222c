#pragma once

#include <string>

#include "ZentuCmd.h"
#include "ZentuCmdItemDefs.h"

// A command's identifier, its first ID_NAME item: one definition for the library and its hosts.
namespace ZentuCmdIdentifier {

// The item that carries the command's identifier; null when it has none.
inline const ZentuCmdItem* item_of(const ZentuCmd& cmd) {
    return cmd.HasItem(ZentuCmdItemDefs::CmdItem::ID_NAME, 0)
               ? &cmd.Item(ZentuCmdItemDefs::CmdItem::ID_NAME, 0)
               : nullptr;
}

// The command's identifier (upper case for a string item); empty when it has none.
inline std::string text_of(const ZentuCmd& cmd) {
    const ZentuCmdItem* item = item_of(cmd);
    return item != nullptr ? item->GetString() : std::string();
}

}  // namespace ZentuCmdIdentifier
