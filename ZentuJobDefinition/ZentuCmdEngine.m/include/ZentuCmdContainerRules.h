#pragma once

#include <string>
#include <unordered_map>

#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"

class ZentuCmd;
class ZentuCmdContainer;
class ZentuCmdIoConfig;
class ZentuCmdMetaData;

namespace ZentuCmdContainerRules {

// A rule applied to each command of one kind: it receives the command (to change), the
// container (to read), the command's description and the keyword map. A plain function pointer,
// so that hosts can compare rules, keep them in tables and hand them on.
using DefaultValueRuleFunction = void (*)(ZentuCmd& command, const ZentuCmdContainer& container,
                                          const ZentuCmdMetaData& metadata,
                                          const ZentuCmdItemDefs::KeywordMap& keywords);

// A rule applied to a whole container, with the keyword map; a plain function pointer.
using ContainerManipulatorRule = void (*)(ZentuCmdContainer& container,
                                          const ZentuCmdItemDefs::KeywordMap& keywords);

// A per-command rule: the kind it applies to, the function called for each command of that kind,
// and whether a command of the kind is created first when the container holds none.
struct DefaultValueRule {
    ZentuCmdDefs::Cmd cmd;
    DefaultValueRuleFunction func;
    bool create_if_missing;
};

// ---- The rule engine, which the parameter-file reader runs after reading ----

// Runs the configuration's rules on the container in the order in which they were added.
ZENTU_CMD_ENGINE_API void apply_rules(ZentuCmdContainer& container, const ZentuCmdIoConfig& config);

// Creates, for every description that asks for one, a default command of its kind when the
// container holds none, named after the description's keyword, with its default-valued items.
ZENTU_CMD_ENGINE_API void create_default_commands(
    ZentuCmdContainer& container,
    const std::unordered_map<std::string, ZentuCmdMetaData>& commandMetadata,
    const ZentuCmdItemDefs::KeywordMap& keywords);

// Adds to the command every item that its description declares with a default value, unless
// the command already holds that item kind.
ZENTU_CMD_ENGINE_API void add_default_valued_items(ZentuCmd& command,
                                                   const ZentuCmdMetaData& metadata,
                                                   const ZentuCmdItemDefs::KeywordMap& keywords);

// ---- Rule functions that hosts bind into their rules; each adds only what is missing ----

// Gives the command a reference of kind item to the first command of targetKind whose identifier
// is targetIdName, unless the command already holds item.
ZENTU_CMD_ENGINE_API void Rule_AddReference(ZentuCmd& command, const ZentuCmdContainer& container,
                                            ZentuCmdItemDefs::CmdItem item,
                                            const std::string& itemName,
                                            ZentuCmdDefs::Cmd targetKind,
                                            const std::string& targetIdName);

// Gives the command a reference of kind item to the first command of targetKind, unless the
// command already holds item.
ZENTU_CMD_ENGINE_API void Rule_AddReferenceToFirstCmd(ZentuCmd& command,
                                                      const ZentuCmdContainer& container,
                                                      ZentuCmdItemDefs::CmdItem item,
                                                      const std::string& itemName,
                                                      ZentuCmdDefs::Cmd targetKind);

// Adds an automatically typed item of kind item holding valueText when the command's first
// enumItem item holds the keyword value and the command does not hold item yet.
ZENTU_CMD_ENGINE_API void Rule_AddValueIfEnumPresent(
    ZentuCmd& command, const ZentuCmdContainer& container, ZentuCmdItemDefs::CmdItem enumItem,
    ZentuCmdItemDefs::EnumValue value, ZentuCmdItemDefs::CmdItem item, const std::string& itemName,
    const std::string& valueText, const ZentuCmdItemDefs::KeywordMap& keywords);

// Adds an automatically typed item of kind item holding valueText unless the command holds item.
ZENTU_CMD_ENGINE_API void Rule_AddValueIfNotPresent(ZentuCmd& command,
                                                    const ZentuCmdContainer& container,
                                                    ZentuCmdItemDefs::CmdItem item,
                                                    const std::string& itemName,
                                                    const std::string& valueText,
                                                    const ZentuCmdItemDefs::KeywordMap& keywords);

// Copies to the command, as item, the first sourceItem value of the data type that a refItem
// reference of the first sourceKind command leads to (an empty itemName keeps the copied name),
// keeping an item already held unless replace is set and its first text differs.
ZENTU_CMD_ENGINE_API void Rule_CopyTypeToCmd(
    ZentuCmd& command, const ZentuCmdContainer& container, ZentuCmdDefs::Cmd sourceKind,
    ZentuCmdItemDefs::CmdItem refItem, ZentuCmdItemDefs::CmdItem sourceItem,
    ZentuCmdItemDefs::CmdItem item, const std::string& itemName, ZentuCmdItemDefs::DataType type,
    const ZentuCmdItemDefs::KeywordMap& keywords, bool replace);

// Copies a value of the same item kind, keeping the copied item's name.
ZENTU_CMD_ENGINE_API void Rule_CopyTypeToCmd(
    ZentuCmd& command, const ZentuCmdContainer& container, ZentuCmdDefs::Cmd sourceKind,
    ZentuCmdItemDefs::CmdItem refItem, ZentuCmdItemDefs::CmdItem item,
    ZentuCmdItemDefs::DataType type, const ZentuCmdItemDefs::KeywordMap& keywords, bool replace);

// Turns each collectionKind command's memberItem reference into a backRefItem reference that its
// targetKind command holds back to it (or, with fallbackToFirst and no usable member, the first
// targetKind command does), removing every member item.
ZENTU_CMD_ENGINE_API void rule_add_reference_to_collection_cmd(
    ZentuCmdContainer& container, ZentuCmdDefs::Cmd collectionKind,
    ZentuCmdItemDefs::CmdItem memberItem, ZentuCmdDefs::Cmd targetKind,
    ZentuCmdItemDefs::CmdItem backRefItem, const std::string& itemName, bool fallbackToFirst);

}  // namespace ZentuCmdContainerRules
