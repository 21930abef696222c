// Cost of expanding operator expressions into weighted combinations of responses. Every reference
// of an expression is matched against the list of all responses and operators, so the time per
// expression must not grow with the number of responses: the sizes below must give about the same
// figure, the middle one showing the effect of the responses alone.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuDrespExpressionParser.h"
#include "bench_support.h"
#include "job_generator.h"

namespace {

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;

// Terms per expression.
constexpr std::size_t TERM_COUNT = 5;

// The expressions of the operators, drawn once so that every iteration expands the same ones.
std::vector<std::string> draw_expressions(std::size_t responseCount, std::size_t operatorCount) {
    std::mt19937 random(ZentuJobGenerator::DEFAULT_SEED);
    std::vector<std::string> expressions;
    expressions.reserve(operatorCount);
    for (std::size_t index = 0; index < operatorCount; ++index) {
        expressions.push_back(
            ZentuJobGenerator::response_expression(random, responseCount, TERM_COUNT));
    }
    return expressions;
}

// The responses, then one operator per expression, holding it as a reader leaves it.
void fill_job(ZentuCmdContainer& container, std::size_t responseCount,
              const std::vector<std::string>& expressions) {
    for (std::size_t index = 0; index < responseCount; ++index) {
        container.CreateCommand(Cmd::DRESP, "DRESP", ZentuJobGenerator::response_identifier(index));
    }
    for (std::size_t index = 0; index < expressions.size(); ++index) {
        ZentuCmd& command = container.CreateCommand(Cmd::OPERATOR, "OPERATOR",
                                                    ZentuJobGenerator::operator_identifier(index));
        command.AddItem(CmdItem::ADD_FILE,
                        std::make_unique<ZentuCmdRawStringItem>("ADD_FILE", expressions[index]));
    }
}

// The rule on state.range(0) responses and state.range(1) operators, built in memory. The rule
// consumes the expressions, so each run gets a new container; building it is not timed.
void BM_DrespExpressionRule(benchmark::State& state) {
    const auto responseCount = static_cast<std::size_t>(state.range(0));
    const std::vector<std::string> expressions =
        draw_expressions(responseCount, static_cast<std::size_t>(state.range(1)));
    const ZentuCmdItemDefs::KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    ZentuBenchSupport::run_on_fresh_containers(
        state,
        [&](ZentuCmdContainer& container) { fill_job(container, responseCount, expressions); },
        [&keywords](ZentuCmdContainer& container) {
            ZentuDrespExpressionParser::dresp_expression_rule(container, keywords);
        });
    ZentuBenchSupport::report_per_unit(state, expressions.size(), "per_expression");
}
BENCHMARK(BM_DrespExpressionRule)
    ->ArgNames({"responses", "operators"})
    ->Args({1000, 1000})
    ->Args({10000, 1000})
    ->Args({10000, 10000})
    ->Unit(benchmark::kMillisecond);

}  // namespace
