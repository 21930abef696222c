#pragma once

#include <cstddef>
#include <cstdint>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"

// Walking the commands and items of a job.

// Calls visit on each item of the command, kind after kind in the order of the kinds, as walking
// every kind would; the kinds that never held an item are passed over through the command's mask,
// since a command uses a few of the 40 kinds.
template <class Visit>
void zentu_for_each_item(const ZentuCmd& command, Visit&& visit) {
    const std::uint64_t kinds = command.KindsWithSequences();
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        if ((kinds >> kind & 1U) == 0) {
            continue;
        }
        for (const auto& item :
             command.GetItemRange(static_cast<ZentuCmdItemDefs::CmdItem>(kind))) {
            visit(*item);
        }
    }
}

// How many commands the container holds, of every kind.
inline std::size_t zentu_command_count(const ZentuCmdContainer& container) {
    std::size_t count = 0;
    for (std::size_t kind = 0; kind < ZentuCmdDefs::CMD_KIND_COUNT; ++kind) {
        count += container.GetNumberOfCommands(static_cast<ZentuCmdDefs::Cmd>(kind));
    }
    return count;
}
