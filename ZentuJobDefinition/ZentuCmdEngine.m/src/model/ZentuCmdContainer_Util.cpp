#include "ZentuCmdContainer_Util.h"

#include <algorithm>

#include "ZentuCmd_Util.h"

namespace ZentuCmdContainer_Util {

bool has_container_enum_with_value(const ZentuCmdContainer& container, ZentuCmdDefs::Cmd kind,
                                   ZentuCmdItemDefs::CmdItem item,
                                   ZentuCmdItemDefs::EnumValue value) {
    const ZentuCmdContainer::ConstCmdSequence& commands = container.GetCommands(kind);
    return std::any_of(commands.begin(), commands.end(), [&](const auto& cmd) {
        return ZentuCmd_Util::has_command_enum_with_value(*cmd, item, value);
    });
}

}  // namespace ZentuCmdContainer_Util
