#pragma once

#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItem.h"

namespace ZentuCmdItem_Util {

// Whether the item has a list reading and its text holds the character c.
ZENTU_CMD_ENGINE_API bool has_item_list_with_char(const ZentuCmdItem& item, char c);

// Whether the item refers to a command of the given kind.
ZENTU_CMD_ENGINE_API bool has_item_reference_of_type(const ZentuCmdItem& item,
                                                     ZentuCmdDefs::Cmd kind);

}  // namespace ZentuCmdItem_Util
