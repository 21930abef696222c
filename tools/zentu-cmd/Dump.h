#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Subcommand.h"
#include "ZentuTypedJob.h"

namespace zentu_cmd {

// The completed job as JSON for scripts: its name, then the commands in container order with
// kind, name, identifier and line, and their items with name, kind, line, text, every typed
// reading they have, and the identifier of the command they refer to. A line is where the
// command or item is written, or for one that a rule or default added, the line of what added
// it; a default command has none.
nlohmann::ordered_json dump_job(const std::string& name, const ZentuTypedJob& job);

// `dump`: prints each completed job as JSON, one document after the other.
class DumpCommand : public Subcommand {
  public:
    explicit DumpCommand(CLI::App& app);
    int Run(const RunContext& context) override;

  private:
    std::vector<std::string> inputs_;
};

}  // namespace zentu_cmd
