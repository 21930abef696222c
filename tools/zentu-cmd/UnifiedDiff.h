#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace zentu_cmd {

// Prints what turns before into after as a unified diff of the file name ("--- a/name",
// "+++ b/name", then hunks with three lines of context); prints nothing when they are equal.
void print_unified_diff(std::string_view before, std::string_view after, const std::string& name,
                        std::ostream& out);

}  // namespace zentu_cmd
