#include "ZentuCmdItem_Util.h"

#include "ZentuCmd.h"

namespace ZentuCmdItem_Util {

bool has_item_list_with_char(const ZentuCmdItem& item, char c) {
    return item.HasList() && item.GetString().find(c) != std::string::npos;
}

bool has_item_reference_of_type(const ZentuCmdItem& item, ZentuCmdDefs::Cmd kind) {
    const ZentuCmd* target = item.HasReference() ? item.GetReference() : nullptr;
    return target != nullptr && target->GetType() == kind;
}

}  // namespace ZentuCmdItem_Util
