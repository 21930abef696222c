// What reads fine but is wrong: for each code, the smallest job that must trigger it (at its line
// and column) and the nearest job that must not.
#include "ZentuJobChecks.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "ZentuTypedJob.h"
#include "zentu_test_cases.h"

namespace {

// Two responses, A and B, that an objective and a constraint use, so that only what a case adds
// is in question.
const std::string kResponses =
    "DRESP\n  ID_NAME = A\n  TYPE = VOLUME\nEND_\n"                 // lines 1-4
    "DRESP\n  ID_NAME = B\n  TYPE = VOLUME\nEND_\n"                 // lines 5-8
    "OBJ_FUNC\n  DRESP = A\nEND_\n"                                 // lines 9-11
    "CONSTRAINT\n  ID_NAME = K\n  DRESP = B\n  VALUE = 1\nEND_\n";  // lines 12-16

// The job a case file writes, its shorthands {R}, {O} and {/O} written out.
std::string Job(std::string text) {
    const std::pair<std::string, std::string> shorthands[] = {
        {"{R}", kResponses},
        {"{O}", "OPERATOR\n  ID_NAME = O\n  ADD_FILE = "},
        {"{/O}", "\nEND_\nOBJ_FUNC\n  DRESP = O\nEND_\n"}};
    for (const auto& [shorthand, full] : shorthands) {
        for (std::size_t at; (at = text.find(shorthand)) != std::string::npos;) {
            text.replace(at, shorthand.size(), full);
        }
    }
    return text;
}

// "line:column message" of each finding of the code.
std::vector<std::string> Found(const std::string& text, const std::string& code) {
    static const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const ZentuTypedJob job =
        ZentuTypedJob::ReadText(text, "job.par", schema, ZentuCompletion::FULL);
    std::vector<std::string> found;
    for (const ZentuFinding& finding : job.Findings()) {
        if (finding.code == code) {
            found.push_back(std::to_string(finding.range.line) + ":" +
                            std::to_string(finding.range.column) + " " + finding.message);
        }
    }
    return found;
}

// Each code fires on its smallest job, at its place, and not on the nearest job without it.
TEST(Checks, EachCodeFiresOnItsSmallestCaseAndNotOnTheNearest) {
    for (const auto& c : zentu_test::DataCases("document/cases/checks.txt", 4)) {
        SCOPED_TRACE(c.where);
        const std::vector<std::string> found = Found(Job(c.fields[1]), c.fields[0]);
        ASSERT_FALSE(found.empty());
        EXPECT_EQ(found.front(), c.fields[2]);
        EXPECT_EQ(Found(Job(c.fields[3]), c.fields[0]), std::vector<std::string>{});
    }
}

// A comment silences the codes it names for the next command only; overrides change severities
// and drop findings.
TEST(Checks, CommentsSilenceACodeForTheNextCommandOrItemAndOverridesRewriteSeverities) {
    const std::string silenced =
        kResponses +
        "# zentu-cmd: ignore unused-command, missing-item\nDRESP\n  ID_NAME = C\nEND_\n";
    EXPECT_EQ(Found(silenced, "unused-command"), std::vector<std::string>{});
    EXPECT_EQ(Found(silenced, "missing-item"), std::vector<std::string>{});
    EXPECT_EQ(Found(kResponses + "# zentu-cmd: ignore unused-command\n\nDV\n  ID_NAME = D\nEND_\n",
                    "unused-command")
                  .size(),
              1U);

    std::vector<ZentuFinding> findings = {zentu_finding("unused-command", "u", {}),
                                          zentu_finding("missing-item", "m", {}),
                                          zentu_finding("io", "i", {})};
    ZentuJobChecks::apply_overrides({{"unused-command", ZentuSeverity::ERROR},
                                     {"missing-item", ZentuSeverity::WARNING},
                                     {"missing-item", std::nullopt}},
                                    findings);
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].severity, ZentuSeverity::ERROR);
    EXPECT_EQ(findings[1].code, "io");
}

}  // namespace
