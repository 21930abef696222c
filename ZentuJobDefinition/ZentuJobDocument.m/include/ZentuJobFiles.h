#pragma once

#include <string>

#include "ZentuCmdContainer.h"
#include "ZentuJobDocumentExport.h"

// Job texts as files: the library writer's text of a container, and writing a text so that a
// failure never leaves a half-written file. Every front end that writes jobs writes them here.
namespace ZentuJobFiles {

// The text that the library's writer writes for the container. Throws KPL_Failure when that text
// does not read back with every command, since the writer itself reports nothing.
ZENTU_JOB_DOCUMENT_API std::string canonical_text(const ZentuCmdContainer& container);

// Writes text to target without ever leaving a half-written file: the text goes to a temporary
// file beside the target, which replaces the target only once it is complete. A symbolic link is
// written through: the file it leads to gets the text and the link stays. A target whose mode
// grants nobody write permission is refused, also when the superuser could write it. Throws
// KPL_Failure, whose message is ready for the user, when the target cannot be written; it is
// then untouched.
ZENTU_JOB_DOCUMENT_API void write_text_file(const std::string& text, const std::string& target);

}  // namespace ZentuJobFiles
