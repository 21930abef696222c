#pragma once

#include <string>
#include <utility>
#include <vector>

class ZentuCmd;
class ZentuTypedJob;

// What the reading of a job made of an operator's expression: the weighted terms that the
// expression rule generated, as the check of expressions and the editor's hover show them.
namespace ZentuExpressionExpansion {

// A weight per response, in the order of first appearance.
using Weights = std::vector<std::pair<std::string, double>>;

// The weight per response that the expansion gave a command: its generated terms, following
// generated operators down and multiplying their weights. Items the file itself holds are not
// part of the expansion.
Weights expanded_weights(const ZentuTypedJob& job, const ZentuCmd& operatorCommand);

// "+2*A -1*B", or "nothing" for no terms.
std::string weights_text(const Weights& weights);

}  // namespace ZentuExpressionExpansion
