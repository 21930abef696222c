// Cost of the main road on generated jobs of 1,000 to 1,000,000 commands: reading a file into a
// container, completing a container already read, and writing it back. Each step must take time
// in proportion to the job, so the time per command must stay flat across the sizes.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdParOutput.h"
#include "ZentuParFileAdapter.h"
#include "bench_support.h"
#include "job_files.h"
#include "job_generator.h"

namespace {

using ZentuJobGenerator::ExpressionRule;

// The size of the job that the benchmark runs on, in commands.
std::size_t command_count(const benchmark::State& state) {
    return static_cast<std::size_t>(state.range(0));
}

// The job read as a host reads it: with the schema and the expression rule.
ZentuCmdContainer read_job(std::size_t commandCount) {
    ZentuCmdContainer container;
    ZentuParFileAdapter(JobFiles::Instance().Job(commandCount).wstring(),
                        ZentuJobGenerator::job_config(ExpressionRule::REGISTERED))
        .Parse(container);
    return container;
}

// The steps that end reading, after the last command: default commands, references, rules.
void complete(ZentuCmdContainer& container, const ZentuCmdIoConfig& config) {
    ZentuCmdContainerRules::create_default_commands(container, config.cmd_metadata,
                                                    config.enum_map);
    container.CreateReferences();
    ZentuCmdContainerRules::apply_rules(container, config);
}

// Tokenizing, typing, default items, references and the expression rule, from the file.
void BM_ReadParFile(benchmark::State& state) {
    const std::size_t commands = command_count(state);
    const ZentuParFileAdapter adapter(JobFiles::Instance().Job(commands).wstring(),
                                      ZentuJobGenerator::job_config(ExpressionRule::REGISTERED));
    ZentuBenchSupport::run_on_fresh_containers(
        state, [](ZentuCmdContainer&) {},
        [&adapter](ZentuCmdContainer& container) { adapter.Parse(container); });
    ZentuBenchSupport::report_per_unit(state, commands, "per_command");
}

// Completion alone, on a container read without rules, so that the expression rule finds the
// expressions still there.
void BM_CompleteJob(benchmark::State& state) {
    const std::size_t commands = command_count(state);
    const ZentuParFileAdapter reader(JobFiles::Instance().Job(commands).wstring(),
                                     ZentuJobGenerator::job_config(ExpressionRule::NOT_REGISTERED));
    const ZentuCmdIoConfig config = ZentuJobGenerator::job_config(ExpressionRule::REGISTERED);
    ZentuBenchSupport::run_on_fresh_containers(
        state, [&reader](ZentuCmdContainer& container) { reader.Parse(container); },
        [&config](ZentuCmdContainer& container) { complete(container, config); });
    ZentuBenchSupport::report_per_unit(state, commands, "per_command");
}

// Resolving references again on a completed job, as a host does after changing it; every item is
// resolved anew on every call, so the container can be reused.
void BM_CreateReferences(benchmark::State& state) {
    const std::size_t commands = command_count(state);
    ZentuCmdContainer container = read_job(commands);
    for (auto _ : state) {
        container.CreateReferences();
    }
    ZentuBenchSupport::report_per_unit(state, commands, "per_command");
}

// Writing a completed job to a file, replacing the file each time.
void BM_WriteParFile(benchmark::State& state) {
    const std::size_t commands = command_count(state);
    const ZentuCmdContainer container = read_job(commands);
    const ZentuCmdParOutput writer(JobFiles::Instance().Scratch("written.par").wstring(), container,
                                   ZentuCmdDefs::get_default_cmd_names(),
                                   ZentuCmdItemDefs::CMD_ITEM_NAMES);
    for (auto _ : state) {
        writer.Write(L"w");
    }
    ZentuBenchSupport::report_per_unit(state, commands, "per_command");
}

// The sizes of the generated jobs, in commands.
void job_sizes(benchmark::internal::Benchmark* family) {
    family->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_ReadParFile)->Apply(job_sizes);
BENCHMARK(BM_CompleteJob)->Apply(job_sizes);
BENCHMARK(BM_CreateReferences)->Apply(job_sizes);
BENCHMARK(BM_WriteParFile)->Apply(job_sizes);

}  // namespace
