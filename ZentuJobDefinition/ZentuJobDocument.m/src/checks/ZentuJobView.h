#pragma once

#include <cstddef>
#include <vector>

class ZentuCmd;
class ZentuCmdItem;
class ZentuTypedJob;

// The typed command and items that each command and item of a job's document became: what the
// checks look at side by side with the text.
class ZentuJobView {
  public:
    explicit ZentuJobView(const ZentuTypedJob& job);

    // The command read from document command c, or null.
    const ZentuCmd* Command(std::size_t c) const { return commands_[c]; }
    // The item read from item i of document command c, or null when it was refused or the
    // schema does not describe it.
    const ZentuCmdItem* Item(std::size_t c, std::size_t i) const {
        if (!traced_[c]) {
            TraceItems(c);
        }
        return items_[firstItems_[c] + i];
    }

  private:
    // Finds the items of document command c among those of its command. Done for a command when
    // one of its items is first asked for: the checks ask for few, and tracing an item reads it.
    void TraceItems(std::size_t c) const;

    const ZentuTypedJob& job_;
    std::vector<const ZentuCmd*> commands_;
    // The items of all commands in one sequence, those of document command c from firstItems_[c]:
    // one allocation instead of one per command.
    std::vector<std::size_t> firstItems_;
    mutable std::vector<const ZentuCmdItem*> items_;
    // Whether the items of document command c have been traced.
    mutable std::vector<bool> traced_;
};
