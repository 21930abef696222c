#include "ZentuJobChecks.h"

#include <algorithm>
#include <utility>

#include "ZentuJobSchema.h"
#include "ZentuTypedJob.h"

void ZentuJobChecks::run_all(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                             std::vector<ZentuFinding>& findings) {
    check_expressions(job, findings);
    check_structure(job, schema, findings);
    check_graph(job, schema, findings);
}

void ZentuJobChecks::apply_overrides(const std::vector<SeverityOverride>& overrides,
                                     std::vector<ZentuFinding>& findings) {
    std::vector<ZentuFinding> kept;
    for (ZentuFinding& finding : findings) {
        const auto last =
            std::find_if(overrides.rbegin(), overrides.rend(),
                         [&](const SeverityOverride& o) { return o.code == finding.code; });
        if (last == overrides.rend()) {
            kept.push_back(std::move(finding));
        } else if (last->severity) {
            finding.severity = *last->severity;
            kept.push_back(std::move(finding));
        }
    }
    findings = std::move(kept);
}
