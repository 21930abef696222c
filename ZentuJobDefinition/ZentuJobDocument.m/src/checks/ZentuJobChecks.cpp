#include "ZentuJobChecks.h"

#include "ZentuJobSchema.h"
#include "ZentuTypedJob.h"

void ZentuJobChecks::run_all(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                             std::vector<ZentuFinding>& findings) {
    check_expressions(job, findings);
    check_structure(job, schema, findings);
    check_graph(job, schema, findings);
}
