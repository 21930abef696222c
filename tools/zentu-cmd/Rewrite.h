#pragma once

#include <string>

#include "Subcommand.h"
#include "ZentuCmdContainer.h"

namespace zentu_cmd {

// A subcommand that rewrites a job: its input, and where the result goes (standard output,
// another file with -o, or back into the file with --in-place).
class RewriteCommand : public Subcommand {
  protected:
    RewriteCommand(CLI::App& app, const char* name, const char* description);

    // Writes the container in the library writer's layout where the options say.
    void WriteContainer(const ZentuCmdContainer& container) const;

    std::string input_;
    std::string output_;
    bool inPlace_ = false;
};

}  // namespace zentu_cmd
