#pragma once

#include <array>
#include <string>

#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdOutput.h"

// Writes a container as a parameter file: per command its name, one "  NAME = value" line per
// item (a name line and a value line for integer lists and multi-line lists), then "END_".
class ZENTU_CMD_ENGINE_API ZentuCmdParOutput : public ZentuCmdOutput {
  public:
    // A writer of container to path that keeps the two name tables with it.
    ZentuCmdParOutput(const std::wstring& path, const ZentuCmdContainer& container,
                      std::array<std::string, ZentuCmdDefs::CMD_KIND_COUNT> commandNames,
                      std::array<std::string, ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT> itemNames);
    ZentuCmdParOutput(const ZentuCmdParOutput& other);
    // NOLINTBEGIN(performance-noexcept-move-constructor,performance-move-constructor-init): the
    // interface declares these moves without noexcept and has them copy what the source keeps.
    ZentuCmdParOutput(ZentuCmdParOutput&& other);
    // NOLINTEND(performance-noexcept-move-constructor,performance-move-constructor-init)
    ~ZentuCmdParOutput() override;

  protected:
    // The command's name, and "END_".
    std::array<std::string, 2> GetCommand(const ZentuCmd& cmd) const override;
    // The item's name, then " = " or, for values that span lines, a line break and two blanks,
    // then the item's text.
    std::string GetItem(ZentuCmdItemDefs::CmdItem kind, const ZentuCmdItem& item) const override;

  private:
    std::array<std::string, ZentuCmdDefs::CMD_KIND_COUNT> command_names_;
    std::array<std::string, ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT> item_names_;
};
