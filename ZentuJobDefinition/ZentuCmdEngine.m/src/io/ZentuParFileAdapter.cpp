#include "ZentuParFileAdapter.h"

#include <utility>

#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdMessages.h"
#include "ZentuCmdMetaData.h"
#include "ZentuParFile.h"
#include "ZentuParFileAdapter_Util.h"
#include "ZentuStringUtil.h"

namespace {

void warn_unknown_item(const std::string& itemName, const ZentuCmd& command,
                       const std::string& idName) {
    const std::string withId = idName.empty() ? std::string() : " with ID_NAME " + idName;
    KPL_LogMacros::log_msg(KPL_LogMacros::LOG_WARNING, ZentuCmdMessages::PAR_FILE_ADAPTER_SOURCE,
                           __LINE__, ZentuCmdMessages::PAR_FILE_ADAPTER_TAG,
                           ZentuCmdMessages::UNKNOWN_ITEM, itemName.c_str(),
                           command.GetName().c_str(), withId.c_str());
}

void read_items(const ZentuParCommand& parsed, const ZentuCmdMetaData& description,
                const ZentuCmdItemDefs::KeywordMap& keywords, ZentuCmd& command) {
    for (const ZentuParSubCommand& sub : parsed) {
        const std::string itemName = ZentuStringUtil::to_upper(sub.GetName());
        const auto found = description.GetMetaData().find(itemName);
        if (found == description.GetMetaData().end()) {
            if (!itemName.empty()) {
                warn_unknown_item(itemName, command, parsed.GetIdName());
            }
            continue;
        }
        command.AddItem(found->second.key, ZentuParFileAdapter_Util::create_cmd_item(
                                               found->second, itemName, sub.retrieveValue(),
                                               keywords, parsed.GetKeyword(), parsed.GetIdName()));
    }
}

// Reads the commands of the file into the container, each with its items and their defaults. The
// split file is released on return, before the container is completed, so that the two are never
// held whole at once.
void read_commands(const std::wstring& path, const ZentuCmdIoConfig& config,
                   ZentuCmdContainer& container) {
    const ZentuCmdMetaData unknownCommand;
    const ZentuParFile file(path);
    for (const ZentuParCommand& parsed : file) {
        const auto found = config.cmd_metadata.find(ZentuStringUtil::to_upper(parsed.GetKeyword()));
        const ZentuCmdMetaData& description =
            found == config.cmd_metadata.end() ? unknownCommand : found->second;
        ZentuCmd& command = container.CreateCommand(description.GetKey(), parsed.GetKeyword());
        read_items(parsed, description, config.enum_map, command);
        ZentuCmdContainerRules::add_default_valued_items(command, description, config.enum_map);
    }
}

}  // namespace

ZentuParFileAdapter::ZentuParFileAdapter(const std::wstring& path, ZentuCmdIoConfig&& config)
    : path_(path), config_(std::move(config)) {}

ZentuParFileAdapter::ZentuParFileAdapter(const ZentuParFileAdapter& other) = default;

// NOLINTBEGIN(performance-noexcept-move-constructor,performance-move-constructor-init): the
// interface declares these moves without noexcept and has them copy what the source keeps.
ZentuParFileAdapter::ZentuParFileAdapter(ZentuParFileAdapter&& other)
    : path_(std::move(other.path_)), config_(other.config_) {}
// NOLINTEND(performance-noexcept-move-constructor,performance-move-constructor-init)

ZentuParFileAdapter::~ZentuParFileAdapter() = default;

void ZentuParFileAdapter::Parse(ZentuCmdContainer& container) const {
    read_commands(path_, config_, container);
    ZentuCmdContainerRules::create_default_commands(container, config_.cmd_metadata,
                                                    config_.enum_map);
    container.CreateReferences();
    ZentuCmdContainerRules::apply_rules(container, config_);
}

namespace ZentuParFileAdapter_Util {

std::unique_ptr<ZentuCmdItem> create_cmd_item(const ZentuCmdItemMetaData& metadata,
                                              const std::string& itemName, const std::string& value,
                                              const ZentuCmdItemDefs::KeywordMap& keywords,
                                              const std::string& commandKeyword,
                                              const std::string& idName) {
    try {
        return ZentuCmdItemFactory::create(itemName, value, metadata, keywords);
    } catch (const KPL_Exception& refusal) {
        const std::string withId = idName.empty() ? std::string() : "with ID_NAME " + idName;
        throw KPL_Failure(
            refusal,
            KPL_Failure::Format(ZentuCmdMessages::ITEM_CREATION_FAILED, commandKeyword.c_str(),
                                withId.c_str(), itemName.c_str()),
            ZentuCmdMessages::PAR_FILE_ADAPTER_TAG);
    }
}

}  // namespace ZentuParFileAdapter_Util
