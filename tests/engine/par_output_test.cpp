// The parameter-file writer: whole files compared byte for byte, the open modes, and paths that
// cannot be opened.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <utility>

#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdOutput.h"
#include "ZentuCmdParOutput.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdScalarItem.h"

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

void AddAuto(ZentuCmd& cmd, CmdItem kind, const std::string& name, const std::string& text) {
    cmd.AddItem(kind, std::make_unique<ZentuCmdAutoItem>(name, text, KeywordMap()));
}

class ParOutputTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::random_device seed;
        dir = fs::temp_directory_path() / ("zentu_par_output_" + std::to_string(seed()));
        ASSERT_TRUE(fs::create_directory(dir));
    }

    void TearDown() override { fs::remove_all(dir); }

    static std::string Read(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    // Writes container to a new file and returns the file's bytes.
    std::string Written(const ZentuCmdContainer& container) {
        const fs::path path = dir / "job.par";
        Writer(path.wstring(), container).Write(L"w");
        return Read(path);
    }

    fs::path dir;
};

struct LayoutCase {
    const char* label;
    std::function<void(ZentuCmdContainer&)> build;
    const char* expected;
};

TEST_F(ParOutputTest, WritesTheExactLayout) {
    const LayoutCase cases[] = {
        {"empty container", [](ZentuCmdContainer&) {}, "\n\n"},
        {"one identified command",
         [](ZentuCmdContainer& c) { c.CreateCommand(Cmd::DV, "DV", "d1"); },
         "\nDV\n  ID_NAME = D1\nEND_\n\n\n"},
        {"command without items", [](ZentuCmdContainer& c) { c.CreateCommand(Cmd::OPTIONS); },
         "\nOPTIONS\nEND_\n\n\n"},
        {"commands grouped by kind, names as stored",
         [](ZentuCmdContainer& c) {
             c.CreateCommand(Cmd::CMD_PLACEHOLDER, "UNKNOWN_CMD");
             c.CreateCommand(Cmd::DV, "dv_topo");
             c.CreateCommand(Cmd::MODEL_INPUT);
             c.CreateCommand(Cmd::DV, "DV", "second");
         },
         "\nMODEL_INPUT\nEND_\n\ndv_topo\nEND_\n\nDV\n  ID_NAME = SECOND\nEND_\n\n"
         "UNKNOWN_CMD\nEND_\n\n\n"},
        {"items grouped by kind, then in insertion order",
         [](ZentuCmdContainer& c) {
             ZentuCmd& cmd = c.CreateCommand(Cmd::DRESP);
             cmd.AddStringItem(CmdItem::PLACEHOLDER, "last");
             cmd.AddStringItem(CmdItem::TYPE, "type", "disp_abs");
             cmd.AddStringItem(CmdItem::GROUP, "b");
             cmd.AddStringItem(CmdItem::GROUP, "a");
             cmd.AddStringItem(CmdItem::ID_NAME, "r1");
         },
         "\nDRESP\n  ID_NAME = R1\n  type = DISP_ABS\n  GROUP = B\n  GROUP = A\n"
         "  PLACEHOLDER = LAST\nEND_\n\n\n"},
        {"value texts of every item class",
         [](ZentuCmdContainer& c) {
             const ZentuCmd& target = c.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
             ZentuCmd& cmd = c.CreateCommand(Cmd::OPT_PARAM);
             cmd.AddItem(CmdItem::GROUP, target);
             cmd.AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdIntItem>("N", -3));
             cmd.AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdScalarItem>("R", 0.1));
             cmd.AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdRawStringItem>("RAW", "5%s %d"));
             cmd.AddItem(
                 CmdItem::VALUE,
                 std::make_unique<ZentuCmdEnumItem>(
                     "E", "nod", ZentuCmdItemMetaData(CmdItem::TYPE, {{"NODAL", 3}}, "").keywords));
             AddAuto(cmd, CmdItem::VALUE, "AUTO", " 2.5 ");
             AddAuto(cmd, CmdItem::VALUE, "Q", "'1,2'");
         },
         "\nGROUP_DEF\n  ID_NAME = G1\nEND_\n\nOPT_PARAM\n  GROUP = G1\n  N = -3\n  R = 0.1\n"
         "  RAW = 5%s %d\n  E = NOD\n  AUTO = 2.5\n  Q = '1,2'\nEND_\n\n\n"},
        {"integer lists and line-breaking lists take two lines",
         [](ZentuCmdContainer& c) {
             ZentuCmd& cmd = c.CreateCommand(Cmd::GROUP_DEF);
             AddAuto(cmd, CmdItem::GROUP, "GROUP", "1-5");
             AddAuto(cmd, CmdItem::GROUP, "ONE", "5");
             AddAuto(cmd, CmdItem::ADD_FILE, "ADD_FILE", "a.dat\nb.dat, c");
             cmd.AddStringItem(CmdItem::DESCRIPTION, "line\nbreak");
         },
         "\nGROUP_DEF\n  ADD_FILE\n  A.DAT\nB.DAT, C\n  GROUP\n  1-5\n  ONE\n  5\n"
         "  DESCRIPTION = LINE\nBREAK\nEND_\n\n\n"},
    };
    for (const LayoutCase& c : cases) {
        SCOPED_TRACE(c.label);
        ZentuCmdContainer container;
        c.build(container);
        EXPECT_EQ(Written(container), c.expected);
    }
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

TEST_F(ParOutputTest, BaseWriterFramesTheTextsOfADerivedWriter) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::REPORT, "R", "r1").AddStringItem(CmdItem::FILTER, "f");
    container.CreateCommand(Cmd::FILTER);
    const fs::path path = dir / "job.txt";
    TaggedOutput(path, container).Write(L"w");
    EXPECT_EQ(Read(path), "head\n<FILTER\n>\n\n<R\n  0:R1\n  38:F\n>\n\nfoot%n\n");
}

TEST_F(ParOutputTest, WriteModeReplacesAndAppendModeAppends) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::STOP);
    const fs::path path = dir / "job.par";
    std::ofstream(path) << "old content that is longer than the new one\n";

    const ZentuCmdParOutput writer = Writer(path.wstring(), container);
    writer.Write(L"w");
    writer.Write(L"w");
    EXPECT_EQ(Read(path), "\nSTOP\nEND_\n\n\n");

    // Each call writes the container as it stands then.
    container.CreateCommand(Cmd::OUTPUT);
    writer.Write(L"a");
    EXPECT_EQ(Read(path), "\nSTOP\nEND_\n\n\n\nSTOP\nEND_\n\nOUTPUT\nEND_\n\n\n");
}

TEST_F(ParOutputTest, CopiedAndMovedWritersWriteTheSameFile) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::SMOOTH);
    const fs::path path = dir / "job.par";
    ZentuCmdParOutput original = Writer(path.wstring(), container);
    const ZentuCmdParOutput copy(original);
    const ZentuCmdParOutput moved(std::move(original));
    copy.Write(L"w");
    moved.Write(L"a");
    original.Write(L"a");  // NOLINT(bugprone-use-after-move): a moved-from writer stays usable
    EXPECT_EQ(Read(path), "\nSMOOTH\nEND_\n\n\n\nSMOOTH\nEND_\n\n\n\nSMOOTH\nEND_\n\n\n");
}

TEST_F(ParOutputTest, WidePathsAreWrittenAsUtf8) {
    ZentuCmdContainer container;
    Writer(dir.wstring() + L"/\u00e4\u20ac.par", container).Write(L"w");
    EXPECT_EQ(Read(dir / "\xc3\xa4\xe2\x82\xac.par"), "\n\n");
}

TEST_F(ParOutputTest, UnopenablePathWritesNothingAndDoesNotThrow) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::DV, "DV", "d1");
    for (const fs::path& path : {dir, dir / "missing" / "job.par"}) {
        EXPECT_NO_THROW(Writer(path.wstring(), container).Write(L"w")) << path;
    }
    EXPECT_TRUE(fs::is_directory(dir));
    EXPECT_TRUE(fs::is_empty(dir));
}

}  // namespace
