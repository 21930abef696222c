// Cases that once went wrong or surprised someone, kept so that they stay as they are now.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "BreltList.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuFileUtil.h"
#include "ZentuParFileAdapter.h"

#include "engine_test_support.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace {

// A range far beyond the list bound used to be built value by value before it was refused,
// which took most of a second and hundreds of megabytes for a single automatically typed item
// (bench/brelt_list_bench.cpp measures the refusal). What it reads must not change.
TEST(Regression, AHugeRangeGivesNoIntegerListReading) {
    const ZentuCmdAutoItem item("GROUP", "1-2000000000", {});
    EXPECT_FALSE(item.HasBreltList());
    EXPECT_TRUE(item.GetBreltList().elements.empty());
    EXPECT_EQ(item.GetList(), std::vector<std::string>{"1-2000000000"});
}

// The integer-list reader follows stream extraction: a number out of range that runs into the
// end of the text ends the reading quietly, so such a text has an (empty) integer-list reading.
TEST(Regression, AnOutOfRangeNumberAtTheEndEndsTheListQuietly) {
    BreltList<int> list;
    EXPECT_TRUE(try_read_brelt_list("1,99999999999", list));
    EXPECT_EQ(list.elements, (std::set<int>{1}));
    EXPECT_TRUE(ZentuCmdAutoItem("VALUE", "2147483648", {}).HasBreltList());
}

// Two integer lists that the writer put next to each other used to read back as one item, the
// second name and value being taken as more lines of the first value.
TEST(Regression, TwoAdjacentTwoLineItemsReadBackAsTwo) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / "zentu_regression_adjacent.par";
    ZentuCmdContainer written;
    ZentuCmd& group = written.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "G1");
    group.AddAutoItem(CmdItem::ELEMENT_GROUP, "ELEMENT_GROUP", "1-10", {});
    group.AddAutoItem(CmdItem::NODE_GROUP, "NODE_GROUP", "20-30", {});
    ZentuCmdParOutput(file.wstring(), written, ZentuCmdDefs::get_default_cmd_names(),
                      ZentuCmdItemDefs::CMD_ITEM_NAMES)
        .Write(L"w");

    ZentuCmdIoConfig config;
    ZentuCmdMetaData& schema =
        config.AddCmdMetadata("GROUP_DEF", ZentuCmdMetaData(Cmd::GROUP_DEF, false));
    schema.AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME, DataType::STRING, "", "", 1));
    schema.AddItem("ELEMENT_GROUP", ZentuCmdItemMetaData(CmdItem::ELEMENT_GROUP));
    schema.AddItem("NODE_GROUP", ZentuCmdItemMetaData(CmdItem::NODE_GROUP));
    ZentuCmdContainer read;
    ZentuParFileAdapter(file.wstring(), std::move(config)).Parse(read);
    std::filesystem::remove(file);

    EXPECT_EQ(zentu_test::CmdLines(read), zentu_test::CmdLines(written, true));
}

}  // namespace
