// One change of a big job in the editor: the language server reads the whole text anew and
// publishes its findings, which must reach the client within 200 ms for a job of 1 MB; against
// `check`'s reading of the same file, its floor.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "KPL_LogMacros.h"
#include "ZentuJobSchema.h"
#include "ZentuTypedJob.h"
#include "job_files.h"
#include "lsp/LspWorkspace.h"

namespace {

// The size of the generated job whose text is about 1 MB.
constexpr std::size_t ONE_MEGABYTE_COMMANDS = 10000;

std::string one_megabyte_job() {
    std::ifstream in(JobFiles::Instance().BuiltinJob(ONE_MEGABYTE_COMMANDS), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Warnings of the reading stay off the terminal, where writing them would be timed.
void silence_warnings() {
    KPL_LogMacros::SetLogHandler([](int, const char*, int, const char*, const std::string&) {});
}

// The server's work for one change: the document of the change read with its schema, replacing
// the one before, and the notification of its findings written out.
void BM_ServerRereadAndPublish(benchmark::State& state) {
    silence_warnings();
    const std::string text = one_megabyte_job();
    zentu_cmd::lsp::LspWorkspace workspace;
    for (auto _ : state) {
        const auto& document = workspace.Update("untitled:job.par", text);
        benchmark::DoNotOptimize(zentu_cmd::lsp::diagnostics_notification(document).dump());
    }
    state.counters["bytes"] = static_cast<double>(text.size());
}

// What `check` does with the same file: read, type, complete and check it.
void BM_CheckSameJob(benchmark::State& state) {
    silence_warnings();
    const std::string path = JobFiles::Instance().BuiltinJob(ONE_MEGABYTE_COMMANDS).string();
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    std::optional<ZentuTypedJob> job;
    for (auto _ : state) {
        job.emplace(ZentuTypedJob::ReadFile(path, schema, ZentuCompletion::FULL));
    }
}

BENCHMARK(BM_ServerRereadAndPublish)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CheckSameJob)->Unit(benchmark::kMillisecond);

}  // namespace
