// Query helpers on commands and containers: which item each looks at, how it compares, and the
// one edit that replaces every item of a kind.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainer_Util.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmd_Util.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmd_Util::has_command_enum_with_value;
using ZentuCmd_Util::has_command_item_with_value;
using ZentuCmd_Util::has_command_reference_to_target;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;

const KeywordMap& Keywords() {
    static const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    return keywords;
}

// An item text prefixed with "s:" becomes a string item; any other an automatically typed one.
void AddTypes(ZentuCmd& cmd, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        if (text.rfind("s:", 0) == 0) {
            cmd.AddStringItem(CmdItem::TYPE, text.substr(2));
        } else {
            cmd.AddAutoItem(CmdItem::TYPE, text, Keywords());
        }
    }
}

struct EnumCase {
    std::vector<std::string> types;
    EnumValue value;
    bool expected;
};

TEST(CmdUtil, EnumTestLooksAtTheFirstItemOfTheKindOnly) {
    const EnumCase cases[] = {
        {{"COMBINE"}, EnumValue::COMBINE, true},
        {{"WEIGHTED_SUM"}, EnumValue::COMBINE, true},
        {{"TOPO_SENS"}, EnumValue::TOPO_SENSITIVITY, true},
        {{"MERGE"}, EnumValue::MIN, true},
        {{"MERGE"}, EnumValue::MAX, false},
        {{"s:COMBINE", "COMBINE"}, EnumValue::COMBINE, false},
        {{"LINEAR", "COMBINE"}, EnumValue::COMBINE, false},
        {{}, EnumValue::COMBINE, false},
        // Items without a keyword reading answer -1, which must not count as a match.
        {{"s:TEXT"}, ZentuCmdItemDefs::NO_ENUM_VALUE, false},
        {{"NOT_A_KEYWORD"}, ZentuCmdItemDefs::NO_ENUM_VALUE, false},
    };
    for (const EnumCase& c : cases) {
        ZentuCmd cmd(Cmd::OPERATOR);
        AddTypes(cmd, c.types);
        EXPECT_EQ(has_command_enum_with_value(cmd, CmdItem::TYPE, c.value), c.expected)
            << testing::PrintToString(c.types) << " for " << ToInt(c.value);
    }
}

TEST(CmdUtil, TextTestComparesTheItemAtTheIndexExactly) {
    ZentuCmdContainer container;
    ZentuCmd& cmd = container.CreateCommand(Cmd::DV, "DV", "d1");
    EXPECT_TRUE(has_command_item_with_value(cmd, CmdItem::ID_NAME, "D1", 0));
    for (const char* other : {"d1", "D", "D1 ", ""}) {
        EXPECT_FALSE(has_command_item_with_value(cmd, CmdItem::ID_NAME, other, 0)) << other;
    }
    EXPECT_FALSE(has_command_item_with_value(cmd, CmdItem::ID_NAME, "D1", 1));
    EXPECT_FALSE(has_command_item_with_value(cmd, CmdItem::TYPE, "", 0));

    cmd.AddStringItem(CmdItem::ID_NAME, "d2");
    EXPECT_TRUE(has_command_item_with_value(cmd, CmdItem::ID_NAME, "D2", 1));
    EXPECT_FALSE(has_command_item_with_value(cmd, CmdItem::ID_NAME, "D2", 0));
}

TEST(CmdUtil, ReferenceTestFindsTheTargetObjectInAnyPosition) {
    ZentuCmdContainer container;
    const ZentuCmd& target = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "G1");
    const ZentuCmd& twin = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "G1");
    ZentuCmd& cmd = container.CreateCommand(Cmd::DV);
    cmd.AddStringItem(CmdItem::GROUP, "G1");
    cmd.AddAutoItem(CmdItem::GROUP, "G1", Keywords());
    cmd.AddItem(CmdItem::GROUP, target);

    EXPECT_TRUE(has_command_reference_to_target(cmd, CmdItem::GROUP, &target));
    EXPECT_FALSE(has_command_reference_to_target(cmd, CmdItem::GROUP, &twin));
    EXPECT_FALSE(has_command_reference_to_target(cmd, CmdItem::ELEMENT_GROUP, &target));
    // Items that refer to nothing answer a null target.
    EXPECT_TRUE(has_command_reference_to_target(cmd, CmdItem::GROUP, nullptr));
    EXPECT_FALSE(has_command_reference_to_target(cmd, CmdItem::ELEMENT_GROUP, nullptr));

    ZentuCmd onlyReferences(Cmd::DV);
    onlyReferences.AddItem(CmdItem::GROUP, twin);
    onlyReferences.AddItem(CmdItem::GROUP, target);
    EXPECT_FALSE(has_command_reference_to_target(onlyReferences, CmdItem::GROUP, nullptr));

    // An empty entry neither counts as referring to nothing nor stops the search.
    onlyReferences.begin(CmdItem::GROUP)->reset();
    EXPECT_FALSE(has_command_reference_to_target(onlyReferences, CmdItem::GROUP, nullptr));
    EXPECT_TRUE(has_command_reference_to_target(onlyReferences, CmdItem::GROUP, &target));
    EXPECT_FALSE(has_command_reference_to_target(onlyReferences, CmdItem::GROUP, &twin));
}

TEST(CmdUtil, ReplaceItemsLeavesOneAutomaticItem) {
    for (std::size_t existing : {0U, 1U, 3U}) {
        ZentuCmd cmd(Cmd::DV);
        for (std::size_t i = 0; i < existing; ++i) {
            cmd.AddStringItem(CmdItem::GROUP, "OLD");
        }
        cmd.AddStringItem(CmdItem::TYPE, "kept");
        ZentuCmd_Util::replace_items(cmd, CmdItem::GROUP, "Members", " combine ", Keywords());

        ASSERT_EQ(cmd.Items(CmdItem::GROUP).size(), 1U) << existing;
        const ZentuCmdItem& item = cmd.Item(CmdItem::GROUP, 0);
        EXPECT_EQ(typeid(item), typeid(ZentuCmdAutoItem));
        EXPECT_EQ(item.GetName(), "Members");
        EXPECT_EQ(item.GetString(), "COMBINE");
        EXPECT_EQ(ToInt(item.GetEnum()), ToInt(EnumValue::COMBINE));
        EXPECT_EQ(cmd.Item(CmdItem::TYPE, 0).GetString(), "KEPT");
    }
}

TEST(ContainerUtil, EnumTestTriesEveryCommandOfTheKind) {
    ZentuCmdContainer container;
    const auto has = [&](Cmd kind, EnumValue value) {
        return ZentuCmdContainer_Util::has_container_enum_with_value(container, kind, CmdItem::TYPE,
                                                                     value);
    };
    EXPECT_FALSE(has(Cmd::OPERATOR, ZentuCmdItemDefs::NO_ENUM_VALUE));

    AddTypes(container.CreateCommand(Cmd::OPERATOR), {"s:COMBINE"});
    AddTypes(container.CreateCommand(Cmd::OPERATOR), {"LINEAR", "P_NORM"});
    AddTypes(container.CreateCommand(Cmd::OBJ_FUNC), {"MAX_ABS"});
    EXPECT_FALSE(has(Cmd::OPERATOR, EnumValue::COMBINE));
    EXPECT_FALSE(has(Cmd::OPERATOR, EnumValue::P_NORM));
    EXPECT_FALSE(has(Cmd::OPERATOR, EnumValue::MAX_ABS));

    AddTypes(container.CreateCommand(Cmd::OPERATOR), {"WEIGHTED_SUM"});
    EXPECT_TRUE(has(Cmd::OPERATOR, EnumValue::COMBINE));
    EXPECT_TRUE(has(Cmd::OPERATOR, EnumValue::LINEAR));
    EXPECT_TRUE(has(Cmd::OBJ_FUNC, EnumValue::MAX_ABS));
    EXPECT_FALSE(has(Cmd::DRESP, EnumValue::MAX_ABS));
}

}  // namespace
