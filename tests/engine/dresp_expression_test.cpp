// The design-response expression rule: expressions whose items were worked out by hand from the
// postfix token sequence, unusual command setups, bad input, and the whole road from a parameter
// file through the rule to the written file.
//
// Notation of the derivations: the postfix tokens, then after each step the stack S (bottom
// first; Mc is a marker whose counter is c, R<g> a marker turned into a reference to the
// generated command g), the weights W and the names N. The letter after a joining operator names
// the reduction that applies (A, B, C1 to C4). A joining operator applied to a weight gives it
// for '+' and its negation for '-'.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuDrespExpressionParser.h"
#include "ZentuMathExpressions.h"
#include "ZentuParFileAdapter.h"

namespace {

namespace fs = std::filesystem;
namespace Expr = ZentuMathExpressions;
using ::testing::HasSubstr;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;

// The generated commands that several cases share, by the upper-case identifier they are stored
// under; the names the rule builds keep the case of the references as written.
const std::string kSumAB = "_DRESPEXPR_+1*%A%+1*%B%_";

// One term of a combination: the identifier of the command it names and its coefficient.
struct Term {
    std::string id;
    double weight;
};

std::string IdOf(const ZentuCmd& cmd) {
    const auto& ids = cmd.Items(CmdItem::ID_NAME);
    return ids.empty() ? std::string() : ids.front()->GetString();
}

// Terms are expected to name the command the rule finds the same way: DRESP before OPERATOR.
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

// Checks the items the rule appended to cmd behind the first `kept` items of the three kinds it
// fills: a TYPE "COMBINE" when `combines`, and per term a VARIABLE reference and a WEIGHT real.
::testing::AssertionResult IsCombination(const ZentuCmdContainer& container, const ZentuCmd& cmd,
                                         bool combines, const std::vector<Term>& terms,
                                         std::size_t kept = 0) {
    const auto& types = cmd.Items(CmdItem::TYPE);
    if (types.size() != kept + (combines ? 1 : 0)) {
        return ::testing::AssertionFailure() << types.size() << " TYPE items";
    }
    if (combines) {
        const auto* type = dynamic_cast<const ZentuCmdAutoItem*>(types.back().get());
        if (type == nullptr || type->GetName() != "TYPE" || type->GetString() != "COMBINE" ||
            type->GetEnum() != EnumValue::COMBINE) {
            return ::testing::AssertionFailure() << "the TYPE item is no automatic COMBINE";
        }
    }
    const auto& variables = cmd.Items(CmdItem::DV);
    const auto& weights = cmd.Items(CmdItem::OBJ_FUNC);
    if (variables.size() != kept + terms.size() || weights.size() != kept + terms.size()) {
        return ::testing::AssertionFailure()
               << variables.size() << " DV and " << weights.size() << " OBJ_FUNC items";
    }
    for (std::size_t k = 0; k < terms.size(); ++k) {
        const ZentuCmd* target = FindById(container, terms[k].id);
        const auto* variable =
            dynamic_cast<const ZentuCmdReferenceItem*>(variables[kept + k].get());
        if (target == nullptr || variable == nullptr || variable->GetName() != "VARIABLE" ||
            variable->GetReference() != target) {
            return ::testing::AssertionFailure()
                   << "term " << k << " does not refer to " << terms[k].id;
        }
        const auto* weight = dynamic_cast<const ZentuCmdScalarItem*>(weights[kept + k].get());
        if (weight == nullptr || weight->GetName() != "WEIGHT" ||
            weight->GetReal() != terms[k].weight) {
            return ::testing::AssertionFailure()
                   << "term " << k << " has the weight "
                   << (weight == nullptr ? std::string("?") : weight->GetString());
        }
    }
    return ::testing::AssertionSuccess();
}

class DrespExpressionTest : public ::testing::Test {
  protected:
    ZentuCmd& Dresp(const std::string& id) {
        return container_.CreateCommand(Cmd::DRESP, "DRESP", id);
    }

    // The expression is kept exactly as written, so lower-case references reach the rule.
    ZentuCmd& Operator(const std::string& id, const std::string& expression) {
        ZentuCmd& cmd = container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", id);
        cmd.AddItem(CmdItem::ADD_FILE,
                    std::make_unique<ZentuCmdRawStringItem>("ADD_FILE", expression));
        return cmd;
    }

    void Run() { ZentuDrespExpressionParser::dresp_expression_rule(container_, keywords_); }

    ZentuCmdContainer container_;
    const KeywordMap keywords_ = ZentuCmdItemDefs::create_enum_map();
};

// ---- Whole expressions with their hand-derived items ----

// A command the rule generates, in creation order.
struct Generated {
    std::string id;
    std::vector<Term> terms;
};

struct ExpressionCase {
    const char* label;
    std::string expression;
    bool combines;
    std::vector<Term> terms;
    std::vector<Generated> generated;
};

void PrintTo(const ExpressionCase& c, std::ostream* out) {
    *out << '"' << c.expression << '"';
}

std::vector<ExpressionCase> HandDerivedCases() {
    const std::vector<Term> none;
    return {
        // 2 %A% * 3 %B% * +
        //   2 %A% *   S=[M0]     W=(2)    N=(%A%)
        //   3 %B% *   S=[M0 M0]  W=(2 3)  N=(%A% %B%)
        //   + (A)     S=[M1]     W=(2 3)
        {"WorkedProductsJoinedByPlus", "2*%A% + 3*%B%", true, {{"A", 2}, {"B", 3}}, {}},
        // as above, the join - (A) turns W into (2 -3)
        {"WorkedProductsJoinedByMinus", "2*%A% - 3*%B%", true, {{"A", 2}, {"B", -3}}, {}},
        // %A% %B% +
        //   + (C4)    S=[M1]  W=(1 1)  N=(%A% %B%)
        {"WorkedReferencesJoinedByPlus", "%A% + %B%", true, {{"A", 1}, {"B", 1}}, {}},
        // %A% %B% -
        //   - (C4)    S=[M1]  W=(1 -1)  N=(%A% %B%)
        {"WorkedReferencesJoinedByMinus", "%A% - %B%", true, {{"A", 1}, {"B", -1}}, {}},
        // %A% %B% + 2 *
        //   + (C4)    S=[M1]     W=(1 1)  N=(%A% %B%)
        //   2         S=[M1 2]
        //   * closes  g=_DrespExpr_+1*%A%+1*%B%_ takes W=(1 1) N=(%A% %B%); S=[R<g> 2] W=() N=()
        //   * product S=[M0]  W=(2)  N=(g)
        {"WorkedGroupTimesNumber",
         "(%A% + %B%)*2",
         true,
         {{kSumAB, 2}},
         {{kSumAB, {{"A", 1}, {"B", 1}}}}},
        // %A% %B% - 2 *
        //   - (C4)    S=[M1]  W=(1 -1)
        //   2 *       g=_DrespExpr_+1*%A%+-1*%B%_ takes both; S=[M0]  W=(2)  N=(g)
        {"GroupWithMinusTimesNumber",
         "(%A% - %B%)*2",
         true,
         {{"_DRESPEXPR_+1*%A%+-1*%B%_", 2}},
         {{"_DRESPEXPR_+1*%A%+-1*%B%_", {{"A", 1}, {"B", -1}}}}},
        // 2 %A% %B% + *
        //   + (C4)    S=[2 M1]  W=(1 1)  N=(%A% %B%)
        //   * closes  the marker over the 2: g=_DrespExpr_+1*%A%+1*%B%_; S=[2 R<g>]
        //   * product S=[M0]  W=(2)  N=(g)
        {"NumberTimesGroup",
         "2*(%A% + %B%)",
         true,
         {{kSumAB, 2}},
         {{kSumAB, {{"A", 1}, {"B", 1}}}}},
        // %A% %B% + %C% +
        //   + (C4)    S=[M1]  W=(1 1)    N=(%A% %B%)
        //   %C% + (C2) S=[M2] W=(1 1 1)  N=(%A% %B% %C%)
        {"ThreeReferences", "%A% + %B% + %C%", true, {{"A", 1}, {"B", 1}, {"C", 1}}, {}},
        // %A% %B% - %C% -
        //   - (C4)    S=[M1]  W=(1 -1)
        //   %C% - (C2) S=[M2] W=(1 -1 -1)
        {"ThreeReferencesSubtracted",
         "%A% - %B% - %C%",
         true,
         {{"A", 1}, {"B", -1}, {"C", -1}},
         {}},
        // %A% %B% + %C% + 2 *
        //   + (C4), %C% + (C2)  S=[M2]  W=(1 1 1)  N=(%A% %B% %C%)
        //   2 * closes all three: g=_DrespExpr_+1*%A%+1*%B%+1*%C%_; S=[M0] W=(2) N=(g)
        {"GroupOfThreeTimesNumber",
         "(%A% + %B% + %C%)*2",
         true,
         {{"_DRESPEXPR_+1*%A%+1*%B%+1*%C%_", 2}},
         {{"_DRESPEXPR_+1*%A%+1*%B%+1*%C%_", {{"A", 1}, {"B", 1}, {"C", 1}}}}},
        // 2 %A% *: the factor is the number under the reference; S=[M0] W=(2) N=(%A%)
        {"NumberTimesReference", "2*%A%", true, {{"A", 2}}, {}},
        // %A% 2 *: the factor is the number over the reference; S=[M0] W=(2) N=(%A%)
        {"ReferenceTimesNumber", "%A%*2", true, {{"A", 2}}, {}},
        // %A% 2 %B% * - %C% 3 * +
        //   2 %B% *   S=[%A% M0]  W=(2)       N=(%B%)
        //   - (C1)    S=[M1]      W=(1 -2)    N=(%A% %B%)
        //   %C% 3 *   S=[M1 M0]   W=(1 -2 3)  N=(%A% %B% %C%)
        //   + (A)     S=[M2]
        {"ProductsOnBothSidesWithSubtraction",
         "%A% - 2*%B% + %C%*3",
         true,
         {{"A", 1}, {"B", -2}, {"C", 3}},
         {}},
        // 0 %A% - %B% +
        //   - (C3)    S=[M0]  W=(-1)    N=(%A%)
        //   %B% + (C2) S=[M1] W=(-1 1)  N=(%A% %B%)
        {"LeadingMinus", "-%A% + %B%", true, {{"A", -1}, {"B", 1}}, {}},
        // 0 2 %A% * -
        //   *         S=[0 M0]  W=(2)   N=(%A%)
        //   - (B)     S=[M0]    W=(-2)
        {"LeadingMinusOfProduct", "-2*%A%", true, {{"A", -2}}, {}},
        // 0 2 %A% * +: as above, + (B) keeps W=(2)
        {"ZeroPlusProduct", "0 + 2*%A%", true, {{"A", 2}}, {}},
        // 0 %A% +
        //   + (C3)    S=[M0]  W=(1)  N=(%A%)
        {"LeadingPlus", "+%A%", true, {{"A", 1}}, {}},
        // %A% 0 %B% - -
        //   - (C3)    S=[%A% M0]  W=(-1)   N=(%B%)
        //   - (C1)    S=[M1]      W=(1 1)  N=(%A% %B%)
        {"NegatedNegation", "%A% - (-%B%)", true, {{"A", 1}, {"B", 1}}, {}},
        // 1e-17 %A% -: 1e-17 counts as zero, so - (C3) gives W=(-1) N=(%A%)
        {"TinyNumberCountsAsZero", "1e-17 - %A%", true, {{"A", -1}}, {}},
        // 1e-16 %A% -: a number that is no zero under a reference: nothing; S=[1e-16 %A%] W=()
        {"SmallestNonZeroNumber", "1e-16 - %A%", false, none, {}},
        // 0 %A% * %B% +
        //   *         S=[M0]  W=(0)    N=(%A%)
        //   + (C2)    S=[M1]  W=(0 1)  N=(%A% %B%)
        {"ZeroFactor", "0*%A% + %B%", true, {{"A", 0}, {"B", 1}}, {}},
        // %A% 0 -: a zero over a reference matches no case; S=[%A% 0] W=()
        {"SubtractedZero", "%A% - 0", false, none, {}},
        // %A%: S=[%A%] W=()
        {"LoneReference", "%A%", false, none, {}},
        // 2 3 *: two numbers make no product; S=[2 3] W=()
        {"ProductOfTwoNumbers", "2*3", false, none, {}},
        // 2 3 * %A% *
        //   first *   two numbers: nothing; S=[2 3]
        //   %A% *     S=[2 M0]  W=(3)  N=(%A%)
        {"NumbersBeforeReference", "2*3*%A%", true, {{"A", 3}}, {}},
        // %C% %A% %B% + -
        //   + (C4)    S=[%C% M1]  W=(1 1)     N=(%A% %B%)
        //   - (C1)    S=[M2]      W=(1 1 -1)  N=(%A% %C% %B%)
        // The join reaches only the last term of the group, as the reductions are defined.
        {"SubtractedGroup", "%C% - (%A% + %B%)", true, {{"A", 1}, {"C", 1}, {"B", -1}}, {}},
        // %C% %A% %B% + 2 * -
        //   + (C4)    S=[%C% M1]  W=(1 1)  N=(%A% %B%)
        //   2 *       g=_DrespExpr_+1*%A%+1*%B%_; S=[%C% M0]  W=(2)  N=(g)
        //   - (C1)    S=[M1]  W=(1 -2)  N=(%C% g)
        {"SubtractedGroupTimesNumber",
         "%C% - (%A% + %B%)*2",
         true,
         {{"C", 1}, {kSumAB, -2}},
         {{kSumAB, {{"A", 1}, {"B", 1}}}}},
        // %C% 2 %A% * - 3 *
        //   2 %A% *   S=[%C% M0]  W=(2)     N=(%A%)
        //   - (C1)    S=[M1]      W=(1 -2)  N=(%C% %A%)
        //   3 *       g=_DrespExpr_+1*%C%+-2*%A%_; S=[M0]  W=(3)  N=(g)
        {"GroupWithSubtractedProduct",
         "(%C% - 2*%A%)*3",
         true,
         {{"_DRESPEXPR_+1*%C%+-2*%A%_", 3}},
         {{"_DRESPEXPR_+1*%C%+-2*%A%_", {{"C", 1}, {"A", -2}}}}},
        // 2 %A% * 3 %B% * 4 %C% * + + 5 *
        //   products  S=[M0 M0 M0]  W=(2 3 4)  N=(%A% %B% %C%)
        //   + (A)     S=[M0 M1]
        //   + (A)     S=[M2]
        //   5 *       g=_DrespExpr_+2*%A%+3*%B%+4*%C%_; S=[M0]  W=(5)  N=(g)
        {"GroupOfJoinedProducts",
         "(2*%A% + (3*%B% + 4*%C%))*5",
         true,
         {{"_DRESPEXPR_+2*%A%+3*%B%+4*%C%_", 5}},
         {{"_DRESPEXPR_+2*%A%+3*%B%+4*%C%_", {{"A", 2}, {"B", 3}, {"C", 4}}}}},
        // 0 2 %A% * - %B% + 3 *
        //   2 %A% *   S=[0 M0]  W=(2)
        //   - (B)     S=[M0]    W=(-2)
        //   %B% + (C2) S=[M1]   W=(-2 1)  N=(%A% %B%)
        //   3 *       g=_DrespExpr_+-2*%A%+1*%B%_; S=[M0]  W=(3)  N=(g)
        {"GroupAfterZeroUnderMarker",
         "(-2*%A% + %B%)*3",
         true,
         {{"_DRESPEXPR_+-2*%A%+1*%B%_", 3}},
         {{"_DRESPEXPR_+-2*%A%+1*%B%_", {{"A", -2}, {"B", 1}}}}},
        // 0 %A% - 2 *
        //   - (C3)    S=[M0]  W=(-1)  N=(%A%)
        //   2 *       g=_DrespExpr_+-1*%A%_; S=[M0]  W=(2)  N=(g)
        {"NegatedReferenceTimesNumber",
         "(-%A%)*2",
         true,
         {{"_DRESPEXPR_+-1*%A%_", 2}},
         {{"_DRESPEXPR_+-1*%A%_", {{"A", -1}}}}},
        // 3 2 %A% * *
        //   first *   S=[3 M0]  W=(2)  N=(%A%)
        //   second *  the marker over the 3 closes: g=_DrespExpr_+2*%A%_; S=[3 R<g>]
        //             product S=[M0]  W=(3)  N=(g)
        {"NumberTimesProduct",
         "3*(2*%A%)",
         true,
         {{"_DRESPEXPR_+2*%A%_", 3}},
         {{"_DRESPEXPR_+2*%A%_", {{"A", 2}}}}},
        // %A% %B% + 2 * 3 *
        //   + (C4), 2 *  g=_DrespExpr_+1*%A%+1*%B%_; S=[M0]  W=(2)  N=(g)
        //   3 *       h=_DrespExpr_+2*g_ (g ends in its own underscore); S=[M0] W=(3) N=(h)
        {"GroupTimesNumberTimesNumber",
         "((%A% + %B%)*2)*3",
         true,
         {{"_DRESPEXPR_+2*_DRESPEXPR_+1*%A%+1*%B%__", 3}},
         {{kSumAB, {{"A", 1}, {"B", 1}}},
          {"_DRESPEXPR_+2*_DRESPEXPR_+1*%A%+1*%B%__", {{kSumAB, 2}}}}},
        // %A% %B% + 2 * %C% + 3 *
        //   + (C4), 2 *  g=_DrespExpr_+1*%A%+1*%B%_; S=[M0]  W=(2)  N=(g)
        //   %C% + (C2)   S=[M1]  W=(2 1)  N=(g %C%)
        //   3 *       h=_DrespExpr_+2*g+1*%C%_; S=[M0]  W=(3)  N=(h)
        {"NestedGroups",
         "((%A% + %B%)*2 + %C%)*3",
         true,
         {{"_DRESPEXPR_+2*_DRESPEXPR_+1*%A%+1*%B%_+1*%C%_", 3}},
         {{kSumAB, {{"A", 1}, {"B", 1}}},
          {"_DRESPEXPR_+2*_DRESPEXPR_+1*%A%+1*%B%_+1*%C%_", {{kSumAB, 2}, {"C", 1}}}}},
        // 0.5 %A% * %B% - 4 *
        //   *         S=[M0]  W=(0.5)     N=(%A%)
        //   - (C2)    S=[M1]  W=(0.5 -1)  N=(%A% %B%)
        //   4 *       g=_DrespExpr_+0.5*%A%+-1*%B%_; S=[M0]  W=(4)  N=(g)
        {"FractionalWeightInName",
         "(0.5*%A% - %B%)*4",
         true,
         {{"_DRESPEXPR_+0.5*%A%+-1*%B%_", 4}},
         {{"_DRESPEXPR_+0.5*%A%+-1*%B%_", {{"A", 0.5}, {"B", -1}}}}},
        // %A% %B% + 2 * %A% %B% + 3 * +
        //   + (C4), 2 *  g created; S=[M0]  W=(2)  N=(g)
        //   + (C4)    S=[M0 M1]  W=(2 1 1)  N=(g %A% %B%)
        //   3 *       the same name: g is found, not created again; S=[M0 M0] W=(2 3) N=(g g)
        //   + (A)     S=[M1]
        {"SameGroupTwice",
         "(%A% + %B%)*2 + (%A% + %B%)*3",
         true,
         {{kSumAB, 2}, {kSumAB, 3}},
         {{kSumAB, {{"A", 1}, {"B", 1}}}}},
        // %a% %b% + 2 * %A% %B% + 3 * -
        //   + (C4), 2 *  g=_DrespExpr_+1*%a%+1*%b%_ is created under its upper-case name
        //   + (C4), 3 *  _DrespExpr_+1*%A%+1*%B%_ finds g by that name; S=[M0 M0] W=(2 3)
        //   - (A)     S=[M1]  W=(2 -3)
        {"LowerCaseGroupFoundInUpperCase",
         "(%a% + %b%)*2 - (%A% + %B%)*3",
         true,
         {{kSumAB, 2}, {kSumAB, -3}},
         {{kSumAB, {{"A", 1}, {"B", 1}}}}},
        // %a% 2 %b% * +
        //   2 %b% *   S=[%a% M0]  W=(2)    N=(%b%)
        //   + (C1)    S=[M1]      W=(1 2)  N=(%a% %b%), looked up as A and B
        {"LowerCaseReferences", "%a% + 2*%b%", true, {{"A", 1}, {"B", 2}}, {}},
        // %A% 0.5 * %B% 2 / -
        //   *         S=[M0]  W=(0.5)  N=(%A%)
        //   %B% 2 /   pushed as they are: S=[M0 %B% 2 /]
        //   -         nothing; the top is no marker at the end, so the pending term is lost
        {"QuotientLeftOnTop", "%A%*0.5 - %B%/2", false, none, {}},
        // %A% %B% + %C% *
        //   + (C4)    S=[M1]  W=(1 1)
        //   %C% *     a marker and a reference: nothing; S=[M1 %C%], no marker on top
        {"GroupTimesReference", "(%A% + %B%)*%C%", false, none, {}},
        // %A% %d9% + 2 %% * -
        //   + (C4)    S=[M1]     W=(1 1)    N=(%A% %d9%)
        //   2 %% *    S=[M1 M0]  W=(1 1 2)  N=(%A% %d9% %%)
        //   - (A)     S=[M2]     W=(1 1 -2)
        // D9 names no command (the one listed holds d9) and %% the empty identifier: both dropped.
        {"MissingCommandsDropped", "%A% + %d9% - 2*%%", true, {{"A", 1}}, {}},
        // %d9% %% +: (C4) W=(1 1), and neither term is found
        {"AllTermsMissing", "%d9% + %%", true, none, {}},
        // no tokens
        {"EmptyExpression", "", false, none, {}},
        {"BlankExpression", "   ", false, none, {}},
    };
}

// DRESP A, B, C; one listed as %d9% that no upper-case lookup finds; one without identifier,
// listed as %%; and the OPERATOR P that holds the expression.
class DrespExpressionTable : public DrespExpressionTest,
                             public ::testing::WithParamInterface<ExpressionCase> {
  protected:
    DrespExpressionTable() {
        for (const char* id : {"A", "B", "C"}) {
            Dresp(id);
        }
        container_.CreateCommand(Cmd::DRESP, "DRESP")
            .AddItem(CmdItem::ID_NAME, std::make_unique<ZentuCmdRawStringItem>("ID_NAME", "d9"));
        container_.CreateCommand(Cmd::DRESP, "DRESP");
        Operator("P", GetParam().expression);
    }
};

TEST_P(DrespExpressionTable, ExpandsIntoTheHandDerivedItems) {
    const ExpressionCase& expected = GetParam();
    Run();

    const ZentuCmd& subject = container_.GetCommand(Cmd::OPERATOR, 0);
    EXPECT_TRUE(subject.Items(CmdItem::ADD_FILE).empty());
    EXPECT_TRUE(IsCombination(container_, subject, expected.combines, expected.terms));
    EXPECT_EQ(container_.GetNumberOfCommands(Cmd::DRESP), 5U);
    ASSERT_EQ(container_.GetNumberOfCommands(Cmd::OPERATOR), 1 + expected.generated.size());
    for (std::size_t k = 0; k < expected.generated.size(); ++k) {
        const ZentuCmd& made = container_.GetCommand(Cmd::OPERATOR, k + 1);
        EXPECT_EQ(made.GetName(), "OPERATOR");
        EXPECT_EQ(IdOf(made), expected.generated[k].id);
        EXPECT_TRUE(IsCombination(container_, made, true, expected.generated[k].terms))
            << expected.generated[k].id;
    }
}

INSTANTIATE_TEST_SUITE_P(HandDerived, DrespExpressionTable, ::testing::ValuesIn(HandDerivedCases()),
                         [](const auto& info) { return std::string(info.param.label); });

// ---- Several commands, and what the rule leaves alone ----

TEST_F(DrespExpressionTest, OperatorReferringToAnotherOperator) {
    Dresp("A");
    Dresp("B");
    const ZentuCmd& first = Operator("P1", "%A% + %B%");
    // 2 %P1% * %A% -
    //   *         S=[M0]  W=(2)     N=(%P1%)
    //   - (C2)    S=[M1]  W=(2 -1)  N=(%P1% %A%)
    const ZentuCmd& second = Operator("P2", "2*%P1% - %A%");
    Run();
    EXPECT_TRUE(IsCombination(container_, first, true, {{"A", 1}, {"B", 1}}));
    EXPECT_TRUE(IsCombination(container_, second, true, {{"P1", 2}, {"A", -1}}));
}

TEST_F(DrespExpressionTest, TermsNameTheFirstCommandUnderTheirIdentifier) {
    const ZentuCmd& firstA = Dresp("A");
    Dresp("A");
    container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", "B");
    const ZentuCmd& responseB = Dresp("B");
    // %A% %B% + (C4): W=(1 1); a DRESP is preferred to an OPERATOR of the same identifier.
    const ZentuCmd& subject = Operator("P", "%A% + %B%");
    Run();
    ASSERT_TRUE(IsCombination(container_, subject, true, {{"A", 1}, {"B", 1}}));
    EXPECT_EQ(subject.Items(CmdItem::DV)[0]->GetReference(), &firstA);
    EXPECT_EQ(subject.Items(CmdItem::DV)[1]->GetReference(), &responseB);
}

TEST_F(DrespExpressionTest, GroupInTwoOperatorsIsGeneratedOnce) {
    Dresp("A");
    Dresp("B");
    // P1 creates _DrespExpr_+1*%A%+1*%B%_; P2 builds _DrespExpr_+1*%a%+1*%b%_ and finds it
    // by the upper-case form.
    const ZentuCmd& first = Operator("P1", "(%A% + %B%)*2");
    const ZentuCmd& second = Operator("P2", "(%a% + %b%)*3");
    Run();
    ASSERT_EQ(container_.GetNumberOfCommands(Cmd::OPERATOR), 3U);
    EXPECT_EQ(IdOf(container_.GetCommand(Cmd::OPERATOR, 2)), kSumAB);
    EXPECT_TRUE(IsCombination(container_, first, true, {{kSumAB, 2}}));
    EXPECT_TRUE(IsCombination(container_, second, true, {{kSumAB, 3}}));
}

TEST_F(DrespExpressionTest, GeneratedNameHeldByDrespIsUsedInstead) {
    Dresp("A");
    Dresp("B");
    const ZentuCmd& taken = Dresp(kSumAB);
    const ZentuCmd& subject = Operator("P", "(%A% + %B%)*2");
    Run();
    EXPECT_EQ(container_.GetNumberOfCommands(Cmd::OPERATOR), 1U);
    EXPECT_TRUE(IsCombination(container_, taken, false, {}));
    EXPECT_TRUE(IsCombination(container_, subject, true, {{kSumAB, 2}}));
}

TEST_F(DrespExpressionTest, NewItemsFollowThoseTheCommandHolds) {
    Dresp("A");
    const ZentuCmd& c = Dresp("C");
    ZentuCmd& subject = Operator("P", "2*%A%");
    subject.AddStringItem(CmdItem::TYPE, "TYPE", "max");
    subject.AddItem(CmdItem::DV, "DV", c);
    subject.AddItem(CmdItem::OBJ_FUNC, std::make_unique<ZentuCmdScalarItem>("SCALE", 5.0));
    const std::vector<const ZentuCmdItem*> held = {subject.Items(CmdItem::TYPE)[0].get(),
                                                   subject.Items(CmdItem::DV)[0].get(),
                                                   subject.Items(CmdItem::OBJ_FUNC)[0].get()};
    Run();
    EXPECT_TRUE(IsCombination(container_, subject, true, {{"A", 2}}, 1));
    EXPECT_EQ(subject.Items(CmdItem::TYPE)[0].get(), held[0]);
    EXPECT_EQ(subject.Items(CmdItem::DV)[0].get(), held[1]);
    EXPECT_EQ(subject.Items(CmdItem::OBJ_FUNC)[0].get(), held[2]);
}

TEST_F(DrespExpressionTest, OnlyTheFirstExpressionIsReadAndRemoved) {
    Dresp("A");
    Dresp("B");
    Dresp("C");
    ZentuCmd& subject = Operator("P", "%A% + %B%");
    subject.AddItem(CmdItem::ADD_FILE, std::make_unique<ZentuCmdRawStringItem>("ADD_FILE", "%C%"));
    const ZentuCmdItem* further = subject.Items(CmdItem::ADD_FILE)[1].get();
    Run();
    EXPECT_TRUE(IsCombination(container_, subject, true, {{"A", 1}, {"B", 1}}));
    ASSERT_EQ(subject.Items(CmdItem::ADD_FILE).size(), 1U);
    EXPECT_EQ(subject.Items(CmdItem::ADD_FILE)[0].get(), further);
}

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
    std::vector<const ZentuCmdItem*> expressions;
    for (const ZentuCmd& cmd : container_) {
        for (const auto& item : cmd.Items(CmdItem::ADD_FILE)) {
            expressions.push_back(item.get());
        }
    }

    Run();
    EXPECT_EQ(container_.GetNumberOfCommands(Cmd::OPERATOR), 3U);
    std::vector<const ZentuCmdItem*> kept;
    for (const ZentuCmd& cmd : container_) {
        for (const auto& item : cmd.Items(CmdItem::ADD_FILE)) {
            kept.push_back(item.get());
        }
        EXPECT_TRUE(IsCombination(container_, cmd, false, {})) << IdOf(cmd);
    }
    EXPECT_EQ(kept, expressions);
}

// ---- Token sequences that no expression text produces ----

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

TEST_F(DrespExpressionTest, TokenSequencesWithoutExpressionText) {
    Dresp("A");
    Dresp("B");
    const struct {
        std::vector<std::string> tokens;
        std::vector<Term> terms;
    } cases[] = {
        // * dropped as the first token; 2 %A% then *: W=(2) N=(%A%)
        {{"*", "2", "%A%", "*"}, {{"A", 2}}},
        // * dropped as the second token; %A% %B% + (C4): W=(1 1)
        {{"%A%", "*", "%B%", "+"}, {{"A", 1}, {"B", 1}}},
        // %A% %NOPE% - (C4): W=(1 -1); no command is named NOPE, so that term is left out
        {{"%A%", "%NOPE%", "-"}, {{"A", 1}}},
    };
    for (const auto& c : cases) {
        std::vector<Expr::Token> tokens;
        for (const std::string& text : c.tokens) {
            tokens.push_back(MakeToken(text));
        }
        ZentuCmd& subject = container_.CreateCommand(Cmd::OPERATOR, "OPERATOR", "P");
        ZentuDrespExpressionParser::find_combine_expressions(tokens, keywords_, container_,
                                                             subject);
        EXPECT_TRUE(IsCombination(container_, subject, true, c.terms)) << c.tokens.front();
    }
    EXPECT_EQ(container_.GetNumberOfCommands(Cmd::OPERATOR), 3U);
}

// ---- Bad input and extremes ----

class DrespBadExpression : public DrespExpressionTest,
                           public ::testing::WithParamInterface<std::string> {};

TEST_P(DrespBadExpression, FailsAtItsCommandAndKeepsEarlierChanges) {
    Dresp("A");
    Dresp("B");
    const ZentuCmd& before = Operator("P1", "%A% + %B%");
    const ZentuCmd& failing = Operator("P2", GetParam());
    const ZentuCmd& after = Operator("P3", "%A% - %B%");

    std::optional<KPL_Failure> failure;
    try {
        Run();
    } catch (const KPL_Failure& caught) {
        failure = caught;
    }
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->GetTag(), "|%P|LIBUTIL|ZentuMathExpressions");
    EXPECT_THAT(failure->GetMessage(), HasSubstr(GetParam()));
    EXPECT_TRUE(IsCombination(container_, before, true, {{"A", 1}, {"B", 1}}));
    EXPECT_TRUE(before.Items(CmdItem::ADD_FILE).empty());
    for (const ZentuCmd* untouched : {&failing, &after}) {
        ASSERT_EQ(untouched->Items(CmdItem::ADD_FILE).size(), 1U);
        EXPECT_TRUE(IsCombination(container_, *untouched, false, {}));
    }
    EXPECT_EQ(failing.Items(CmdItem::ADD_FILE)[0]->GetString(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Refused, DrespBadExpression,
                         ::testing::Values("%A% $ %B%", "%X% + %A%", "(%A% + %B%", "%A% + %B%)",
                                           "+", "%A% +", "*%A%", "%A% + * %B%", "%A% %B%",
                                           "2*-%A%"));

TEST_F(DrespExpressionTest, TenThousandTerms) {
    Dresp("A");
    Dresp("B");
    // %A% %B% - (C4) gives W=(1 -1); every further reference and its operator (C2) appends the
    // operator applied to 1, so the weights alternate.
    std::string expression = "%A%";
    std::vector<Term> terms = {{"A", 1}};
    for (int k = 1; k < 10000; ++k) {
        const bool odd = k % 2 == 1;
        expression += odd ? " - %B%" : " + %A%";
        terms.push_back(odd ? Term{"B", -1} : Term{"A", 1});
    }
    const ZentuCmd& subject = Operator("P", expression);
    Run();
    EXPECT_TRUE(IsCombination(container_, subject, true, terms));
}

TEST_F(DrespExpressionTest, DeepNesting) {
    Dresp("A");
    Dresp("B");
    // Parentheses leave no token: %A% %B% - (C4) gives W=(1 -1).
    const std::size_t depth = 10000;
    const ZentuCmd& subject =
        Operator("P", std::string(depth, '(') + "%A% - %B%" + std::string(depth, ')'));
    Run();
    EXPECT_TRUE(IsCombination(container_, subject, true, {{"A", 1}, {"B", -1}}));
}

// ---- From a parameter file through the rule to the written file ----

class DrespExpressionRoad : public ::testing::Test {
  protected:
    void SetUp() override {
        std::random_device seed;
        dir_ = fs::temp_directory_path() / ("zentu_dresp_road_" + std::to_string(seed()));
        ASSERT_TRUE(fs::create_directory(dir_));
    }

    void TearDown() override { fs::remove_all(dir_); }

    // Reads a file of D1, D2 and an OPERATOR P1 holding the expression with the rule registered,
    // writes the container back and returns the written lines.
    std::vector<std::string> ReadAndWrite(const std::string& expressionText) const {
        const fs::path input = dir_ / "job.par";
        const fs::path output = dir_ / "written.par";
        std::ofstream(input) << "DRESP\n  ID_NAME = D1\nEND_\n\nDRESP\n  ID_NAME = D2\nEND_\n\n"
                             << "OPERATOR\n  ID_NAME = P1\n  ADD_FILE = " << expressionText
                             << "\nEND_\n";

        const ZentuCmdItemMetaData text(CmdItem::ID_NAME, DataType::STRING, "", "", 0);
        const ZentuCmdItemMetaData expression(CmdItem::ADD_FILE, DataType::STRING, "", "", 0);
        ZentuCmdIoConfig config;
        config.AddCmdMetadata("DRESP", ZentuCmdMetaData(Cmd::DRESP, false))
            .AddItem({"ID_NAME", text});
        config.AddCmdMetadata("OPERATOR", ZentuCmdMetaData(Cmd::OPERATOR, false))
            .AddItem({"ID_NAME", text})
            .AddItem({"ADD_FILE", expression});
        config.AddRule(&ZentuDrespExpressionParser::dresp_expression_rule);

        ZentuCmdContainer container;
        ZentuParFileAdapter(input.wstring(), std::move(config)).Parse(container);
        ZentuCmdParOutput(output.wstring(), container, ZentuCmdDefs::get_default_cmd_names(),
                          ZentuCmdItemDefs::CMD_ITEM_NAMES)
            .Write(L"w");

        std::ifstream in(output);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    fs::path dir_;
};

// The two DRESP commands, written unchanged before the OPERATOR kind.
std::vector<std::string> WithResponses(const std::vector<std::string>& operators) {
    std::vector<std::string> lines = {"",      "DRESP",          "  ID_NAME = D1", "END_", "",
                                      "DRESP", "  ID_NAME = D2", "END_",           ""};
    lines.insert(lines.end(), operators.begin(), operators.end());
    lines.push_back("");
    return lines;
}

TEST_F(DrespExpressionRoad, TwoResponsesAdded) {
    // %D1% %D2% + (C4): W=(1 1) N=(%D1% %D2%); references write the target's identifier, and
    // the items go out grouped by kind: TYPE, then DV, then OBJ_FUNC.
    EXPECT_EQ(ReadAndWrite("%D1% + %D2%"),
              WithResponses({"OPERATOR", "  ID_NAME = P1", "  TYPE = COMBINE", "  VARIABLE = D1",
                             "  VARIABLE = D2", "  WEIGHT = 1", "  WEIGHT = 1", "END_", ""}));
}

TEST_F(DrespExpressionRoad, GeneratedCommandIsWrittenAfterTheOperator) {
    // %D1% %D2% - 2 *
    //   - (C4)    S=[M1]  W=(1 -1)  N=(%D1% %D2%)
    //   2 *       g=_DrespExpr_+1*%D1%+-1*%D2%_, appended to the OPERATOR commands; W=(2) N=(g)
    const std::string generated = "_DRESPEXPR_+1*%D1%+-1*%D2%_";
    EXPECT_EQ(ReadAndWrite("(%D1% - %D2%)*2"),
              WithResponses({"OPERATOR", "  ID_NAME = P1", "  TYPE = COMBINE",
                             "  VARIABLE = " + generated, "  WEIGHT = 2", "END_", "", "OPERATOR",
                             "  ID_NAME = " + generated, "  TYPE = COMBINE", "  VARIABLE = D1",
                             "  VARIABLE = D2", "  WEIGHT = 1", "  WEIGHT = -1", "END_", ""}));
}

}  // namespace
