#pragma once

#include "Subcommand.h"

namespace zentu_cmd {

// `schema`: prints the schema in use as tables with the rules a schema may name, or as JSON.
class SchemaCommand : public Subcommand {
  public:
    explicit SchemaCommand(CLI::App& app);
    int Run(const RunContext& context) override;

  private:
    bool json_ = false;
};

}  // namespace zentu_cmd
