#include "ZentuJobSchema.h"

#include <algorithm>

const std::string& zentu_data_type_name(ZentuCmdItemDefs::DataType type) {
    return ZentuCmdItemDefs::DATA_TYPE_NAMES[static_cast<std::size_t>(type)];
}

const ZentuItemSchema* ZentuCommandSchema::FindItem(const std::string& name) const {
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const ZentuItemSchema& item) { return item.name == name; });
    return found == items.end() ? nullptr : &*found;
}

const ZentuBoundRules& ZentuJobSchema::BoundRules() const {
    return *bound_;
}

const ZentuCommandSchema* ZentuJobSchema::FindCommand(const std::string& keyword) const {
    const auto found =
        std::find_if(commands.begin(), commands.end(),
                     [&](const ZentuCommandSchema& command) { return command.keyword == keyword; });
    return found == commands.end() ? nullptr : &*found;
}
