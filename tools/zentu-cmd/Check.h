#pragma once

#include <string>
#include <vector>

#include "FindingsOutput.h"
#include "Subcommand.h"

namespace zentu_cmd {

// Exit statuses of check.
enum CheckStatus : int { CHECK_CLEAN = 0, CHECK_WARNINGS = 1, CHECK_ERRORS = 2 };

// `check`: reads each file with the schema and its rules and reports every finding in the chosen
// format, in text followed by a summary per file.
class CheckCommand : public Subcommand {
  public:
    explicit CheckCommand(CLI::App& app);
    int Run(const RunContext& context) override;

  private:
    // The severity overrides that the options ask for.
    std::vector<ZentuJobChecks::SeverityOverride> Overrides() const;
    // The exit status that the findings of one file call for.
    int StatusOf(const ZentuTypedJob& job) const;

    std::vector<std::string> files_;
    // Warnings make the exit status 1.
    bool strict_ = false;
    FindingsFormat format_ = FindingsFormat::TEXT;
    // Codes made errors, warnings, or dropped, for this run.
    std::vector<std::string> errors_;
    std::vector<std::string> warnings_;
    std::vector<std::string> ignored_;
};

}  // namespace zentu_cmd
