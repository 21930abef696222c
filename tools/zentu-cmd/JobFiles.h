#pragma once

#include <iosfwd>
#include <string>

#include "ZentuCmdContainer.h"
#include "ZentuJobSchema.h"

namespace zentu_cmd {

// Reads the job file at path (UTF-8) into a new container with the schema, completed as asked;
// throws KPL_Failure when the library refuses the file.
ZentuCmdContainer read_job(const std::string& path, const ZentuJobSchema& schema,
                           ZentuCompletion completion);

// Writes the container as a parameter file to target without ever leaving a half-written file:
// the text goes to a temporary file beside the target, which replaces the target only once it
// is complete. Throws ToolError when that fails; the target is then untouched.
void write_job_file(const ZentuCmdContainer& container, const std::string& target);

// Writes the container as a parameter file to out.
void write_job(const ZentuCmdContainer& container, std::ostream& out);

}  // namespace zentu_cmd
