#include "ZentuCmdContainerRules.h"

#include <cstddef>
#include <string>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItem_Util.h"
#include "ZentuCmd_Util.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;

namespace {

// A rule adds only to an item kind that is still empty, which is what makes it safe to run twice.
bool holds(const ZentuCmd& command, CmdItem item) {
    return command.HasItem(item, 0);
}

// Host items may claim a reference without naming a command, so such a claim is passed over
// rather than followed.
const ZentuCmd* followed_reference(const ZentuCmdItem& item) {
    return item.HasReference() ? item.GetReference() : nullptr;
}

// Only the first sourceItem item of a target is offered for copying, so a later item of the
// right type does not make that target a source.
const ZentuCmdItem* find_typed_item(const ZentuCmd& source, CmdItem refItem, CmdItem sourceItem,
                                    DataType type) {
    for (const auto& reference : source.GetItemRange(refItem)) {
        const ZentuCmd* target = followed_reference(*reference);
        if (target != nullptr && holds(*target, sourceItem) &&
            target->Item(sourceItem, 0).HasType(type)) {
            return &target->Item(sourceItem, 0);
        }
    }
    return nullptr;
}

// A member names its target by identifier, which only makes sense for a collection that has an
// identifier and whose first member really refers to a command of the target kind.
bool has_usable_member(const ZentuCmd& collection, CmdItem memberItem, Cmd targetKind) {
    return holds(collection, CmdItem::ID_NAME) && holds(collection, memberItem) &&
           ZentuCmdItem_Util::has_item_reference_of_type(collection.Item(memberItem, 0),
                                                         targetKind);
}

// A usable member decides the target by name alone, while the fallback to the first command of
// targetKind (which must exist) skips one already linked back, so a second run adds no duplicate.
ZentuCmd* find_collection_target(ZentuCmdContainer& container, const ZentuCmd& collection,
                                 CmdItem memberItem, Cmd targetKind, CmdItem backRefItem,
                                 bool fallbackToFirst) {
    if (has_usable_member(collection, memberItem, targetKind)) {
        const auto named = container.Filter(targetKind, CmdItem::ID_NAME,
                                            collection.Item(memberItem, 0).GetString());
        return named.empty() ? nullptr : &named.front().get();
    }
    ZentuCmd& first = container.GetCommand(targetKind, 0);
    const bool linked =
        ZentuCmd_Util::has_command_reference_to_target(first, backRefItem, &collection);
    return fallbackToFirst && !linked ? &first : nullptr;
}

}  // namespace

namespace ZentuCmdContainerRules {

void Rule_AddReference(ZentuCmd& command, const ZentuCmdContainer& container, CmdItem item,
                       const std::string& itemName, Cmd targetKind,
                       const std::string& targetIdName) {
    if (holds(command, item)) {
        return;
    }
    const auto matches = container.Filter(targetKind, CmdItem::ID_NAME, targetIdName);
    if (!matches.empty()) {
        command.AddItem(item, itemName, matches.front().get());
    }
}

void Rule_AddReferenceToFirstCmd(ZentuCmd& command, const ZentuCmdContainer& container,
                                 CmdItem item, const std::string& itemName, Cmd targetKind) {
    if (!holds(command, item) && container.HasCommand(targetKind)) {
        command.AddItem(item, itemName, container.GetCommand(targetKind, 0));
    }
}

void Rule_AddValueIfEnumPresent(ZentuCmd& command, const ZentuCmdContainer& container,
                                CmdItem enumItem, EnumValue value, CmdItem item,
                                const std::string& itemName, const std::string& valueText,
                                const KeywordMap& keywords) {
    if (ZentuCmd_Util::has_command_enum_with_value(command, enumItem, value)) {
        Rule_AddValueIfNotPresent(command, container, item, itemName, valueText, keywords);
    }
}

// The container goes unused but stays in the signature, so that every per-command rule is bound
// into a host's rule the same way.
void Rule_AddValueIfNotPresent(ZentuCmd& command, const ZentuCmdContainer& /*container*/,
                               CmdItem item, const std::string& itemName,
                               const std::string& valueText, const KeywordMap& keywords) {
    if (!holds(command, item)) {
        command.AddAutoItem(item, itemName, valueText, keywords);
    }
}

void Rule_CopyTypeToCmd(ZentuCmd& command, const ZentuCmdContainer& container, Cmd sourceKind,
                        CmdItem refItem, CmdItem sourceItem, CmdItem item,
                        const std::string& itemName, DataType type, const KeywordMap& keywords,
                        bool replace) {
    if (!container.HasCommand(sourceKind)) {
        return;
    }
    const ZentuCmdItem* found =
        find_typed_item(container.GetCommand(sourceKind, 0), refItem, sourceItem, type);
    if (found == nullptr) {
        return;
    }
    const std::string name = itemName.empty() ? found->GetName() : itemName;
    const std::string text = found->GetString();
    if (!holds(command, item)) {
        command.AddAutoItem(item, name, text, keywords);
    } else if (replace && command.Item(item, 0).GetString() != text) {
        command.ReplaceItem(item, name, text, keywords, 0, DataType::AUTO);
    }
}

void Rule_CopyTypeToCmd(ZentuCmd& command, const ZentuCmdContainer& container, Cmd sourceKind,
                        CmdItem refItem, CmdItem item, DataType type, const KeywordMap& keywords,
                        bool replace) {
    Rule_CopyTypeToCmd(command, container, sourceKind, refItem, item, item, std::string(), type,
                       keywords, replace);
}

void rule_add_reference_to_collection_cmd(ZentuCmdContainer& container, Cmd collectionKind,
                                          CmdItem memberItem, Cmd targetKind, CmdItem backRefItem,
                                          const std::string& itemName, bool fallbackToFirst) {
    if (!container.HasCommand(targetKind)) {
        return;
    }
    for (std::size_t index = 0; index < container.GetNumberOfCommands(collectionKind); ++index) {
        ZentuCmd& collection = container.GetCommand(collectionKind, index);
        ZentuCmd* target = find_collection_target(container, collection, memberItem, targetKind,
                                                  backRefItem, fallbackToFirst);
        if (target != nullptr) {
            target->AddItem(backRefItem, itemName, collection);
        }
        collection.EraseAll(memberItem);
    }
}

}  // namespace ZentuCmdContainerRules
