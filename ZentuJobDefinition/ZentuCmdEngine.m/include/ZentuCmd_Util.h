#pragma once

#include <cstddef>
#include <string>

#include "ZentuCmd.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"

namespace ZentuCmd_Util {

// Whether the command's first item of the kind holds a keyword of the given value (any keyword
// that maps to the value counts).
ZENTU_CMD_ENGINE_API bool has_command_enum_with_value(const ZentuCmd& cmd,
                                                      ZentuCmdItemDefs::CmdItem item,
                                                      ZentuCmdItemDefs::EnumValue value);

// Whether the command's item of the kind at index has exactly the text value (case counts).
ZENTU_CMD_ENGINE_API bool has_command_item_with_value(const ZentuCmd& cmd,
                                                      ZentuCmdItemDefs::CmdItem item,
                                                      const std::string& value, std::size_t index);

// Whether any item of the kind refers to target itself (the same object, compared by address).
ZENTU_CMD_ENGINE_API bool has_command_reference_to_target(const ZentuCmd& cmd,
                                                          ZentuCmdItemDefs::CmdItem item,
                                                          const ZentuCmd* target);

// Replaces every item of the kind with one automatically typed item made from name and value.
ZENTU_CMD_ENGINE_API void replace_items(ZentuCmd& cmd, ZentuCmdItemDefs::CmdItem item,
                                        const std::string& name, const std::string& value,
                                        const ZentuCmdItemDefs::KeywordMap& keywords);

}  // namespace ZentuCmd_Util
