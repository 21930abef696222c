#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "ZentuUtilitiesExport.h"

// Reads arithmetic over numbers and caller-defined operands (such as references to other
// responses) into postfix order, for callers that walk the terms themselves.
namespace ZentuMathExpressions {

// Sorts tokens into kinds that callers tell apart; parentheses are known by their class alone.
using TokenClass = int;

// Names one of the kinds that the default setup holds, for build_single_token.
using TokenType = int;

// The classes of the default setup; class 4 is left to the caller's references.
inline constexpr TokenClass NUMBER_CLASS = 1;
inline constexpr TokenClass PRODUCT_CLASS = 2;
inline constexpr TokenClass JOINING_CLASS = 3;
inline constexpr TokenClass REFERENCE_CLASS = 4;
inline constexpr TokenClass QUOTIENT_CLASS = 5;
inline constexpr TokenClass POWER_CLASS = 6;
inline constexpr TokenClass OPENING_PARENTHESIS_CLASS = 7;
inline constexpr TokenClass CLOSING_PARENTHESIS_CLASS = 8;

// The kinds of the default setup, in the order in which create_default_token_setup appends them.
inline constexpr TokenType NUMBER_TYPE = 0;
inline constexpr TokenType PRODUCT_TYPE = 1;
inline constexpr TokenType PLUS_TYPE = 2;
inline constexpr TokenType MINUS_TYPE = 3;
inline constexpr TokenType QUOTIENT_TYPE = 4;
inline constexpr TokenType POWER_TYPE = 5;
inline constexpr TokenType OPENING_PARENTHESIS_TYPE = 6;
inline constexpr TokenType CLOSING_PARENTHESIS_TYPE = 7;

struct Token;

// Returns the end of the token that starts at begin, or begin when none starts there.
using Matcher = std::function<std::string::const_iterator(std::string::const_iterator,
                                                          std::string::const_iterator)>;

// Applies an operator in place to the vector's last two tokens, taken in the order in which a
// postfix evaluator pops them (right operand first, left operand last), and replaces both by one
// number token holding the result, so that on (x, 0.0) '+' leaves x and '-' leaves -x as the value
// of the last token; a vector of fewer than two tokens is left as it is.
using Evaluation = std::function<void(std::vector<Token>&)>;

// The arithmetic of a default operator: the value that its evaluation leaves for the operands
// (right, left) in pop order is apply(left, right).
using Arithmetic = double (*)(double left, double right);

// One kind of token: how to find it in a text, and, for operators, how to apply it.
class ZENTU_UTILITIES_API TokenDescription {
  public:
    // An operand kind, such as a reference; its counter starts at 0.
    TokenDescription(TokenClass tokenClass, Matcher matcher);

    // An operator kind, whose precedence decides which of two neighbouring operators takes the
    // operand between them (the higher one; of equal ones, the left one).
    TokenDescription(TokenClass tokenClass, Matcher matcher, Evaluation evaluation, int precedence);

    // The class that callers sort the token by.
    TokenClass GetClass() const { return class_; }

    // A number that the tokenizer never reads, kept for callers that attach a count to a token.
    int GetCounter() const { return counter_; }

    // Lets a caller keep its own count in a token it holds.
    void SetCounter(int counter) { counter_ = counter; }

    // Finds the token at the start of a range.
    const Matcher& GetMatcher() const { return matcher_; }

    // Empty for operands and parentheses.
    const Evaluation& GetEvaluation() const { return evaluation_; }

    // Decides which of two neighbouring operators takes a shared operand; 0 for operands.
    int GetPrecedence() const { return precedence_; }

  private:
    TokenClass class_;
    int counter_ = 0;
    Matcher matcher_;
    Evaluation evaluation_;
    int precedence_ = 0;
};

// One token of an expression: its text as written, its value when the text is a number (0.0
// otherwise), and its kind.
struct Token {
    std::string text;
    double value = 0.0;
    TokenDescription description;
};

// Matches many texts against one fixed list in time that grows with the longest candidate rather
// than with the number of candidates, which find_strings cannot do as it sees the list anew at
// every call.
class ZENTU_UTILITIES_API StringMatcher {
  public:
    // Indexes a copy of the candidates, so later changes to the list do not reach the matcher.
    explicit StringMatcher(const std::vector<std::string>& candidates);

    // The same answer as find_strings over the candidates given at construction.
    std::string::const_iterator Match(std::string::const_iterator begin,
                                      std::string::const_iterator end) const;

  private:
    // The candidates as a trie: node 0 is the root, children_ maps (node, lower-case byte) to a
    // node, and firstCandidate_ holds the smallest list index of a candidate ending at each node.
    std::vector<std::size_t> firstCandidate_;
    std::unordered_map<std::uint64_t, std::size_t> children_;
};

// The end of the first candidate, in list order, that the text at begin starts with, ASCII
// letters compared without case (an empty candidate matches with length 0), or begin when none
// does; it walks the whole list, so repeated matching against one list belongs in a StringMatcher.
ZENTU_UTILITIES_API std::string::const_iterator find_strings(
    const std::vector<std::string>& candidates, std::string::const_iterator begin,
    std::string::const_iterator end);

// Appends the kinds of the default setup, in TokenType order, behind the caller's own: numbers
// (class 1), '*' (2), '+' and '-' (3), '/' (5), '^' (6), '(' (7) and ')' (8).
ZENTU_UTILITIES_API void create_default_token_setup(std::vector<TokenDescription>& setup);

// The tokens of the text in postfix order ('^' over '*' and '/' over '+' and '-', each level left
// to right), each made by the first description whose matcher advances after the blanks, with a
// joining operator at the start or right after '(' delivered as the sign "0 x op"; a blank text
// gives no tokens, and any other text that is not one expression throws KPL_Failure naming the
// position in bytes from 1.
ZENTU_UTILITIES_API std::vector<Token> create_expression(
    const std::string& text, const std::vector<TokenDescription>& setup);

// Reads the text as create_expression does into tokens, replacing what they held, so that a caller
// that reads many expressions reuses one vector's room; after a failure they hold some of the
// text's tokens.
ZENTU_UTILITIES_API void create_expression(const std::string& text,
                                           const std::vector<TokenDescription>& setup,
                                           std::vector<Token>& tokens);

// The default description of the given type under the given class, so (0, 1) is the number kind;
// throws KPL_Failure for a type outside NUMBER_TYPE to CLOSING_PARENTHESIS_TYPE.
ZENTU_UTILITIES_API TokenDescription build_single_token(TokenType type, TokenClass tokenClass);

// The arithmetic of the description's evaluation when it is a default operator's, else null, so
// that a caller that wants the value alone need not build number tokens for the evaluation.
ZENTU_UTILITIES_API Arithmetic default_arithmetic(const TokenDescription& description);

}  // namespace ZentuMathExpressions
