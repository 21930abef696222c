#include "ZentuParFileAdapter.h"

#include <array>
#include <exception>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdMessages.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdNameLookup.h"
#include "ZentuParFile.h"
#include "ZentuParFileAdapter_Util.h"

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

// Reads the commands of a file into a container. The schema's maps and the item factory take
// strings, so the texts they are given are copied into buffers that every command reuses rather
// than into new strings.
class CommandReader {
  public:
    CommandReader(const ZentuCmdIoConfig& config, ZentuCmdContainer& container)
        : config_(config), container_(container), names_(config) {}

    // Reads one command with its items and their defaults.
    void Read(const ZentuParFileCommands::Command& parsed) {
        keyword_.assign(parsed.keyword);
        ZentuCmdNameLookup::KnownCommand& known = names_.CommandOf(parsed.keyword);
        const ZentuCmdMetaData& description =
            known.description != nullptr ? *known.description : unknownCommand_;
        ZentuCmd& command = container_.CreateCommand(description.GetKey(), keyword_);
        for (const ZentuParFileCommands::Item& item : parsed.items) {
            ReadItem(item, known, parsed.idName, command);
        }
        ZentuCmdContainerRules::add_default_valued_items(command, description, config_.enum_map);
    }

  private:
    // Adds the item if the command's description knows its name, and warns otherwise.
    void ReadItem(const ZentuParFileCommands::Item& item, ZentuCmdNameLookup::KnownCommand& command,
                  std::string_view idName, ZentuCmd& cmd) {
        const ZentuCmdNameLookup::KnownItem& known = names_.ItemOf(item.name, command);
        if (known.metadata == nullptr) {
            if (!known.name.empty()) {
                warn_unknown_item(known.name, cmd, idName);
            }
            return;
        }
        value_.assign(item.value);
        cmd.AddItem(known.metadata->key, create_item(*known.metadata, known.name, value_,
                                                     config_.enum_map, keyword_, idName));
    }

    const ZentuCmdIoConfig& config_;
    ZentuCmdContainer& container_;
    const ZentuCmdMetaData unknownCommand_;
    ZentuCmdNameLookup names_;
    std::string keyword_;
    std::string value_;
};

// The commands that a reading adds to a container, taken out again unless the reading keeps them.
class AddedCommands {
  public:
    explicit AddedCommands(ZentuCmdContainer& container) : container_(container) {
        for (std::size_t kind = 0; kind < counts_.size(); ++kind) {
            counts_[kind] = container.GetNumberOfCommands(static_cast<ZentuCmdDefs::Cmd>(kind));
        }
    }

    AddedCommands(const AddedCommands&) = delete;
    AddedCommands& operator=(const AddedCommands&) = delete;

    ~AddedCommands() {
        if (kept_) {
            return;
        }
        for (std::size_t kind = 0; kind < counts_.size(); ++kind) {
            const auto cmd = static_cast<ZentuCmdDefs::Cmd>(kind);
            while (container_.GetNumberOfCommands(cmd) > counts_[kind]) {
                container_.Erase(cmd, std::prev(container_.GetCommandEnd(cmd)));
            }
        }
    }

    // Leaves the added commands in the container.
    void Keep() { kept_ = true; }

  private:
    ZentuCmdContainer& container_;
    std::array<std::size_t, ZentuCmdDefs::CMD_KIND_COUNT> counts_{};
    bool kept_ = false;
};

// Reads the commands of the file into the container, each with its items and their defaults, as
// the file is read, so that the file is never held whole beside the container. The outcome is that
// of reading the whole file first: a file that breaks the structure adds no command and logs
// nothing, and otherwise the reading's messages are logged and the first refused item fails it,
// with the commands up to that item left in the container.
void read_commands(const std::wstring& path, const ZentuCmdIoConfig& config,
                   ZentuCmdContainer& container) {
    AddedCommands added(container);
    KPL_LogMacros::HeldMessages messages;
    CommandReader reader(config, container);
    std::exception_ptr refusal;
    ZentuParFileCommands::read(path, [&](const ZentuParFileCommands::Command& command) {
        if (refusal) {
            return;
        }
        try {
            reader.Read(command);
        } catch (...) {
            refusal = std::current_exception();
        }
    });
    added.Keep();
    messages.Deliver();
    if (refusal) {
        std::rethrow_exception(refusal);
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
