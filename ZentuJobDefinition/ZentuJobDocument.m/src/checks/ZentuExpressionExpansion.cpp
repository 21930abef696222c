#include "checks/ZentuExpressionExpansion.h"

#include <cmath>
#include <string_view>

#include "ZentuCmd.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdItem.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"
#include "checks/ZentuExpressionWeights.h"

using ZentuCmdItemDefs::CmdItem;

namespace ZentuExpressionExpansion {

namespace {

// The names of what the expansion adds to an operator.
constexpr std::string_view TERM_ITEM = "VARIABLE";
constexpr std::string_view WEIGHT_ITEM = "WEIGHT";
// How the expansion names the operators it generates for bracketed groups (upper case).
constexpr std::string_view GENERATED_PREFIX = "_DRESPEXPR_";

// The size of a cache line, the step in which a command is fetched.
constexpr std::size_t CACHE_LINE = 64;

// Asks the processor to fetch a term's command, whose identifier is read once the command's
// weights are gathered too, so that the terms' commands arrive together rather than one by one.
void prefetch(const ZentuCmd* command) {
#if defined(__GNUC__)
    const char* bytes = reinterpret_cast<const char*>(command);
    for (std::size_t offset = 0; command != nullptr && offset < sizeof(ZentuCmd);
         offset += CACHE_LINE) {
        __builtin_prefetch(bytes + offset);
    }
#else
    static_cast<void>(command);
#endif
}

}  // namespace

// The weight per response that the expansion gave a command: its generated terms, following
// generated operators down and multiplying their weights. Items the file itself holds are not
// part of the expansion.
Weights expanded_weights(const ZentuTypedJob& job, const ZentuCmd& operatorCommand) {
    ZentuExpressionWeights weights;
    std::vector<std::pair<const ZentuCmd*, double>> pending = {{&operatorCommand, 1.0}};
    // The terms and factors of the command at hand; each command reuses their room.
    std::vector<const ZentuCmd*> terms;
    std::vector<double> factors;
    while (!pending.empty()) {
        const auto [command, factor] = pending.back();
        pending.pop_back();
        const ZentuOrigin origin = job.OriginOf(*command);
        terms.clear();
        factors.clear();
        for (const auto& item : command->GetItemRange(CmdItem::DV)) {
            if (item->GetName() == TERM_ITEM &&
                job.ItemOriginOf(origin, *item).item == ZentuOrigin::NONE) {
                terms.push_back(item->GetReference());
                prefetch(terms.back());
            }
        }
        for (const auto& item : command->GetItemRange(CmdItem::OBJ_FUNC)) {
            if (item->GetName() == WEIGHT_ITEM &&
                job.ItemOriginOf(origin, *item).item == ZentuOrigin::NONE) {
                factors.push_back(item->GetReal());
            }
        }
        for (std::size_t k = 0; k < terms.size() && k < factors.size(); ++k) {
            const std::string name =
                terms[k] != nullptr ? ZentuCmdIdentifier::text_of(*terms[k]) : "";
            if (name.rfind(GENERATED_PREFIX, 0) == 0) {
                pending.emplace_back(terms[k], factor * factors[k]);
            } else {
                weights.Add(name, factor * factors[k]);
            }
        }
    }
    return std::move(weights.Totals());
}

// "+2*A -1*B", or "nothing" for no terms.
std::string weights_text(const Weights& weights) {
    std::string text;
    for (const auto& [name, weight] : weights) {
        text += (text.empty() ? "" : " ") + std::string(weight < 0 ? "-" : "+") +
                ZentuStringUtil::String(std::fabs(weight)) + "*" + name;
    }
    return text.empty() ? "nothing" : text;
}

}  // namespace ZentuExpressionExpansion
