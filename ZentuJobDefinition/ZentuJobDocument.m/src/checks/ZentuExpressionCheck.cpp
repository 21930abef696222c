#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdItem.h"
#include "ZentuExpressionArithmetic.h"
#include "ZentuJobChecks.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"

namespace Messages = ZentuJobDocumentMessages;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using Weights = std::vector<std::pair<std::string, double>>;

namespace {

// The item that holds an operator's expression, and the names of what the expansion adds.
constexpr std::string_view EXPRESSION_ITEM = "ADD_FILE";
constexpr std::string_view TERM_ITEM = "VARIABLE";
constexpr std::string_view WEIGHT_ITEM = "WEIGHT";
// How the expansion names the operators it generates for bracketed groups (upper case).
constexpr std::string_view GENERATED_PREFIX = "_DRESPEXPR_";

// Two weights are the same when they differ by rounding only.
bool same_weight(double a, double b) {
    return std::fabs(a - b) <= 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)});
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

// An expression that the expansion turns into exactly these weights: a flat sum of products.
std::string flat_expression(const Weights& weights) {
    std::string text;
    for (const auto& [name, weight] : weights) {
        if (weight == 0.0) {
            continue;
        }
        const std::string term = ZentuStringUtil::String(std::fabs(weight)) + "*%" + name + "%";
        text += text.empty() ? (weight < 0 ? "-" : "") + term : (weight < 0 ? " - " : " + ") + term;
    }
    return text;
}

void add_weight(Weights& weights, std::unordered_map<std::string, std::size_t>& index,
                const std::string& name, double weight) {
    const auto [found, added] = index.emplace(name, weights.size());
    if (added) {
        weights.emplace_back(name, weight);
    } else {
        weights[found->second].second += weight;
    }
}

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
        std::vector<const ZentuCmd*> terms;
        std::vector<double> factors;
        for (const auto& item : command->GetItemRange(CmdItem::DV)) {
            if (item->GetName() == TERM_ITEM &&
                job.OriginOf(*command, *item).item == ZentuOrigin::NONE) {
                terms.push_back(item->GetReference());
            }
        }
        for (const auto& item : command->GetItemRange(CmdItem::OBJ_FUNC)) {
            if (item->GetName() == WEIGHT_ITEM &&
                job.OriginOf(*command, *item).item == ZentuOrigin::NONE) {
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

bool same_weights(const Weights& expanded, const Weights& read) {
    std::unordered_map<std::string, double> difference;
    for (const auto& [name, weight] : expanded) {
        difference[name] += weight;
    }
    for (const auto& [name, weight] : read) {
        difference[name] -= weight;
    }
    for (const auto& [name, weight] : difference) {
        if (!same_weight(weight, 0.0)) {
            return false;
        }
    }
    return true;
}

// The first operator of the container read from each document command.
std::unordered_map<std::size_t, const ZentuCmd*> operators_by_origin(const ZentuTypedJob& job) {
    std::unordered_map<std::size_t, const ZentuCmd*> operators;
    for (const auto& command : job.Container().GetCommands(Cmd::OPERATOR)) {
        operators.emplace(job.OriginOf(*command).command, command.get());
    }
    return operators;
}

// Whether a finding of the code already lies on the item's lines.
bool reported(const std::vector<ZentuFinding>& findings, const ZentuDocumentItem& item,
              const char* code) {
    return std::any_of(findings.begin(), findings.end(), [&](const ZentuFinding& finding) {
        return finding.code == code && finding.range.line >= item.line &&
               finding.range.line <= item.last_line;
    });
}

void check_expression(const ZentuTypedJob& job, const ZentuDocumentItem& item,
                      const ZentuCmd& command, std::vector<ZentuFinding>& findings) {
    const ZentuJobDocument& document = job.Document();
    const ZentuExpressionArithmetic::Reading reading = ZentuExpressionArithmetic::read(item.value);
    for (const auto& part : reading.unsupported) {
        findings.push_back(zentu_finding(
            ZentuFindingCodes::EXPRESSION_UNSUPPORTED,
            KPL_Failure::Format(
                Messages::EXPRESSION_PART_UNSUPPORTED, part.what.c_str(),
                ZentuStringUtil::excerpt(
                    std::string_view(item.value).substr(part.begin, part.end - part.begin))
                    .c_str()),
            document.ValueRange(item, part.begin, part.end)));
    }
    if (reading.tooDeep || !reading.unsupported.empty()) {
        return;
    }
    const Weights expanded = expanded_weights(job, command);
    if (same_weights(expanded, reading.weights)) {
        return;
    }
    const std::string suggestion = flat_expression(reading.weights);
    findings.push_back(zentu_finding(
        ZentuFindingCodes::EXPRESSION_MISMATCH,
        KPL_Failure::Format(Messages::EXPRESSION_MISMATCH, weights_text(expanded).c_str(),
                            weights_text(reading.weights).c_str()) +
            (suggestion.empty()
                 ? ""
                 : KPL_Failure::Format(Messages::EXPRESSION_MEANT, suggestion.c_str())),
        document.ValueRange(item, 0, item.value.size()),
        suggestion.empty() ? std::nullopt : std::optional<std::string>(suggestion)));
}

}  // namespace

void ZentuJobChecks::check_expressions(const ZentuTypedJob& job,
                                       std::vector<ZentuFinding>& findings) {
    const auto operators = operators_by_origin(job);
    const auto& commands = job.Document().Commands();
    for (const auto& [index, command] : operators) {
        if (index == ZentuOrigin::NONE || command->HasItem(CmdItem::ADD_FILE, 0)) {
            continue;  // no expression of the file, or no rule expanded it
        }
        const auto& items = commands[index].items;
        const auto expression = std::find_if(items.begin(), items.end(), [](const auto& item) {
            return ZentuStringUtil::equals_ignoring_case(item.name, EXPRESSION_ITEM);
        });
        if (expression != items.end() &&
            !reported(findings, *expression, ZentuFindingCodes::EXPRESSION_SYNTAX) &&
            !reported(findings, *expression, ZentuFindingCodes::BAD_VALUE)) {
            check_expression(job, *expression, *command, findings);
        }
    }
}
