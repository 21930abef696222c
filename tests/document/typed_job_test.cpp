// The typed job on the document: for a file without errors it is the container that the
// parameter-file reader builds with the same schema, every command and item traces back to the
// file, and the problems of typing and completing are found where they are written.
#include "ZentuTypedJob.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "../engine/engine_test_support.h"
#include "ZentuBoundRules.h"
#include "ZentuCmd.h"
#include "ZentuJobJson.h"
#include "ZentuParFileAdapter.h"
#include "ZentuStringUtil.h"
#include "document_test_support.h"
#include "job_generator.h"
#include "zentu_test_cases.h"

namespace {

namespace fs = std::filesystem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuStringUtil::to_upper;

// Reads a file as a host does, with the configuration that the schema describes.
std::vector<std::string> AdapterLines(const fs::path& path, const ZentuJobSchema& schema) {
    const zentu_test::LogCollector quiet;
    const ZentuBoundRules::Scope scope(schema.BoundRules());
    ZentuCmdContainer container;
    ZentuParFileAdapter(path.wstring(), schema.BuildConfig(ZentuCompletion::FULL)).Parse(container);
    return zentu_test::CmdLines(container);
}

// Each command comes from a document command of its keyword (a command that a rule generated
// from the one that made it) or is a default command; each item traced comes from an item of its
// command's document command and of its name.
void ExpectTracedToTheDocument(const ZentuTypedJob& job, const ZentuJobSchema& schema) {
    const auto& written = job.Document().Commands();
    for (const ZentuCmd& command : job.Container()) {
        const ZentuOrigin origin = job.OriginOf(command);
        SCOPED_TRACE(command.GetName() + " at " + std::to_string(origin.command));
        if (origin.command == ZentuOrigin::NONE) {
            EXPECT_TRUE(schema.FindCommand(to_upper(command.GetName()))->create_default);
            continue;
        }
        ASSERT_LT(origin.command, written.size());
        EXPECT_EQ(to_upper(written[origin.command].keyword), to_upper(command.GetName()));
        for (const ZentuCmdItem* item : zentu_test::Identities(command)) {
            const ZentuOrigin from = job.OriginOf(command, *item);
            EXPECT_EQ(from.command, origin.command);
            if (from.item != ZentuOrigin::NONE) {
                EXPECT_EQ(to_upper(written[from.command].items.at(from.item).name),
                          item->GetName());
            }
        }
    }
}

// The JSON written piece by piece is the text of the job's JSON value.
void ExpectJsonWrittenAsDumped(const ZentuTypedJob& job) {
    std::ostringstream written;
    ZentuJobJson::write_job("a \"job\"", job, written);
    EXPECT_EQ(written.str(), ZentuJobJson::job("a \"job\"", job)
                                 .dump(2, ' ', false, ZentuJson::error_handler_t::replace));
}

// The property: reading through the document gives what the reader gives, without errors.
void ExpectSameAsTheReader(const fs::path& path, const ZentuJobSchema& schema) {
    SCOPED_TRACE(path.string());
    const ZentuTypedJob job = ZentuTypedJob::ReadFile(path.string(), schema, ZentuCompletion::FULL);
    EXPECT_FALSE(job.Document().HasErrors());
    EXPECT_EQ(zentu_test::CmdLines(job.Container()), AdapterLines(path, schema));
    ExpectTracedToTheDocument(job, schema);
    ExpectJsonWrittenAsDumped(job);
}

// The same lines with CR LF ends and a byte-order mark, which both readers skip.
std::string AsWindowsText(const std::string& text) {
    std::string windows = "\xEF\xBB\xBF";
    for (char c : text) {
        windows += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    return windows;
}

// Every example and generated jobs of several sizes, also with CR LF ends and a byte-order mark,
// read as the reader reads them.
TEST(TypedJob, ExamplesAndGeneratedJobsReadAsTheReaderReadsThem) {
    const fs::path examples = ZENTU_EXAMPLES_DIR;
    const ZentuJobSchema builtin = ZentuJobSchema::Builtin();
    const ZentuJobSchema custom = ZentuJobSchema::Load((examples / "custom_schema.json").string());
    const zentu_test::ScratchDir scratch("zentu_typed_job_");
    std::vector<std::pair<fs::path, const ZentuJobSchema*>> files;
    for (const auto& entry : fs::directory_iterator(examples)) {
        if (entry.path().extension() == ".par") {
            files.emplace_back(entry.path(), entry.path().stem() == "custom" ? &custom : &builtin);
        }
    }
    for (const std::size_t commands : {7, 60, 400}) {
        for (const std::uint32_t seed : {1U, 2U}) {
            files.emplace_back(scratch.Path() / ("job_" + std::to_string(commands) + "_" +
                                                 std::to_string(seed) + ".par"),
                               &builtin);
            std::ofstream(files.back().first) << ZentuJobGenerator::job_text(commands, seed);
        }
    }
    for (const auto& [path, schema] : files) {
        ExpectSameAsTheReader(path, *schema);
        std::ifstream in(path, std::ios::binary);
        const fs::path windows = scratch.Path() / ("windows_" + path.filename().string());
        std::ofstream(windows, std::ios::binary)
            << AsWindowsText(std::string(std::istreambuf_iterator<char>(in), {}));
        ExpectSameAsTheReader(windows, *schema);
    }
}

// Texts that JSON escapes or replaces, and texts longer than the writer's buffer, plain or
// escaped, are written as the value dumps them.
TEST(TypedJob, JsonOfUnusualTextsWrittenAsDumped) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const std::string longText(70000, 'x');
    for (const std::string& description : {std::string("\"q\" \\ caf\xC3\xA9 \x01 \xFF~\x7F"),
                                           longText, longText + "\"", longText + longText}) {
        SCOPED_TRACE(description.size());
        ExpectJsonWrittenAsDumped(ZentuTypedJob::ReadText(
            "OPTIONS\n  ID_NAME = o\n  DESCRIPTION = " + description + "\nEND_\n", "x.par", schema,
            ZentuCompletion::FULL));
    }
}

// What the texts below refer to: a group and two responses.
const std::string kResponses =
    "GROUP_DEF\n  ID_NAME = design\nEND_\n"
    "DRESP\n  ID_NAME = mass\n  TYPE = VOLUME\nEND_\n"
    "DRESP\n  ID_NAME = disp\n  TYPE = DISP_ABS\nEND_\n";

// Each problem of typing and completing is found, once, where it is written.
TEST(TypedJob, LocatesWhatTypingAndCompletingFind) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    for (const auto& c : zentu_test::DataCases("document/cases/located.txt", 2)) {
        SCOPED_TRACE(c.where);
        const std::string code = c.fields[1].substr(0, c.fields[1].find(' '));
        std::string text = zentu_test::Bytes(c.fields[0]);
        if (text.rfind("{R}", 0) == 0) {
            text.replace(0, 3, kResponses);
        }
        const ZentuTypedJob job =
            ZentuTypedJob::ReadText(text, "job.par", schema, ZentuCompletion::FULL);
        EXPECT_EQ(zentu_test::FindingLines(job.Findings(), code),
                  std::vector<std::string>{c.fields[1]});
    }
}

// A misspelt name is judged against the candidates of its own command, however often it recurs.
TEST(TypedJob, SuggestsForEachCommandItsOwnItemNames) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const ZentuTypedJob job = ZentuTypedJob::ReadText(
        "DV\n  ID_NAME = d1\n  LOWR = 0.1\nEND_\nGROUP_DEF\n  ID_NAME = g\n  LOWR = 1\nEND_\n"
        "DV\n  ID_NAME = d2\n  LOWR = 0.2\nEND_\n",
        "job.par", schema, ZentuCompletion::NONE);
    EXPECT_EQ(zentu_test::FindingLines(job.Findings(), "unknown-item"),
              (std::vector<std::string>{
                  "unknown-item 3:3-3:7 Unknown item 'LOWR' found in command DV with ID_NAME d1; "
                  "did you mean 'LOWER'? => LOWER",
                  "unknown-item 7:3-7:7 Unknown item 'LOWR' found in command GROUP_DEF with "
                  "ID_NAME g.",
                  "unknown-item 11:3-11:7 Unknown item 'LOWR' found in command DV with ID_NAME d2; "
                  "did you mean 'LOWER'? => LOWER"}));
}

// A generated operator traces to the command of its expression; default commands trace nowhere.
TEST(TypedJob, TracesGeneratedOperatorsToTheExpressionAndLeavesDefaultsUntraced) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const ZentuTypedJob job = ZentuTypedJob::ReadText(
        kResponses +
            "OPERATOR\n  ID_NAME = o\n  ADD_FILE = 2 * (%mass% + %disp%)\nEND_\n"
            "OPTIMIZE\n  OBJ_FUNC = o\nEND_\n",
        "job.par", schema, ZentuCompletion::FULL);
    ExpectTracedToTheDocument(job, schema);
    std::vector<std::string> origins;
    for (const ZentuCmd& command : job.Container()) {
        const std::size_t from = job.OriginOf(command).command;
        origins.push_back(command.GetName() + " " +
                          (command.HasItem(CmdItem::ID_NAME, 0)
                               ? command.Item(CmdItem::ID_NAME, 0).GetString()
                               : "") +
                          " <- " + (from == ZentuOrigin::NONE ? "-" : std::to_string(from)));
    }
    EXPECT_EQ(origins,
              (std::vector<std::string>{
                  "GROUP_DEF DESIGN <- 0", "DRESP MASS <- 1", "DRESP DISP <- 2", "OPERATOR O <- 3",
                  "OPERATOR _DRESPEXPR_+1*%MASS%+1*%DISP%_ <- 3", "OPTIMIZE  <- 4",
                  "OPT_PARAM __DEFAULT_OPT_PARAM_ <- -", "STOP __DEFAULT_STOP_ <- -"}));
}

// Where the built-in schema's expression rule stands among its rules.
enum class ExpressionRule { FIRST, LAST, ABSENT };

// The built-in schema with its expression rule first, as it comes, last or left out.
ZentuJobSchema BuiltinWithExpressionRule(ExpressionRule placement) {
    ZentuJson document = ZentuJson::parse(ZentuJobSchema::BuiltinText());
    ZentuJson& rules = document["rules"];
    const auto rule = std::find_if(rules.begin(), rules.end(), [](const ZentuJson& entry) {
        return entry["rule"] == "dresp_expressions";
    });
    const ZentuJson expressions = *rule;
    if (placement != ExpressionRule::FIRST) {
        rules.erase(rule);
    }
    if (placement == ExpressionRule::LAST) {
        rules.push_back(expressions);
    }
    return ZentuJobSchema::Parse(document, "test");
}

// Each faulty expression is reported where it is written whether the expression rule reads it, a
// rule before it fails (here on a keyword in lower case), or no rule reads expressions; the sound
// one is expanded only where the rule runs through.
TEST(TypedJob, ReportsFaultyExpressionsWhereverTheExpressionRuleStands) {
    const std::string deep = std::string(201, '(') + "%mass%" + std::string(201, ')');
    const std::string text =
        kResponses + "OPERATOR\n  ID_NAME = o1\n  ADD_FILE = %mass% + %dips%\nEND_\n" +
        "OPERATOR\n  ID_NAME = o2\n  ADD_FILE = %mass% # 2\nEND_\n" +
        "OPERATOR\n  ID_NAME = o3\n  ADD_FILE = " + deep + "\nEND_\n" +
        "OPERATOR\n  ID_NAME = o4\n  ADD_FILE = 2 * %disp%\nEND_\n" + "dv\n  ID_NAME = d1\nEND_\n";
    for (const auto& [placement, expanded] :
         {std::pair{ExpressionRule::FIRST, true}, std::pair{ExpressionRule::LAST, false},
          std::pair{ExpressionRule::ABSENT, false}}) {
        SCOPED_TRACE(static_cast<int>(placement));
        const ZentuTypedJob job = ZentuTypedJob::ReadText(
            text, "job.par", BuiltinWithExpressionRule(placement), ZentuCompletion::FULL);
        EXPECT_EQ(zentu_test::FindingLines(job.Findings(), "expression-syntax"),
                  (std::vector<std::string>{
                      "expression-syntax 14:23-14:29 %dips% in the expression names no DRESP or "
                      "OPERATOR command; did you mean %DISP%? => %DISP%",
                      "expression-syntax 18:14-18:24 Unknown character '#' at position 8 in "
                      "expression \"%mass% # 2\""}));
        EXPECT_EQ(zentu_test::FindingLines(job.Findings(), "expression-unsupported"),
                  std::vector<std::string>{"expression-unsupported 22:14-22:422 the expression "
                                           "nests 201 levels deep, more than the 200 that are "
                                           "expanded"});
        const ZentuCmd& sound = job.Container().GetCommand(Cmd::OPERATOR, 3);
        EXPECT_EQ(sound.HasItem(CmdItem::ADD_FILE, 0), !expanded);
    }
}

// A change to any part of a schema's commands that the configuration is built from.
const std::vector<std::pair<const char*, std::function<void(ZentuJobSchema&)>>> kConfigChanges = {
    {"keyword", [](ZentuJobSchema& s) { s.commands[0].keyword += "X"; }},
    {"kind", [](ZentuJobSchema& s) { s.commands[0].kind = Cmd::DRESP; }},
    {"create_default", [](ZentuJobSchema& s) { s.commands[0].create_default ^= true; }},
    {"items", [](ZentuJobSchema& s) { s.commands[0].items.pop_back(); }},
    {"item name", [](ZentuJobSchema& s) { s.commands[0].items[0].name += "X"; }},
    {"item kind", [](ZentuJobSchema& s) { s.commands[0].items[0].kind = CmdItem::DV; }},
    {"item type", [](ZentuJobSchema& s) { s.commands[0].items[0].type = DataType::RAW_STRING; }},
    {"item default", [](ZentuJobSchema& s) { s.commands[0].items[0].default_value = "X"; }},
    {"item keywords",
     [](ZentuJobSchema& s) { s.commands[0].items[0].keywords.emplace_back("X", 9); }},
    {"item references", [](ZentuJobSchema& s) { s.commands[0].items[0].references = Cmd::DV; }},
    {"commands", [](ZentuJobSchema& s) { s.commands.pop_back(); }},
};

// Readings of a schema and of its copies share one configuration per completion, until a change
// to the commands calls for another, which then describes the change.
TEST(TypedJob, ReadingsShareTheSchemasConfigurationUntilItsCommandsChange) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const auto full = schema.SharedConfig(ZentuCompletion::FULL);
    const auto none = schema.SharedConfig(ZentuCompletion::NONE);
    EXPECT_EQ(schema.SharedConfig(ZentuCompletion::FULL), full);
    EXPECT_EQ(ZentuJobSchema(schema).SharedConfig(ZentuCompletion::FULL), full);
    EXPECT_NE(none, full);
    EXPECT_TRUE(none->GetRuleSequence().empty());
    EXPECT_EQ(full->GetRuleSequence().size(),
              schema.BuildConfig(ZentuCompletion::FULL).GetRuleSequence().size());
    // Descriptions, bounds and the like do not change the configuration.
    ZentuJobSchema described = schema;
    described.commands[0].items[0].description += "X";
    described.commands[0].items[0].required ^= true;
    EXPECT_EQ(described.SharedConfig(ZentuCompletion::FULL), full);
    for (const auto& [what, change] : kConfigChanges) {
        SCOPED_TRACE(what);
        ZentuJobSchema changed = schema;
        change(changed);
        const auto before = schema.SharedConfig(ZentuCompletion::FULL);
        EXPECT_NE(changed.SharedConfig(ZentuCompletion::FULL), before);
    }
    ZentuJobSchema defaulted = schema;
    defaulted.commands[0].items[1].default_value = "NODE";
    const std::string& keyword = schema.commands[0].keyword;
    const std::string& item = schema.commands[0].items[1].name;
    const auto defaultOf = [&keyword, &item](const ZentuCmdIoConfig& config) {
        return config.cmd_metadata.at(keyword).GetMetaData().at(item).default_value;
    };
    EXPECT_EQ(defaultOf(*defaulted.SharedConfig(ZentuCompletion::FULL)), "NODE");
    const std::string original = defaultOf(schema.BuildConfig(ZentuCompletion::FULL));
    EXPECT_NE(original, "NODE");
    EXPECT_EQ(defaultOf(*schema.SharedConfig(ZentuCompletion::FULL)), original);
    // A schema moved from still gives a configuration, if not a shared one.
    const ZentuJobSchema taken = std::move(defaulted);
    EXPECT_NE(defaulted.SharedConfig(ZentuCompletion::FULL),  // NOLINT(bugprone-use-after-move)
              defaulted.SharedConfig(ZentuCompletion::FULL));
}

}  // namespace
