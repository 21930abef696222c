#pragma once

#include "Rewrite.h"

namespace zentu_cmd {

// `expand`: rewrites a job completed by the schema's defaults, references and rules.
class ExpandCommand : public RewriteCommand {
  public:
    explicit ExpandCommand(CLI::App& app);
    int Run(const RunContext& context) override;
};

}  // namespace zentu_cmd
