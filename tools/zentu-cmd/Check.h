#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "ZentuFinding.h"
#include "ZentuJobSchema.h"

namespace zentu_cmd {

// How check reports and judges its findings.
struct CheckOptions {
    // Warnings make the exit status 1.
    bool strict = false;
    // Only findings are printed, no summaries.
    bool quiet = false;
};

// Exit statuses of check.
enum CheckStatus : int { CHECK_CLEAN = 0, CHECK_WARNINGS = 1, CHECK_ERRORS = 2 };

// Prints a finding as "name:line: severity[code]: message" (an io finding without line).
void print_finding_text(const std::string& name, const ZentuFinding& finding, std::ostream& out);

// Reads each file with the schema and its rules and prints to out every refused value, every
// undescribed item and every reference that names no command, each as "path:line: ", then a
// summary per file. Returns the exit status.
int run_check(const std::vector<std::string>& files, const ZentuJobSchema& schema,
              const CheckOptions& options, std::ostream& out);

}  // namespace zentu_cmd
