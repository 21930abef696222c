// Cost of building automatically typed items from the texts that job files hold. Most texts are
// names and keywords, whose integer-list trial fails: that path must stay cheap.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "ZentuCmdAutoItem.h"
#include "ZentuCmdItemDefs.h"

namespace {

// One text of each kind in roughly the proportions of a real job file.
const std::vector<std::string>& realistic_texts() {
    static const std::vector<std::string> texts = {"design_space",
                                                   "D1",
                                                   "Group_12",
                                                   "LOADCASE_3",
                                                   "combine",
                                                   "DISP_X",
                                                   "yes",
                                                   "density",
                                                   "SIMUL",
                                                   "42",
                                                   "-7",
                                                   "0.35",
                                                   "1e-3",
                                                   "1.0, 0.0, 0.0",
                                                   "A, B, C",
                                                   "1-100:3",
                                                   "1,5,9-20,31",
                                                   "\"quoted, text\"",
                                                   "%D1% + 2 * %D2%",
                                                   "model.onf"};
    return texts;
}

void BM_AutoItemRealisticMix(benchmark::State& state) {
    const ZentuCmdItemDefs::KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    const std::vector<std::string>& texts = realistic_texts();
    for (auto _ : state) {
        for (const std::string& text : texts) {
            ZentuCmdAutoItem item("VALUE", text, keywords);
            benchmark::DoNotOptimize(item);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(texts.size()));
}
BENCHMARK(BM_AutoItemRealisticMix);

void BM_AutoItemOfKind(benchmark::State& state, const std::string& text) {
    const ZentuCmdItemDefs::KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    for (auto _ : state) {
        ZentuCmdAutoItem item("VALUE", text, keywords);
        benchmark::DoNotOptimize(item);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(BM_AutoItemOfKind, name, std::string("design_space"));
BENCHMARK_CAPTURE(BM_AutoItemOfKind, keyword, std::string("combine"));
BENCHMARK_CAPTURE(BM_AutoItemOfKind, integer, std::string("42"));
BENCHMARK_CAPTURE(BM_AutoItemOfKind, real, std::string("0.35"));
BENCHMARK_CAPTURE(BM_AutoItemOfKind, vector, std::string("1.0, 0.0, 0.0"));
BENCHMARK_CAPTURE(BM_AutoItemOfKind, integer_list, std::string("1,5,9-20,31"));

}  // namespace
