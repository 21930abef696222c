#pragma once

#include <ostream>
#include <string>

#include "ZentuCmdItemDefs.h"
#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"
#include "ZentuJobSchema.h"

class ZentuCmd;
class ZentuCmdItem;
class ZentuTypedJob;

// A completed job as JSON for scripts, one shape for every front end (`zentu-cmd dump`, Python's
// to_dict): its name, then the commands in container order with kind, name, identifier and line,
// and their items with name, kind, line, text, every typed reading they have, and the identifier
// of the command they refer to. A line is where the command or item is written, or for one that
// a rule or default added, the line of what added it; a default command has none.
namespace ZentuJobJson {

// The whole job under the name that scripts know it by.
ZENTU_JOB_DOCUMENT_API ZentuJson job(const std::string& name, const ZentuTypedJob& job);

// Writes job(name, job) as dump(2) gives it, indented by two blanks, with invalid UTF-8 replaced,
// one command at a time: the JSON of a big job is many times its size and never stands whole
// in memory.
ZENTU_JOB_DOCUMENT_API void write_job(const std::string& name, const ZentuTypedJob& job,
                                      std::ostream& out);

// One command with its items, as job() writes it.
ZENTU_JOB_DOCUMENT_API ZentuJson command(const ZentuTypedJob& job, const ZentuCmd& command);

// One item of the command, as job() writes it.
ZENTU_JOB_DOCUMENT_API ZentuJson item(const ZentuTypedJob& job, const ZentuCmd& command,
                                      ZentuCmdItemDefs::CmdItem kind, const ZentuCmdItem& item);

// The line of the command as job() gives it; null for a default command.
ZENTU_JOB_DOCUMENT_API ZentuJson line(const ZentuTypedJob& job, const ZentuCmd& command);

// The command's identifier, or null when it has no ID_NAME item.
ZENTU_JOB_DOCUMENT_API ZentuJson identifier(const ZentuCmd& command);

// A finding as `check --format json` reports it: every key present, null where the finding has
// no place or no suggestion.
ZENTU_JOB_DOCUMENT_API ZentuJson finding(const ZentuFinding& finding);

}  // namespace ZentuJobJson
