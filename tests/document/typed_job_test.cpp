// The typed job on the document: for a file without errors it is the container that the
// parameter-file reader builds with the same schema, every command and item traces back to the
// file, and the problems of typing and completing are found where they are written.
#include "ZentuTypedJob.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "../engine/engine_test_support.h"
#include "ZentuBoundRules.h"
#include "ZentuCmd.h"
#include "ZentuParFileAdapter.h"
#include "ZentuStringUtil.h"
#include "document_test_support.h"
#include "job_generator.h"

namespace {

namespace fs = std::filesystem;
using ZentuCmdItemDefs::CmdItem;

// Reads a file as a host does, with the configuration that the schema describes.
std::vector<std::string> AdapterLines(const fs::path& path, const ZentuJobSchema& schema) {
    const zentu_test::LogCollector quiet;
    const ZentuBoundRules::Scope scope(schema.BoundRules());
    ZentuCmdContainer container;
    ZentuParFileAdapter(path.wstring(), schema.BuildConfig(ZentuCompletion::FULL)).Parse(container);
    return zentu_test::CmdLines(container);
}

std::string Upper(const std::string& text) {
    return ZentuStringUtil::to_upper(text);
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
            EXPECT_TRUE(schema.FindCommand(Upper(command.GetName()))->create_default);
            continue;
        }
        ASSERT_LT(origin.command, written.size());
        EXPECT_EQ(Upper(written[origin.command].keyword), Upper(command.GetName()));
        for (const ZentuCmdItem* item : zentu_test::Identities(command)) {
            const ZentuOrigin from = job.OriginOf(command, *item);
            EXPECT_EQ(from.command, origin.command);
            if (from.item != ZentuOrigin::NONE) {
                EXPECT_EQ(Upper(written[from.command].items.at(from.item).name), item->GetName());
            }
        }
    }
}

// The property: reading through the document gives what the reader gives, without errors.
void ExpectSameAsTheReader(const fs::path& path, const ZentuJobSchema& schema) {
    SCOPED_TRACE(path.string());
    const ZentuTypedJob job = ZentuTypedJob::ReadFile(path.string(), schema, ZentuCompletion::FULL);
    EXPECT_FALSE(job.Document().HasErrors());
    EXPECT_EQ(zentu_test::CmdLines(job.Container()), AdapterLines(path, schema));
    ExpectTracedToTheDocument(job, schema);
}

void WriteText(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// The same lines with CR LF ends and a byte-order mark, which both readers skip.
std::string AsWindowsText(const std::string& text) {
    std::string windows = "\xEF\xBB\xBF";
    for (char c : text) {
        windows += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    return windows;
}

TEST(TypedJob, EveryExampleReadsAsTheReaderReadsIt) {
    const fs::path examples = ZENTU_EXAMPLES_DIR;
    const ZentuJobSchema builtin = ZentuJobSchema::Builtin();
    const ZentuJobSchema custom = ZentuJobSchema::Load((examples / "custom_schema.json").string());
    const zentu_test::ScratchDir scratch("zentu_typed_job_");
    for (const auto& entry : fs::directory_iterator(examples)) {
        if (entry.path().extension() != ".par") {
            continue;
        }
        const ZentuJobSchema& schema = entry.path().stem() == "custom" ? custom : builtin;
        ExpectSameAsTheReader(entry.path(), schema);
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(in)), {});
        const fs::path windows = scratch.Path() / entry.path().filename();
        WriteText(windows, AsWindowsText(text));
        ExpectSameAsTheReader(windows, schema);
    }
}

TEST(TypedJob, GeneratedJobsReadAsTheReaderReadsThem) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const zentu_test::ScratchDir scratch("zentu_typed_job_");
    for (const std::size_t commands : {7, 60, 400}) {
        for (const std::uint32_t seed : {1U, 2U}) {
            const fs::path path = scratch.Path() / ("job_" + std::to_string(commands) + "_" +
                                                    std::to_string(seed) + ".par");
            WriteText(path, ZentuJobGenerator::job_text(commands, seed));
            ExpectSameAsTheReader(path, schema);
        }
    }
}

// What the texts below refer to: a group and two responses.
const char* const kResponses =
    "GROUP_DEF\n  ID_NAME = design\nEND_\n"
    "DRESP\n  ID_NAME = mass\n  TYPE = VOLUME\nEND_\n"
    "DRESP\n  ID_NAME = disp\n  TYPE = DISP_ABS\nEND_\n";

// A small bad text and the one finding of its code that reading it gives.
struct LocatedCase {
    std::string text;
    std::string finding;
};

const LocatedCase kLocated[] = {
    {"DVV\nEND_\n",
     "unknown-command 1:1-1:4 the schema describes no command 'DVV'; did you mean 'DV'? => DV"},
    {"DV\n  ID_NAME = d1\n  LOWR = 0.1\nEND_\n",
     "unknown-item 3:3-3:7 Unknown item 'LOWR' found in command DV with ID_NAME d1; did you mean "
     "'LOWER'? => LOWER"},
    {"DV\n  ID_NAME = d1\n  LOWER =  0.1x \nEND_\n",
     "bad-value 3:12-3:16 The item LOWER has an invalid type. '0.1x' must be a scalar value."},
    {std::string(kResponses) + "DV\n  GROUP = desing\nEND_\n",
     "dangling-reference 13:11-13:17 DV: GROUP 'DESING' names no command; did you mean 'DESIGN'? "
     "=> DESIGN"},
    {std::string(kResponses) + "OPERATOR\n  ID_NAME = o\n  ADD_FILE = 2 * %mass% - %dips%\nEND_\n",
     "expression-syntax 14:27-14:33 %dips% in the expression names no DRESP or OPERATOR command; "
     "did you mean %DISP%? => %DISP%"},
    {"dv\n  ID_NAME = d1\n  TYPE = NODAL\nEND_\n",
     "keyword-case 1:1-1:3 the rules look command keywords up as written, and 'dv' is not in upper "
     "case: Configuration for dv of type 3 not available. => DV"},
};

TEST(TypedJob, LocatesWhatTypingAndCompletingFind) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    for (const LocatedCase& c : kLocated) {
        SCOPED_TRACE(c.finding);
        const std::string code = c.finding.substr(0, c.finding.find(' '));
        const ZentuTypedJob job =
            ZentuTypedJob::ReadText(c.text, "job.par", schema, ZentuCompletion::FULL);
        std::vector<std::string> found;
        for (const ZentuFinding& finding : job.Findings()) {
            if (finding.code == code) {
                found.push_back(zentu_test::FindingLine(finding));
            }
        }
        EXPECT_EQ(found, std::vector<std::string>{c.finding});
    }
}

TEST(TypedJob, TracesGeneratedOperatorsToTheExpressionAndLeavesDefaultsUntraced) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const ZentuTypedJob job = ZentuTypedJob::ReadText(
        std::string(kResponses) +
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

}  // namespace
