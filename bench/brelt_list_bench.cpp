// Cost of reading and writing integer lists, short ones as items hold them and long ones as group
// definitions of large models hold them.
#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "BreltList.h"

namespace {

// A list of count values with gaps and runs, the same for every run.
BreltList<int> generated_list(int count) {
    std::mt19937 random(20261122);
    std::uniform_int_distribution<int> gap(1, 4);
    BreltList<int> list;
    int value = 0;
    for (int i = 0; i < count; ++i) {
        value += gap(random);
        list.Insert(value);
    }
    return list;
}

void BM_ReadBreltList(benchmark::State& state) {
    const std::string text = write_brelt_list(generated_list(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        BreltList<int> list;
        read_brelt_list(text, list);
        benchmark::DoNotOptimize(list);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ReadBreltList)->Arg(8)->Arg(10000);

void BM_WriteBreltList(benchmark::State& state) {
    const BreltList<int> list = generated_list(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(write_brelt_list(list));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_WriteBreltList)->Arg(8)->Arg(10000);

void BM_RefuseNonList(benchmark::State& state) {
    const std::string text = "DESIGN_SPACE";
    for (auto _ : state) {
        benchmark::DoNotOptimize(is_brelt_list(text));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RefuseNonList);

// A range that would pass the list bound is refused before any of its values is added.
void BM_RefuseRangeBeyondBound(benchmark::State& state) {
    const std::string text = "1-2000000000";
    for (auto _ : state) {
        benchmark::DoNotOptimize(is_brelt_list(text));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RefuseRangeBeyondBound);

}  // namespace
