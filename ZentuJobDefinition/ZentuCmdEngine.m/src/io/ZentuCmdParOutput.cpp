#include "ZentuCmdParOutput.h"

#include <utility>

#include "ZentuCmdItem_Util.h"

ZentuCmdParOutput::ZentuCmdParOutput(
    const std::wstring& path, const ZentuCmdContainer& container,
    std::array<std::string, ZentuCmdDefs::CMD_KIND_COUNT> commandNames,
    std::array<std::string, ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT> itemNames)
    : ZentuCmdOutput(path, container),
      command_names_(std::move(commandNames)),
      item_names_(std::move(itemNames)) {}

ZentuCmdParOutput::ZentuCmdParOutput(const ZentuCmdParOutput& other) = default;

ZentuCmdParOutput::ZentuCmdParOutput(ZentuCmdParOutput&& other) = default;

ZentuCmdParOutput::~ZentuCmdParOutput() = default;

std::array<std::string, 2> ZentuCmdParOutput::GetCommand(const ZentuCmd& cmd) const {
    return {cmd.GetName(), "END_"};
}

std::string ZentuCmdParOutput::GetItem(ZentuCmdItemDefs::CmdItem /*kind*/,
                                       const ZentuCmdItem& item) const {
    // Integer lists and list values holding line breaks may span lines, so their value starts
    // on a line of its own below the name.
    const bool spansLines =
        item.HasBreltList() || ZentuCmdItem_Util::has_item_list_with_char(item, '\n');
    return item.GetName() + (spansLines ? "\n  " : " = ") + item.GetString();
}
