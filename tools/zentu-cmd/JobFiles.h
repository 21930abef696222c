#pragma once

#include <string>

#include "ZentuCmdContainer.h"

namespace zentu_cmd {

// The text that the library's writer writes for the container. Throws ToolError when that text
// does not read back with every command, since the writer itself reports nothing.
std::string canonical_text(const ZentuCmdContainer& container);

// Writes text to target without ever leaving a half-written file: the text goes to a temporary
// file beside the target, which replaces the target only once it is complete. A symbolic link is
// written through: the file it leads to gets the text and the link stays. A target whose mode
// grants nobody write permission is refused, also when the superuser could write it. Throws
// ToolError when the target cannot be written; it is then untouched.
void write_text_file(const std::string& text, const std::string& target);

}  // namespace zentu_cmd
