#include "ZentuCmdNameLookup.h"

#include <utility>

#include "ZentuStringUtil.h"

namespace {

// The entry kept among the others while there is room, else in the one place for the rest.
template <typename Known>
Known& keep(std::vector<Known>& kept, Known made, Known& rest) {
    if (kept.size() < ZentuCmdNameLookup::MAX_KNOWN) {
        kept.push_back(std::move(made));
        return kept.back();
    }
    rest = std::move(made);
    return rest;
}

}  // namespace

ZentuCmdNameLookup::ZentuCmdNameLookup(const ZentuCmdIoConfig& config) : config_(config) {}

ZentuCmdNameLookup::KnownCommand& ZentuCmdNameLookup::CommandOf(std::string_view keyword) {
    for (KnownCommand& known : commands_) {
        if (known.written == keyword) {
            return known;
        }
    }
    const auto found = config_.cmd_metadata.find(Upper(keyword));
    KnownCommand made{
        std::string(keyword), found == config_.cmd_metadata.end() ? nullptr : &found->second, {}};
    return keep(commands_, std::move(made), overflowCommand_);
}

const ZentuCmdNameLookup::KnownItem& ZentuCmdNameLookup::ItemOf(std::string_view name,
                                                                KnownCommand& command) {
    for (const KnownItem& known : command.items) {
        if (known.written == name) {
            return known;
        }
    }
    const ZentuCmdItemMetaData* metadata = nullptr;
    if (command.description != nullptr) {
        const ZentuCmdMetaData::ItemMap& items = command.description->GetMetaData();
        const auto found = items.find(Upper(name));
        metadata = found == items.end() ? nullptr : &found->second;
    } else {
        Upper(name);
    }
    KnownItem made{std::string(name), upper_, metadata};
    return keep(command.items, std::move(made), overflowItem_);
}

const std::string& ZentuCmdNameLookup::Upper(std::string_view text) {
    ZentuStringUtil::to_upper_into(text, upper_);
    return upper_;
}
