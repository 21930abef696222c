#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"

class ZentuCmd;
class ZentuCmdContainer;

// Walks every command of a container in container order: kinds in ascending value, and within a
// kind the order of its sequence; empty kinds are passed over.
class ZENTU_CMD_ENGINE_API ZentuCmdContainerIterator {
  public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = ZentuCmd;
    using difference_type = std::ptrdiff_t;
    using pointer = ZentuCmd*;
    using reference = ZentuCmd&;

    // An iterator at the first command of container, or at its end when it is empty.
    explicit ZentuCmdContainerIterator(const ZentuCmdContainer& container);

    // Advances to the next command in container order; does nothing at the end.
    ZentuCmdContainerIterator& operator++();
    // Advances and returns the position before.
    ZentuCmdContainerIterator operator++(int);

    // The current command; the iterator must not be at the end.
    ZentuCmd& operator*();
    // The current command; the iterator must not be at the end.
    const ZentuCmd& operator*() const;
    // The current command; the iterator must not be at the end.
    ZentuCmd* operator->();
    // The current command; the iterator must not be at the end.
    const ZentuCmd* operator->() const;

    // Whether both walk the same container and stand at the same command, or both at the end.
    bool operator==(const ZentuCmdContainerIterator& other) const;
    // The negation of operator==.
    bool operator!=(const ZentuCmdContainerIterator& other) const { return !(*this == other); }

    // Puts the iterator at the end of its container.
    void end();

  private:
    using CmdSequence = std::vector<std::unique_ptr<ZentuCmd>>;
    using Sequences = std::array<CmdSequence, ZentuCmdDefs::CMD_KIND_COUNT>;

    bool AtEnd() const { return kind_ >= ZentuCmdDefs::CMD_KIND_COUNT; }
    void IterateToNextItem();

    const Sequences* sequences_;
    std::size_t kind_;
    CmdSequence::const_iterator entry_;
};
