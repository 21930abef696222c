// What reads fine but is wrong: for each code, the smallest job that must trigger it (at its line
// and column) and the nearest job that must not.
#include "ZentuJobChecks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ZentuTypedJob.h"

namespace {

// Two responses, A and B, that an objective and a constraint use, so that only what a case adds
// is in question.
const std::string kResponses =
    "DRESP\n  ID_NAME = A\n  TYPE = VOLUME\nEND_\n"                 // lines 1-4
    "DRESP\n  ID_NAME = B\n  TYPE = VOLUME\nEND_\n"                 // lines 5-8
    "OBJ_FUNC\n  DRESP = A\nEND_\n"                                 // lines 9-11
    "CONSTRAINT\n  ID_NAME = K\n  DRESP = B\n  VALUE = 1\nEND_\n";  // lines 12-16

// An operator O (line 17, its expression on line 19) that an objective uses.
std::string Operator(const std::string& expression) {
    return kResponses + "OPERATOR\n  ID_NAME = O\n  ADD_FILE = " + expression +
           "\nEND_\nOBJ_FUNC\n  DRESP = O\nEND_\n";
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

struct Case {
    const char* code;
    std::string triggers;
    std::string expected;  // the first finding of the code
    std::string clean;
};

TEST(Checks, EachCodeFiresOnItsSmallestCaseAndNotOnTheNearest) {
    const Case cases[] = {
        {"expression-mismatch", Operator("-(%A% + %B%)"),
         "19:14 expands to +1*A -1*B but reads -1*A -1*B; write it as -1*%A% - 1*%B%",
         Operator("-%A% - %B%")},
        {"expression-mismatch", Operator("3*%A% - (%B% + %A%)"),
         "19:14 expands to +2*A +1*B but reads +2*A -1*B; write it as 2*%A% - 1*%B%",
         Operator("2*(%A% + %B%)")},
        {"expression-unsupported", Operator("%A% / %B%"),
         "19:18 the expansion into weighted responses drops a quotient: '/'",
         Operator("%A% - %B%")},
        {"expression-unsupported", Operator("%A% + 5"),
         "19:20 the expansion into weighted responses drops a constant term: '5'",
         Operator("%A% + 0*%B%")},
        {"expression-unsupported", Operator("%A%*%B%"),
         "19:14 the expansion into weighted responses drops a product of two references: "
         "'%A%*%B%'",
         Operator("%A%*2")},
        {"duplicate-identifier", kResponses + "GROUP_DEF\n  ID_NAME = a\nEND_\n",
         "18:13 identifier 'a' is given to DRESP on line 1 already; references always name that "
         "one",
         kResponses + "GROUP_DEF\n  ID_NAME = a2\nEND_\n"},
        {"duplicate-item", "STOP\n  ITER_MAX = 5\n  iter_max = 6\nEND_\n",
         "3:3 iter_max is given again (first on line 2); only the first one counts",
         "OPERATOR\n  VARIABLE = A\n  VARIABLE = B\nEND_\n"},
        {"integer-list", "GROUP_DEF\n  ID_NAME = G\n  ELEMENT_GROUP = 1, 100-1\nEND_\n",
         "3:22 the range 100-1 runs backwards and adds only its start, so the list reads as [1, "
         "100]; write 1-100",
         "GROUP_DEF\n  ID_NAME = G\n  ELEMENT_GROUP = 1, 1-100\nEND_\n"},
        {"integer-list", "GROUP_DEF\n  ID_NAME = G\n  ELEMENT_GROUP = 1-20000000\nEND_\n",
         "3:19 the list names 20000000 numbers, more than the 10000000 a list of numbers holds, "
         "so it reads as no list of numbers at all",
         "GROUP_DEF\n  ID_NAME = G\n  ELEMENT_GROUP = 1-10000000\nEND_\n"},
        {"missing-item", kResponses + "DRESP\n  ID_NAME = C\nEND_\n",
         "17:1 DRESP 'C' has no TYPE, which the schema requires",
         kResponses + "DRESP\n  ID_NAME = C\n  TYPE = VOLUME\nEND_\n"},
        {"out-of-range", "STOP\n  ITER_MAX = -5\nEND_\n",
         "2:14 ITER_MAX = -5 is below its smallest allowed value 1",
         "STOP\n  ITER_MAX = 1\nEND_\n"},
        {"out-of-range", "DV\n  ID_NAME = D\n  LOWER = 0.9\n  UPPER = 0.1\nEND_\n",
         "3:11 LOWER = 0.9 is above UPPER = 0.1 (line 4)",
         "DV\n  ID_NAME = D\n  LOWER = 0.1\n  UPPER = 0.1\nEND_\n"},
        {"dangling-reference",
         "OPTIMIZE\n  CONSTRAINT = vc, vc_missing\nEND_\nCONSTRAINT\n  ID_NAME = vc\nEND_\n",
         "2:20 CONSTRAINT 'vc_missing' names no CONSTRAINT command",
         "OPTIMIZE\n  CONSTRAINT = vc\nEND_\nCONSTRAINT\n  ID_NAME = vc\nEND_\n"},
        {"unused-command", kResponses + "DV\n  ID_NAME = D\nEND_\n",
         "17:1 DV 'D' is not used: no objective, constraint, operator or optimisation refers to it",
         kResponses + "DV\n  ID_NAME = D\nEND_\nOPTIMIZE\n  DV = D\nEND_\n"},
        {"reference-cycle",
         Operator("%A% + %P%") + "OPERATOR\n  ID_NAME = P\n  ADD_FILE = %B% + %O%\nEND_\n",
         "17:1 OPERATOR 'O' refers to itself through other operators (O -> P -> O), so it cannot "
         "be evaluated",
         Operator("%A% + %P%") + "OPERATOR\n  ID_NAME = P\n  ADD_FILE = %B%*2\nEND_\n"},
        {"keyword-case", kResponses + "optimize\n  ID_NAME = T\nEND_\n",
         "17:1 the rules look command keywords up as written, and 'optimize' is not in upper case: "
         "Configuration for optimize of type 10 not available.",
         kResponses + "OPTIMIZE\n  ID_NAME = T\nEND_\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.triggers);
        const std::vector<std::string> found = Found(c.triggers, c.code);
        ASSERT_FALSE(found.empty()) << c.code;
        EXPECT_EQ(found.front(), c.expected);
        EXPECT_EQ(Found(c.clean, c.code), std::vector<std::string>{}) << c.clean;
    }
}

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
