#pragma once

#include <string>

#include "ZentuCmd.h"
#include "ZentuCmdItem.h"

// The identifier of a command of a typed job, the text of its first ID_NAME item (upper case
// for a string item); empty when it has none.
inline std::string zentu_identifier_of(const ZentuCmd& command) {
    return command.HasItem(ZentuCmdItemDefs::CmdItem::ID_NAME, 0)
               ? command.Item(ZentuCmdItemDefs::CmdItem::ID_NAME, 0).GetString()
               : std::string();
}
