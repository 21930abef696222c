#include "ZentuMathExpressions.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "KPL_Failure.h"
#include "zentu_test_cases.h"

namespace {

namespace Expr = ZentuMathExpressions;
using Expr::Token;

// Reads with the default setup behind a reference description, as the expression rule sets it up.
std::vector<Token> Read(const std::string& text, const std::vector<std::string>& references = {}) {
    const auto matcher = std::make_shared<Expr::StringMatcher>(references);
    std::vector<Expr::TokenDescription> setup{Expr::TokenDescription(
        Expr::REFERENCE_CLASS,
        [matcher](auto begin, auto end) { return matcher->Match(begin, end); })};
    Expr::create_default_token_setup(setup);
    return Expr::create_expression(text, setup);
}

// The postfix tokens as "text" or, with details, as "text(class)=value", joined by blanks.
std::string Postfix(const std::string& text, const std::vector<std::string>& references = {},
                    bool details = false) {
    std::ostringstream joined;
    for (const Token& token : Read(text, references)) {
        joined << (joined.tellp() > 0 ? " " : "") << token.text;
        if (details) {
            joined << '(' << token.description.GetClass() << ")=" << token.value;
        }
    }
    return joined.str();
}

// Evaluates postfix tokens as a host does, handing each operator its operands in pop order.
double Evaluate(const std::vector<Token>& tokens) {
    std::vector<Token> stack;
    for (const Token& token : tokens) {
        if (token.description.GetEvaluation()) {
            std::vector<Token> operands{stack.back(), stack[stack.size() - 2]};
            stack.pop_back();
            stack.pop_back();
            token.description.GetEvaluation()(operands);
            stack.push_back(operands.back());
        } else {
            stack.push_back(token);
        }
    }
    return stack.back().value;
}

// The message of the failure that action throws, after checking the tag; empty when none.
template <typename Action>
std::string FailureOf(Action action) {
    try {
        action();
    } catch (const KPL_Failure& failure) {
        EXPECT_EQ(failure.GetTag(), "|%P|LIBUTIL|ZentuMathExpressions");
        return failure.GetMessage();
    }
    return std::string();
}

// Applies the default operator written as symbol to operands listed right operand first.
std::vector<Token> Apply(const std::string& symbol, const std::vector<double>& values) {
    std::vector<Token> operands;
    for (const double value : values) {
        operands.push_back(Token{"", value, Expr::build_single_token(Expr::NUMBER_TYPE, 1)});
    }
    Read("1" + symbol + "1").back().description.GetEvaluation()(operands);
    return operands;
}

// Hosts evaluate the postfix order, so precedence, left association (also of '^') and a sign's zero
// operand must come out right, and tokens keep text, class and value, the caller's descriptions
// first; users fix bad expressions from the message, which names the 1-based position and text.
TEST(MathExpressionsTest, TextsReadToPostfixTokensWithTheirClassOrFailNamingThePosition) {
    for (const auto& c : zentu_test::DataCases("utilities/cases/postfix.txt", 2)) {
        EXPECT_EQ(Postfix(zentu_test::Bytes(c.fields[0]), {"%A%", "%B%"}), c.fields[1]) << c.where;
    }
    EXPECT_EQ(Postfix("12 + 2.5*.5 - 2.^1e3/1.5E-3 + 7e+2*%a% + %Ab%", {"%A%", "%AB%"}, true),
              "12(1)=12 2.5(1)=2.5 .5(1)=0.5 *(2)=0 +(3)=0 2.(1)=2 1e3(1)=1000 ^(6)=0 "
              "1.5E-3(1)=0.0015 /(5)=0 -(3)=0 7e+2(1)=700 %a%(4)=0 *(2)=0 +(3)=0 %Ab%(4)=0 +(3)=0");
    EXPECT_EQ(Postfix("1e3+1", {"1E3"}, true), "1e3(4)=1000 1(1)=1 +(3)=0");
    EXPECT_EQ(Postfix("inf-nan*-1+.5*+2", {"INF", "NAN", "-1", ".5", "+2"}, true),
              "inf(4)=inf nan(4)=nan -1(4)=-1 *(2)=0 -(3)=0 .5(4)=0.5 +2(4)=2 *(2)=0 +(3)=0");
    for (const auto& c : zentu_test::DataCases("utilities/cases/expression_failures.txt", 2)) {
        EXPECT_EQ(FailureOf([&c] { Read(c.fields[0], {"%A%"}); }), c.fields[1]) << c.where;
    }
}

// References match the first candidate in list order, ignoring ASCII case only, and never past
// the end given; the matcher and the plain search always agree.
TEST(MathExpressionsTest, FindStringsTakesTheFirstCandidateInListOrderIgnoringAsciiCase) {
    for (const auto& c : zentu_test::DataCases("utilities/cases/find_strings.txt", 3)) {
        std::vector<std::string> candidates;
        std::istringstream in(c.fields[0] == "-" ? "" : c.fields[0]);
        for (std::string candidate; std::getline(in, candidate, ',');) {
            candidates.push_back(candidate);
        }
        const std::string& text = c.fields[1];
        const std::ptrdiff_t length = std::stol(c.fields[2]);
        EXPECT_EQ(Expr::find_strings(candidates, text.begin(), text.end()) - text.begin(), length)
            << c.where;
        EXPECT_EQ(Expr::StringMatcher(candidates).Match(text.begin(), text.end()) - text.begin(),
                  length)
            << c.where;
    }
    const std::string text = "%A%";
    EXPECT_EQ(Expr::find_strings({"%A%"}, text.begin(), text.begin() + 2), text.begin());
    EXPECT_EQ(Expr::StringMatcher({"%A%"}).Match(text.begin(), text.begin() + 2), text.begin());

    std::mt19937 random(7);
    const auto randomText = [&random](std::size_t maxLength) {
        std::string text(random() % (maxLength + 1), ' ');
        for (char& c : text) {
            c = "aAbB%"[random() % 5];
        }
        return text;
    };
    for (int trial = 0; trial < 3000; ++trial) {
        std::vector<std::string> candidates(random() % 8);
        for (std::string& candidate : candidates) {
            candidate = randomText(4);
        }
        const std::string text = randomText(6);
        ASSERT_EQ(Expr::StringMatcher(candidates).Match(text.begin(), text.end()),
                  Expr::find_strings(candidates, text.begin(), text.end()))
            << "trial " << trial;
    }
}

// Operators pop the right operand first, replace the two by their result (text included) and
// leave shorter operand lists alone; a sign's zero operand makes '+' keep and '-' negate.
TEST(MathExpressionsTest, OperatorsTakeTheRightOperandFirstAndLeaveTheirResultLast) {
    for (const double x : {2.5, -3.0}) {
        EXPECT_EQ(Apply("+", {x, 0.0}).back().value, x);
        EXPECT_EQ(Apply("-", {x, 0.0}).back().value, -x);
    }
    const std::pair<const char*, double> results[] = {
        {"+", 10}, {"-", 6}, {"*", 16}, {"/", 4}, {"^", 64}};
    for (const auto& [symbol, result] : results) {
        const std::vector<Token> operands = Apply(symbol, {7, 2, 8});
        ASSERT_EQ(operands.size(), 2U) << symbol;
        EXPECT_EQ(operands[0].value, 7) << symbol;
        EXPECT_EQ(operands[1].value, result) << symbol;
        EXPECT_EQ(operands[1].description.GetClass(), Expr::NUMBER_CLASS) << symbol;
        EXPECT_EQ(Apply(symbol, {5}).back().value, 5) << symbol;
        EXPECT_TRUE(Apply(symbol, {}).empty()) << symbol;
    }
    EXPECT_EQ(Apply("/", {4, 2}).back().text, "0.5");
    EXPECT_EQ(Evaluate(Read("(1+2)*3-4/2-2^2")), 3);
}

// Generated jobs hold long sums and deep nesting, which must not exhaust the stack.
TEST(MathExpressionsTest, LongAndDeeplyNestedTextsAreReadWithoutRecursion) {
    constexpr std::size_t depth = 100'000;
    std::string sum = "1";
    std::string products;
    std::vector<std::string> references;
    for (int term = 1; term < 10'000; ++term) {
        sum += "+1";
        references.push_back("%R" + std::to_string(term) + "%");
        products += (term > 1 ? "-2*" : "2*") + references.back();
    }
    EXPECT_EQ(Evaluate(Read(sum)), 10'000);
    EXPECT_EQ(Read(products, references).size(), 4U * 9'999 - 1);
    std::string signs;
    for (std::size_t level = 0; level < depth; ++level) {
        signs += "-(";
    }
    const std::vector<Token> negated = Read(signs + "3" + std::string(depth, ')'));
    EXPECT_EQ(negated.size(), 2 * depth + 1);
    EXPECT_EQ(Evaluate(negated), 3);
    EXPECT_NE(FailureOf([&] { Read(std::string(depth, '(') + "1"); }), "");
    EXPECT_NE(FailureOf([&] { Read("1" + std::string(depth, ')')); }), "");
}

// Hosts build their own setups from descriptions, so copies, counters, classes and the default
// setup's order must hold.
TEST(MathExpressionsTest, DescriptionsKeepTheirClassCounterAndKind) {
    Expr::TokenDescription marker(Expr::PRODUCT_CLASS, [](auto begin, auto) { return begin; });
    const Expr::TokenDescription copy = marker;
    marker.SetCounter(3);
    EXPECT_EQ(copy.GetCounter(), 0);
    EXPECT_FALSE(marker.GetEvaluation());
    const std::string text = "12.5e1x";
    EXPECT_EQ(Expr::build_single_token(0, 1).GetMatcher()(text.begin(), text.end()) - text.begin(),
              6);
    EXPECT_EQ(Expr::build_single_token(Expr::PRODUCT_TYPE, 9).GetClass(), 9);
    EXPECT_EQ(FailureOf([] { Expr::build_single_token(8, 1); }),
              "Unknown token type 8; the known types are 0 to 7");

    std::vector<Expr::TokenDescription> setup{marker};
    Expr::create_default_token_setup(setup);
    const std::string symbols = "?1*+-/^()";
    const Expr::TokenClass classes[] = {2, 1, 2, 3, 3, 5, 6, 7, 8};
    ASSERT_EQ(setup.size(), symbols.size());
    EXPECT_EQ(setup[0].GetCounter(), 3);
    for (std::size_t i = 1; i < setup.size(); ++i) {
        const auto begin = symbols.begin() + static_cast<std::ptrdiff_t>(i);
        EXPECT_EQ(setup[i].GetMatcher()(begin, symbols.end()), begin + 1) << symbols[i];
        EXPECT_EQ(setup[i].GetClass(), classes[i]) << symbols[i];
    }
}

}  // namespace
