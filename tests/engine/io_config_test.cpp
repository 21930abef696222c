// The input/output configuration: what its constructor fills in, the first description under a
// keyword wins, and the rule sequence records the order of registration across both rule kinds.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdIo.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdMetaData.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdContainerRules::DefaultValueRule;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;
using Sequence = std::vector<std::pair<ZentuCmdIoConfig::RuleType, std::size_t>>;

void ExpectNoSchemaNoRules(const ZentuCmdIoConfig& config) {
    EXPECT_TRUE(config.cmd_metadata.empty());
    EXPECT_TRUE(config.GetDefaultValueRules().empty());
    EXPECT_TRUE(config.GetContainerManipulatorRules().empty());
    EXPECT_TRUE(config.GetRuleSequence().empty());
}

TEST(IoConfig, DefaultConstructorHoldsOnlyTheKeywordMap) {
    const ZentuCmdIoConfig config;
    EXPECT_EQ(config.enum_map.size(), 139U);
    EXPECT_EQ(config.enum_map, ZentuCmdItemDefs::create_enum_map());
    ExpectNoSchemaNoRules(config);

    for (const auto addValues :
         {ZentuCmdIoConfig::NO_DEFAULT_VALUES, static_cast<ZentuCmdIoConfig::AddValues>(7)}) {
        const ZentuCmdIoConfig bare(addValues);
        EXPECT_TRUE(bare.enum_map.empty()) << addValues;
        ExpectNoSchemaNoRules(bare);
    }
}

TEST(IoConfig, PreparingDefaultsReplacesTheKeywordMapWhole) {
    ZentuCmdIoConfig config(ZentuCmdIoConfig::NO_DEFAULT_VALUES);
    config.enum_map = {{"CUSTOM_WORD", EnumValue::YES}, {"YES", EnumValue::NO}};
    config.AddCmdMetadata("DV", ZentuCmdMetaData(Cmd::DV, true));
    config.AddRule([](ZentuCmdContainer&, const KeywordMap&) {});

    ZentuCmdIo::prepare_cmd_settings_with_defaults(config);
    EXPECT_EQ(config.enum_map, ZentuCmdItemDefs::create_enum_map());
    EXPECT_EQ(config.cmd_metadata.size(), 1U);
    EXPECT_EQ(config.GetRuleSequence().size(), 1U);
}

TEST(IoConfig, FirstDescriptionUnderAKeywordStays) {
    ZentuCmdIoConfig config;
    ZentuCmdMetaData& first = config.AddCmdMetadata("DV", ZentuCmdMetaData(Cmd::DV, true));
    first.AddItem("TYPE", ZentuCmdItemMetaData(CmdItem::TYPE));

    ZentuCmdMetaData refused(Cmd::DRESP, false);
    refused.AddItem("VALUE", ZentuCmdItemMetaData(CmdItem::VALUE));
    ZentuCmdMetaData& second = config.AddCmdMetadata("DV", std::move(refused));
    EXPECT_EQ(&second, &first);
    EXPECT_EQ(ToInt(second.GetKey()), ToInt(Cmd::DV));
    EXPECT_EQ(second.GetMetaData().count("TYPE"), 1U);
    EXPECT_EQ(refused.GetMetaData().size(), 1U);  // NOLINT(bugprone-use-after-move)

    // Keywords are stored as given, so another case is another keyword.
    ZentuCmdMetaData& lower = config.AddCmdMetadata("dv", ZentuCmdMetaData(Cmd::DRESP, false));
    EXPECT_NE(&lower, &first);
    EXPECT_EQ(config.cmd_metadata.size(), 2U);
    EXPECT_EQ(&config.cmd_metadata.at("DV"), &first);
}

// Rules that record their call, so the test can tell which stored rule is which.
std::vector<std::string> g_calls;

void ManipulateFirst(ZentuCmdContainer&, const KeywordMap&) {
    g_calls.emplace_back("M0");
}

void DefaultFirst(ZentuCmd&, const ZentuCmdContainer&, const ZentuCmdMetaData&, const KeywordMap&) {
    g_calls.emplace_back("D0");
}

TEST(IoConfig, RuleSequenceFollowsTheOrderOfRegistration) {
    g_calls.clear();
    ZentuCmdIoConfig config;
    config.AddRule(&ManipulateFirst);
    config.AddRule(DefaultValueRule{Cmd::DV, &DefaultFirst, true});
    config.AddRule(DefaultValueRule{Cmd::STOP,
                                    [](ZentuCmd&, const ZentuCmdContainer&, const ZentuCmdMetaData&,
                                       const KeywordMap&) { g_calls.emplace_back("D1"); },
                                    false});
    config.AddRule([](ZentuCmdContainer&, const KeywordMap&) { g_calls.emplace_back("M1"); });

    const Sequence expected = {{ZentuCmdIoConfig::CONTAINER_MANIPULATOR_RULE, 0},
                               {ZentuCmdIoConfig::DEFAULT_VALUE_RULE, 0},
                               {ZentuCmdIoConfig::DEFAULT_VALUE_RULE, 1},
                               {ZentuCmdIoConfig::CONTAINER_MANIPULATOR_RULE, 1}};
    ASSERT_EQ(config.GetRuleSequence(), expected);
    EXPECT_EQ(ZentuCmdIoConfig::DEFAULT_VALUE_RULE, 0);
    EXPECT_EQ(ZentuCmdIoConfig::CONTAINER_MANIPULATOR_RULE, 1);

    const auto& defaults = config.GetDefaultValueRules();
    ASSERT_EQ(defaults.size(), 2U);
    // Stored rules are the very functions registered, comparable as pointers.
    EXPECT_EQ(defaults[0].func, &DefaultFirst);
    EXPECT_EQ(config.GetContainerManipulatorRules()[0], &ManipulateFirst);
    EXPECT_EQ(ToInt(defaults[0].cmd), ToInt(Cmd::DV));
    EXPECT_TRUE(defaults[0].create_if_missing);
    EXPECT_EQ(ToInt(defaults[1].cmd), ToInt(Cmd::STOP));
    EXPECT_FALSE(defaults[1].create_if_missing);

    // A copy carries working rules in the same order.
    const ZentuCmdIoConfig copy = config;
    ZentuCmdContainer container;
    ZentuCmd& cmd = container.CreateCommand(Cmd::DV);
    const ZentuCmdMetaData metadata;
    for (const auto& [type, index] : copy.GetRuleSequence()) {
        if (type == ZentuCmdIoConfig::DEFAULT_VALUE_RULE) {
            copy.GetDefaultValueRules()[index].func(cmd, container, metadata, copy.enum_map);
        } else {
            copy.GetContainerManipulatorRules()[index](container, copy.enum_map);
        }
    }
    EXPECT_EQ(g_calls, (std::vector<std::string>{"M0", "D0", "D1", "M1"}));
}

TEST(IoConfig, CopiesAreDeep) {
    ZentuCmdIoConfig original;
    original.AddCmdMetadata("DV", ZentuCmdMetaData(Cmd::DV, false))
        .AddItem("TYPE", ZentuCmdItemMetaData(CmdItem::TYPE));

    ZentuCmdIoConfig copy(original);
    copy.cmd_metadata.at("DV").AddItem("VALUE", ZentuCmdItemMetaData(CmdItem::VALUE));
    copy.enum_map.erase("YES");
    copy.AddRule([](ZentuCmdContainer&, const KeywordMap&) {});
    EXPECT_EQ(original.cmd_metadata.at("DV").GetMetaData().size(), 1U);
    EXPECT_EQ(original.enum_map.size(), 139U);
    EXPECT_TRUE(original.GetRuleSequence().empty());

    ZentuCmdIoConfig assigned(ZentuCmdIoConfig::NO_DEFAULT_VALUES);
    assigned = copy;
    EXPECT_EQ(assigned.enum_map.size(), 138U);
    EXPECT_EQ(assigned.GetContainerManipulatorRules().size(), 1U);

    const ZentuCmdIoConfig moved(std::move(assigned));
    EXPECT_EQ(moved.cmd_metadata.at("DV").GetMetaData().size(), 2U);
    EXPECT_EQ(moved.GetRuleSequence().size(), 1U);
}

}  // namespace
