#include "ZentuCmdParOutput.h"

#include <utility>

#include "io/ZentuParItemText.h"

ZentuCmdParOutput::ZentuCmdParOutput(
    const std::wstring& path, const ZentuCmdContainer& container,
    std::array<std::string, ZentuCmdDefs::CMD_KIND_COUNT> commandNames,
    std::array<std::string, ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT> itemNames)
    : ZentuCmdOutput(path, container),
      command_names_(std::move(commandNames)),
      item_names_(std::move(itemNames)) {}

ZentuCmdParOutput::ZentuCmdParOutput(const ZentuCmdParOutput& other) = default;

// NOLINTBEGIN(performance-noexcept-move-constructor,performance-move-constructor-init): the
// interface declares these moves without noexcept and has them copy what the source keeps.
ZentuCmdParOutput::ZentuCmdParOutput(ZentuCmdParOutput&& other) = default;
// NOLINTEND(performance-noexcept-move-constructor,performance-move-constructor-init)

ZentuCmdParOutput::~ZentuCmdParOutput() = default;

std::array<std::string, 2> ZentuCmdParOutput::GetCommand(const ZentuCmd& cmd) const {
    return {cmd.GetName(), "END_"};
}

std::string ZentuCmdParOutput::GetItem(ZentuCmdItemDefs::CmdItem /*kind*/,
                                       const ZentuCmdItem& item) const {
    std::string text;
    ZentuParItemText::append(item, text);
    return text;
}
