#include "ZentuCmd_Util.h"

namespace ZentuCmd_Util {

bool has_command_enum_with_value(const ZentuCmd& cmd, ZentuCmdItemDefs::CmdItem item,
                                 ZentuCmdItemDefs::EnumValue value) {
    if (!cmd.HasItem(item, 0)) {
        return false;
    }
    const ZentuCmdItem& first = cmd.Item(item, 0);
    return first.HasEnum() && first.GetEnum() == value;
}

bool has_command_item_with_value(const ZentuCmd& cmd, ZentuCmdItemDefs::CmdItem item,
                                 const std::string& value, std::size_t index) {
    return cmd.HasItem(item, index) && cmd.Item(item, index).GetString() == value;
}

bool has_command_reference_to_target(const ZentuCmd& cmd, ZentuCmdItemDefs::CmdItem item,
                                     const ZentuCmd* target) {
    for (const std::unique_ptr<ZentuCmdItem>& entry : cmd.GetItemRange(item)) {
        if (entry && entry->GetReference() == target) {
            return true;
        }
    }
    return false;
}

void replace_items(ZentuCmd& cmd, ZentuCmdItemDefs::CmdItem item, const std::string& name,
                   const std::string& value, const ZentuCmdItemDefs::KeywordMap& keywords) {
    cmd.EraseAll(item);
    cmd.AddAutoItem(item, name, value, keywords);
}

}  // namespace ZentuCmd_Util
