// Reads a job text through the installed job-document library with the built-in schema and
// checks that its findings arrive located, the way a front end of its own would use it.
#include <ZentuJobDocument.h>
#include <ZentuTypedJob.h>

#include <cstdio>

int main() {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const ZentuTypedJob job =
        ZentuTypedJob::ReadText("# a job\nDV_TOPO\n  ID_NAME = d\n  GROPU = space\nEND_\n",
                                "job.par", schema, ZentuCompletion::FULL);
    const bool ok = job.Findings().size() == 1 && job.Findings()[0].code == "unknown-item" &&
                    job.Findings()[0].range.line == 4 && job.Findings()[0].range.column == 3 &&
                    job.Findings()[0].suggestion == "GROUP" &&
                    job.Document().Text().rfind("# a job", 0) == 0;
    std::printf("document consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
