#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuDrespExpressionParser.h"
#include "ZentuMathExpressions.h"
#include "fuzz_support.h"

namespace {

namespace Expr = ZentuMathExpressions;
using ZentuCmdDefs::Cmd;

// The identifier of the operator under test, so that its own expression can refer to it.
const char* const kOperatorId = "LONG_NAME";

// Set up once as the expression rule sets up its own: references first, then the defaults.
const std::vector<Expr::TokenDescription>& Setup() {
    static const std::vector<Expr::TokenDescription> setup = [] {
        const auto matcher = std::make_shared<Expr::StringMatcher>(
            std::vector<std::string>{"%A%", "%B%", "%LONG_NAME%"});
        std::vector<Expr::TokenDescription> built{Expr::TokenDescription(
            Expr::REFERENCE_CLASS,
            [matcher](auto begin, auto end) { return matcher->Match(begin, end); })};
        Expr::create_default_token_setup(built);
        return built;
    }();
    return setup;
}

// Callers walk the postfix tokens with a stack and trust it to hold two operands at every
// operator and one value at the end; evaluating as they do checks exactly that.
void RequireEvaluable(const std::vector<Expr::Token>& tokens) {
    std::vector<Expr::Token> stack;
    for (const Expr::Token& token : tokens) {
        const Expr::TokenClass tokenClass = token.description.GetClass();
        zentu_fuzz::Require(tokenClass != Expr::OPENING_PARENTHESIS_CLASS &&
                                tokenClass != Expr::CLOSING_PARENTHESIS_CLASS,
                            "postfix order holds no parenthesis");
        if (!token.description.GetEvaluation()) {
            stack.push_back(token);
            continue;
        }
        zentu_fuzz::Require(stack.size() >= 2, "every operator finds two operands");
        std::vector<Expr::Token> operands{stack.back(), stack[stack.size() - 2]};
        stack.pop_back();
        stack.pop_back();
        token.description.GetEvaluation()(operands);
        zentu_fuzz::Require(!operands.empty(), "an operator leaves its result");
        stack.push_back(operands.back());
    }
    zentu_fuzz::Require(stack.size() == (tokens.empty() ? 0U : 1U),
                        "an expression leaves exactly one value");
}

// The road of a job file: two responses and an operator holding the text as its expression.
void RunRule(const std::string& text) {
    static const ZentuCmdItemDefs::KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::DRESP, "DRESP", "A");
    container.CreateCommand(Cmd::DRESP, "DRESP", "B");
    container.CreateCommand(Cmd::OPERATOR, "OPERATOR", kOperatorId)
        .AddItem(ZentuCmdItemDefs::CmdItem::ADD_FILE,
                 std::make_unique<ZentuCmdRawStringItem>("ADD_FILE", text));
    ZentuDrespExpressionParser::dresp_expression_rule(container, keywords);
}

}  // namespace

// Runs once before the first input, so that every input meets the same library setup.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zentu_fuzz::PrepareLibrary();
    static_cast<void>(Setup());
    return 0;
}

// libFuzzer's entry point: any abort, sanitizer report or escaping exception is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = zentu_fuzz::TextOf(data, size);
    zentu_fuzz::Completes([&] { RequireEvaluable(Expr::create_expression(text, Setup())); });
    zentu_fuzz::Completes([&] { RunRule(text); });
    return 0;
}
