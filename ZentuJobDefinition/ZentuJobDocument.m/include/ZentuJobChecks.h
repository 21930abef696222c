#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"

class ZentuTypedJob;
class ZentuJobSchema;
class ZentuJobDocument;

// The checks of what reads fine but will not do what the engineer meant; each looks at the
// document, the typed and completed job and the schema, and adds located findings.
namespace ZentuJobChecks {

// Expressions whose expansion gives other weights than their arithmetic, and the parts of
// expressions that the expansion drops or cannot express.
ZENTU_JOB_DOCUMENT_API void check_expressions(const ZentuTypedJob& job,
                                              std::vector<ZentuFinding>& findings);

// Identifiers given twice, items given twice, required items missing, numbers outside their
// bounds, lists of numbers that read otherwise than written, list elements naming no command.
ZENTU_JOB_DOCUMENT_API void check_structure(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                                            std::vector<ZentuFinding>& findings);

// Responses, operators and design variables that nothing refers to, and operators that refer
// to themselves through others: both read off the reference graph.
ZENTU_JOB_DOCUMENT_API void check_graph(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                                        std::vector<ZentuFinding>& findings);

// Drops the findings that a comment "# zentu-cmd: ignore CODE[, CODE...]" on the line before a
// command or item silences for the lines of that command or item.
ZENTU_JOB_DOCUMENT_API void apply_suppressions(const ZentuJobDocument& document,
                                               std::vector<ZentuFinding>& findings);

// A severity that the user gives a code, or its silencing.
struct SeverityOverride {
    std::string code;
    // The new severity; none to drop the code's findings.
    std::optional<ZentuSeverity> severity;
};

// Gives the findings of each overridden code its new severity, or drops them; later overrides
// of one code win.
ZENTU_JOB_DOCUMENT_API void apply_overrides(const std::vector<SeverityOverride>& overrides,
                                            std::vector<ZentuFinding>& findings);

// Every check above on a completed job.
ZENTU_JOB_DOCUMENT_API void run_all(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                                    std::vector<ZentuFinding>& findings);

}  // namespace ZentuJobChecks
