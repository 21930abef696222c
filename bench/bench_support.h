// What the benchmarks of whole jobs share: fresh containers for steps that consume their input,
// and figures per command or per expression, which must stay flat as jobs grow.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

#include "ZentuCmdContainer.h"

namespace ZentuBenchSupport {

// Runs work once per iteration on a container that prepare has just filled. Steps such as the
// expression rule change the container they run on, so each run needs a new one; filling it and
// destroying the previous one are paused out of the time. A pause costs about a microsecond,
// against the milliseconds that work takes on the smallest job, so it does not blur the figure.
template <typename Prepare, typename Work>
void run_on_fresh_containers(benchmark::State& state, Prepare prepare, Work work) {
    ZentuCmdContainer container;
    for (auto _ : state) {
        state.PauseTiming();
        container = ZentuCmdContainer();
        prepare(container);
        state.ResumeTiming();
        work(container);
    }
}

// Reports units (commands, expressions) per iteration: Google Benchmark then prints units per
// second, and, under counterName, the time per unit that is compared across sizes.
inline void report_per_unit(benchmark::State& state, std::size_t units,
                            const std::string& counterName) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(units));
    state.counters[counterName] = benchmark::Counter(
        static_cast<double>(units),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// The processor time of this process in seconds; unlike the time on the wall it does not grow
// when other programs share the machine.
inline double processor_seconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// The processor seconds that work takes.
template <typename Work>
double seconds_of(Work work) {
    const double start = processor_seconds();
    work();
    return processor_seconds() - start;
}

// The peak resident memory, in bytes, of a fresh process that reads the file in one of the ways
// that zentu_read_job knows ("parse", "read", "dump"); -1 when it fails.
inline std::int64_t peak_of_reading(const std::filesystem::path& path, const std::string& way) {
    const std::string command =
        std::string(ZENTU_READ_JOB_PROGRAM) + " '" + path.string() + "' " + way;
    std::FILE* output = popen(command.c_str(), "r");
    long long peak = -1;
    if (output == nullptr || std::fscanf(output, "%lld", &peak) != 1) {
        peak = -1;
    }
    if (output != nullptr && pclose(output) != 0) {
        peak = -1;
    }
    return peak;
}

}  // namespace ZentuBenchSupport
