// Writing and reading files: the parameter-file writer's exact layout, its open modes and paths
// that cannot be opened, and the XML adapter, which reads nothing.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ZentuCmdContainer.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdOutput.h"
#include "ZentuCmdParOutput.h"
#include "ZentuXmlFileAdapter.h"
#include "engine_test_support.h"

namespace {

namespace fs = std::filesystem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::KeywordMap;

// Name tables that no written text may come from: names are the commands' and items' own.
ZentuCmdParOutput Writer(const std::wstring& path, const ZentuCmdContainer& container) {
    std::array<std::string, ZentuCmdDefs::CMD_KIND_COUNT> commandNames;
    std::array<std::string, ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT> itemNames;
    commandNames.fill("WRONG_COMMAND");
    itemNames.fill("WRONG_ITEM");
    return ZentuCmdParOutput(path, container, commandNames, itemNames);
}

std::string Read(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void AddAuto(ZentuCmd& cmd, CmdItem kind, const std::string& name, const std::string& text) {
    cmd.AddItem(kind, std::make_unique<ZentuCmdAutoItem>(name, text, KeywordMap()));
}

// Commands come grouped by kind, items by kind then in insertion order, each as its own text;
// integer lists and texts with line breaks take a line of their own, and a NUL ends a line.
TEST(ParOutput, WritesTheExactLayout) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::CMD_PLACEHOLDER, "UNKNOWN_CMD");
    container.CreateCommand(Cmd::DV, "dv_topo");
    container.CreateCommand(Cmd::MODEL_INPUT);
    container.CreateCommand(Cmd::MODEL_INPUT, std::string("NAME\0CUT", 8));
    container.CreateCommand(Cmd::DV, "DV", "second");
    ZentuCmd& response = container.CreateCommand(Cmd::DRESP);
    response.AddStringItem(CmdItem::PLACEHOLDER, "last");
    response.AddStringItem(CmdItem::TYPE, "type", "disp_abs");
    response.AddStringItem(CmdItem::GROUP, "b");
    response.AddStringItem(CmdItem::GROUP, "a");
    response.AddStringItem(CmdItem::ID_NAME, "r1");
    const ZentuCmd& target = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
    ZentuCmd& values = container.CreateCommand(Cmd::OPT_PARAM);
    values.AddItem(CmdItem::GROUP, target);
    values.AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdIntItem>("N", -3));
    values.AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdScalarItem>("R", 0.1));
    values.AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdRawStringItem>("RAW", "5%s %d"));
    values.AddItem(
        CmdItem::VALUE,
        std::make_unique<ZentuCmdEnumItem>(
            "E", "nod", ZentuCmdItemMetaData(CmdItem::TYPE, {{"NODAL", 3}}, "").keywords));
    AddAuto(values, CmdItem::VALUE, "AUTO", " 2.5 ");
    AddAuto(values, CmdItem::VALUE, "Q", "'1,2'");
    values.AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdScalarItem>("Z", 0.0));
    values.AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdScalarItem>("MZ", -0.0));
    values.AddItem(CmdItem::VALUE,
                   std::make_unique<ZentuCmdRawStringItem>("NUL", std::string("a\0b", 3)));
    ZentuCmd& lists = container.CreateCommand(Cmd::GROUP_DEF);
    AddAuto(lists, CmdItem::GROUP, "GROUP", "1-5");
    AddAuto(lists, CmdItem::GROUP, "ONE", "5");
    AddAuto(lists, CmdItem::ADD_FILE, "ADD_FILE", "a.dat\nb.dat, c");
    lists.AddStringItem(CmdItem::DESCRIPTION, "line\nbreak");
    const zentu_test::ScratchDir dir("zentu_par_output_");
    Writer((dir.Path() / "job.par").wstring(), container).Write(L"w");
    EXPECT_EQ(Read(dir.Path() / "job.par"),
              Read(fs::path(ZENTU_TESTS_DIR) / "engine" / "cases" / "exact_layout.par"));
}

// A host's own format: every text of the base's algorithm is recognisable in the file.
class TaggedOutput : public ZentuCmdOutput {
  public:
    TaggedOutput(const fs::path& path, const ZentuCmdContainer& container)
        : ZentuCmdOutput(path.wstring(), container) {}

  protected:
    std::string GetHeader() const override { return "head"; }
    std::string GetFooter() const override { return "foot%n"; }
    std::array<std::string, 2> GetCommand(const ZentuCmd& cmd) const override {
        return {"<" + cmd.GetName(), ">"};
    }
    std::string GetItem(CmdItem kind, const ZentuCmdItem& item) const override {
        return std::to_string(static_cast<int>(kind)) + ":" + item.GetString();
    }
};

// The base writer frames the header, command and item texts of a derived writer.
TEST(ParOutput, BaseWriterFramesTheTextsOfADerivedWriter) {
    const zentu_test::ScratchDir dir("zentu_par_output_");
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::REPORT, "R", "r1").AddStringItem(CmdItem::FILTER, "f");
    container.CreateCommand(Cmd::FILTER);
    TaggedOutput(dir.Path() / "job.txt", container).Write(L"w");
    EXPECT_EQ(Read(dir.Path() / "job.txt"),
              "head\n<FILTER\n>\n\n<R\n  0:R1\n  38:F\n>\n\nfoot%n\n");
}

// "w" replaces the file and "a" appends the container as it stands then, from any copy of a
// writer, even a moved-from one. Wide paths are written as UTF-8; a path that cannot be opened
// writes nothing and does not throw.
TEST(ParOutput, WriteModeReplacesAppendModeAppendsAndPathsAreUtf8) {
    const zentu_test::ScratchDir dir("zentu_par_output_");
    const ZentuCmdContainer empty;
    for (const fs::path& path : {dir.Path(), dir.Path() / "missing" / "job.par"}) {
        EXPECT_NO_THROW(Writer(path.wstring(), empty).Write(L"w")) << path;
    }
    EXPECT_TRUE(fs::is_empty(dir.Path()));
    Writer(dir.Path().wstring() + L"/\u00e4\u20ac.par", empty).Write(L"w");
    EXPECT_EQ(Read(dir.Path() / "\xc3\xa4\xe2\x82\xac.par"), "\n\n");
    const fs::path path = dir.Path() / "job.par";
    std::ofstream(path) << "old content that is longer than the new one\n";
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::STOP);
    ZentuCmdParOutput original = Writer(path.wstring(), container);
    const ZentuCmdParOutput copy(original);
    const ZentuCmdParOutput moved(std::move(original));
    copy.Write(L"w");
    moved.Write(L"w");
    EXPECT_EQ(Read(path), "\nSTOP\nEND_\n\n\n");
    container.CreateCommand(Cmd::OUTPUT);
    original.Write(L"a");  // NOLINT(bugprone-use-after-move): a moved-from writer stays usable
    EXPECT_EQ(Read(path), "\nSTOP\nEND_\n\n\n\nSTOP\nEND_\n\nOUTPUT\nEND_\n\n\n");
}

// Whatever the file holds and however the adapter was made, parsing keeps the container as it was.
TEST(XmlFileAdapter, ParseLeavesTheContainerAsItWas) {
    const zentu_test::ScratchDir dir("zentu_xml_adapter_");
    const fs::path path = dir.Path() / "job.xml";
    std::ofstream(path) << "<job>\n  <DRESP ID_NAME=\"D3\"/>\n  <OPTIMIZE/>\n</job>\n";
    ZentuCmdIoConfig config;
    config.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, true));
    ZentuXmlFileAdapter original(path.wstring(), config);
    ZentuXmlFileAdapter copy(original);
    ZentuXmlFileAdapter absent((dir.Path() / "absent.xml").wstring(), config);
    ZentuXmlFileAdapter moved(std::move(original));
    ZentuCmdContainer empty;
    moved.Parse(empty);
    EXPECT_TRUE(empty.begin() == empty.end());
    ZentuCmdContainer container;
    const ZentuCmd& response = container.CreateCommand(Cmd::DRESP, "DRESP", "d1");
    container.CreateCommand(Cmd::OPTIMIZE).AddItem(CmdItem::DRESP, response);
    const std::vector<std::string> before = zentu_test::CmdLines(container);
    for (ZentuXmlFileAdapter* adapter : {&copy, &absent, &moved, &moved}) {
        adapter->Parse(container);
        EXPECT_EQ(zentu_test::CmdLines(container), before);
    }
}

}  // namespace
