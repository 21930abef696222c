#pragma once

#include "Subcommand.h"

namespace zentu_cmd {

// `lsp`: serves job files to an editor through the Language Server Protocol on standard input
// and output.
class LspCommand : public Subcommand {
  public:
    explicit LspCommand(CLI::App& app);
    int Run(const RunContext& context) override;
};

}  // namespace zentu_cmd
