// The parameter-file reader: typing against the schema, its warnings and failures byte for byte,
// what stays in the container when reading stops, the completion steps, and bad input.
#include <gtest/gtest.h>

#include <fstream>

#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuParFileAdapter.h"
#include "engine_test_support.h"
#include "zentu_test_cases.h"

namespace {

using zentu_test::CmdLines;
using zentu_test::FailureOf;
namespace fs = std::filesystem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::KeywordMap;
using Lines = std::vector<std::string>;

constexpr const char* kAdapterTag = "|%P|ZentuCmdEngine|ZentuParFileAdapter";
constexpr const char* kAdapterSource =
    "ZentuJobDefinition/ZentuCmdEngine.m/src/ZentuParFileAdapter";
constexpr const char* kTokenizerTag = "|%P|LIBUTIL|ZentuParFile";
const std::string kIterMax = " ITER_MAX:ITER_MAX=30/int";
const std::string kDefaultDresp =
    "DRESP@DRESP ID_NAME:ID_NAME=__DEFAULT_DRESP_/string TYPE:TYPE=VOLUME/string";
const std::string kDefaultOptParam =
    "OPT_PARAM@OPT_PARAM ID_NAME:ID_NAME=__DEFAULT_OPT_PARAM_/string ITER_MAX:ITER_MAX=50/int";

// DV, DRESP, GROUP_DEF and OPT_PARAM with an item of every class between them, defaults on
// ITER_MAX and on DRESP's TYPE, and one description under a lower-case name, which no item of a
// file can find; DRESP and OPT_PARAM ask for default commands when wanted.
ZentuCmdIoConfig Schema(bool defaultCommands) {
    const auto described = [](CmdItem kind, DataType type) {
        return ZentuCmdItemMetaData(kind, type, "", "", 1);
    };
    ZentuCmdIoConfig config;
    config.AddCmdMetadata("DV", ZentuCmdMetaData(Cmd::DV, false))
        .AddItem("ID_NAME", described(CmdItem::ID_NAME, DataType::STRING))
        .AddItem("TYPE", ZentuCmdItemMetaData(CmdItem::TYPE, {{"TOPO", 1}, {"SHAPE", 2}}, ""))
        .AddItem("VALUE", described(CmdItem::VALUE, DataType::INTEGER))
        .AddItem("MIN", described(CmdItem::MIN, DataType::REAL))
        .AddItem("GROUP", ZentuCmdItemMetaData(CmdItem::GROUP, Cmd::GROUP_DEF, ""))
        .AddItem("TARGET", ZentuCmdItemMetaData(CmdItem::TARGET, Cmd::DRESP, ""))
        .AddItem("DESCRIPTION", described(CmdItem::DESCRIPTION, DataType::RAW_STRING))
        .AddItem("ELEMENTS", described(CmdItem::LIST_BEGIN, DataType::BRELT_LIST))
        .AddItem("ITER_MAX", ZentuCmdItemMetaData(CmdItem::ITER_MAX, 30, "", 1))
        .AddItem("note", described(CmdItem::FORMAT, DataType::STRING));
    config.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, defaultCommands))
        .AddItem("ID_NAME", described(CmdItem::ID_NAME, DataType::STRING))
        .AddItem("TYPE", ZentuCmdItemMetaData(CmdItem::TYPE, "volume", "", 1))
        .AddItem("DV", ZentuCmdItemMetaData(CmdItem::DV, Cmd::DV, ""));
    config.AddCmdMetadata("GROUP_DEF", ZentuCmdMetaData(Cmd::GROUP_DEF, false))
        .AddItem("ID_NAME", described(CmdItem::ID_NAME, DataType::STRING));
    config.AddCmdMetadata("OPT_PARAM", ZentuCmdMetaData(Cmd::OPT_PARAM, defaultCommands))
        .AddItem("ITER_MAX", ZentuCmdItemMetaData(CmdItem::ITER_MAX, 50, "", 1));
    return config;
}

class ParFileAdapterTest : public ::testing::Test {
  protected:
    fs::path WriteFile(const std::string& bytes, const std::string& name = "job.par") const {
        const fs::path path = dir_.Path() / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    void CompleteWithDefaultsAndACountingRule() {
        config_ = Schema(true);
        rulesRun_ = 0;
        config_.AddRule([](ZentuCmdContainer&, const KeywordMap&) { ++rulesRun_; });
    }

    void Parse(const fs::path& path, ZentuCmdContainer& into) const {
        ZentuParFileAdapter(path.wstring(), ZentuCmdIoConfig(config_)).Parse(into);
    }

    Lines Read(const std::string& bytes) const {
        ZentuCmdContainer container;
        Parse(WriteFile(bytes), container);
        return CmdLines(container);
    }

    // The messages logged since the last call, each checked to be one of the reader's warnings.
    Lines Warnings() {
        Lines messages;
        for (const auto& line : log_.Take()) {
            EXPECT_EQ(std::to_string(line.type) + line.tag + line.file,
                      std::to_string(KPL_LogMacros::LOG_WARNING) + kAdapterTag + kAdapterSource);
            EXPECT_GT(line.line, 0) << line.message;
            messages.push_back(line.message);
        }
        return messages;
    }

    zentu_test::ScratchDir dir_{"zentu_par_adapter_"};
    zentu_test::LogCollector log_;
    ZentuCmdIoConfig config_ = Schema(false);
    // Rules are plain function pointers, so the counting rule counts here.
    static inline int rulesRun_ = 0;
};

// Items are typed by their descriptions, and an item the schema does not describe is reported,
// dropped and read past; CR LF line ends read as LF ones.
TEST_F(ParFileAdapterTest, TypesItemsByTheirDescriptionAndWarnsOfUndescribedOnes) {
    for (const auto& c : zentu_test::DataCases("engine/cases/par_reads.txt", 3)) {
        SCOPED_TRACE(c.where);
        std::string crlf;
        for (const char byte : c.fields[0]) {
            crlf += byte == '\n' ? std::string("\r\n") : std::string(1, byte);
        }
        for (const std::string& bytes : {c.fields[0], crlf}) {
            EXPECT_EQ(Read(bytes), zentu_test::FieldLines(c.fields[2]));
            EXPECT_EQ(Warnings(), zentu_test::FieldLines(c.fields[1]));
        }
    }
}

// A file of ever new names, more than a reader keeps at hand, reads as one of a few names: every
// keyword and item name in every case is looked up as written, and the last ones met stay found.
TEST_F(ParFileAdapterTest, ReadsAFileOfManyDistinctNamesAsOneOfFew) {
    std::string bytes;
    Lines commands;
    Lines warnings;
    for (int k = 0; k < 40; ++k) {
        const std::string name = "x" + std::to_string(k);
        bytes += "DV\n  " + name + " = 1\n  " + (k % 2 == 0 ? "value" : "VALUE") + " = " +
                 std::to_string(k) + "\nEND_\nkw" + std::to_string(k) + "\nEND_\n";
        warnings.push_back("Unknown item 'X" + std::to_string(k) + "' found in command DV.");
        commands.push_back("DV@DV VALUE:VALUE=" + std::to_string(k) + "/int" + kIterMax);
    }
    bytes += "DV\n  x39 = 1\n  x1 = 1\nEND_\nkw1\nEND_\n";
    warnings.push_back("Unknown item 'X39' found in command DV.");
    warnings.push_back("Unknown item 'X1' found in command DV.");
    commands.push_back("DV@DV" + kIterMax);
    const Lines read = Read(bytes);
    EXPECT_EQ(Lines(read.begin(), read.begin() + 41), commands);
    EXPECT_EQ(read.size(), 82U);
    EXPECT_EQ(Warnings(), warnings);
}

// The refusing command stands between commands read before and after it, one of which names it,
// under default commands and a rule, so that every completion step that must not happen shows.
TEST_F(ParFileAdapterTest, ARefusedItemEndsReadingWithAFailureThatCarriesTheRefusal) {
    CompleteWithDefaultsAndACountingRule();
    for (const auto& c : zentu_test::DataCases("engine/cases/par_refused_items.txt", 6)) {
        SCOPED_TRACE(c.where);
        ZentuCmdContainer container;
        const fs::path path =
            WriteFile("GROUP_DEF\n  ID_NAME = g1\nEND_\nDV\n  ID_NAME = d1\n  GROUP = d2\nEND_\n" +
                      c.fields[0] + "  DESCRIPTION = kept\n" + c.fields[1] +
                      "\n  VALUE = 3\nEND_\nDRESP\n  ID_NAME = r1\nEND_\n");
        EXPECT_EQ(zentu_test::FailureLine(FailureOf([&] { Parse(path, container); })),
                  std::string(kAdapterTag) + " [] -14: " + c.fields[2] + " <- " + c.fields[4] +
                      " [] -14: " + c.fields[3]);
        EXPECT_EQ(
            CmdLines(container),
            (Lines{"GROUP_DEF@GROUP_DEF ID_NAME:ID_NAME=G1/string",
                   "DV@DV ID_NAME:ID_NAME=D1/string GROUP:GROUP=D2/auto" + kIterMax, c.fields[5]}));
    }
    EXPECT_EQ(rulesRun_, 0);
    EXPECT_EQ(Warnings(), Lines{});
}

// Rules see a container whose default commands exist and whose references are resolved.
TEST_F(ParFileAdapterTest, CompletesWithDefaultsThenReferencesThenRules) {
    config_ = Schema(true);
    static bool checked;
    checked = false;
    config_.AddRule([](ZentuCmdContainer& container, const KeywordMap&) {
        const ZentuCmd& dv = container.GetCommand(Cmd::DV, 0);
        ASSERT_TRUE(dv.HasItem(CmdItem::TARGET, 0));
        EXPECT_EQ(dv.Item(CmdItem::TARGET, 0).GetReference(), &container.GetCommand(Cmd::DRESP, 0));
        EXPECT_TRUE(dv.HasItem(CmdItem::ITER_MAX, 0));
        checked = true;
    });

    EXPECT_EQ(Read("DV\n  ID_NAME = d1\n  TARGET = __default_dresp_\nEND_\n"),
              (Lines{"DV@DV ID_NAME:ID_NAME=D1/string "
                     "TARGET:TARGET=__DEFAULT_DRESP_/auto->__DEFAULT_DRESP_" +
                         kIterMax,
                     kDefaultDresp, kDefaultOptParam}));
    EXPECT_TRUE(checked);
}

// Reading appends, and completes the whole container even when the file holds no command.
TEST_F(ParFileAdapterTest, AddsToWhatTheContainerHoldsAndCompletesItEvenWithoutCommands) {
    CompleteWithDefaultsAndACountingRule();
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g0");
    container.CreateCommand(Cmd::DRESP, "DRESP_OLD", "r0");
    Lines expected = {"GROUP_DEF@GROUP_DEF ID_NAME:ID_NAME=G0/string",
                      "DRESP_OLD@DRESP ID_NAME:ID_NAME=R0/string", kDefaultOptParam};

    Parse(WriteFile("# nothing but a comment\n\n"), container);
    EXPECT_EQ(CmdLines(container), expected);
    EXPECT_EQ(rulesRun_, 1);

    Parse(WriteFile("DV\n  ID_NAME = d1\n  GROUP = g0\nEND_\n"), container);
    expected.insert(expected.begin() + 1,
                    "DV@DV ID_NAME:ID_NAME=D1/string GROUP:GROUP=G0/auto->G0" + kIterMax);
    EXPECT_EQ(CmdLines(container), expected);
    EXPECT_EQ(rulesRun_, 2);
}

// An adapter keeps the path, not the text, and its copies read the same file.
TEST_F(ParFileAdapterTest, ReadsTheFileAnewOnEveryParseAndCopiesReadAlike) {
    const fs::path path = WriteFile("DV\n  ID_NAME = d1\nEND_\n");
    const ZentuParFileAdapter adapter(path.wstring(), ZentuCmdIoConfig(config_));
    const std::string second = "DV@DV ID_NAME:ID_NAME=D2/string" + kIterMax;
    ZentuCmdContainer container;

    adapter.Parse(container);
    WriteFile("DV\n  ID_NAME = d2\nEND_\n");
    adapter.Parse(container);
    EXPECT_EQ(CmdLines(container), (Lines{"DV@DV ID_NAME:ID_NAME=D1/string" + kIterMax, second}));

    const ZentuParFileAdapter copy(adapter);
    ZentuParFileAdapter source(adapter);
    const ZentuParFileAdapter moved(std::move(source));
    for (const ZentuParFileAdapter* reader : {&adapter, &copy, &moved}) {
        ZentuCmdContainer fresh;
        reader->Parse(fresh);
        EXPECT_EQ(CmdLines(fresh), Lines{second});
    }
}

// A container that already holds a command, default commands and a rule make any change show; a
// file breaks the structure only after commands that read, warn or are refused, which must leave
// neither commands nor messages behind.
TEST_F(ParFileAdapterTest, FailsOnBadInputNamingFileAndLineAndLeavesTheContainerAlone) {
    CompleteWithDefaultsAndACountingRule();
    // Each file with the line that its failure names, 0 for none; the syntax errors themselves are
    // the tokenizer's business.
    const std::pair<fs::path, int> cases[] = {
        {WriteFile("DV\n  ID_NAME = d1\n  VALUE = 1\n", "open.par"), 3},
        {WriteFile("DV\n  ID_NAME = d1\nEND_\nEND_\n", "after_good.par"), 4},
        {WriteFile("DV\n  BOGUS = 1\nEND_\nDV\n  VALUE = x\nEND_\nDV\n", "after_refused.par"), 7},
        {dir_.Path() / "missing.par", 0},
        {dir_.Path(), 0}};
    for (const auto& [file, line] : cases) {
        const fs::path& path = file;  // a binding cannot be captured before C++20
        SCOPED_TRACE(path.string());
        ZentuCmdContainer container;
        container.CreateCommand(Cmd::DV, "DV", "before");
        const KPL_Failure failure = FailureOf([&] { Parse(path, container); });
        const std::string& message = failure.GetMessage();
        const std::string head = path.string() + ":" + (line > 0 ? std::to_string(line) + ":" : "");
        EXPECT_EQ(failure.GetTag(), kTokenizerTag);
        EXPECT_EQ(failure.GetCause(), nullptr);
        EXPECT_EQ(message.rfind(head + " ", 0), 0U) << message;
        EXPECT_GT(message.size(), head.size() + 1) << "says nothing about what is wrong";
        EXPECT_EQ(CmdLines(container), Lines{"DV@DV ID_NAME:ID_NAME=BEFORE/string"});
    }
    EXPECT_EQ(rulesRun_, 0);
    EXPECT_EQ(Warnings(), Lines{});
}

}  // namespace
