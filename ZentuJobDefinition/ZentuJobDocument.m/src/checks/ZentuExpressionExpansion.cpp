#include "checks/ZentuExpressionExpansion.h"

#include <cmath>
#include <string_view>
#include <unordered_map>

#include "ZentuCmd.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdItem.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"

using ZentuCmdItemDefs::CmdItem;

namespace ZentuExpressionExpansion {

namespace {

// The names of what the expansion adds to an operator.
constexpr std::string_view TERM_ITEM = "VARIABLE";
constexpr std::string_view WEIGHT_ITEM = "WEIGHT";
// How the expansion names the operators it generates for bracketed groups (upper case).
constexpr std::string_view GENERATED_PREFIX = "_DRESPEXPR_";

void add_weight(Weights& weights, std::unordered_map<std::string, std::size_t>& index,
                const std::string& name, double weight) {
    const auto [found, added] = index.emplace(name, weights.size());
    if (added) {
        weights.emplace_back(name, weight);
    } else {
        weights[found->second].second += weight;
    }
}

}  // namespace

// The weight per response that the expansion gave a command: its generated terms, following
// generated operators down and multiplying their weights. Items the file itself holds are not
// part of the expansion.
Weights expanded_weights(const ZentuTypedJob& job, const ZentuCmd& operatorCommand) {
    Weights weights;
    std::unordered_map<std::string, std::size_t> index;
    std::vector<std::pair<const ZentuCmd*, double>> pending = {{&operatorCommand, 1.0}};
    while (!pending.empty()) {
        const auto [command, factor] = pending.back();
        pending.pop_back();
        const ZentuOrigin origin = job.OriginOf(*command);
        std::vector<const ZentuCmd*> terms;
        std::vector<double> factors;
        for (const auto& item : command->GetItemRange(CmdItem::DV)) {
            if (item->GetName() == TERM_ITEM &&
                job.ItemOriginOf(origin, *item).item == ZentuOrigin::NONE) {
                terms.push_back(item->GetReference());
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
                add_weight(weights, index, name, factor * factors[k]);
            }
        }
    }
    return weights;
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
