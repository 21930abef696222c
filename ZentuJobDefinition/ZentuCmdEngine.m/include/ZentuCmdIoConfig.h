#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ZentuCmdContainerRules.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdMetaData.h"

// Everything a file adapter needs besides the file: the schema (one description per command
// keyword, in upper case to be found), the keyword map, and the rules in the order they run.
class ZENTU_CMD_ENGINE_API ZentuCmdIoConfig {
  public:
    // Whether the constructor fills the keyword map; any value but 0 leaves it empty.
    enum AddValues : std::int32_t { ADD_DEFAULT_VALUES = 0, NO_DEFAULT_VALUES = 1 };
    // Which rule vector an entry of the rule sequence points into.
    enum RuleType : std::int32_t { DEFAULT_VALUE_RULE = 0, CONTAINER_MANIPULATOR_RULE = 1 };

    // An empty configuration that, by default, holds the library's keyword map.
    explicit ZentuCmdIoConfig(AddValues addValues = ADD_DEFAULT_VALUES);
    ZentuCmdIoConfig(const ZentuCmdIoConfig& other);
    ZentuCmdIoConfig(ZentuCmdIoConfig&& other) noexcept;
    ZentuCmdIoConfig& operator=(const ZentuCmdIoConfig& other);
    ZentuCmdIoConfig& operator=(ZentuCmdIoConfig&& other) noexcept;
    ~ZentuCmdIoConfig();

    // Stores the description under the keyword unless one is there already; returns the one
    // stored, through which the host adds items.
    ZentuCmdMetaData& AddCmdMetadata(std::string keyword, ZentuCmdMetaData&& metadata);
    // Appends a per-command rule to run after the rules added before it.
    void AddRule(const ZentuCmdContainerRules::DefaultValueRule& rule);
    // Appends a container rule to run after the rules added before it.
    void AddRule(ZentuCmdContainerRules::ContainerManipulatorRule rule);

    // The rules in the order in which they run: a rule type and an index into its vector.
    const std::vector<std::pair<RuleType, std::size_t>>& GetRuleSequence() const {
        return rule_sequence;
    }
    // The per-command rules.
    const std::vector<ZentuCmdContainerRules::DefaultValueRule>& GetDefaultValueRules() const {
        return default_value_rules;
    }
    // The container rules.
    const std::vector<ZentuCmdContainerRules::ContainerManipulatorRule>&
    GetContainerManipulatorRules() const {
        return container_manipulator_rules;
    }

    // Command keyword to command description; several keywords may describe one kind.
    std::unordered_map<std::string, ZentuCmdMetaData> cmd_metadata;
    // The keyword map handed to item creation and to every rule.
    ZentuCmdItemDefs::KeywordMap enum_map;
    // Rules applied command by command.
    std::vector<ZentuCmdContainerRules::DefaultValueRule> default_value_rules;
    // Rules applied to the whole container.
    std::vector<ZentuCmdContainerRules::ContainerManipulatorRule> container_manipulator_rules;
    // The order in which the rules of both vectors run.
    std::vector<std::pair<RuleType, std::size_t>> rule_sequence;
};
