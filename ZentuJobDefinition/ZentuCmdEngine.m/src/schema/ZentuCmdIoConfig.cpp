#include "ZentuCmdIoConfig.h"

#include "ZentuCmdIo.h"

ZentuCmdIoConfig::ZentuCmdIoConfig(AddValues addValues) {
    if (addValues == ADD_DEFAULT_VALUES) {
        ZentuCmdIo::prepare_cmd_settings_with_defaults(*this);
    }
}

ZentuCmdIoConfig::ZentuCmdIoConfig(const ZentuCmdIoConfig& other) = default;

ZentuCmdIoConfig::ZentuCmdIoConfig(ZentuCmdIoConfig&& other) noexcept = default;

ZentuCmdIoConfig& ZentuCmdIoConfig::operator=(const ZentuCmdIoConfig& other) = default;

ZentuCmdIoConfig& ZentuCmdIoConfig::operator=(ZentuCmdIoConfig&& other) noexcept = default;

ZentuCmdIoConfig::~ZentuCmdIoConfig() = default;

ZentuCmdMetaData& ZentuCmdIoConfig::AddCmdMetadata(std::string keyword,
                                                   ZentuCmdMetaData&& metadata) {
    const auto stored = cmd_metadata.find(keyword);
    if (stored != cmd_metadata.end()) {
        return stored->second;
    }
    return cmd_metadata.emplace(std::move(keyword), std::move(metadata)).first->second;
}

void ZentuCmdIoConfig::AddRule(const ZentuCmdContainerRules::DefaultValueRule& rule) {
    default_value_rules.push_back(rule);
    rule_sequence.emplace_back(DEFAULT_VALUE_RULE, default_value_rules.size() - 1);
}

void ZentuCmdIoConfig::AddRule(ZentuCmdContainerRules::ContainerManipulatorRule rule) {
    container_manipulator_rules.push_back(rule);
    rule_sequence.emplace_back(CONTAINER_MANIPULATOR_RULE, container_manipulator_rules.size() - 1);
}
