#pragma once

#include <vector>

#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"

class ZentuTypedJob;
class ZentuJobSchema;

// The checks of what reads fine but will not do what the engineer meant; each looks at the
// document, the typed and completed job and the schema, and adds located findings.
namespace ZentuJobChecks {

// Expressions whose expansion gives other weights than their arithmetic, and the parts of
// expressions that the expansion drops or cannot express.
ZENTU_JOB_DOCUMENT_API void check_expressions(const ZentuTypedJob& job,
                                              std::vector<ZentuFinding>& findings);

// Every check above on a completed job.
ZENTU_JOB_DOCUMENT_API void run_all(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                                    std::vector<ZentuFinding>& findings);

}  // namespace ZentuJobChecks
