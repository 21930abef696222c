// Command descriptions: construction, the first description under a name wins, chaining, and
// what copies and moves leave behind.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

std::vector<std::string> NamesOf(const ZentuCmdMetaData& metadata) {
    std::vector<std::string> names;
    for (const auto& entry : metadata.GetMetaData()) {
        names.push_back(entry.first);
    }
    return names;
}

TEST(CmdMetaData, ConstructorsSetKindDefaultAndItems) {
    const ZentuCmdMetaData placeholder;
    EXPECT_EQ(ToInt(placeholder.GetKey()), ToInt(Cmd::CMD_PLACEHOLDER));
    EXPECT_FALSE(placeholder.GetCreateDefault());
    EXPECT_TRUE(placeholder.GetMetaData().empty());

    const ZentuCmdMetaData plain(Cmd::OPTIMIZE, true);
    EXPECT_EQ(ToInt(plain.GetKey()), ToInt(Cmd::OPTIMIZE));
    EXPECT_TRUE(plain.GetCreateDefault());
    EXPECT_TRUE(plain.GetMetaData().empty());

    ZentuCmdMetaData::ItemMap items = {{"TYPE", ZentuCmdItemMetaData(CmdItem::TYPE)}};
    const ZentuCmdMetaData taking(Cmd::DV, std::move(items), false);
    EXPECT_TRUE(items.empty());  // NOLINT(bugprone-use-after-move): the map is taken over
    EXPECT_EQ(NamesOf(taking), std::vector<std::string>{"TYPE"});
    EXPECT_FALSE(taking.GetCreateDefault());
}

TEST(CmdMetaData, ItemsIterateInByteOrderOfTheirNamesAsGiven) {
    ZentuCmdMetaData metadata(Cmd::DV, false);
    metadata.AddItem("TYPE", ZentuCmdItemMetaData(CmdItem::TYPE));
    metadata.AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME));
    metadata.AddItem("group", ZentuCmdItemMetaData(CmdItem::GROUP));
    metadata.AddItem({"Z", ZentuCmdItemMetaData(CmdItem::VALUE)});
    EXPECT_EQ(NamesOf(metadata), (std::vector<std::string>{"ID_NAME", "TYPE", "Z", "group"}));
}

TEST(CmdMetaData, FirstDescriptionUnderANameStays) {
    ZentuCmdMetaData metadata(Cmd::DV, false);
    metadata.AddItem("VALUE", ZentuCmdItemMetaData(CmdItem::VALUE, 1, "first", 1));

    std::string name = "VALUE";
    ZentuCmdItemMetaData second(CmdItem::TYPE, {{"NODAL", 3}}, "NODAL");
    metadata.AddItem(std::move(name), std::move(second));
    metadata.AddItem({"VALUE", ZentuCmdItemMetaData(CmdItem::MAX, 3.5, "third", 1)});

    const ZentuCmdItemMetaData& kept = metadata.GetMetaData().at("VALUE");
    EXPECT_EQ(metadata.GetMetaData().size(), 1U);
    EXPECT_EQ(kept.extra_text, "first");
    EXPECT_EQ(kept.default_int, 1);
    // A refused entry is not moved from.
    EXPECT_EQ(name, "VALUE");                  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(second.default_value, "NODAL");  // NOLINT(bugprone-use-after-move)
    int value = 0;
    EXPECT_TRUE(second.keywords.Find("NODAL", value));
}

TEST(CmdMetaData, AddItemChainsOnTheSameObject) {
    ZentuCmdMetaData metadata(Cmd::DRESP, false);
    const std::pair<const std::string, ZentuCmdItemMetaData> entry = {
        "TYPE", ZentuCmdItemMetaData(CmdItem::TYPE)};
    ZentuCmdMetaData& result = metadata.AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME))
                                   .AddItem(entry)
                                   .AddItem("VALUE", ZentuCmdItemMetaData(CmdItem::VALUE));
    EXPECT_EQ(&result, &metadata);
    EXPECT_EQ(NamesOf(metadata), (std::vector<std::string>{"ID_NAME", "TYPE", "VALUE"}));
    EXPECT_EQ(ToInt(entry.second.key), ToInt(CmdItem::TYPE));
}

TEST(CmdMetaData, CopiesAreDeepAndMovesEmptyTheSource) {
    ZentuCmdMetaData original(Cmd::STOP, true);
    original.AddItem("ITER_MAX", ZentuCmdItemMetaData(CmdItem::ITER_MAX, 50, "", 1));

    ZentuCmdMetaData copy(original);
    copy.GetMetaData().at("ITER_MAX").default_int = 7;
    copy.AddItem("VALUE", ZentuCmdItemMetaData(CmdItem::VALUE));
    EXPECT_EQ(original.GetMetaData().at("ITER_MAX").default_int, 50);
    EXPECT_EQ(original.GetMetaData().size(), 1U);

    ZentuCmdMetaData moved(std::move(copy));
    EXPECT_TRUE(copy.GetMetaData().empty());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(ToInt(moved.GetKey()), ToInt(Cmd::STOP));
    EXPECT_TRUE(moved.GetCreateDefault());
    EXPECT_EQ(moved.GetMetaData().size(), 2U);

    ZentuCmdMetaData target;
    target = std::move(moved);
    EXPECT_TRUE(moved.GetMetaData().empty());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(ToInt(target.GetKey()), ToInt(Cmd::STOP));
    EXPECT_TRUE(target.GetCreateDefault());
    EXPECT_EQ(target.GetMetaData().at("ITER_MAX").default_int, 7);

    ZentuCmdMetaData& self = target;
    target = std::move(self);
    EXPECT_EQ(target.GetMetaData().size(), 2U);
    EXPECT_EQ(ToInt(target.GetKey()), ToInt(Cmd::STOP));
}

}  // namespace
