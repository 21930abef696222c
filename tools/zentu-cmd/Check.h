#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "Subcommand.h"
#include "ZentuFinding.h"

namespace zentu_cmd {

// Exit statuses of check.
enum CheckStatus : int { CHECK_CLEAN = 0, CHECK_WARNINGS = 1, CHECK_ERRORS = 2 };

// Prints a finding as "name:line: severity[code]: message" (an io finding without line).
void print_finding_text(const std::string& name, const ZentuFinding& finding, std::ostream& out);

// `check`: reads each file with the schema and its rules and reports every finding, then a
// summary per file.
class CheckCommand : public Subcommand {
  public:
    explicit CheckCommand(CLI::App& app);
    int Run(const RunContext& context) override;

  private:
    std::vector<std::string> files_;
    // Warnings make the exit status 1.
    bool strict_ = false;
};

}  // namespace zentu_cmd
