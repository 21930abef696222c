#include "ZentuParFileAdapter.h"

#include <string>
#include <string_view>
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
                       std::string_view idName) {
    const std::string withId =
        idName.empty() ? std::string() : std::string(" with ID_NAME ").append(idName);
    KPL_LogMacros::log_msg(KPL_LogMacros::LOG_WARNING, ZentuCmdMessages::PAR_FILE_ADAPTER_SOURCE,
                           __LINE__, ZentuCmdMessages::PAR_FILE_ADAPTER_TAG,
                           ZentuCmdMessages::UNKNOWN_ITEM, itemName.c_str(),
                           command.GetName().c_str(), withId.c_str());
}

// The item that the factory makes of a value; a refusal becomes a failure that names the command
// and the item. The identifier is only turned into a string for that message.
std::unique_ptr<ZentuCmdItem> create_item(const ZentuCmdItemMetaData& metadata,
                                          const std::string& itemName, const std::string& value,
                                          const ZentuCmdItemDefs::KeywordMap& keywords,
                                          const std::string& commandKeyword,
                                          std::string_view idName) {
    try {
        return ZentuCmdItemFactory::create(itemName, value, metadata, keywords);
    } catch (const KPL_Exception& refusal) {
        const std::string withId =
            idName.empty() ? std::string() : std::string("with ID_NAME ").append(idName);
        throw KPL_Failure(
            refusal,
            KPL_Failure::Format(ZentuCmdMessages::ITEM_CREATION_FAILED, commandKeyword.c_str(),
                                withId.c_str(), itemName.c_str()),
            ZentuCmdMessages::PAR_FILE_ADAPTER_TAG);
    }
}

// Reads the commands of a split file into a container. The schema's maps and the item factory
// take strings, so the texts they are given are copied into buffers that every command reuses
// rather than into new strings.
class CommandReader {
  public:
    CommandReader(const ZentuParFileText& file, const ZentuCmdIoConfig& config,
                  ZentuCmdContainer& container)
        : file_(file), config_(config), container_(container) {}

    // Reads one command with its items and their defaults.
    void Read(const ZentuParFileText::Command& parsed) {
        keyword_.assign(parsed.keyword);
        const auto found = config_.cmd_metadata.find(Upper(parsed.keyword));
        const ZentuCmdMetaData& description =
            found == config_.cmd_metadata.end() ? unknownCommand_ : found->second;
        ZentuCmd& command = container_.CreateCommand(description.GetKey(), keyword_);
        const std::string_view idName = file_.IdNameOf(parsed);
        for (std::size_t index = parsed.firstItem; index < parsed.itemEnd; ++index) {
            ReadItem(file_.ItemAt(index), description, idName, command);
        }
        ZentuCmdContainerRules::add_default_valued_items(command, description, config_.enum_map);
    }

  private:
    // Adds the item if the command's description knows its name, and warns otherwise.
    void ReadItem(const ZentuParFileText::Item& item, const ZentuCmdMetaData& description,
                  std::string_view idName, ZentuCmd& command) {
        const std::string& itemName = Upper(item.name);
        const auto found = description.GetMetaData().find(itemName);
        if (found == description.GetMetaData().end()) {
            if (!itemName.empty()) {
                warn_unknown_item(itemName, command, idName);
            }
            return;
        }
        value_.assign(item.value);
        command.AddItem(found->second.key, create_item(found->second, itemName, value_,
                                                       config_.enum_map, keyword_, idName));
    }

    // The text upper-cased as ZentuStringUtil::to_upper does it, in the reused buffer.
    const std::string& Upper(std::string_view text) {
        ZentuStringUtil::to_upper_into(text, upper_);
        return upper_;
    }

    const ZentuParFileText& file_;
    const ZentuCmdIoConfig& config_;
    ZentuCmdContainer& container_;
    const ZentuCmdMetaData unknownCommand_;
    std::string keyword_;
    std::string upper_;
    std::string value_;
};

// Reads the commands of the file into the container, each with its items and their defaults. The
// split file is released on return, before the container is completed, so that the two are never
// held whole at once.
void read_commands(const std::wstring& path, const ZentuCmdIoConfig& config,
                   ZentuCmdContainer& container) {
    const ZentuParFileText file(path);
    CommandReader reader(file, config, container);
    for (std::size_t index = 0; index < file.CommandCount(); ++index) {
        reader.Read(file.CommandAt(index));
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
    return create_item(metadata, itemName, value, keywords, commandKeyword, idName);
}

}  // namespace ZentuParFileAdapter_Util
