// The main road against the raw work on the same bytes, each pair measured side by side in one
// run: reading and completing a job against reading its lines, writing it against one fwrite of
// its text, and the memory that reading takes against the file's size. The ratios must stay small
// and flat from a thousand to a million commands; the million is left out of the smoke run. Two
// floors are measured the same way: building the read container again, which no reading can
// avoid, and reaching every item and target, which no writing can.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuParFileAdapter.h"
#include "bench_support.h"
#include "job_files.h"
#include "job_generator.h"

namespace {

using ZentuJobGenerator::ExpressionRule;

// The raw reading that a job is compared with: every line of the file, read and dropped.
std::size_t scan_lines(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string line;
    std::size_t lines = 0;
    while (std::getline(file, line)) {
        ++lines;
    }
    return lines;
}

// The whole file as one text.
std::string file_text(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Writes text with a single fwrite, the raw writing that the writer is compared with.
void write_raw(const std::filesystem::path& path, const std::string& text) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

// The reader of a job as a host reads it: with the schema and the expression rule.
ZentuParFileAdapter job_reader(const std::filesystem::path& path) {
    return ZentuParFileAdapter(path.wstring(),
                               ZentuJobGenerator::job_config(ExpressionRule::REGISTERED));
}

// The job read and completed.
void read_job(const std::filesystem::path& path, ZentuCmdContainer& container) {
    job_reader(path).Parse(container);
}

// The size of the job that the benchmark runs on, in commands.
std::size_t command_count(const benchmark::State& state) {
    return static_cast<std::size_t>(state.range(0));
}

// Reports the library's time against the raw time, and the library's time per command.
void report_against_raw(benchmark::State& state, double librarySeconds, double rawSeconds,
                        const char* ratioName) {
    state.counters[ratioName] = librarySeconds / rawSeconds;
    state.counters["us_per_command"] =
        librarySeconds * 1e6 / static_cast<double>(state.iterations() * state.range(0));
}

// Times work on a new container, in every iteration, against reading the lines of the job's file;
// the time shown is work's.
template <typename Work>
void time_against_line_scan(benchmark::State& state, const std::filesystem::path& path, Work work) {
    double workSeconds = 0.0;
    double scanSeconds = 0.0;
    for (auto _ : state) {
        scanSeconds +=
            ZentuBenchSupport::seconds_of([&path] { benchmark::DoNotOptimize(scan_lines(path)); });
        ZentuCmdContainer container;
        const double seconds = ZentuBenchSupport::seconds_of([&] { work(container); });
        workSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    report_against_raw(state, workSeconds, scanSeconds, "x_line_scan");
}

// The writer of the job to the file at path, with the names that the library knows.
ZentuCmdParOutput par_writer(const std::filesystem::path& path, const ZentuCmdContainer& job) {
    return ZentuCmdParOutput(path.wstring(), job, ZentuCmdDefs::get_default_cmd_names(),
                             ZentuCmdItemDefs::CMD_ITEM_NAMES);
}

// The file that the benchmarks against fwrite write the job to.
std::filesystem::path written_file() {
    return JobFiles::Instance().Scratch("written.par");
}

// Times work, in every iteration, against one fwrite of the text that the job is written as;
// written_file() does not exist when work starts. The time shown is work's.
template <typename Work>
void time_against_fwrite(benchmark::State& state, const ZentuCmdContainer& job, Work work) {
    const std::filesystem::path written = written_file();
    const std::filesystem::path raw = JobFiles::Instance().Scratch("raw.par");
    par_writer(written, job).Write(L"w");
    const std::string text = file_text(written);
    double workSeconds = 0.0;
    double rawSeconds = 0.0;
    for (auto _ : state) {
        // Both write new files: rewriting one in place makes some file systems flush it on close.
        std::filesystem::remove(raw);
        std::filesystem::remove(written);
        rawSeconds += ZentuBenchSupport::seconds_of([&] { write_raw(raw, text); });
        const double seconds = ZentuBenchSupport::seconds_of(work);
        workSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    report_against_raw(state, workSeconds, rawSeconds, "x_fwrite");
}

// Reading and completing against reading the lines of the same file.
void BM_ReadAgainstLineScan(benchmark::State& state) {
    const std::filesystem::path path = JobFiles::Instance().Job(command_count(state));
    const ZentuParFileAdapter reader = job_reader(path);
    time_against_line_scan(state, path,
                           [&reader](ZentuCmdContainer& container) { reader.Parse(container); });
}

// Writing a completed job against one fwrite of the text that it writes.
void BM_WriteAgainstFwrite(benchmark::State& state) {
    ZentuCmdContainer job;
    read_job(JobFiles::Instance().Job(command_count(state)), job);
    const ZentuCmdParOutput writer = par_writer(written_file(), job);
    time_against_fwrite(state, job, [&writer] { writer.Write(L"w"); });
}

// Creates in copy, one by one, the commands of job with a clone of every item: what any reading
// has to do to leave that container, whatever it reads, since the container holds every command
// and every item as an object of its own.
void build_again(const ZentuCmdContainer& job, ZentuCmdContainer& copy) {
    for (const ZentuCmd& cmd : job) {
        copy.CreateCommand(cmd.GetType(), cmd.GetName()).CopyItemsFrom(cmd);
    }
}

// The least that reading and completing can cost: building the container that it leaves, from
// one already built, against reading the lines of the job's file.
void BM_BuildAgainstLineScan(benchmark::State& state) {
    const std::filesystem::path path = JobFiles::Instance().Job(command_count(state));
    ZentuCmdContainer job;
    read_job(path, job);
    time_against_line_scan(state, path,
                           [&job](ZentuCmdContainer& copy) { build_again(job, copy); });
}

// Reads what writing the command must read however it prints: each item, and the identifier item
// of each item's target, whose text a reference item prints. Returns the length of their names.
std::size_t visit_for_writing(const ZentuCmd& cmd) {
    std::size_t length = cmd.GetName().size();
    for (std::uint64_t kinds = cmd.KindsWithSequences(); kinds != 0; kinds &= kinds - 1) {
        const auto kind = static_cast<ZentuCmdItemDefs::CmdItem>(__builtin_ctzll(kinds));
        for (const auto& item : cmd.Items(kind)) {
            length += item->GetName().size();
            const ZentuCmd* target = item->GetReference();
            const ZentuCmdItem* identifier =
                target != nullptr ? ZentuCmdIdentifier::item_of(*target) : nullptr;
            length += identifier != nullptr ? identifier->GetName().size() : 0;
        }
    }
    return length;
}

// The least that writing can cost beyond handing its text to the system: reaching every item
// and every reference's target, against one fwrite of the text.
void BM_VisitForWritingAgainstFwrite(benchmark::State& state) {
    ZentuCmdContainer job;
    read_job(JobFiles::Instance().Job(command_count(state)), job);
    time_against_fwrite(state, job, [&job] {
        for (const ZentuCmd& cmd : job) {
            benchmark::DoNotOptimize(visit_for_writing(cmd));
        }
    });
}

// The peak memory that reading and completing the file takes beyond that of reading an empty file,
// whose share is the libraries', not the job's.
std::int64_t added_peak_of_reading(const std::filesystem::path& path) {
    const std::filesystem::path empty = JobFiles::Instance().Scratch("empty.par");
    write_raw(empty, "");
    return ZentuBenchSupport::peak_of_reading(path, "parse") -
           ZentuBenchSupport::peak_of_reading(empty, "parse");
}

// The memory that reading and completing adds at its peak, against the size of the file.
void BM_ReadPeakMemory(benchmark::State& state) {
    const std::filesystem::path path = JobFiles::Instance().Job(command_count(state));
    std::int64_t peak = 0;
    for (auto _ : state) {
        peak = added_peak_of_reading(path);
    }
    state.counters["peak_MB"] = static_cast<double>(peak) / 1e6;
    state.counters["x_file_size"] =
        static_cast<double>(peak) / static_cast<double>(std::filesystem::file_size(path));
}

// Reading and writing a file of a few lines whose integer lists name ten million values each: the
// time and the memory must follow the text, not the values.
void BM_ReadAndWriteFiveRanges(benchmark::State& state) {
    const std::filesystem::path path = JobFiles::Instance().Scratch("five_ranges.par");
    std::string text = "GROUP_DEF\n  ID_NAME = G1\n";
    for (int item = 0; item < 5; ++item) {
        text += "  ELEMENT_GROUP = 1-9999999\n";
    }
    write_raw(path, text + "END_\n");
    const std::filesystem::path written = JobFiles::Instance().Scratch("five_ranges_written.par");
    for (auto _ : state) {
        ZentuCmdContainer container;
        read_job(path, container);
        par_writer(written, container).Write(L"w");
    }
    state.counters["peak_MB"] = static_cast<double>(added_peak_of_reading(path)) / 1e6;
}

// The sizes of the generated jobs, in commands.
void job_sizes(benchmark::internal::Benchmark* family) {
    family->Arg(1000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
}

// The smallest job for a ratio against the raw work.
void smallest_job(benchmark::internal::Benchmark* family) {
    family->Arg(1000)->Unit(benchmark::kMillisecond)->UseManualTime();
}

// The job of 100,000 commands for a ratio against the raw work, timed for some seconds: a few
// iterations of it swing by a fifth from run to run.
void target_job(benchmark::internal::Benchmark* family) {
    family->Arg(100000)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(3.0);
}

// The largest job for a ratio against the raw work, which one iteration already reads for seconds.
void largest_job(benchmark::internal::Benchmark* family) {
    family->Arg(1000000)->Unit(benchmark::kMillisecond)->UseManualTime();
}

BENCHMARK(BM_ReadAgainstLineScan)->Apply(smallest_job);
BENCHMARK(BM_ReadAgainstLineScan)->Apply(target_job);
BENCHMARK(BM_ReadAgainstLineScan)->Apply(largest_job);
BENCHMARK(BM_WriteAgainstFwrite)->Apply(smallest_job);
BENCHMARK(BM_WriteAgainstFwrite)->Apply(target_job);
BENCHMARK(BM_WriteAgainstFwrite)->Apply(largest_job);
BENCHMARK(BM_BuildAgainstLineScan)->Apply(smallest_job);
BENCHMARK(BM_BuildAgainstLineScan)->Apply(target_job);
BENCHMARK(BM_BuildAgainstLineScan)->Apply(largest_job);
BENCHMARK(BM_VisitForWritingAgainstFwrite)->Apply(smallest_job);
BENCHMARK(BM_VisitForWritingAgainstFwrite)->Apply(target_job);
BENCHMARK(BM_VisitForWritingAgainstFwrite)->Apply(largest_job);
BENCHMARK(BM_ReadPeakMemory)->Apply(job_sizes)->Iterations(1);
BENCHMARK(BM_ReadAndWriteFiveRanges)->Unit(benchmark::kMillisecond);

}  // namespace
