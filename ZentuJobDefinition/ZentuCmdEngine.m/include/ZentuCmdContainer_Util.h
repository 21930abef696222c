#pragma once

#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"

namespace ZentuCmdContainer_Util {

// Whether some command of the kind has a first item of the item kind holding a keyword of the
// given value.
ZENTU_CMD_ENGINE_API bool has_container_enum_with_value(const ZentuCmdContainer& container,
                                                        ZentuCmdDefs::Cmd kind,
                                                        ZentuCmdItemDefs::CmdItem item,
                                                        ZentuCmdItemDefs::EnumValue value);

}  // namespace ZentuCmdContainer_Util
