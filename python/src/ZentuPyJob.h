#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>

#include "ZentuPyCommand.h"
#include "ZentuPyJobState.h"

// A job file read with a schema, as scripts query and edit it; edits go through its document.
class ZentuPyJob {
  public:
    explicit ZentuPyJob(std::shared_ptr<ZentuJobState> state) : state_(std::move(state)) {}

    // Its commands in container order, of one kind (a name of ZentuCmdDefs::CMD_NAMES) or all.
    std::vector<ZentuPyCommand> Commands(const std::optional<std::string>& kind) const;
    // The command of that identifier, in any case, or none.
    std::optional<ZentuPyCommand> Find(const std::string& identifier) const;
    // Appends a command to the file and gives it.
    ZentuPyCommand AddCommand(const std::string& keyword,
                              const std::optional<std::string>& identifier);
    // Removes a command of this job from the file.
    void Remove(ZentuPyCommand& command);
    // The file as written with the edits made, or the library writer's text of the job.
    std::string Text(bool canonical) const;

    ZentuJobState& State() const { return *state_; }

  private:
    std::shared_ptr<ZentuJobState> state_;
};

// Declares zentu.Job.
void bind_job(pybind11::module_& module);
