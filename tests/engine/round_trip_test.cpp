// Write-then-read round trip on the item shapes that the reader fuzzer once found to come back
// changed; the fuzzer covers the rest.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuParFileAdapter.h"
#include "engine_test_support.h"

namespace {

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

// An item of a command under its kind's name; REFERENCE makes a reference item to T1, and an
// automatically typed "t1" also refers to T1.
struct Written {
    CmdItem kind;
    DataType type;
    const char* text;
};

struct RoundTripCase {
    const char* label;
    std::vector<Written> items;
};

void PrintTo(const RoundTripCase& c, std::ostream* out) {
    *out << c.label;
}

class RoundTrip : public ::testing::TestWithParam<RoundTripCase> {};

// Two-line values (integer lists, texts with line feeds) must end exactly where the next item,
// END_ or the file syntax says, and every class must read back its own text.
TEST_P(RoundTrip, WrittenItemsReadBackAsTheyWere) {
    const zentu_test::ScratchDir dir("zentu_round_trip_");
    const std::wstring path = (dir.Path() / "job.par").wstring();
    const ZentuCmdItemDefs::KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    const ZentuCmdItemMetaData id(CmdItem::ID_NAME, DataType::STRING, "", "", 1);
    ZentuCmdIoConfig schema;
    schema.AddCmdMetadata("DV", ZentuCmdMetaData(Cmd::DV, false)).AddItem({"ID_NAME", id});
    ZentuCmdMetaData& description =
        schema.AddCmdMetadata("GROUP_DEF", ZentuCmdMetaData(Cmd::GROUP_DEF, false));
    description.AddItem({"ID_NAME", id});
    ZentuCmdContainer written;
    const ZentuCmd& target = written.CreateCommand(Cmd::DV, "DV", "t1");
    ZentuCmd& cmd = written.CreateCommand(Cmd::GROUP_DEF, "group_def", "g1");
    for (const Written& item : GetParam().items) {
        const std::string name = ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<int>(item.kind)];
        const ZentuCmdItemMetaData itemDescription =
            item.type == DataType::ENUM
                ? ZentuCmdItemMetaData(item.kind, {{"TOPOLOGY", 1}, {"TOPO_FREE", 2}}, "")
                : ZentuCmdItemMetaData(item.kind, item.type, "", "", 1);
        description.AddItem({name, itemDescription});
        if (item.type == DataType::REFERENCE) {
            cmd.AddItem(item.kind, name, target);
            continue;
        }
        auto made = ZentuCmdItemFactory::create(name, item.text, itemDescription, keywords);
        if (std::string(item.text) == "t1") {
            made->AddReference(target);
        }
        cmd.AddItem(item.kind, std::move(made));
    }
    ZentuCmdParOutput(path, written, ZentuCmdDefs::get_default_cmd_names(),
                      ZentuCmdItemDefs::CMD_ITEM_NAMES)
        .Write(L"w");
    zentu_test::LogCollector log;
    ZentuCmdContainer read;
    ZentuParFileAdapter(path, std::move(schema)).Parse(read);
    EXPECT_EQ(zentu_test::CmdLines(read), zentu_test::CmdLines(written, true));
    EXPECT_TRUE(log.Take().empty());
}

constexpr DataType kAuto = DataType::AUTO;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Shapes, RoundTrip, ::testing::Values(
    // Two integer lists next to each other once read back as one item.
    RoundTripCase{"AdjacentIntegerLists", {{CmdItem::ELEMENT_GROUP, kAuto, "1-10"}, {CmdItem::NODE_GROUP, kAuto, "20-30"}}},
    RoundTripCase{"TwoLineListThenIntegerList", {{CmdItem::ELEMENT_GROUP, kAuto, "ALPHA,\nbeta"}, {CmdItem::NODE_GROUP, kAuto, "1,\n5-9:2"}}},
    RoundTripCase{"ValueEndingInCommaThenOneLineItem", {{CmdItem::ELEMENT_GROUP, kAuto, "1-5,\n7,"}, {CmdItem::VALUE, DataType::INTEGER, "3"}}},
    RoundTripCase{"BlankLineInList", {{CmdItem::ELEMENT_GROUP, kAuto, "ALPHA,\n\neps-x"}, {CmdItem::NODE_GROUP, kAuto, "1-3"}}},
    RoundTripCase{"EmptyIntegerListThenItem", {{CmdItem::ELEMENT_GROUP, DataType::BRELT_LIST, ""}, {CmdItem::NODE_GROUP, kAuto, "4"}}},
    RoundTripCase{"ExtremeNumbers", {{CmdItem::VALUE, DataType::INTEGER, "-2147483648"}, {CmdItem::VALUE, DataType::INTEGER, "2147483647"},
                                     {CmdItem::MIN, DataType::REAL, "0.33333333333333331"}, {CmdItem::MIN, DataType::REAL, "-0.0"},
                                     {CmdItem::MAX, DataType::REAL, "1e300"}, {CmdItem::MAX, DataType::REAL, "-2.5e-300"}}},
    RoundTripCase{"SyntaxCharactersInText", {{CmdItem::DESCRIPTION, DataType::STRING, "a = b # c, \xC3\xA9"},
                                             {CmdItem::FILE, DataType::RAW_STRING, "x;/(y)*\xC3\x9F"}}},
    RoundTripCase{"KeywordsAndReferences", {{CmdItem::TYPE, DataType::ENUM, "topo_f"}, {CmdItem::DV, kAuto, "t1"},
                                            {CmdItem::DRESP, DataType::REFERENCE, ""}, {CmdItem::TARGET, kAuto, "combine"},
                                            {CmdItem::DIRECTION, kAuto, "1, -2.5,3e-3"}}}),
    [](const auto& info) { return std::string(info.param.label); });
// clang-format on

}  // namespace
