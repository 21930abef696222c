#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>

#include "ZentuPyItem.h"
#include "ZentuPyJobState.h"

// A command of a job as a script holds it. A command written in the file follows the job's
// edits: it is looked up again by its place in the file when the job has changed. A default
// command, or one that a rule generated, stays as it was read.
class ZentuPyCommand {
  public:
    ZentuPyCommand(std::shared_ptr<ZentuJobState> state, const ZentuCmd& command);

    // The command in the job's latest reading, where it can be followed there.
    const ZentuCmd& Command();
    // The reading that Command() belongs to.
    const ZentuReading& Reading();
    // Its items in the order of their kinds, as to_dict() lists them.
    std::vector<ZentuPyItem> Items();
    // Gives the first item of that name the text, or adds the item.
    void Set(const std::string& name, const std::string& text);
    // Removes the first item of that name; raises zentu.Error when there is none.
    void Remove(const std::string& name);
    // Its command in the job's document; raises zentu.Error when the file does not write it.
    std::size_t WrittenIndex();
    // Whether it is a command of the job that state belongs to.
    bool BelongsTo(const ZentuJobState& state) const { return state_.get() == &state; }

  private:
    // Looks the command up again in the latest reading when the job changed.
    void Follow();

    std::shared_ptr<ZentuJobState> state_;
    ZentuReading reading_;
    const ZentuCmd* command_;
    // Its document command in reading_, and how many commands were removed before that reading.
    std::optional<std::size_t> written_;
    std::size_t removals_;
};

// Declares zentu.Command.
void bind_command(pybind11::module_& module);
