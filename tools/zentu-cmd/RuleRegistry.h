#pragma once

#include <string>
#include <vector>

#include "Schema.h"
#include "ZentuCmdIoConfig.h"

namespace zentu_cmd {

// A rule that schema files may name, with what it does and the parameters it takes.
struct RuleInfo {
    std::string name;
    std::string summary;
    std::vector<std::string> parameters;
};

// The rules that schema files may name, from the library's rule functions.
const std::vector<RuleInfo>& known_rules();

// What is wrong with a rule entry (unknown rule, missing or unknown parameter, bad value), or
// the empty text when nothing is.
std::string rule_problem(const RuleSchema& rule);

// Registers the rule, whose entry rule_problem accepts, at the end of the configuration's rules.
void add_rule(const RuleSchema& rule, ZentuCmdIoConfig& config);

}  // namespace zentu_cmd
