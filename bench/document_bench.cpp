// Reading a job through the lossless document into a typed job, against the parameter-file
// reader on the same file with the same schema: the document keeps every line, locates every
// command and item and reports every problem, and may cost at most half as much again.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "KPL_LogMacros.h"
#include "ZentuBoundRules.h"
#include "ZentuCmdContainer.h"
#include "ZentuJobChecks.h"
#include "ZentuJobFormatter.h"
#include "ZentuJobJson.h"
#include "ZentuJobSchema.h"
#include "ZentuParFileAdapter.h"
#include "ZentuTypedJob.h"
#include "bench_support.h"
#include "job_files.h"

namespace {

// Both readers read with the schema that front ends use.
const ZentuJobSchema& Schema() {
    static const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    return schema;
}

// The size of the job that the benchmark runs on, in commands.
std::size_t command_count(const benchmark::State& state) {
    return static_cast<std::size_t>(state.range(0));
}

// The few warnings about the generated job (an undescribed item of OPTIMIZE) stay off the
// terminal, where writing them would be timed with the reader.
void silence_warnings() {
    KPL_LogMacros::SetLogHandler([](int, const char*, int, const char*, const std::string&) {});
}

// The document, its typing, completion and checks, from the file; the job of the iteration
// before is destroyed outside the time, as the reader's container is.
void read_typed_jobs(benchmark::State& state, const std::string& path) {
    silence_warnings();
    std::optional<ZentuTypedJob> job;
    for (auto _ : state) {
        state.PauseTiming();
        job.reset();
        state.ResumeTiming();
        job.emplace(ZentuTypedJob::ReadFile(path, Schema(), ZentuCompletion::FULL));
    }
    ZentuBenchSupport::report_per_unit(state, command_count(state), "per_command");
}

// A job that the schema describes.
void BM_ReadTypedJob(benchmark::State& state) {
    read_typed_jobs(state, JobFiles::Instance().BuiltinJob(command_count(state)).string());
}

// A job of which the schema does not describe one item per group: a finding for every tenth
// command, which the checks that follow reading must not look through again and again.
void BM_ReadTypedJobWithFindings(benchmark::State& state) {
    read_typed_jobs(state, JobFiles::Instance().Job(command_count(state)).string());
}

// The parameter-file reader with the configuration that the same schema describes.
void BM_ReadParFileWithSchema(benchmark::State& state) {
    silence_warnings();
    const ZentuParFileAdapter adapter(
        JobFiles::Instance().BuiltinJob(command_count(state)).wstring(),
        Schema().BuildConfig(ZentuCompletion::FULL));
    const ZentuBoundRules::Scope rules(Schema().BoundRules());
    ZentuBenchSupport::run_on_fresh_containers(
        state, [](ZentuCmdContainer&) {},
        [&adapter](ZentuCmdContainer& container) { adapter.Parse(container); });
    ZentuBenchSupport::report_per_unit(state, command_count(state), "per_command");
}

// The checks alone (expressions, structure, the reference graph) on a job read without them timed:
// the share of the document's reading that judging the job takes.
void BM_CheckJob(benchmark::State& state) {
    silence_warnings();
    const std::string path = JobFiles::Instance().BuiltinJob(command_count(state)).string();
    const ZentuTypedJob job = ZentuTypedJob::ReadFile(path, Schema(), ZentuCompletion::FULL);
    for (auto _ : state) {
        std::vector<ZentuFinding> findings;
        ZentuJobChecks::run_all(job, Schema(), findings);
        benchmark::DoNotOptimize(findings.data());
    }
    ZentuBenchSupport::report_per_unit(state, command_count(state), "per_command");
}

// The document's whole reading against Parse with the same schema, side by side in every
// iteration, in processor time: x_parse is the reading against Parse, and x_checks the checks
// that the reading runs, timed once more on what it read, so that x_without_checks, x_parse less
// x_checks, is the reading of the document and its container. The time shown is the reading's.
void BM_ReadTypedJobAgainstParse(benchmark::State& state) {
    silence_warnings();
    const std::filesystem::path path = JobFiles::Instance().BuiltinJob(command_count(state));
    const ZentuParFileAdapter adapter(path.wstring(), Schema().BuildConfig(ZentuCompletion::FULL));
    double parseSeconds = 0.0;
    double readSeconds = 0.0;
    double checkSeconds = 0.0;
    for (auto _ : state) {
        {
            const ZentuBoundRules::Scope rules(Schema().BoundRules());
            ZentuCmdContainer container;
            parseSeconds += ZentuBenchSupport::seconds_of([&] { adapter.Parse(container); });
        }
        std::optional<ZentuTypedJob> job;
        const double read = ZentuBenchSupport::seconds_of([&] {
            job.emplace(ZentuTypedJob::ReadFile(path.string(), Schema(), ZentuCompletion::FULL));
        });
        state.SetIterationTime(read);
        readSeconds += read;
        checkSeconds += ZentuBenchSupport::seconds_of([&] {
            std::vector<ZentuFinding> findings;
            ZentuJobChecks::run_all(*job, Schema(), findings);
        });
    }
    state.counters["x_parse"] = readSeconds / parseSeconds;
    state.counters["x_checks"] = checkSeconds / parseSeconds;
    state.counters["x_without_checks"] = (readSeconds - checkSeconds) / parseSeconds;
}

// Reads the job as a front end does and runs a step on what it read, in every iteration; reports
// the reading and the step together against the reading alone, in processor time, as x_reading.
// The time shown is the reading's and the step's.
template <typename Step>
void time_after_reading(benchmark::State& state, ZentuCompletion completion, Step step) {
    silence_warnings();
    const std::filesystem::path path = JobFiles::Instance().BuiltinJob(command_count(state));
    double readSeconds = 0.0;
    double stepSeconds = 0.0;
    for (auto _ : state) {
        std::optional<ZentuTypedJob> job;
        const double read = ZentuBenchSupport::seconds_of(
            [&] { job.emplace(ZentuTypedJob::ReadFile(path.string(), Schema(), completion)); });
        const double stepped = ZentuBenchSupport::seconds_of([&] { step(*job); });
        state.SetIterationTime(read + stepped);
        readSeconds += read;
        stepSeconds += stepped;
    }
    state.counters["x_reading"] = (readSeconds + stepSeconds) / readSeconds;
}

// Dumping a job as JSON (`zentu-cmd dump`) after reading it, against the reading, in processor
// time and in peak memory: a dump costs at most its reading again and no memory beyond the
// reading's.
void BM_DumpAgainstReading(benchmark::State& state) {
    time_after_reading(state, ZentuCompletion::FULL, [](const ZentuTypedJob& job) {
        std::ofstream nowhere("/dev/null");
        ZentuJobJson::write_job(job.Document().Path(), job, nowhere);
    });
    const std::filesystem::path path = JobFiles::Instance().BuiltinJob(command_count(state));
    state.counters["x_reading_memory"] =
        static_cast<double>(ZentuBenchSupport::peak_of_reading(path, "dump")) /
        static_cast<double>(ZentuBenchSupport::peak_of_reading(path, "read"));
}

// Formatting a job after reading it as `zentu-cmd format` does (without completion), against the
// reading: formatting costs at most the reading again.
void BM_FormatAgainstReading(benchmark::State& state) {
    time_after_reading(state, ZentuCompletion::NONE, [](const ZentuTypedJob& job) {
        benchmark::DoNotOptimize(ZentuJobFormatter::format_document(job.Document(), Schema()));
    });
}

// The sizes of the generated jobs, in commands; the larger one is the one the target holds for.
void job_sizes(benchmark::internal::Benchmark* family) {
    family->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

// The smaller job for a ratio against the reading.
void small_job_ratio(benchmark::internal::Benchmark* family) {
    family->Arg(10000)->Unit(benchmark::kMillisecond)->UseManualTime();
}

// The larger job for a ratio against the reading, read for some seconds: a single reading of it
// swings by half with the page faults that its fresh memory takes.
void target_job_ratio(benchmark::internal::Benchmark* family) {
    family->Arg(100000)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(3.0);
}

BENCHMARK(BM_ReadTypedJob)->Apply(job_sizes);
BENCHMARK(BM_ReadTypedJobWithFindings)->Apply(job_sizes);
BENCHMARK(BM_ReadParFileWithSchema)->Apply(job_sizes);
BENCHMARK(BM_CheckJob)->Apply(job_sizes);
BENCHMARK(BM_ReadTypedJobAgainstParse)->Apply(small_job_ratio);
BENCHMARK(BM_ReadTypedJobAgainstParse)->Apply(target_job_ratio);
BENCHMARK(BM_DumpAgainstReading)->Apply(small_job_ratio);
BENCHMARK(BM_DumpAgainstReading)->Apply(target_job_ratio);
BENCHMARK(BM_FormatAgainstReading)->Apply(small_job_ratio);
BENCHMARK(BM_FormatAgainstReading)->Apply(target_job_ratio);

}  // namespace
