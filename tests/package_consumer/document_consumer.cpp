// Reads a job text through the installed job-document library with the built-in schema and
// checks that its findings arrive located, the way a front end of its own would use it.
#include <ZentuJobDocument.h>
#include <ZentuTypedJob.h>

#include <algorithm>
#include <cstdio>

int main() {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const ZentuTypedJob job =
        ZentuTypedJob::ReadText("# a job\nDV_TOPO\n  ID_NAME = d\n  GROPU = space\nEND_\n",
                                "job.par", schema, ZentuCompletion::FULL);
    const auto& findings = job.Findings();
    const auto misspelt = std::find_if(findings.begin(), findings.end(), [](const auto& finding) {
        return finding.code == "unknown-item";
    });
    const bool ok = misspelt != findings.end() && misspelt->range.line == 4 &&
                    misspelt->range.column == 3 && misspelt->suggestion == "GROUP" &&
                    job.Document().Text().rfind("# a job", 0) == 0;
    std::printf("document consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
