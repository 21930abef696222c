#include "ZentuBoundRules.h"

#include <array>
#include <string>
#include <utility>

#include "KPL_Failure.h"
#include "ZentuJobDocumentMessages.h"

namespace Messages = ZentuJobDocumentMessages;
using ZentuCmdContainerRules::ContainerManipulatorRule;
using ZentuCmdContainerRules::DefaultValueRuleFunction;
using ZentuCmdItemDefs::KeywordMap;

namespace {

// The set whose rules the bound functions call on this thread; null outside every scope.
thread_local const ZentuBoundRules* t_active = nullptr;

// The function of a per-command rule's position.
template <std::size_t Position>
void CallCommandRule(ZentuCmd& command, const ZentuCmdContainer& container,
                     const ZentuCmdMetaData& metadata, const KeywordMap& keywords) {
    ZentuBoundRules::ActiveCommandRule(Position)(command, container, metadata, keywords);
}

// The function of a container rule's position.
template <std::size_t Position>
void CallContainerRule(ZentuCmdContainer& container, const KeywordMap& keywords) {
    ZentuBoundRules::ActiveContainerRule(Position)(container, keywords);
}

template <std::size_t... Positions>
constexpr std::array<DefaultValueRuleFunction, sizeof...(Positions)> CommandRuleFunctions(
    std::index_sequence<Positions...>) {
    return {&CallCommandRule<Positions>...};
}

template <std::size_t... Positions>
constexpr std::array<ContainerManipulatorRule, sizeof...(Positions)> ContainerRuleFunctions(
    std::index_sequence<Positions...>) {
    return {&CallContainerRule<Positions>...};
}

// One function per position, for each type of rule.
constexpr auto kCommandRuleFunctions =
    CommandRuleFunctions(std::make_index_sequence<ZentuBoundRules::MAX_RULES>());
constexpr auto kContainerRuleFunctions =
    ContainerRuleFunctions(std::make_index_sequence<ZentuBoundRules::MAX_RULES>());

[[noreturn]] void Fail(const std::string& message) {
    throw KPL_Failure(message, Messages::BOUND_RULES_TAG);
}

template <typename Rule>
void Append(std::vector<Rule>& rules, Rule rule, const char* kind) {
    if (rules.size() >= ZentuBoundRules::MAX_RULES) {
        Fail(KPL_Failure::Format(Messages::TOO_MANY_BOUND_RULES, ZentuBoundRules::MAX_RULES, kind));
    }
    rules.push_back(std::move(rule));
}

template <typename Rule>
const Rule& Active(const std::vector<Rule>* rules, std::size_t position) {
    if (rules == nullptr || position >= rules->size()) {
        Fail(Messages::BOUND_RULE_OUTSIDE_SCOPE);
    }
    return (*rules)[position];
}

}  // namespace

DefaultValueRuleFunction ZentuBoundRules::Bind(CommandRule rule) {
    Append(commandRules_, std::move(rule), "per-command");
    return kCommandRuleFunctions[commandRules_.size() - 1];
}

ContainerManipulatorRule ZentuBoundRules::Bind(ContainerRule rule) {
    Append(containerRules_, std::move(rule), "container");
    return kContainerRuleFunctions[containerRules_.size() - 1];
}

ZentuBoundRules::Scope::Scope(const ZentuBoundRules& rules) : previous_(t_active) {
    t_active = &rules;
}

ZentuBoundRules::Scope::~Scope() {
    t_active = previous_;
}

const ZentuBoundRules::CommandRule& ZentuBoundRules::ActiveCommandRule(std::size_t position) {
    return Active(t_active != nullptr ? &t_active->commandRules_ : nullptr, position);
}

const ZentuBoundRules::ContainerRule& ZentuBoundRules::ActiveContainerRule(std::size_t position) {
    return Active(t_active != nullptr ? &t_active->containerRules_ : nullptr, position);
}
