#pragma once

#include <stdexcept>
#include <string>

namespace zentu_cmd {

// A failure of the program itself (bad schema file, unwritable output, ...) whose message is
// ready to be shown to the user as it stands.
class ToolError : public std::runtime_error {
  public:
    explicit ToolError(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace zentu_cmd
