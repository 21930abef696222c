#include "ZentuCmdContainerRules.h"

#include <string>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdMessages.h"
#include "ZentuCmdMetaData.h"

namespace ZentuCmdContainerRules {

namespace {

// The prefix of the identifiers that default commands receive.
constexpr const char* DEFAULT_ID_PREFIX = "__DEFAULT_";

// The description stored under the command's name for the command's kind; throws when there is
// none, since a rule cannot be applied without it.
const ZentuCmdMetaData& metadata_of(const ZentuCmd& command, const ZentuCmdIoConfig& config) {
    const auto found = config.cmd_metadata.find(command.GetName());
    if (found == config.cmd_metadata.end() || found->second.GetKey() != command.GetType()) {
        throw KPL_Failure(
            ZentuCmdMessages::CONFIGURATION_MISSING_ID,
            KPL_Failure::Format(ZentuCmdMessages::CONFIGURATION_MISSING, command.GetName().c_str(),
                                static_cast<int>(command.GetType())),
            ZentuCmdMessages::CONTAINER_RULES_TAG);
    }
    return found->second;
}

void apply_default_value_rule(const DefaultValueRule& rule, ZentuCmdContainer& container,
                              const ZentuCmdIoConfig& config,
                              const ZentuCmdItemDefs::KeywordMap& keywords) {
    if (rule.create_if_missing && !container.HasCommand(rule.cmd)) {
        const std::string& name = ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(rule.cmd)];
        container.CreateCommand(rule.cmd, name, DEFAULT_ID_PREFIX + name);
    }
    // The rule may change the commands, but not the sequence of the kind: index, don't iterate.
    const ZentuCmdContainer::ConstCmdSequence& commands = container.GetCommands(rule.cmd);
    for (std::size_t i = 0; i < commands.size(); ++i) {
        ZentuCmd& command = container.GetCommand(rule.cmd, i);
        const ZentuCmdMetaData& metadata = metadata_of(command, config);
        if (rule.func) {
            rule.func(command, container, metadata, keywords);
        }
    }
}

}  // namespace

void apply_rules(ZentuCmdContainer& container, const ZentuCmdIoConfig& config) {
    const ZentuCmdItemDefs::KeywordMap& keywords = config.enum_map;
    for (const auto& [type, index] : config.GetRuleSequence()) {
        if (type == ZentuCmdIoConfig::DEFAULT_VALUE_RULE &&
            index < config.GetDefaultValueRules().size()) {
            apply_default_value_rule(config.GetDefaultValueRules()[index], container, config,
                                     keywords);
        } else if (type == ZentuCmdIoConfig::CONTAINER_MANIPULATOR_RULE &&
                   index < config.GetContainerManipulatorRules().size()) {
            const ContainerManipulatorRule& rule = config.GetContainerManipulatorRules()[index];
            if (rule) {
                rule(container, keywords);
            }
        }
    }
}

void create_default_commands(
    ZentuCmdContainer& container,
    const std::unordered_map<std::string, ZentuCmdMetaData>& commandMetadata,
    const ZentuCmdItemDefs::KeywordMap& keywords) {
    for (const auto& [keyword, metadata] : commandMetadata) {
        if (metadata.GetCreateDefault() && !container.HasCommand(metadata.GetKey())) {
            ZentuCmd& command = container.CreateCommand(metadata.GetKey(), keyword,
                                                        DEFAULT_ID_PREFIX + keyword + "_");
            add_default_valued_items(command, metadata, keywords);
        }
    }
}

void add_default_valued_items(ZentuCmd& command, const ZentuCmdMetaData& metadata,
                              const ZentuCmdItemDefs::KeywordMap& keywords) {
    for (const auto& [name, description] : metadata.GetMetaData()) {
        if (description.has_default && !command.HasItem(description.key, 0)) {
            command.AddItem(description.key, ZentuCmdItemFactory::create_default_value_item(
                                                 name, description, keywords));
        }
    }
}

}  // namespace ZentuCmdContainerRules
