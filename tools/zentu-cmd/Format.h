#pragma once

#include <string>

#include "Rewrite.h"

namespace zentu_cmd {

// `format`: lays jobs out anew without changing what they say, or with --canonical writes them
// in the library writer's layout; --check and --diff tell what would change instead.
class FormatCommand : public RewriteCommand {
  public:
    explicit FormatCommand(CLI::App& app);
    int Run(const RunContext& context) override;

  private:
    // Formats one input; returns its exit status.
    int FormatOne(const std::string& input, const RunContext& context) const;
    // Reports what formatting an input would change, as --check and --diff ask.
    int ReportChange(const std::string& name, const std::string& before,
                     const std::string& after) const;

    bool canonical_ = false;
    bool check_ = false;
    bool diff_ = false;
};

}  // namespace zentu_cmd
