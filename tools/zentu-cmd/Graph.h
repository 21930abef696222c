#pragma once

#include <string>

#include "Subcommand.h"

namespace zentu_cmd {

// `graph`: the job's reference graph as Graphviz DOT, or rendered to SVG or PNG by Graphviz.
class GraphCommand : public Subcommand {
  public:
    explicit GraphCommand(CLI::App& app);
    int Run(const RunContext& context) override;

  private:
    std::string input_;
    std::string output_;
};

}  // namespace zentu_cmd
