#pragma once

#include "Rewrite.h"

namespace zentu_cmd {

// `format`: rewrites a job in the canonical layout without completing it.
class FormatCommand : public RewriteCommand {
  public:
    explicit FormatCommand(CLI::App& app);
    int Run(const RunContext& context) override;
};

}  // namespace zentu_cmd
