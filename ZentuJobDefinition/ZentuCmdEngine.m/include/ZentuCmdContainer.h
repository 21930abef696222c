#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainerIterator.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuIteratorRange.h"

// All commands of one job definition, owned and grouped by command kind; within a kind they keep
// the order in which they were created or moved in.
class ZENTU_CMD_ENGINE_API ZentuCmdContainer {
  public:
    // The commands of one kind.
    using CmdSequence = std::vector<std::unique_ptr<ZentuCmd>>;
    // The commands of one kind, seen as read-only commands.
    using ConstCmdSequence = std::vector<std::unique_ptr<const ZentuCmd>>;
    using const_iterator = CmdSequence::const_iterator;

    // The shared placeholder command (kind CMD_PLACEHOLDER, name "PLACEHOLDER", no items) that
    // GetCommand hands out for a kind without commands; callers treat it as read-only.
    static ZentuCmd s_DefaultCmd;

    // An empty container.
    ZentuCmdContainer();
    // Takes over every command; other is left empty.
    ZentuCmdContainer(ZentuCmdContainer&& other) noexcept;
    // Replaces this container's commands with other's.
    ZentuCmdContainer& operator=(ZentuCmdContainer&& other) noexcept;
    ZentuCmdContainer(const ZentuCmdContainer&) = delete;
    ZentuCmdContainer& operator=(const ZentuCmdContainer&) = delete;
    ~ZentuCmdContainer();

    // Appends a command of the kind bearing name, without items.
    ZentuCmd& CreateCommand(ZentuCmdDefs::Cmd kind, const std::string& name);
    // Appends a command of the kind named after it, without items.
    ZentuCmd& CreateCommand(ZentuCmdDefs::Cmd kind);
    // Appends a command of the kind bearing name, with an ID_NAME string item holding idName.
    ZentuCmd& CreateCommand(ZentuCmdDefs::Cmd kind, const std::string& name,
                            const std::string& idName);

    // The command at index of the kind; past the last one, the kind's first command, and for a
    // kind without commands the placeholder s_DefaultCmd.
    ZentuCmd& GetCommand(ZentuCmdDefs::Cmd kind, std::size_t index);
    // The command at index of the kind, with the same fallbacks as the non-const form.
    const ZentuCmd& GetCommand(ZentuCmdDefs::Cmd kind, std::size_t index) const;

    // The first command of the kind.
    const_iterator GetCommandBegin(ZentuCmdDefs::Cmd kind) const;
    // The position past the last command of the kind.
    const_iterator GetCommandEnd(ZentuCmdDefs::Cmd kind) const;
    // The commands of the kind as a range for a range-based for loop.
    ZentuIteratorRange<const_iterator> GetCommandRange(ZentuCmdDefs::Cmd kind) const;
    // The commands of the kind themselves (not a copy), seen as read-only commands.
    const ConstCmdSequence& GetCommands(ZentuCmdDefs::Cmd kind) const;
    // The number of commands of the kind.
    std::size_t GetNumberOfCommands(ZentuCmdDefs::Cmd kind) const;
    // Whether the kind has at least one command.
    bool HasCommand(ZentuCmdDefs::Cmd kind) const;
    // Whether the first command of the kind has an item of the item kind and its first such
    // item refers to a command.
    bool HasCommandWithReference(ZentuCmdDefs::Cmd kind, ZentuCmdItemDefs::CmdItem item) const;
    // Whether the first command of the kind has an item of the item kind and its first such
    // item has the reading of the data type.
    bool HasCommandWithType(ZentuCmdDefs::Cmd kind, ZentuCmdItemDefs::CmdItem item,
                            ZentuCmdItemDefs::DataType type) const;

    // The commands of the kind, in order, whose first item of the item kind has exactly the
    // text value (case counts).
    std::vector<std::reference_wrapper<ZentuCmd>> Filter(ZentuCmdDefs::Cmd kind,
                                                         ZentuCmdItemDefs::CmdItem item,
                                                         const std::string& value);
    // The same as the non-const form, as read-only commands.
    std::vector<std::reference_wrapper<const ZentuCmd>> Filter(ZentuCmdDefs::Cmd kind,
                                                               ZentuCmdItemDefs::CmdItem item,
                                                               const std::string& value) const;

    // Deletes the command at position of the kind and returns the position of the one after it.
    const_iterator Erase(ZentuCmdDefs::Cmd kind, const_iterator position);
    // Moves the command at index of from to the end of to, giving it kind to and to's name;
    // an index past the last command of from does nothing.
    void MoveCmd(ZentuCmdDefs::Cmd from, std::size_t index, ZentuCmdDefs::Cmd to);

    // Binds every item (of every kind but ID_NAME) whose text names the identifier of a command
    // to the first such command in container order; items of classes that take no reference
    // ignore the offer, and texts that name no command leave their items as they are.
    void CreateReferences();

    // An iterator at the first command in container order.
    ZentuCmdContainerIterator begin() const;
    // The end iterator.
    ZentuCmdContainerIterator end() const;

  private:
    friend class ZentuCmdContainerIterator;

    CmdSequence& Sequence(ZentuCmdDefs::Cmd kind);
    const CmdSequence& Sequence(ZentuCmdDefs::Cmd kind) const;
    ZentuCmd& GetCommandOrFallback(ZentuCmdDefs::Cmd kind, std::size_t index) const;

    std::array<CmdSequence, ZentuCmdDefs::CMD_KIND_COUNT> commands_;
};
