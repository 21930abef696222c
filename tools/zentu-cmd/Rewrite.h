#pragma once

#include <string>
#include <vector>

#include "Subcommand.h"
#include "ZentuTypedJob.h"

namespace zentu_cmd {

// A subcommand that rewrites jobs: its inputs, and where each result goes (standard output,
// another file with -o, or back into the file with --in-place, which sends standard input's
// result to standard output).
class RewriteCommand : public Subcommand {
  protected:
    RewriteCommand(CLI::App& app, const char* name, const char* description);

    // The job files that the arguments name; throws ToolError when -o is given more than one.
    std::vector<std::string> Inputs() const;
    // Puts the new text of an input where the options say. Returns 0, or FAILED after saying on
    // standard error why it could not.
    int Deliver(const std::string& input, const std::string& text) const;
    // Puts the library writer's text of a job read from input where the options say, but does
    // not replace the input with it when that would lose comments, undescribed content or number
    // texts, unless --force is given. Returns as Deliver does.
    int DeliverCanonical(const std::string& input, const ZentuTypedJob& job,
                         const ZentuJobSchema& schema) const;

    // The options through which the subcommand writes no file.
    void ExcludeWriting(CLI::Option* option) const;

  private:
    std::vector<std::string> files_;
    std::string output_;
    bool inPlace_ = false;
    bool force_ = false;
    CLI::Option* outputOption_ = nullptr;
    CLI::Option* inPlaceOption_ = nullptr;
};

}  // namespace zentu_cmd
