#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdItem.h"
#include "ZentuExpressionArithmetic.h"
#include "ZentuJobChecks.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"
#include "checks/ZentuExpressionExpansion.h"
#include "checks/ZentuExpressionWeights.h"

namespace Messages = ZentuJobDocumentMessages;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuExpressionExpansion::expanded_weights;
using ZentuExpressionExpansion::Weights;
using ZentuExpressionExpansion::weights_text;

namespace {

// The item that holds an operator's expression.
constexpr std::string_view EXPRESSION_ITEM = "ADD_FILE";

// Two weights are the same when they differ by rounding only.
bool same_weight(double a, double b) {
    return std::fabs(a - b) <= 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)});
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

bool same_weights(const Weights& expanded, const Weights& read) {
    ZentuExpressionWeights difference;
    for (const auto& [name, weight] : expanded) {
        difference.Add(name, weight);
    }
    for (const auto& [name, weight] : read) {
        difference.Add(name, -weight);
    }
    for (const auto& [name, weight] : difference.Totals()) {
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

// The lines on which the findings say an expression or a value does not read, in order: such an
// expression has nothing to compare. Gathered once, as the findings may be many.
std::vector<std::size_t> unreadable_lines(const std::vector<ZentuFinding>& findings) {
    std::vector<std::size_t> lines;
    for (const ZentuFinding& finding : findings) {
        if (finding.code == ZentuFindingCodes::EXPRESSION_SYNTAX ||
            finding.code == ZentuFindingCodes::BAD_VALUE) {
            lines.push_back(finding.range.line);
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// Whether one of the lines lies on the item's lines.
bool reported(const std::vector<std::size_t>& lines, const ZentuDocumentItem& item) {
    const auto first = std::lower_bound(lines.begin(), lines.end(), item.line);
    return first != lines.end() && *first <= item.last_line;
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
    const std::vector<std::size_t> unreadable = unreadable_lines(findings);
    for (const auto& [index, command] : operators) {
        if (index == ZentuOrigin::NONE || command->HasItem(CmdItem::ADD_FILE, 0)) {
            continue;  // no expression of the file, or no rule expanded it
        }
        const auto& items = commands[index].items;
        const auto expression = std::find_if(items.begin(), items.end(), [](const auto& item) {
            return ZentuStringUtil::equals_ignoring_case(item.name, EXPRESSION_ITEM);
        });
        if (expression != items.end() && !reported(unreadable, *expression)) {
            check_expression(job, *expression, *command, findings);
        }
    }
}
