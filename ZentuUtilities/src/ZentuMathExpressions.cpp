#include "ZentuMathExpressions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "KPL_Failure.h"
#include "ZentuFormatUtil.h"
#include "ZentuStringUtil.h"
#include "ZentuUtilitiesInternal.h"
#include "ZentuUtilitiesMessages.h"

namespace ZentuMathExpressions {
namespace {

namespace Messages = ZentuUtilitiesMessages;
using Iterator = std::string::const_iterator;

// Marks a trie node at which no candidate ends; larger than any list index.
constexpr std::size_t NO_CANDIDATE = std::numeric_limits<std::size_t>::max();

// Precedences of the default operators; only their order matters.
constexpr int JOINING_PRECEDENCE = 1;
constexpr int PRODUCT_PRECEDENCE = 2;
constexpr int POWER_PRECEDENCE = 3;

// What a token does in the grammar, decided by its class and evaluation rather than its text.
enum class Role { OPERAND, OPERATOR, OPENING, CLOSING };

// What was read last; it decides whether an operand or an operator is due next.
enum class Previous { NOTHING, OPENING, OPERATOR, OPERAND };

// A default kind: its symbol ('\0' for numbers), its precedence and its arithmetic.
struct DefaultKind {
    char symbol;
    TokenClass defaultClass;
    int precedence;
    Arithmetic apply;
};

// Folds ASCII letters only, so that bytes of other encodings compare exactly.
char FoldCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Whether the range starts with the candidate, ASCII letters compared without case.
bool StartsWithIgnoringCase(Iterator begin, Iterator end, const std::string& candidate) {
    if (static_cast<std::size_t>(end - begin) < candidate.size()) {
        return false;
    }
    for (const char c : candidate) {
        if (FoldCase(c) != FoldCase(*begin++)) {
            return false;
        }
    }
    return true;
}

// The trie key of a node's child reached by a byte.
std::uint64_t ChildKey(std::size_t node, char c) {
    return (static_cast<std::uint64_t>(node) << 8U) | static_cast<unsigned char>(FoldCase(c));
}

// The end of a decimal number at begin: digits with an optional fraction ("2.", ".5") and an
// optional exponent; an exponent without digits is not part of the number.
Iterator MatchNumber(Iterator begin, Iterator end) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto skipDigits = [&](Iterator p) {
        while (p != end && isDigit(*p)) {
            ++p;
        }
        return p;
    };
    Iterator p = skipDigits(begin);
    const bool integerDigits = p != begin;
    if (p != end && *p == '.') {
        const Iterator fraction = skipDigits(p + 1);
        if (!integerDigits && fraction == p + 1) {
            return begin;
        }
        p = fraction;
    } else if (!integerDigits) {
        return begin;
    }
    if (p != end && (*p == 'e' || *p == 'E')) {
        Iterator exponent = p + 1;
        if (exponent != end && (*exponent == '+' || *exponent == '-')) {
            ++exponent;
        }
        const Iterator exponentEnd = skipDigits(exponent);
        if (exponentEnd != exponent) {
            p = exponentEnd;
        }
    }
    return p;
}

// The matcher of a one-character symbol, a type of its own so that the tokenizer recognises it in
// a setup and compares the byte itself instead of calling through the matcher.
struct SymbolMatch {
    char symbol;

    Iterator operator()(Iterator begin, Iterator end) const {
        return begin != end && *begin == symbol ? begin + 1 : begin;
    }
};

// The number token that holds a value, as evaluations and signs produce it.
Token NumberToken(double value) {
    return Token{ZentuStringUtil::String(value), value,
                 build_single_token(NUMBER_TYPE, NUMBER_CLASS)};
}

// An evaluation that replaces the last two tokens, right operand then left, by their result; a
// type of its own so that default_arithmetic recognises it.
struct BinaryEvaluation {
    Arithmetic apply;

    void operator()(std::vector<Token>& operands) const {
        if (operands.size() < 2) {
            return;
        }
        const double left = operands.back().value;
        const double right = operands[operands.size() - 2].value;
        operands.pop_back();
        operands.back() = NumberToken(apply(left, right));
    }
};

// The default kinds, indexed by TokenType.
constexpr std::array<DefaultKind, 8> DEFAULT_KINDS = {{
    {'\0', NUMBER_CLASS, 0, nullptr},
    {'*', PRODUCT_CLASS, PRODUCT_PRECEDENCE, [](double l, double r) { return l * r; }},
    {'+', JOINING_CLASS, JOINING_PRECEDENCE, [](double l, double r) { return l + r; }},
    {'-', JOINING_CLASS, JOINING_PRECEDENCE, [](double l, double r) { return l - r; }},
    {'/', QUOTIENT_CLASS, PRODUCT_PRECEDENCE, [](double l, double r) { return l / r; }},
    {'^', POWER_CLASS, POWER_PRECEDENCE, [](double l, double r) { return std::pow(l, r); }},
    {'(', OPENING_PARENTHESIS_CLASS, 0, nullptr},
    {')', CLOSING_PARENTHESIS_CLASS, 0, nullptr},
}};

// Numbers have no symbol; every other default kind is its one character.
Matcher MatcherOf(const DefaultKind& kind) {
    return kind.symbol == '\0' ? Matcher(MatchNumber) : Matcher(SymbolMatch{kind.symbol});
}

// Whether a text that starts with the byte may read as a number: one starts after blanks and a
// sign with a digit, a point, or the first letter of "inf" or "nan".
bool MayStartNumber(char c) {
    const char folded = FoldCase(c);
    return (c >= '0' && c <= '9') || c == '.' || c == '+' || c == '-' || folded == 'i' ||
           folded == 'n' || ZentuUtilitiesTexts::IsBlankCharacter(c);
}

// The number that the whole text reads as, or 0.0, so that references carry no stray value; a
// text that cannot start a number, such as a reference between '%', is not converted at all.
double ValueOf(const std::string& text) {
    if (text.empty() || !MayStartNumber(text.front())) {
        return 0.0;
    }
    const char* end = nullptr;
    const double value = ZentuFormatUtil::str_to_double(text.c_str(), &end);
    return end == text.c_str() + text.size() ? value : 0.0;
}

// How the tokenizer finds the tokens of a description: those of a default kind by their bytes,
// without a call through the matcher, and any other through its matcher.
struct Finder {
    enum class Way : unsigned char { MATCHER, NUMBER, SYMBOL };
    Way way = Way::MATCHER;
    char symbol = '\0';
};

// Room for the operators and parentheses that wait at once in most expressions, taken in one
// allocation instead of growing to it.
constexpr std::size_t PENDING_ROOM = 8;

// Setups longer than this find the tokens of their later descriptions through the matchers.
constexpr std::size_t RECOGNISED_DESCRIPTIONS = 16;

// Recognises a default kind by the type of its matcher, whatever class the caller gave it.
Finder FinderOf(const TokenDescription& description) {
    const Matcher& matcher = description.GetMatcher();
    if (const auto* symbol = matcher.target<SymbolMatch>()) {
        return Finder{Finder::Way::SYMBOL, symbol->symbol};
    }
    const auto* function = matcher.target<Iterator (*)(Iterator, Iterator)>();
    if (function != nullptr && *function == &MatchNumber) {
        return Finder{Finder::Way::NUMBER, '\0'};
    }
    return Finder{};
}

// How the grammar treats tokens of a description.
Role RoleOf(const TokenDescription& description) {
    if (description.GetClass() == OPENING_PARENTHESIS_CLASS) {
        return Role::OPENING;
    }
    if (description.GetClass() == CLOSING_PARENTHESIS_CLASS) {
        return Role::CLOSING;
    }
    return description.GetEvaluation() ? Role::OPERATOR : Role::OPERAND;
}

// Turns one text into postfix order with an explicit operator stack, so that neither deep
// nesting nor long expressions cost stack frames.
class PostfixReader {
  public:
    // A reader that puts the tokens into output, in place of what it held.
    PostfixReader(const std::string& text, const std::vector<TokenDescription>& setup,
                  std::vector<Token>& output)
        : text_(text), setup_(setup), output_(output) {
        output_.clear();
        pending_.reserve(PENDING_ROOM);
        finderCount_ = std::min(setup_.size(), finders_.size());
        for (std::size_t k = 0; k < finderCount_; ++k) {
            finders_[k] = FinderOf(setup_[k]);
        }
    }

    // Reads the whole text; the reader is used once.
    void Read() {
        for (std::size_t position = NextTokenStart(0); position < text_.size();
             position = NextTokenStart(position)) {
            position = ReadToken(position);
        }
        Finish();
    }

  private:
    // A token found in the text, made into a Token only when it goes out, so that parentheses
    // and waiting operators cost no text and no copy of their description.
    struct Found {
        std::size_t description;
        std::size_t begin;
        std::size_t end;
    };

    // The first position at or after position that is not a blank.
    std::size_t NextTokenStart(std::size_t position) const {
        while (position < text_.size() && ZentuUtilitiesTexts::IsBlankCharacter(text_[position])) {
            ++position;
        }
        return position;
    }

    // Reads the token at position and returns the position after it.
    std::size_t ReadToken(std::size_t position) {
        const Iterator begin = text_.begin() + static_cast<std::ptrdiff_t>(position);
        for (std::size_t k = 0; k < setup_.size(); ++k) {
            const Iterator tokenEnd = Find(FinderAt(k), setup_[k], begin);
            if (tokenEnd != begin) {
                const auto end = static_cast<std::size_t>(tokenEnd - text_.begin());
                Accept(Found{k, position, end});
                return end;
            }
        }
        Fail(Messages::MATH_EXPRESSION_UNKNOWN_CHARACTER, text_[position], position + 1,
             text_.c_str());
    }

    // Where the description's token at begin, which is inside the text, ends, or begin when it
    // does not match.
    Iterator Find(const Finder& finder, const TokenDescription& description, Iterator begin) const {
        switch (finder.way) {
            case Finder::Way::NUMBER:
                return MatchNumber(begin, text_.end());
            case Finder::Way::SYMBOL:
                return *begin == finder.symbol ? begin + 1 : begin;
            case Finder::Way::MATCHER:
                break;
        }
        return Advance(description, begin);
    }

    // Where the description's token ends, or begin when it does not match or its matcher
    // answers outside the text.
    Iterator Advance(const TokenDescription& description, Iterator begin) const {
        if (!description.GetMatcher()) {
            return begin;
        }
        const Iterator tokenEnd = description.GetMatcher()(begin, text_.end());
        return tokenEnd > begin && tokenEnd <= text_.end() ? tokenEnd : begin;
    }

    // The finder of the description at index k of the setup.
    Finder FinderAt(std::size_t k) const { return k < finderCount_ ? finders_[k] : Finder{}; }

    // The text of a found token.
    std::string TextOf(const Found& found) const {
        return text_.substr(found.begin, found.end - found.begin);
    }

    // The token that was found, as it goes out.
    Token Build(const Found& found) const {
        std::string tokenText = TextOf(found);
        // No symbol of the default kinds reads as a number.
        const double value =
            FinderAt(found.description).way == Finder::Way::SYMBOL ? 0.0 : ValueOf(tokenText);
        return Token{std::move(tokenText), value, setup_[found.description]};
    }

    // How the grammar treats a found token.
    Role RoleOfFound(const Found& found) const { return RoleOf(setup_[found.description]); }

    // Places a token by the grammar: operands go out at once, operators and parentheses wait.
    void Accept(const Found& found) {
        const Role role = RoleOfFound(found);
        if (OperandDue()) {
            AcceptWhereOperandDue(found, role);
        } else {
            AcceptWhereOperatorDue(found, role);
        }
    }

    // Whether the grammar wants an operand or an opening parenthesis next.
    bool OperandDue() const { return previous_ != Previous::OPERAND; }

    // Where an operand is due, a joining operator may still start a group as its sign.
    void AcceptWhereOperandDue(const Found& found, Role role) {
        if (role == Role::OPERAND) {
            output_.push_back(Build(found));
            previous_ = Previous::OPERAND;
        } else if (role == Role::OPENING) {
            pending_.push_back(found);
            previous_ = Previous::OPENING;
        } else if (IsSign(found, role)) {
            output_.push_back(NumberToken(0.0));
            PushOperator(found);
        } else {
            Fail(Messages::MATH_EXPRESSION_OPERAND_EXPECTED, TextOf(found).c_str(), found.begin + 1,
                 text_.c_str());
        }
    }

    // Where an operator is due, only an operator or a closing parenthesis fits.
    void AcceptWhereOperatorDue(const Found& found, Role role) {
        if (role == Role::OPERATOR) {
            PushOperator(found);
        } else if (role == Role::CLOSING) {
            CloseGroup(found.begin);
        } else {
            Fail(Messages::MATH_EXPRESSION_OPERATOR_EXPECTED, TextOf(found).c_str(),
                 found.begin + 1, text_.c_str());
        }
    }

    // Whether an operator stands where a group begins, so that it signs the group's first term.
    bool IsSign(const Found& found, Role role) const {
        return role == Role::OPERATOR && setup_[found.description].GetClass() == JOINING_CLASS &&
               (previous_ == Previous::NOTHING || previous_ == Previous::OPENING);
    }

    // Sends out the waiting operators that bind at least as tight, which makes equal precedences
    // group left to right, and then lets the operator wait.
    void PushOperator(const Found& found) {
        const int precedence = setup_[found.description].GetPrecedence();
        while (!pending_.empty() && RoleOfFound(pending_.back()) == Role::OPERATOR &&
               setup_[pending_.back().description].GetPrecedence() >= precedence) {
            PopToOutput();
        }
        pending_.push_back(found);
        previous_ = Previous::OPERATOR;
    }

    // Sends out the operators of the innermost group and drops its opening parenthesis.
    void CloseGroup(std::size_t position) {
        while (!pending_.empty() && RoleOfFound(pending_.back()) == Role::OPERATOR) {
            PopToOutput();
        }
        if (pending_.empty()) {
            Fail(Messages::MATH_EXPRESSION_PARENTHESIS_NOT_OPENED, position + 1, text_.c_str());
        }
        pending_.pop_back();
        previous_ = Previous::OPERAND;
    }

    // Moves the last waiting operator to the output.
    void PopToOutput() {
        output_.push_back(Build(pending_.back()));
        pending_.pop_back();
    }

    // Checks that the text ended after an operand and that every group was closed.
    void Finish() {
        if (previous_ == Previous::NOTHING) {
            return;
        }
        if (OperandDue()) {
            Fail(Messages::MATH_EXPRESSION_OPERAND_MISSING_AT_END, text_.size() + 1, text_.c_str());
        }
        while (!pending_.empty()) {
            if (RoleOfFound(pending_.back()) == Role::OPENING) {
                Fail(Messages::MATH_EXPRESSION_PARENTHESIS_NOT_CLOSED, pending_.back().begin + 1,
                     text_.c_str());
            }
            PopToOutput();
        }
    }

    // Throws the failure of this text.
    template <typename... Arguments>
    [[noreturn]] static void Fail(const char* format, Arguments... arguments) {
        throw KPL_Failure(KPL_Failure::Format(format, arguments...),
                          Messages::MATH_EXPRESSIONS_TAG);
    }

    const std::string& text_;
    const std::vector<TokenDescription>& setup_;
    std::vector<Token>& output_;
    // The operators and opening parentheses that wait for their right side.
    std::vector<Found> pending_;
    Previous previous_ = Previous::NOTHING;
    std::array<Finder, RECOGNISED_DESCRIPTIONS> finders_;
    std::size_t finderCount_ = 0;
};

}  // namespace

TokenDescription::TokenDescription(TokenClass tokenClass, Matcher matcher)
    : class_(tokenClass), matcher_(std::move(matcher)) {}

TokenDescription::TokenDescription(TokenClass tokenClass, Matcher matcher, Evaluation evaluation,
                                   int precedence)
    : class_(tokenClass),
      matcher_(std::move(matcher)),
      evaluation_(std::move(evaluation)),
      precedence_(precedence) {}

StringMatcher::StringMatcher(const std::vector<std::string>& candidates)
    : firstCandidate_(1, NO_CANDIDATE) {
    for (std::size_t index = 0; index < candidates.size(); ++index) {
        std::size_t node = 0;
        for (const char c : candidates[index]) {
            const auto inserted = children_.emplace(ChildKey(node, c), firstCandidate_.size());
            if (inserted.second) {
                firstCandidate_.push_back(NO_CANDIDATE);
            }
            node = inserted.first->second;
        }
        if (firstCandidate_[node] == NO_CANDIDATE) {
            firstCandidate_[node] = index;
        }
    }
}

Iterator StringMatcher::Match(Iterator begin, Iterator end) const {
    std::size_t best = firstCandidate_[0];
    Iterator bestEnd = begin;
    std::size_t node = 0;
    for (Iterator p = begin; p != end;) {
        const auto child = children_.find(ChildKey(node, *p));
        if (child == children_.end()) {
            break;
        }
        node = child->second;
        ++p;
        if (firstCandidate_[node] < best) {
            best = firstCandidate_[node];
            bestEnd = p;
        }
    }
    return bestEnd;
}

Iterator find_strings(const std::vector<std::string>& candidates, Iterator begin, Iterator end) {
    for (const std::string& candidate : candidates) {
        if (StartsWithIgnoringCase(begin, end, candidate)) {
            return begin + static_cast<std::ptrdiff_t>(candidate.size());
        }
    }
    return begin;
}

void create_default_token_setup(std::vector<TokenDescription>& setup) {
    for (TokenType type = NUMBER_TYPE; type <= CLOSING_PARENTHESIS_TYPE; ++type) {
        setup.push_back(
            build_single_token(type, DEFAULT_KINDS[static_cast<std::size_t>(type)].defaultClass));
    }
}

std::vector<Token> create_expression(const std::string& text,
                                     const std::vector<TokenDescription>& setup) {
    std::vector<Token> tokens;
    create_expression(text, setup, tokens);
    return tokens;
}

void create_expression(const std::string& text, const std::vector<TokenDescription>& setup,
                       std::vector<Token>& tokens) {
    PostfixReader(text, setup, tokens).Read();
}

TokenDescription build_single_token(TokenType type, TokenClass tokenClass) {
    if (type < NUMBER_TYPE || type > CLOSING_PARENTHESIS_TYPE) {
        throw KPL_Failure(KPL_Failure::Format(Messages::MATH_EXPRESSION_UNKNOWN_TOKEN_TYPE, type,
                                              NUMBER_TYPE, CLOSING_PARENTHESIS_TYPE),
                          Messages::MATH_EXPRESSIONS_TAG);
    }
    const DefaultKind& kind = DEFAULT_KINDS[static_cast<std::size_t>(type)];
    if (kind.apply == nullptr) {
        return TokenDescription(tokenClass, MatcherOf(kind));
    }
    return TokenDescription(tokenClass, MatcherOf(kind), BinaryEvaluation{kind.apply},
                            kind.precedence);
}

Arithmetic default_arithmetic(const TokenDescription& description) {
    const auto* evaluation = description.GetEvaluation().target<BinaryEvaluation>();
    return evaluation == nullptr ? nullptr : evaluation->apply;
}

}  // namespace ZentuMathExpressions
