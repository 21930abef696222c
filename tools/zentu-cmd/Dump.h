#pragma once

#include <nlohmann/json.hpp>

#include "Subcommand.h"
#include "ZentuCmdContainer.h"

namespace zentu_cmd {

// The container as JSON for scripts: commands in container order with kind, name and identifier,
// and their items with name, kind, text, every typed reading they have, and the identifier of
// the command they refer to.
nlohmann::ordered_json dump_container(const ZentuCmdContainer& container);

// `dump`: prints the completed job as JSON.
class DumpCommand : public Subcommand {
  public:
    explicit DumpCommand(CLI::App& app);
    int Run(const RunContext& context) override;

  private:
    std::string input_;
};

}  // namespace zentu_cmd
