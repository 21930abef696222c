#pragma once

#include <string>
#include <vector>

#include "Subcommand.h"

namespace zentu_cmd {

// `dump`: prints each completed job as JSON, one document after the other.
class DumpCommand : public Subcommand {
  public:
    explicit DumpCommand(CLI::App& app);
    int Run(const RunContext& context) override;

  private:
    std::vector<std::string> inputs_;
};

}  // namespace zentu_cmd
