#include "ZentuJobChecks.h"

#include "ZentuJobSchema.h"
#include "ZentuTypedJob.h"

void ZentuJobChecks::run_all(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                             std::vector<ZentuFinding>& findings) {
    static_cast<void>(schema);
    check_expressions(job, findings);
}
