// Rules bound at run time behind plain function pointers: each read sees the rules of its own
// schema, on any thread, however many schemas come and go.
#include "ZentuBoundRules.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdMetaData.h"
#include "ZentuJobSchema.h"

namespace {

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::KeywordMap;

// A container rule that appends its label to the container's first DV command's description.
ZentuBoundRules::ContainerRule Labelling(const std::string& label) {
    return [label](ZentuCmdContainer& container, const KeywordMap&) {
        container.GetCommand(Cmd::DV, 0).AddStringItem(CmdItem::DESCRIPTION, label);
    };
}

std::string Labels(const ZentuCmdContainer& container) {
    std::string labels;
    for (const auto& item : container.GetCommand(Cmd::DV, 0).Items(CmdItem::DESCRIPTION)) {
        labels += item->GetString() + " ";
    }
    return labels;
}

std::string FailureOf(void (*rule)(ZentuCmdContainer&, const KeywordMap&)) {
    ZentuCmdContainer container;
    try {
        rule(container, {});
    } catch (const KPL_Failure& failure) {
        return failure.GetMessage();
    }
    return "no failure";
}

// A bound position runs the rule of the set in the innermost scope, and fails outside any.
TEST(BoundRules, EachPositionCallsTheRuleOfTheActiveSet) {
    ZentuBoundRules first;
    ZentuBoundRules second;
    const auto a = first.Bind(Labelling("a"));
    const auto b = first.Bind(Labelling("b"));
    EXPECT_EQ(second.Bind(Labelling("x")), a);  // the same position, the same function
    EXPECT_NE(a, b);

    ZentuCmdContainer container;
    container.CreateCommand(Cmd::DV, "DV", "d");
    {
        const ZentuBoundRules::Scope outer(first);
        b(container, {});
        {
            const ZentuBoundRules::Scope inner(second);
            a(container, {});
        }
        a(container, {});
    }
    EXPECT_EQ(Labels(container), "B X A ");
    EXPECT_EQ(FailureOf(a), "a rule bound from a schema ran outside a read with that schema");
    const ZentuBoundRules::Scope scope(second);
    EXPECT_EQ(FailureOf(b), "a rule bound from a schema ran outside a read with that schema");
}

// Binding past the last position fails with a message that names the limit.
TEST(BoundRules, RefusesMoreRulesThanPositionsNamingTheLimit) {
    ZentuBoundRules rules;
    for (std::size_t i = 0; i < ZentuBoundRules::MAX_RULES; ++i) {
        rules.Bind(Labelling("r"));
    }
    rules.Bind(ZentuBoundRules::CommandRule(
        [](ZentuCmd&, const ZentuCmdContainer&, const ZentuCmdMetaData&, const KeywordMap&) {}));
    try {
        rules.Bind(Labelling("one too many"));
        ADD_FAILURE() << "bound past the limit";
    } catch (const KPL_Failure& failure) {
        EXPECT_EQ(failure.GetMessage(),
                  "a schema may bind at most 256 container rules; split the schema or use fewer "
                  "rules");
    }
}

// A schema whose one rule gives every DV the description that the schema names.
ZentuJobSchema SchemaLabelling(const std::string& label) {
    return ZentuJobSchema::Parse(ZentuJson::parse(R"({"commands": [{"keyword": "DV", "items": [
            {"name": "ID_NAME", "type": "STRING"},
            {"name": "DESCRIPTION", "type": "STRING"}]}],
          "rules": [{"rule": "add_value_if_not_present", "cmd": "DV", "item": "DESCRIPTION",
                     "name": "DESCRIPTION", "value": ")" +
                                                  label + R"("}]})"),
                                 "test");
}

// Completes a one-command job with the schema's rules, as a read does.
std::string Complete(const ZentuJobSchema& schema) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::DV, "DV", "d");
    const ZentuBoundRules::Scope scope(schema.BoundRules());
    ZentuCmdContainerRules::apply_rules(container, schema.BuildConfig(ZentuCompletion::FULL));
    return Labels(container);
}

// Threads that load and use schemas at once each see the rules of their own schema.
TEST(BoundRules, SchemasLoadedAgainAndAgainOnSeveralThreadsKeepTheirOwnRules) {
    std::vector<std::thread> threads;
    std::vector<int> wrong(4, 0);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread, &wrong] {
            const std::string label = "T" + std::to_string(thread);
            for (int round = 0; round < 300; ++round) {
                wrong[thread] += Complete(SchemaLabelling(label)) == label + " " ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

}  // namespace
