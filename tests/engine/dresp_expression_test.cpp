// The design-response expression rule: hand-derived expressions, unusual command setups, bad
// input, and the road from a parameter file through the rule to the written file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <iomanip>
#include <sstream>

#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuDrespExpressionParser.h"
#include "ZentuMathExpressions.h"
#include "ZentuParFileAdapter.h"
#include "engine_test_support.h"
#include "zentu_test_cases.h"

namespace {

namespace Expr = ZentuMathExpressions;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using Lines = std::vector<std::string>;

// Generated commands are stored under the upper-case form of the name the rule builds.
const std::string kSumAB = "_DRESPEXPR_+1*%A%+1*%B%_";

std::string IdOf(const ZentuCmd& cmd) {
    const auto& ids = cmd.Items(CmdItem::ID_NAME);
    return ids.empty() ? std::string() : ids.front()->GetString();
}

// Terms must name the command the rule picks for an identifier: DRESP before OPERATOR.
const ZentuCmd* FindById(const ZentuCmdContainer& container, const std::string& id) {
    for (const Cmd kind : {Cmd::DRESP, Cmd::OPERATOR}) {
        for (const auto& cmd : container.GetCommands(kind)) {
            if (IdOf(*cmd) == id) {
                return cmd.get();
            }
        }
    }
    return nullptr;
}

// What the rule appended behind the first `kept` TYPE, DV and OBJ_FUNC items of cmd: "COMBINE"
// for an automatic TYPE COMBINE, then " weight*id" per WEIGHT real and VARIABLE reference to the
// command the rule picks for id; " ?" or "?" marks any other item.
std::string Appended(const ZentuCmdContainer& container, const ZentuCmd& cmd,
                     std::size_t kept = 0) {
    const auto label = [](const ZentuCmdItem& item) {
        return zentu_test::ClassOf(item) + " " + item.GetName();
    };
    std::ostringstream out;
    out << std::setprecision(17);
    const auto& types = cmd.Items(CmdItem::TYPE);
    for (std::size_t k = kept; k < types.size(); ++k) {
        const ZentuCmdItem& type = *types[k];
        out << (label(type) + "=" + type.GetString() == "auto TYPE=COMBINE" &&
                        type.GetEnum() == ZentuCmdItemDefs::EnumValue::COMBINE
                    ? "COMBINE"
                    : "?");
    }
    const auto& variables = cmd.Items(CmdItem::DV);
    const auto& weights = cmd.Items(CmdItem::OBJ_FUNC);
    for (std::size_t k = kept; k < std::max(variables.size(), weights.size()); ++k) {
        if (k < std::min(variables.size(), weights.size()) &&
            label(*variables[k]) + ", " + label(*weights[k]) == "ref VARIABLE, real WEIGHT" &&
            variables[k]->GetReference() == FindById(container, variables[k]->GetString())) {
            out << ' ' << weights[k]->GetReal() << '*' << variables[k]->GetString();
        } else {
            out << " ?";
        }
    }
    return out.str();
}

class DrespExpressionTest : public ::testing::Test {
  protected:
    ZentuCmd& Dresp(const std::string& id) {
        return container_.CreateCommand(Cmd::DRESP, "DRESP", id);
    }

    // A raw string keeps the expression as written, so lower-case references reach the rule.
    ZentuCmd& Operator(const std::string& id, const std::string& expression) {
        ZentuCmd& cmd = container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", id);
        cmd.AddItem(CmdItem::ADD_FILE,
                    std::make_unique<ZentuCmdRawStringItem>("ADD_FILE", expression));
        return cmd;
    }

    void Run() { ZentuDrespExpressionParser::dresp_expression_rule(container_, keywords_); }

    // "id: appended" for every DRESP, then every OPERATOR, led by a name other than the kind's.
    Lines Expansions() const {
        Lines lines;
        for (const Cmd kind : {Cmd::DRESP, Cmd::OPERATOR}) {
            for (const auto& cmd : container_.GetCommands(kind)) {
                const std::string& name = cmd->GetName();
                lines.push_back((name == ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)]
                                     ? ""
                                     : name + " ") +
                                IdOf(*cmd) + ": " + Appended(container_, *cmd));
            }
        }
        return lines;
    }

    ZentuCmdContainer container_;
    const ZentuCmdItemDefs::KeywordMap keywords_ = ZentuCmdItemDefs::create_enum_map();
};

// Every reduction of the postfix form must give the weights and groups derived by hand, among
// DRESP A, B, C; d9, which no upper-case lookup finds; and one without identifier, listed as %%.
TEST_F(DrespExpressionTest, ExpandsIntoTheHandDerivedItems) {
    const auto orNone = [](const std::string& field) { return field == "-" ? "" : field; };
    for (const auto& c : zentu_test::DataCases("engine/cases/dresp_expressions.txt", 4)) {
        SCOPED_TRACE(c.where);
        container_ = ZentuCmdContainer();
        for (const char* id : {"A", "B", "C"}) {
            Dresp(id);
        }
        container_.CreateCommand(Cmd::DRESP, "DRESP")
            .AddItem(CmdItem::ID_NAME, std::make_unique<ZentuCmdRawStringItem>("ID_NAME", "d9"));
        container_.CreateCommand(Cmd::DRESP, "DRESP");
        Operator("P", orNone(c.fields[1]));
        Run();
        Lines expected = {"A: ", "B: ", "C: ", "d9: ", ": ", "P: " + orNone(c.fields[2])};
        for (const std::string& line : zentu_test::FieldLines(c.fields[3])) {
            expected.push_back(line);
        }
        EXPECT_EQ(Expansions(), expected);
        EXPECT_TRUE(container_.GetCommand(Cmd::OPERATOR, 0).Items(CmdItem::ADD_FILE).empty());
    }
}

// A term names the first command under its identifier, a DRESP before an OPERATOR, and may name
// another OPERATOR; a group is generated once, and not where a DRESP already holds its name.
TEST_F(DrespExpressionTest, OperatorsShareTheCommandsOfOneContainer) {
    Dresp("A");
    Dresp("A");
    container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", "B");
    Dresp("B");
    Dresp(kSumAB);
    const std::string diffAB = "_DRESPEXPR_+1*%A%+-1*%B%_";
    Operator("P1", "%A% + %B%");      // C4
    Operator("P2", "2*%P1% - %A%");   // P, C2
    Operator("P3", "(%A% + %B%)*2");  // C4, G
    Operator("P4", "(%A% - %B%)*3");  // C4, G
    Operator("P5", "(%a% - %b%)*4");  // C4, G finding P4's group in upper case
    Run();
    EXPECT_EQ(Expansions(),
              (Lines{"A: ", "A: ", "B: ", kSumAB + ": ", "B: ", "P1: COMBINE 1*A 1*B",
                     "P2: COMBINE 2*P1 -1*A", "P3: COMBINE 2*" + kSumAB, "P4: COMBINE 3*" + diffAB,
                     "P5: COMBINE 4*" + diffAB, diffAB + ": COMBINE 1*A -1*B"}));
}

// The rule appends behind items the command holds and consumes only the first expression.
TEST_F(DrespExpressionTest, NewItemsFollowThoseHeldAndOnlyTheFirstExpressionGoes) {
    Dresp("A");
    ZentuCmd& subject = Operator("P", "2*%A%");
    subject.AddStringItem(CmdItem::TYPE, "TYPE", "max");
    subject.AddItem(CmdItem::DV, "DV", Dresp("C"));
    subject.AddItem(CmdItem::OBJ_FUNC, std::make_unique<ZentuCmdScalarItem>("SCALE", 5.0));
    subject.AddItem(CmdItem::ADD_FILE, std::make_unique<ZentuCmdRawStringItem>("ADD_FILE", "%C%"));
    const CmdItem kinds[] = {CmdItem::TYPE, CmdItem::DV, CmdItem::OBJ_FUNC, CmdItem::ADD_FILE};
    std::vector<const ZentuCmdItem*> held;
    for (const CmdItem kind : kinds) {
        held.push_back(subject.Items(kind).back().get());
    }
    Run();
    EXPECT_EQ(Appended(container_, subject, 1), "COMBINE 2*A");
    ASSERT_EQ(subject.Items(CmdItem::ADD_FILE).size(), 1U);
    for (std::size_t k = 0; k < held.size(); ++k) {
        EXPECT_EQ(subject.Items(kinds[k]).front().get(), held[k]);
    }
}

// Only OPERATOR commands whose first ADD_FILE item is text are expanded.
TEST_F(DrespExpressionTest, CommandsWithoutTextExpressionAreUntouched) {
    Dresp("B").AddItem(CmdItem::ADD_FILE,
                       std::make_unique<ZentuCmdRawStringItem>("ADD_FILE", "%B%*2"));
    container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", "NONE");
    container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", "NUMBER")
        .AddItem(CmdItem::ADD_FILE, std::make_unique<ZentuCmdScalarItem>("ADD_FILE", 2.0));
    // Only the first ADD_FILE item counts, even when a later one holds text.
    ZentuCmd& numberFirst = container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", "FIRST");
    numberFirst.AddItem(CmdItem::ADD_FILE, std::make_unique<ZentuCmdScalarItem>("ADD_FILE", 1.0));
    numberFirst.AddItem(CmdItem::ADD_FILE,
                        std::make_unique<ZentuCmdRawStringItem>("ADD_FILE", "%B% + %B%"));
    const auto identities = [this] {
        std::vector<std::vector<const ZentuCmdItem*>> all;
        for (const ZentuCmd& cmd : container_) {
            all.push_back(zentu_test::Identities(cmd));
        }
        return all;
    };
    const auto before = identities();
    Run();
    EXPECT_EQ(identities(), before);
}

// Token sequences that no expression text produces.
Expr::Token MakeToken(const std::string& text) {
    if (text == "*") {
        return {text, 0.0, Expr::build_single_token(Expr::PRODUCT_TYPE, 2)};
    }
    if (text == "+" || text == "-") {
        return {text, 0.0,
                Expr::build_single_token(text == "+" ? Expr::PLUS_TYPE : Expr::MINUS_TYPE, 3)};
    }
    if (text.front() == '%') {
        return {text, 0.0, Expr::TokenDescription(4, [](auto begin, auto) { return begin; })};
    }
    return {text, std::stod(text), Expr::build_single_token(Expr::NUMBER_TYPE, 1)};
}

// Stray products in a token sequence are dropped, and unknown names are skipped.
TEST_F(DrespExpressionTest, TokenSequencesWithoutExpressionText) {
    Dresp("A");
    Dresp("B");
    for (const auto& c : zentu_test::DataCases("engine/cases/dresp_token_sequences.txt", 2)) {
        std::vector<Expr::Token> tokens;
        std::istringstream texts(c.fields[0]);
        for (std::string text; texts >> text;) {
            tokens.push_back(MakeToken(text));
        }
        ZentuCmd& subject = container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", "P");
        ZentuDrespExpressionParser::find_combine_expressions(tokens, keywords_, container_,
                                                             subject);
        EXPECT_EQ(Appended(container_, subject), c.fields[1]) << c.where;
    }
    EXPECT_EQ(container_.GetNumberOfCommands(Cmd::OPERATOR), 3U);
}

// Expressions that the tokenizer refuses.
const std::vector<std::string> kBadExpressions = {
    "%A% $ %B%", "%X% + %A%", "(%A% + %B%",  "%A% + %B%)", "+",
    "%A% +",     "*%A%",      "%A% + * %B%", "%A% %B%",    "2*-%A%"};

// A bad expression fails with the parser's message, after earlier commands were expanded.
TEST_F(DrespExpressionTest, ABadExpressionFailsAtItsCommandAndKeepsEarlierChanges) {
    for (const std::string& bad : kBadExpressions) {
        SCOPED_TRACE(bad);
        container_ = ZentuCmdContainer();
        Dresp("A");
        Dresp("B");
        const ZentuCmd& before = Operator("P1", "%A% + %B%");
        const ZentuCmd& failing = Operator("P2", bad);
        const ZentuCmd& after = Operator("P3", "%A% - %B%");
        const KPL_Failure failure = zentu_test::FailureOf([this] { Run(); });
        EXPECT_EQ(failure.GetTag(), "|%P|LIBUTIL|ZentuMathExpressions");
        EXPECT_THAT(failure.GetMessage(), ::testing::HasSubstr(bad));
        EXPECT_EQ(Appended(container_, before), "COMBINE 1*A 1*B");
        EXPECT_TRUE(before.Items(CmdItem::ADD_FILE).empty());
        for (const ZentuCmd* untouched : {&failing, &after}) {
            ASSERT_EQ(untouched->Items(CmdItem::ADD_FILE).size(), 1U);
            EXPECT_EQ(Appended(container_, *untouched), "");
        }
        EXPECT_EQ(failing.Items(CmdItem::ADD_FILE)[0]->GetString(), bad);
    }
}

// While a handler of unreadable expressions lives on the thread, the rule hands each bad one over
// with the message it would fail with, erases it and expands the others; the innermost handler
// takes it, and once the handlers are gone the rule fails again.
TEST_F(DrespExpressionTest, AHandlerTakesBadExpressionsAndTheRuleGoesOn) {
    using ZentuDrespExpressionParser::UnreadableExpressions;
    const auto recorder = [](Lines& handed) {
        return [&handed](const ZentuCmd& command, const ZentuCmdItem& expression,
                         const KPL_Exception& refusal) {
            handed.push_back(IdOf(command) + " " + expression.GetString() + ": " +
                             refusal.GetMessage());
        };
    };
    for (const std::string& bad : kBadExpressions) {
        SCOPED_TRACE(bad);
        const auto build = [this, &bad] {
            container_ = ZentuCmdContainer();
            Dresp("A");
            Dresp("B");
            Operator("P1", "%A% + %B%");
            Operator("P2", bad);
            Operator("P3", "%A% - %B%");
        };
        build();
        const std::string message = zentu_test::FailureOf([this] { Run(); }).GetMessage();
        Lines outer;
        Lines inner;
        {
            const UnreadableExpressions outerHandler(recorder(outer));
            {
                const UnreadableExpressions innerHandler(recorder(inner));
                build();
                Run();
                EXPECT_TRUE(innerHandler.RuleRan());
            }
            EXPECT_FALSE(outerHandler.RuleRan());
            build();
            Run();
            EXPECT_TRUE(outerHandler.RuleRan());
            EXPECT_EQ(Expansions(),
                      (Lines{"A: ", "B: ", "P1: COMBINE 1*A 1*B", "P2: ", "P3: COMBINE 1*A -1*B"}));
            EXPECT_TRUE(container_.GetCommand(Cmd::OPERATOR, 1).Items(CmdItem::ADD_FILE).empty());
        }
        EXPECT_EQ(inner, Lines{"P2 " + bad + ": " + message});
        EXPECT_EQ(outer, inner);
        build();
        EXPECT_EQ(zentu_test::FailureOf([this] { Run(); }).GetMessage(), message);
    }
}

// References write the target's identifier, items go out grouped by kind, and a generated
// command follows the OPERATOR commands already there; the DRESP commands come out unchanged.
TEST(DrespExpressionRoad, ReadExpandedAndWritten) {
    const std::string cases = std::string(ZENTU_TESTS_DIR) + "/engine/cases/";
    const zentu_test::ScratchDir dir("zentu_dresp_road_");
    const ZentuCmdItemMetaData text(CmdItem::ID_NAME, DataType::STRING, "", "", 0);
    const ZentuCmdItemMetaData expression(CmdItem::ADD_FILE, DataType::STRING, "", "", 0);
    ZentuCmdIoConfig config;
    config.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, false)).AddItem({"ID_NAME", text});
    config.AddCmdMetadata("OPERATOR", ZentuCmdMetaData(Cmd::OPERATOR, false))
        .AddItem({"ID_NAME", text})
        .AddItem({"ADD_FILE", expression});
    config.AddRule(&ZentuDrespExpressionParser::dresp_expression_rule);
    ZentuCmdContainer container;
    ZentuParFileAdapter(std::filesystem::path(cases + "dresp_road.par").wstring(),
                        std::move(config))
        .Parse(container);
    ZentuCmdParOutput((dir.Path() / "written.par").wstring(), container,
                      ZentuCmdDefs::get_default_cmd_names(), ZentuCmdItemDefs::CMD_ITEM_NAMES)
        .Write(L"w");
    std::ostringstream written;
    std::ostringstream expected;
    written << std::ifstream(dir.Path() / "written.par").rdbuf();
    expected << std::ifstream(cases + "dresp_road_written.par").rdbuf();
    EXPECT_EQ(written.str(), expected.str());
}

}  // namespace
