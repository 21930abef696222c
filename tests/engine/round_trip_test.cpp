// Write-then-read round trip on the item shapes that the reader fuzzer once found to come back
// changed; the fuzzer covers the rest.
#include <gtest/gtest.h>

#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuParFileAdapter.h"
#include "engine_test_support.h"
#include "zentu_test_cases.h"

namespace {

using zentu_test::DataCase;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

// Writes T1 and a command holding the items of one shape, reads the file back under a schema
// describing them, and compares what comes back with what was written.
void ExpectRoundTrip(const std::vector<DataCase>& items) {
    const zentu_test::ScratchDir dir("zentu_round_trip_");
    const std::wstring path = (dir.Path() / "job.par").wstring();
    const ZentuCmdItemMetaData id(CmdItem::ID_NAME, DataType::STRING, "", "", 1);
    ZentuCmdIoConfig schema;
    schema.AddCmdMetadata("DV", ZentuCmdMetaData(Cmd::DV, false)).AddItem({"ID_NAME", id});
    ZentuCmdMetaData& description =
        schema.AddCmdMetadata("GROUP_DEF", ZentuCmdMetaData(Cmd::GROUP_DEF, false));
    description.AddItem({"ID_NAME", id});
    ZentuCmdContainer written;
    const ZentuCmd& target = written.CreateCommand(Cmd::DV, "DV", "t1");
    ZentuCmd& cmd = written.CreateCommand(Cmd::GROUP_DEF, "group_def", "g1");
    for (const DataCase& item : items) {
        const std::string& name = item.fields[1];
        const auto kind =
            static_cast<CmdItem>(zentu_test::IndexOf(ZentuCmdItemDefs::CMD_ITEM_NAMES, name));
        const auto type = static_cast<DataType>(
            zentu_test::IndexOf(ZentuCmdItemDefs::DATA_TYPE_NAMES, item.fields[2]));
        const std::string text = item.fields[3] == "-" ? "" : item.fields[3];
        const ZentuCmdItemMetaData itemDescription =
            type == DataType::ENUM
                ? ZentuCmdItemMetaData(kind, {{"TOPOLOGY", 1}, {"TOPO_FREE", 2}}, "")
                : ZentuCmdItemMetaData(kind, type, "", "", 1);
        description.AddItem({name, itemDescription});
        if (type == DataType::REFERENCE) {
            cmd.AddItem(kind, name, target);
            continue;
        }
        auto made =
            ZentuCmdItemFactory::create(name, text, itemDescription, zentu_test::Keywords());
        if (text == "t1") {
            made->AddReference(target);
        }
        cmd.AddItem(kind, std::move(made));
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

// Two-line values (integer lists, texts with line feeds) must end exactly where the next item,
// END_ or the file syntax says, and every class must read back its own text.
TEST(RoundTrip, WrittenItemsReadBackAsTheyWere) {
    const auto cases = zentu_test::DataCases("engine/cases/round_trip_shapes.txt", 4);
    for (auto begin = cases.begin(); begin != cases.end();) {
        const auto end = std::find_if(
            begin, cases.end(), [&](const DataCase& c) { return c.fields[0] != begin->fields[0]; });
        SCOPED_TRACE(begin->where);
        ExpectRoundTrip({begin, end});
        begin = end;
    }
}

}  // namespace
