#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ZentuBoundRules.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuJobDocumentExport.h"
#include "ZentuJobSchema.h"

// The library's rule functions as schema files name them, with their parameters.
namespace ZentuRuleCatalog {

// A rule that schema files may name, with what it does and the parameters it takes.
struct RuleInfo {
    std::string name;
    std::string summary;
    std::vector<std::string> parameters;
};

// Adds one bound rule to a configuration.
using RuleAdder = std::function<void(ZentuCmdIoConfig&)>;

// The rules that schema files may name.
ZENTU_JOB_DOCUMENT_API const std::vector<RuleInfo>& known_rules();

// What is wrong with a rule entry (unknown rule, missing or unknown parameter, bad value), or
// the empty text when nothing is.
ZENTU_JOB_DOCUMENT_API std::string rule_problem(const ZentuRuleSchema& rule);

// Binds the rule, whose entry rule_problem accepts, into the set; returns what adds it to a
// configuration. Throws KPL_Failure when the set is full.
ZENTU_JOB_DOCUMENT_API RuleAdder bind_rule(const ZentuRuleSchema& rule, ZentuBoundRules& bound);

}  // namespace ZentuRuleCatalog
