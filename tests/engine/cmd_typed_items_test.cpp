// Typed item creation on a command: automatically typed items, and replacement through the item
// factory, which keeps the command as it was whenever it does not replace.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <typeindex>
#include <typeinfo>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdStringItem.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;

std::vector<const ZentuCmdItem*> Addresses(const ZentuCmd& cmd, CmdItem kind) {
    std::vector<const ZentuCmdItem*> addresses;
    for (const auto& item : cmd.Items(kind)) {
        addresses.push_back(item.get());
    }
    return addresses;
}

std::type_index ClassOf(const ZentuCmdItem& item) {
    return std::type_index(typeid(item));
}

// A command with three VALUE items named V0, V1, V2 holding A, B, C.
class CmdTypedReplace : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const auto& [name, text] : {std::pair{"V0", "A"}, {"V1", "B"}, {"V2", "C"}}) {
            cmd.AddStringItem(CmdItem::VALUE, name, text);
        }
        before = Addresses(cmd, CmdItem::VALUE);
    }

    void ExpectUnchanged() const {
        EXPECT_EQ(Addresses(cmd, CmdItem::VALUE), before);
        EXPECT_EQ(cmd.Item(CmdItem::VALUE, 1).GetString(), "B");
    }

    const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    ZentuCmd cmd{Cmd::DV};
    std::vector<const ZentuCmdItem*> before;
};

TEST(CmdAutoItems, AppendTypedItemsNamedAsGivenOrAfterTheirKind) {
    const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    ZentuCmd cmd(Cmd::OPERATOR);
    cmd.AddStringItem(CmdItem::TYPE, "first");
    cmd.AddAutoItem(CmdItem::TYPE, " combine ", keywords);
    cmd.AddAutoItem(CmdItem::TYPE, "weight", "0.5", keywords);
    cmd.AddAutoItem(CmdItem::TYPE, "combine", KeywordMap());

    ASSERT_EQ(cmd.Items(CmdItem::TYPE).size(), 4U);
    const ZentuCmdItem& named = cmd.Item(CmdItem::TYPE, 1);
    EXPECT_EQ(ClassOf(named), std::type_index(typeid(ZentuCmdAutoItem)));
    EXPECT_EQ(named.GetName(), "TYPE");
    EXPECT_EQ(named.GetString(), "COMBINE");
    EXPECT_EQ(ToInt(named.GetEnum()), ToInt(EnumValue::COMBINE));
    EXPECT_EQ(cmd.Item(CmdItem::TYPE, 2).GetName(), "weight");
    EXPECT_EQ(cmd.Item(CmdItem::TYPE, 2).GetReal(), 0.5);
    EXPECT_FALSE(cmd.Item(CmdItem::TYPE, 3).HasEnum());
    EXPECT_EQ(cmd.Item(CmdItem::TYPE, 0).GetString(), "FIRST");
}

TEST_F(CmdTypedReplace, ReplacesInPlaceWithTheClassOfTheDescription) {
    const ZentuCmdItemMetaData integer(CmdItem::VALUE, DataType::INTEGER, "", "", 1);
    cmd.ReplaceItem(integer, "N", " 12 ", keywords, 1);
    const std::vector<const ZentuCmdItem*> after = Addresses(cmd, CmdItem::VALUE);
    ASSERT_EQ(after.size(), 3U);
    EXPECT_EQ(after[0], before[0]);
    EXPECT_EQ(after[2], before[2]);
    EXPECT_EQ(ClassOf(*after[1]), std::type_index(typeid(ZentuCmdIntItem)));
    EXPECT_EQ(after[1]->GetName(), "N");
    EXPECT_EQ(after[1]->GetInteger(), 12);

    // The description's kind decides the sequence.
    const ZentuCmdItemMetaData keyword(CmdItem::VALUE, {{"NODAL", 3}}, "");
    cmd.ReplaceItem(keyword, "K", "n", keywords, 2);
    EXPECT_EQ(cmd.Item(CmdItem::VALUE, 2).GetInteger(), 3);
    EXPECT_EQ(ClassOf(cmd.Item(CmdItem::VALUE, 2)), std::type_index(typeid(ZentuCmdEnumItem)));
}

TEST_F(CmdTypedReplace, ReplacesByDataType) {
    cmd.ReplaceItem(CmdItem::VALUE, "S", "x", keywords, 0, DataType::STRING);
    cmd.ReplaceItem(CmdItem::VALUE, "R", "combine", keywords, 1, DataType::REFERENCE);
    cmd.ReplaceItem(CmdItem::VALUE, "E", "", keywords, 2, DataType::ENUM);
    EXPECT_EQ(ClassOf(cmd.Item(CmdItem::VALUE, 0)), std::type_index(typeid(ZentuCmdStringItem)));
    EXPECT_EQ(cmd.Item(CmdItem::VALUE, 0).GetString(), "X");
    EXPECT_EQ(ClassOf(cmd.Item(CmdItem::VALUE, 1)), std::type_index(typeid(ZentuCmdAutoItem)));
    EXPECT_EQ(ToInt(cmd.Item(CmdItem::VALUE, 1).GetEnum()), ToInt(EnumValue::COMBINE));
    EXPECT_EQ(ToInt(cmd.Item(CmdItem::VALUE, 2).GetEnum()), -1);

    // The value-only form keeps the replaced item's name.
    cmd.ReplaceItem(CmdItem::VALUE, "y", keywords, 1, DataType::AUTO);
    EXPECT_EQ(cmd.Item(CmdItem::VALUE, 1).GetName(), "R");
    EXPECT_EQ(cmd.Item(CmdItem::VALUE, 1).GetString(), "Y");
    cmd.ReplaceItem(CmdItem::VALUE, "z", keywords, 0, DataType::STRING);
    EXPECT_EQ(cmd.Item(CmdItem::VALUE, 0).GetName(), "S");
    EXPECT_EQ(cmd.Item(CmdItem::VALUE, 0).GetString(), "Z");
}

TEST_F(CmdTypedReplace, IndexPastTheEndChangesNothingAndBuildsNothing) {
    // A text that the factory would refuse shows that it is never asked.
    const ZentuCmdItemMetaData integer(CmdItem::VALUE, DataType::INTEGER, "", "", 1);
    EXPECT_NO_THROW(cmd.ReplaceItem(integer, "N", "abc", keywords, 3));
    EXPECT_NO_THROW(cmd.ReplaceItem(CmdItem::VALUE, "N", "abc", keywords, 3, DataType::INTEGER));
    EXPECT_NO_THROW(cmd.ReplaceItem(CmdItem::TYPE, "N", "abc", keywords, 0, DataType::INTEGER));
    ExpectUnchanged();
    EXPECT_TRUE(cmd.Items(CmdItem::TYPE).empty());
}

TEST_F(CmdTypedReplace, RefusedTextLeavesTheOldItem) {
    const auto refusal = [](auto replace) {
        try {
            replace();
        } catch (const KPL_Failure& failure) {
            return failure.GetMessage();
        }
        return std::string("accepted");
    };
    EXPECT_EQ(refusal([&] {
                  cmd.ReplaceItem(CmdItem::VALUE, "V", "abc", keywords, 1, DataType::INTEGER);
              }),
              "The item V has an invalid type. 'abc' must be an integer value.");
    EXPECT_EQ(refusal([&] { cmd.ReplaceItem(CmdItem::VALUE, "2x", keywords, 1, DataType::REAL); }),
              "The item V1 has an invalid type. '2x' must be a scalar value.");
    const ZentuCmdItemMetaData keyword(CmdItem::VALUE, {{"NODAL", 3}}, "");
    EXPECT_EQ(refusal([&] { cmd.ReplaceItem(keyword, "K", "X", keywords, 1); }),
              "The value \"X\" is not allowed for item K.\nValid options are: \nNODAL");
    ExpectUnchanged();
}

}  // namespace
