// The parameter-file reader: typing against the schema, its warnings and failures byte for byte,
// what stays in the container when reading stops, the completion steps, and bad input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuCmdStringItem.h"
#include "ZentuParFileAdapter.h"
#include "ZentuParFileAdapter_Util.h"

#include "engine_test_support.h"

namespace {

using zentu_test::ClassOf;
using zentu_test::Identities;

namespace fs = std::filesystem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::KeywordMap;

constexpr const char* kAdapterTag = "|%P|ZentuCmdEngine|ZentuParFileAdapter";
constexpr const char* kAdapterSource =
    "ZentuJobDefinition/ZentuCmdEngine.m/src/ZentuParFileAdapter";
constexpr const char* kTokenizerTag = "|%P|LIBUTIL|ZentuParFile";

std::string IdOf(const ZentuCmd& cmd) {
    return cmd.HasItem(CmdItem::ID_NAME, 0) ? cmd.Item(CmdItem::ID_NAME, 0).GetString() : "";
}

// One line per command, so that whole containers are compared as text: its name, its kind, and
// per item its kind, name, text ('|' for line feeds), class and the identifier it refers to.
std::string Render(const ZentuCmd& cmd) {
    std::string line =
        cmd.GetName() + "@" + ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(cmd.GetType())];
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        for (const auto& item : cmd.Items(static_cast<CmdItem>(kind))) {
            std::string text = item->GetString();
            std::replace(text.begin(), text.end(), '\n', '|');
            line += " " + ZentuCmdItemDefs::CMD_ITEM_NAMES[kind] + ":" + item->GetName() + "=" +
                    text + "/" + ClassOf(*item);
            if (item->HasReference()) {
                line += "->" + IdOf(*item->GetReference());
            }
        }
    }
    return line;
}

std::vector<std::string> Render(const ZentuCmdContainer& container) {
    std::vector<std::string> lines;
    for (const ZentuCmd& cmd : container) {
        lines.push_back(Render(cmd));
    }
    return lines;
}

struct LogLine {
    int type;
    std::string file;
    int line;
    std::string tag;
    std::string message;
};

// Each test gets a fresh folder for its files and a log handler that collects warnings; both
// the handler and the verbosity that were in force before are put back afterwards.
class ParFileAdapterTest : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("zentu_par_adapter_" + std::to_string(std::random_device()()));
        ASSERT_TRUE(fs::create_directory(dir_));
        previousHandler_ =
            KPL_LogMacros::SetLogHandler([this](int type, const char* file, int line,
                                                const char* tag, const std::string& message) {
                log_.push_back(
                    {type, file != nullptr ? file : "", line, tag != nullptr ? tag : "", message});
            });
        previousVerbosity_ = KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_WARNING);
    }

    void TearDown() override {
        KPL_LogMacros::SetLogVerbosity(previousVerbosity_);
        KPL_LogMacros::SetLogHandler(previousHandler_);
        std::error_code ignored;
        fs::remove_all(dir_, ignored);
    }

    // DV, DRESP, GROUP_DEF and OPT_PARAM with an item of every class between them, defaults on
    // ITER_MAX and on DRESP's TYPE, and one description under a lower-case name, which no item
    // of a file can find; DRESP and OPT_PARAM ask for default commands when wanted.
    static ZentuCmdIoConfig Schema(bool defaultCommands) {
        ZentuCmdIoConfig config;
        config.AddCmdMetadata("DV", ZentuCmdMetaData(Cmd::DV, false))
            .AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME, DataType::STRING, "", "", 1))
            .AddItem("TYPE", ZentuCmdItemMetaData(CmdItem::TYPE, {{"TOPO", 1}, {"SHAPE", 2}}, ""))
            .AddItem("VALUE", ZentuCmdItemMetaData(CmdItem::VALUE, DataType::INTEGER, "", "", 1))
            .AddItem("MIN", ZentuCmdItemMetaData(CmdItem::MIN, DataType::REAL, "", "", 1))
            .AddItem("GROUP", ZentuCmdItemMetaData(CmdItem::GROUP, Cmd::GROUP_DEF, ""))
            .AddItem("TARGET", ZentuCmdItemMetaData(CmdItem::TARGET, Cmd::DRESP, ""))
            .AddItem("DESCRIPTION",
                     ZentuCmdItemMetaData(CmdItem::DESCRIPTION, DataType::RAW_STRING, "", "", 1))
            .AddItem("ELEMENTS",
                     ZentuCmdItemMetaData(CmdItem::LIST_BEGIN, DataType::BRELT_LIST, "", "", 1))
            .AddItem("ITER_MAX", ZentuCmdItemMetaData(CmdItem::ITER_MAX, 30, "", 1))
            .AddItem("note", ZentuCmdItemMetaData(CmdItem::FORMAT, DataType::STRING, "", "", 1));
        config.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, defaultCommands))
            .AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME, DataType::STRING, "", "", 1))
            .AddItem("TYPE", ZentuCmdItemMetaData(CmdItem::TYPE, "volume", "", 1))
            .AddItem("DV", ZentuCmdItemMetaData(CmdItem::DV, Cmd::DV, ""));
        config.AddCmdMetadata("GROUP_DEF", ZentuCmdMetaData(Cmd::GROUP_DEF, false))
            .AddItem("ID_NAME",
                     ZentuCmdItemMetaData(CmdItem::ID_NAME, DataType::STRING, "", "", 1));
        config.AddCmdMetadata("OPT_PARAM", ZentuCmdMetaData(Cmd::OPT_PARAM, defaultCommands))
            .AddItem("ITER_MAX", ZentuCmdItemMetaData(CmdItem::ITER_MAX, 50, "", 1));
        return config;
    }

    fs::path WriteFile(const std::string& bytes, const std::string& name = "job.par") const {
        const fs::path path = dir_ / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    // A container rule that records that it ran.
    void AddLoggingRule() {
        config_.AddRule([this](ZentuCmdContainer&, const KeywordMap&) { rulesRun_ += 1; });
    }

    void Parse(const fs::path& path) {
        ZentuParFileAdapter(path.wstring(), ZentuCmdIoConfig(config_)).Parse(container_);
    }

    // The failure that reading ends in; a read that succeeds fails the test.
    std::optional<KPL_Failure> ParseFailure(const fs::path& path) {
        try {
            Parse(path);
            ADD_FAILURE() << "read without failure";
        } catch (const KPL_Failure& failure) {
            return failure;
        }
        return std::nullopt;
    }

    // The messages logged so far, each checked to be one of the reader's warnings.
    std::vector<std::string> Warnings() const {
        std::vector<std::string> messages;
        for (const LogLine& line : log_) {
            EXPECT_EQ(line.type, KPL_LogMacros::LOG_WARNING) << line.message;
            EXPECT_EQ(line.tag, kAdapterTag) << line.message;
            EXPECT_EQ(line.file, kAdapterSource) << line.message;
            EXPECT_GT(line.line, 0) << line.message;
            messages.push_back(line.message);
        }
        return messages;
    }

    fs::path dir_;
    ZentuCmdIoConfig config_ = Schema(false);
    ZentuCmdContainer container_;
    int rulesRun_ = 0;
    std::vector<LogLine> log_;

  private:
    KPL_LogMacros::LogHandler previousHandler_;
    int previousVerbosity_ = KPL_LogMacros::LOG_WARNING;
};

// ---- Typing ----

TEST_F(ParFileAdapterTest, TypesEveryItemByItsDescriptionUnderItsUpperCaseName) {
    Parse(
        WriteFile("dv\n"
                  "  id_name = d1\n"
                  "  type = shape\n"
                  "  Value = 12\n"
                  "  MIN = -2.5\n"
                  "  GROUP = g1\n"
                  "  DESCRIPTION = Mixed Case text\n"
                  "  ELEMENTS\n"
                  "  1-5,7,\n"
                  "  9-13:2\n"
                  "  VALUE = 13\n"
                  "END_\n"
                  "\n"
                  "GROUP_DEF\n"
                  "  ID_NAME = g1\n"
                  "END_\n"));

    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{
                  "GROUP_DEF@GROUP_DEF ID_NAME:ID_NAME=G1/string",
                  "dv@DV ID_NAME:ID_NAME=D1/string TYPE:TYPE=SHAPE/enum GROUP:GROUP=G1/auto->G1 "
                  "VALUE:VALUE=12/int VALUE:VALUE=13/int MIN:MIN=-2.5/real "
                  "LIST_BEGIN:ELEMENTS=1-5,7,|9-13:2/auto ITER_MAX:ITER_MAX=30/int "
                  "DESCRIPTION:DESCRIPTION=Mixed Case text/raw"}));
    EXPECT_TRUE(Warnings().empty());
}

TEST_F(ParFileAdapterTest, CreateCmdItemBuildsTheClassOfTheDescriptionsType) {
    const struct {
        ZentuCmdItemMetaData description;
        const char* text;
        const char* expected;
    } cases[] = {
        {ZentuCmdItemMetaData(CmdItem::VALUE, DataType::INTEGER, "", "", 1), "7", "7/int"},
        {ZentuCmdItemMetaData(CmdItem::VALUE, DataType::REAL, "", "", 1), "7", "7/real"},
        {ZentuCmdItemMetaData(CmdItem::VALUE, DataType::STRING, "", "", 1), "ab", "AB/string"},
        {ZentuCmdItemMetaData(CmdItem::VALUE, DataType::RAW_STRING, "", "", 1), "ab", "ab/raw"},
        {ZentuCmdItemMetaData(CmdItem::VALUE, {{"TOPO", 1}}, ""), "to", "TO/enum"},
        {ZentuCmdItemMetaData(CmdItem::VALUE, DataType::REFERENCE, "", "", 1), "ab", "AB/auto"},
        {ZentuCmdItemMetaData(CmdItem::VALUE, DataType::VECTOR3D, "", "", 1), "1,2", "1,2/auto"},
        {ZentuCmdItemMetaData(CmdItem::VALUE), "x", "X/auto"},
    };
    const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    for (const auto& c : cases) {
        const std::unique_ptr<ZentuCmdItem> item = ZentuParFileAdapter_Util::create_cmd_item(
            c.description, "NAME", c.text, keywords, "DV", "D1");
        ASSERT_NE(item, nullptr) << c.expected;
        EXPECT_EQ(item->GetName(), "NAME");
        EXPECT_EQ(item->GetString() + "/" + ClassOf(*item), c.expected);
    }
}

// ---- Undescribed items ----

struct WarningCase {
    const char* label;
    const char* file;
    std::vector<std::string> warnings;
    std::string read;
};

void PrintTo(const WarningCase& c, std::ostream* out) {
    *out << c.label;
}

class UndescribedItem : public ParFileAdapterTest,
                        public ::testing::WithParamInterface<WarningCase> {};

TEST_P(UndescribedItem, WarnsAndDropsTheItemAndReadsOn) {
    Parse(WriteFile(GetParam().file));

    EXPECT_EQ(Warnings(), GetParam().warnings);
    EXPECT_EQ(Render(container_), std::vector<std::string>{GetParam().read});
}

INSTANTIATE_TEST_SUITE_P(
    ParFileAdapter, UndescribedItem,
    ::testing::Values(
        WarningCase{"with an identifier",
                    "DV\n  ID_NAME = D1\n  foo = 1\n  VALUE = 2\nEND_\n",
                    {"Unknown item 'FOO' found in command DV with ID_NAME D1."},
                    "DV@DV ID_NAME:ID_NAME=D1/string VALUE:VALUE=2/int ITER_MAX:ITER_MAX=30/int"},
        WarningCase{"keyword and identifier as written",
                    "dv\n  Id_Name = d1\n  foo = 1\nEND_\n",
                    {"Unknown item 'FOO' found in command dv with ID_NAME d1."},
                    "dv@DV ID_NAME:ID_NAME=D1/string ITER_MAX:ITER_MAX=30/int"},
        WarningCase{"without an identifier",
                    "DV\n  foo = 1\nEND_\n",
                    {"Unknown item 'FOO' found in command DV."},
                    "DV@DV ITER_MAX:ITER_MAX=30/int"},
        WarningCase{"declared by another kind only",
                    "DV\n  ID_NAME = D1\n  DV = D1\nEND_\n",
                    {"Unknown item 'DV' found in command DV with ID_NAME D1."},
                    "DV@DV ID_NAME:ID_NAME=D1/string ITER_MAX:ITER_MAX=30/int"},
        WarningCase{"described in lower case only",
                    "DV\n  note = x\nEND_\n",
                    {"Unknown item 'NOTE' found in command DV."},
                    "DV@DV ITER_MAX:ITER_MAX=30/int"},
        WarningCase{"unknown keyword",
                    "FooCmd\n  ID_NAME = x1\n  type = a\n  = 3\nEND_\n",
                    {"Unknown item 'ID_NAME' found in command FooCmd with ID_NAME x1.",
                     "Unknown item 'TYPE' found in command FooCmd with ID_NAME x1."},
                    "FooCmd@CMD_PLACEHOLDER"},
        WarningCase{"an empty name is dropped silently",
                    "DV\n  = 5\n  ID_NAME = D1\nEND_\n",
                    {},
                    "DV@DV ID_NAME:ID_NAME=D1/string ITER_MAX:ITER_MAX=30/int"}));

// ---- Refused items ----

struct RefusalCase {
    const char* label;
    const char* command;  // the keyword line and, when there is one, the identifier line
    const char* refused;
    const char* message;
    const char* causeMessage;
    const char* causeTag;
    const char* kept;  // the refusing command as it stays
};

void PrintTo(const RefusalCase& c, std::ostream* out) {
    *out << c.label;
}

class RefusedItem : public ParFileAdapterTest, public ::testing::WithParamInterface<RefusalCase> {};

// The refusing command stands between commands read before and after it, one of which names it,
// under a schema that asks for default commands and a rule, so that every completion step that
// must not happen would show.
TEST_P(RefusedItem, EndsReadingWithAFailureThatCarriesTheRefusal) {
    const RefusalCase& c = GetParam();
    config_ = Schema(true);
    AddLoggingRule();
    const fs::path path = WriteFile(std::string("GROUP_DEF\n  ID_NAME = g1\nEND_\n") +
                                    "DV\n  ID_NAME = d1\n  GROUP = d2\nEND_\n" + c.command +
                                    "  DESCRIPTION = kept\n" + c.refused + "\n  VALUE = 3\nEND_\n" +
                                    "DRESP\n  ID_NAME = r1\nEND_\n");

    const std::optional<KPL_Failure> failure = ParseFailure(path);

    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->GetMessage(), c.message);
    EXPECT_EQ(failure->GetTag(), kAdapterTag);
    EXPECT_EQ(failure->GetId(), "");
    EXPECT_EQ(failure->GetErrorCode(), -14);
    const KPL_Exception* cause = failure->GetCause();
    ASSERT_NE(cause, nullptr);
    EXPECT_EQ(cause->GetMessage(), c.causeMessage);
    EXPECT_EQ(cause->GetTag(), c.causeTag);
    EXPECT_EQ(cause->GetId(), "");
    EXPECT_EQ(cause->GetErrorCode(), -14);
    EXPECT_EQ(cause->GetCause(), nullptr);

    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{"GROUP_DEF@GROUP_DEF ID_NAME:ID_NAME=G1/string",
                                        "DV@DV ID_NAME:ID_NAME=D1/string GROUP:GROUP=D2/auto "
                                        "ITER_MAX:ITER_MAX=30/int",
                                        c.kept}));
    EXPECT_EQ(rulesRun_, 0);
    EXPECT_TRUE(Warnings().empty());
}

INSTANTIATE_TEST_SUITE_P(
    ParFileAdapter, RefusedItem,
    ::testing::Values(
        RefusalCase{"integer", "DV\n  ID_NAME = d2\n", "  value = 12abc",
                    "In command DV with ID_NAME d2, the creation of the item VALUE failed.",
                    "The item VALUE has an invalid type. '12abc' must be an integer value.",
                    "|%P|ZentuCmdEngine|ZentuCmdIntItem",
                    "DV@DV ID_NAME:ID_NAME=D2/string DESCRIPTION:DESCRIPTION=kept/raw"},
        RefusalCase{"real without an identifier", "dv\n", "  MIN = 1.5x",
                    "In command dv , the creation of the item MIN failed.",
                    "The item MIN has an invalid type. '1.5x' must be a scalar value.",
                    "|%P|ZentuCmdEngine|ZentuCmdScalarItem",
                    "dv@DV DESCRIPTION:DESCRIPTION=kept/raw"},
        RefusalCase{"keyword", "DV\n  ID_NAME = d2\n", "  TYPE = size",
                    "In command DV with ID_NAME d2, the creation of the item TYPE failed.",
                    "The value \"size\" is not allowed for item TYPE.\nValid options are: \n"
                    "SHAPE, TOPO",
                    "|%P|ZentuCmdEngine|ZentuCmdEnumItem",
                    "DV@DV ID_NAME:ID_NAME=D2/string DESCRIPTION:DESCRIPTION=kept/raw"}));

TEST_F(ParFileAdapterTest, CutsTheCreationMessageTo1023Characters) {
    const std::string keyword(1100, 'K');
    try {
        ZentuParFileAdapter_Util::create_cmd_item(
            ZentuCmdItemMetaData(CmdItem::VALUE, DataType::INTEGER, "", "", 1), "VALUE", "x",
            KeywordMap(), keyword, "D1");
        FAIL() << "no failure";
    } catch (const KPL_Failure& failure) {
        EXPECT_EQ(failure.GetMessage(), ("In command " + keyword +
                                         " with ID_NAME D1, the creation of the item VALUE failed.")
                                            .substr(0, 1023));
        ASSERT_NE(failure.GetCause(), nullptr);
        EXPECT_EQ(failure.GetCause()->GetMessage(),
                  "The item VALUE has an invalid type. 'x' must be an integer value.");
    }
}

// ---- Completion ----

TEST_F(ParFileAdapterTest, CompletesWithDefaultsThenReferencesThenRules) {
    config_ = Schema(true);
    bool checked = false;
    config_.AddRule([&checked](ZentuCmdContainer& container, const KeywordMap&) {
        const ZentuCmd& dv = container.GetCommand(Cmd::DV, 0);
        ASSERT_TRUE(dv.HasItem(CmdItem::TARGET, 0));
        EXPECT_EQ(dv.Item(CmdItem::TARGET, 0).GetReference(), &container.GetCommand(Cmd::DRESP, 0));
        EXPECT_TRUE(dv.HasItem(CmdItem::ITER_MAX, 0));
        checked = true;
    });

    Parse(WriteFile("DV\n  ID_NAME = d1\n  TARGET = __default_dresp_\nEND_\n"));

    EXPECT_TRUE(checked);
    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{
                  "DV@DV ID_NAME:ID_NAME=D1/string "
                  "TARGET:TARGET=__DEFAULT_DRESP_/auto->__DEFAULT_DRESP_ ITER_MAX:ITER_MAX=30/int",
                  "DRESP@DRESP ID_NAME:ID_NAME=__DEFAULT_DRESP_/string TYPE:TYPE=VOLUME/string",
                  "OPT_PARAM@OPT_PARAM ID_NAME:ID_NAME=__DEFAULT_OPT_PARAM_/string "
                  "ITER_MAX:ITER_MAX=50/int"}));
}

TEST_F(ParFileAdapterTest, AFileWithoutCommandsStillCompletesTheContainer) {
    config_ = Schema(true);
    AddLoggingRule();

    Parse(WriteFile("# nothing but a comment\n\n"));

    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{
                  "DRESP@DRESP ID_NAME:ID_NAME=__DEFAULT_DRESP_/string TYPE:TYPE=VOLUME/string",
                  "OPT_PARAM@OPT_PARAM ID_NAME:ID_NAME=__DEFAULT_OPT_PARAM_/string "
                  "ITER_MAX:ITER_MAX=50/int"}));
    EXPECT_EQ(rulesRun_, 1);
}

TEST_F(ParFileAdapterTest, AddsToWhatTheContainerHoldsAndResolvesAgainstIt) {
    config_ = Schema(true);
    container_.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g0");
    container_.CreateCommand(Cmd::DRESP, "DRESP_OLD", "r0");

    Parse(WriteFile("DV\n  ID_NAME = d1\n  GROUP = g0\nEND_\n"));

    EXPECT_EQ(
        Render(container_),
        (std::vector<std::string>{"GROUP_DEF@GROUP_DEF ID_NAME:ID_NAME=G0/string",
                                  "DV@DV ID_NAME:ID_NAME=D1/string GROUP:GROUP=G0/auto->G0 "
                                  "ITER_MAX:ITER_MAX=30/int",
                                  "DRESP_OLD@DRESP ID_NAME:ID_NAME=R0/string",
                                  "OPT_PARAM@OPT_PARAM ID_NAME:ID_NAME=__DEFAULT_OPT_PARAM_/string "
                                  "ITER_MAX:ITER_MAX=50/int"}));
}

TEST_F(ParFileAdapterTest, ReadsTheFileAnewOnEveryParseAndCopiesReadAlike) {
    const fs::path path = WriteFile("DV\n  ID_NAME = d1\nEND_\n");
    ZentuParFileAdapter adapter(path.wstring(), ZentuCmdIoConfig(config_));
    const std::string first = "DV@DV ID_NAME:ID_NAME=D1/string ITER_MAX:ITER_MAX=30/int";
    const std::string second = "DV@DV ID_NAME:ID_NAME=D2/string ITER_MAX:ITER_MAX=30/int";

    adapter.Parse(container_);
    WriteFile("DV\n  ID_NAME = d2\nEND_\n");
    adapter.Parse(container_);
    EXPECT_EQ(Render(container_), (std::vector<std::string>{first, second}));

    const ZentuParFileAdapter copy(adapter);
    ZentuParFileAdapter source(adapter);
    const ZentuParFileAdapter moved(std::move(source));
    for (const ZentuParFileAdapter* reader :
         std::initializer_list<const ZentuParFileAdapter*>{&adapter, &copy, &moved}) {
        ZentuCmdContainer container;
        reader->Parse(container);
        EXPECT_EQ(Render(container), std::vector<std::string>{second});
    }
}

// ---- Bad input ----

// A file that the tokenizer refuses, and the line its message must name (0: any line).
struct MalformedCase {
    const char* label;
    const char* bytes;
    int line;
};

void PrintTo(const MalformedCase& c, std::ostream* out) {
    *out << c.label;
}

class MalformedFile : public ParFileAdapterTest,
                      public ::testing::WithParamInterface<MalformedCase> {
  protected:
    // A container that already holds a command, a schema that asks for default commands and a
    // rule, so that any change to the container would show.
    void SetUp() override {
        ParFileAdapterTest::SetUp();
        config_ = Schema(true);
        AddLoggingRule();
        container_.CreateCommand(Cmd::DV, "DV", "before");
    }

    // Checks that the failure is the tokenizer's, names the path and the line (a positive one
    // when line is 0, none when line is negative), and that the container was not touched.
    void ExpectRefusal(const fs::path& path, int line) {
        const std::optional<KPL_Failure> failure = ParseFailure(path);
        ASSERT_TRUE(failure.has_value());
        EXPECT_EQ(failure->GetTag(), kTokenizerTag);
        EXPECT_EQ(failure->GetCause(), nullptr);
        const std::string& message = failure->GetMessage();
        const std::string file = path.string() + ":";
        ASSERT_EQ(message.compare(0, file.size(), file), 0) << message;
        std::size_t rest = file.size();
        if (line > 0) {
            const std::string number = std::to_string(line) + ":";
            EXPECT_EQ(message.compare(rest, number.size(), number), 0) << message;
            rest += number.size();
        } else if (line == 0) {
            const std::size_t digits = message.find_first_not_of("0123456789", rest);
            EXPECT_GT(digits, rest) << message;
            EXPECT_EQ(message.compare(digits, 1, ":"), 0) << message;
            rest = digits + 1;
        }
        EXPECT_EQ(message.compare(rest, 1, " "), 0) << message;
        EXPECT_GT(message.size(), rest + 1) << "says nothing about what is wrong: " << message;
        EXPECT_EQ(Render(container_),
                  std::vector<std::string>{"DV@DV ID_NAME:ID_NAME=BEFORE/string"});
        EXPECT_EQ(rulesRun_, 0);
    }
};

TEST_P(MalformedFile, FailsNamingFileAndLineAndLeavesTheContainerAlone) {
    ExpectRefusal(WriteFile(GetParam().bytes), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    ParFileAdapter, MalformedFile,
    ::testing::Values(
        MalformedCase{"unterminated command", "DV\n  ID_NAME = d1\n  VALUE = 1\n", 0},
        MalformedCase{"unterminated command with CR LF", "DV\r\n  ID_NAME = d1\r\n", 0},
        MalformedCase{"END_ outside a command", "DV\nEND_\n\nend_\n", 4},
        MalformedCase{"item outside a command", "DV\nEND_\n  VALUE = 1\nDV\nEND_\n", 3},
        MalformedCase{"command line of two words", "# two words\nDV TOPO\nEND_\n", 2},
        MalformedCase{"good commands before the error", "DV\n  ID_NAME = d1\nEND_\nEND_\n", 4}));

TEST_F(MalformedFile, FailsOnAMissingFileNamingIt) {
    ExpectRefusal(dir_ / "missing.par", -1);
}

TEST_F(MalformedFile, FailsOnADirectoryNamingIt) {
    const std::optional<KPL_Failure> failure = ParseFailure(dir_);
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->GetTag(), kTokenizerTag);
    EXPECT_EQ(failure->GetMessage().rfind(dir_.string() + ":", 0), 0U) << failure->GetMessage();
    EXPECT_EQ(Render(container_), std::vector<std::string>{"DV@DV ID_NAME:ID_NAME=BEFORE/string"});
    EXPECT_EQ(rulesRun_, 0);
}

// Random bytes must never crash or hang the reader: each blob either reads or is refused by a
// failure that names the file, and a refusal leaves the container as it was.
TEST_F(MalformedFile, ReadsBinaryGarbageOrRefusesItNamingTheFile) {
    std::mt19937 random(20240611);
    for (int blob = 0; blob < 16; ++blob) {
        std::string bytes(512 + 256 * blob, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() & 0xFF);
        }
        if (blob % 2 == 1) {
            bytes = "DV\n  ID_NAME = g\n" + bytes;
        }
        const fs::path path = WriteFile(bytes, "garbage" + std::to_string(blob) + ".par");
        ZentuCmdContainer container;
        container.CreateCommand(Cmd::DV, "DV", "before");
        try {
            ZentuParFileAdapter(path.wstring(), ZentuCmdIoConfig(config_)).Parse(container);
        } catch (const KPL_Failure& failure) {
            EXPECT_EQ(failure.GetMessage().rfind(path.string() + ":", 0), 0U)
                << failure.GetMessage();
            EXPECT_EQ(Render(container),
                      std::vector<std::string>{"DV@DV ID_NAME:ID_NAME=BEFORE/string"});
        }
    }
}

// Comments, blank lines and a closing line in lower case with blanks around it stand where a
// careless reader would take them for a value line or miss the end of a command.
TEST_F(ParFileAdapterTest, ReadsCrLfLinesLikeLfLines) {
    const std::string lf =
        "# job\n\ndv\n  id_name = d1\n  # a comment\n  ELEMENTS\n  1,3,\n  # inside the value\n"
        "  5-9\n  DESCRIPTION = a b\n  end_  \n\nGROUP_DEF\n  ID_NAME = g1\nEND_\n";
    std::string crlf;
    for (char c : lf) {
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }

    Parse(WriteFile(lf, "lf.par"));
    const std::vector<std::string> fromLf = Render(container_);
    ZentuCmdContainer fromCrLf;
    ZentuParFileAdapter(WriteFile(crlf, "crlf.par").wstring(), ZentuCmdIoConfig(config_))
        .Parse(fromCrLf);

    EXPECT_EQ(Render(fromCrLf), fromLf);
    EXPECT_EQ(fromLf, (std::vector<std::string>{
                          "GROUP_DEF@GROUP_DEF ID_NAME:ID_NAME=G1/string",
                          "dv@DV ID_NAME:ID_NAME=D1/string LIST_BEGIN:ELEMENTS=1,3,|5-9/auto "
                          "ITER_MAX:ITER_MAX=30/int DESCRIPTION:DESCRIPTION=a b/raw"}));
}

}  // namespace
