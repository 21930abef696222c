#include "ZentuDrespExpressionParser.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <climits>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "KPL_Failure.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuStringUtil.h"
#include "model/ZentuCmdIdentifierIndex.h"
#include "model/ZentuTextIndex.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuMathExpressions::JOINING_CLASS;
using ZentuMathExpressions::NUMBER_CLASS;
using ZentuMathExpressions::PRODUCT_CLASS;
using ZentuMathExpressions::REFERENCE_CLASS;
using ZentuMathExpressions::Token;
using ZentuMathExpressions::TokenClass;
using ZentuMathExpressions::TokenDescription;

namespace ZentuDrespExpressionParser {

namespace {

// The text of the marker tokens that stand on the stack for a group of pending terms.
constexpr const char* MARKER_TEXT = "COMBINE";

// Numbers below this magnitude are zeros, the operand that a leading sign brings.
constexpr double ZERO_LIMIT = 1e-16;

// The first DRESP, then the first OPERATOR command under each identifier, kept up to date as the
// rule generates commands, so that looking a term up does not scan the container.
class CommandIndex {
  public:
    explicit CommandIndex(const ZentuCmdContainer& container)
        : CommandIndex(index_kind(container, Cmd::DRESP), index_kind(container, Cmd::OPERATOR)) {}

    // An empty index with room for the container's DRESP and OPERATOR commands, for Add to fill.
    static CommandIndex SizedFor(const ZentuCmdContainer& container) {
        return CommandIndex(Index(container.GetNumberOfCommands(Cmd::DRESP)),
                            Index(container.GetNumberOfCommands(Cmd::OPERATOR)));
    }

    // Records a DRESP or OPERATOR command under its identifier, whose Hash() is hash, unless a
    // command of its kind is recorded under it already.
    void Add(Cmd kind, std::string_view identifier, std::uint64_t hash, const ZentuCmd& command) {
        IndexOf(kind).Add(identifier, hash, &command);
    }

    // Asks the processor to fetch where Add records an identifier of this hash for the kind.
    void Prefetch(Cmd kind, std::uint64_t hash) { IndexOf(kind).Prefetch(hash); }

    // The hash under which an identifier is recorded.
    static std::uint64_t Hash(std::string_view identifier) {
        return ZentuCmdIdentifier::Index::Hash(identifier);
    }

    // The first DRESP command with the identifier, else the first OPERATOR command, else null.
    const ZentuCmd* Find(const std::string& identifier) const {
        if (const ZentuCmd* const* found = responses_.Find(identifier)) {
            return *found;
        }
        const ZentuCmd* const* found = operators_.Find(identifier);
        return found == nullptr ? nullptr : *found;
    }

    // Records an OPERATOR command appended to the container.
    void AddOperator(const std::string& identifier, const ZentuCmd& command) {
        operators_.Add(identifier, &command);
    }

  private:
    using Index = ZentuCmdIdentifier::Index;

    CommandIndex(Index responses, Index operators)
        : responses_(std::move(responses)), operators_(std::move(operators)) {}

    Index& IndexOf(Cmd kind) { return kind == Cmd::DRESP ? responses_ : operators_; }

    static Index index_kind(const ZentuCmdContainer& container, Cmd kind) {
        Index index(container.GetNumberOfCommands(kind));
        ZentuCmdIdentifier::add_first_by_identifier(container.GetCommands(kind), index);
        return index;
    }

    Index responses_;
    Index operators_;
};

// Terms waiting to become items: entry k of both vectors is one term.
struct PendingTerms {
    std::vector<double> weights;
    std::vector<std::string> names;

    void Append(double weight, std::string name) {
        weights.push_back(weight);
        names.push_back(std::move(name));
    }
};

// Everything one expression works on.
struct Reduction {
    const ZentuCmdItemDefs::KeywordMap& keywords;
    ZentuCmdContainer& container;
    CommandIndex& index;
    std::vector<Token> stack;
    PendingTerms terms;
    // The operands that a join is evaluated on, kept so that every join reuses their room.
    std::vector<Token> operands;
    // The identifier of the term looked up last, whose room the next lookup reuses.
    std::string identifier;
};

ZentuMathExpressions::Matcher never_matches() {
    return [](std::string::const_iterator begin, std::string::const_iterator) { return begin; };
}

// The description of every marker, built once, as each marker carries a copy of it.
const TokenDescription& marker_description() {
    static const TokenDescription description(PRODUCT_CLASS, never_matches());
    return description;
}

// The description of the reference to a generated command, built once for the same reason.
const TokenDescription& generated_reference_description() {
    static const TokenDescription description(REFERENCE_CLASS, never_matches());
    return description;
}

Token make_marker(int counter) {
    Token marker{MARKER_TEXT, 0.0, marker_description()};
    marker.description.SetCounter(counter);
    return marker;
}

TokenClass class_of(const Token& token) {
    return token.description.GetClass();
}

bool is_marker(const Token& token) {
    return class_of(token) == PRODUCT_CLASS && token.text == MARKER_TEXT;
}

bool is_zero(const Token& token) {
    return class_of(token) == NUMBER_CLASS && std::fabs(token.value) < ZERO_LIMIT;
}

void add_to_counter(Token& token, int amount) {
    token.description.SetCounter(token.description.GetCounter() + amount);
}

// The coefficient with which a term enters a join: the operator applied to (x, 0). A default
// operator's arithmetic gives the value that its evaluation would leave without the number tokens
// that the evaluation reads and writes as text.
double evaluate_weight(double x, const Token& joining, std::vector<Token>& operands) {
    if (const ZentuMathExpressions::Arithmetic arithmetic =
            ZentuMathExpressions::default_arithmetic(joining.description)) {
        return arithmetic(0.0, x);
    }
    static const TokenDescription number =
        ZentuMathExpressions::build_single_token(0, NUMBER_CLASS);
    operands.clear();
    operands.push_back(Token{ZentuStringUtil::String(x), x, number});
    operands.push_back(Token{"0", 0.0, number});
    if (joining.description.GetEvaluation()) {
        joining.description.GetEvaluation()(operands);
    }
    return operands.empty() ? 0.0 : operands.back().value;
}

std::string build_combine_name(const PendingTerms& terms) {
    std::string name = "_DrespExpr_";
    for (std::size_t k = 0; k < terms.weights.size(); ++k) {
        name += "+" + ZentuStringUtil::String(terms.weights[k]) + "*" + terms.names[k];
    }
    return name + "_";
}

std::string_view strip_reference_delimiters(std::string_view text) {
    if (text.empty() || text.front() != '%' || text.back() != '%') {
        return text;
    }
    return text.size() < 2 ? std::string_view() : text.substr(1, text.size() - 2);
}

// Adds the terms to the command; each term's identifier is upper-cased into the reduction's
// buffer, which keeps its room from one lookup to the next.
void add_combine_items(const PendingTerms& terms, Reduction& reduction, ZentuCmd& command) {
    command.AddAutoItem(CmdItem::TYPE, "TYPE", MARKER_TEXT, reduction.keywords);
    std::string& identifier = reduction.identifier;
    for (std::size_t k = 0; k < terms.weights.size(); ++k) {
        ZentuStringUtil::to_upper_into(strip_reference_delimiters(terms.names[k]), identifier);
        if (const ZentuCmd* target = reduction.index.Find(identifier)) {
            command.AddItem(CmdItem::DV, "VARIABLE", *target);
            command.AddItem(CmdItem::OBJ_FUNC,
                            std::make_unique<ZentuCmdScalarItem>("WEIGHT", terms.weights[k]));
        }
    }
}

// Moves the group of the marker into a command of its own (found by its generated name, or
// created) and turns the marker into a reference to that command.
void close_group(Token& marker, Reduction& reduction) {
    PendingTerms& terms = reduction.terms;
    const std::size_t count = std::min(
        terms.weights.size(), static_cast<std::size_t>(marker.description.GetCounter()) + 1);
    const auto first = static_cast<std::ptrdiff_t>(terms.weights.size() - count);
    PendingTerms group;
    group.weights.assign(terms.weights.begin() + first, terms.weights.end());
    group.names.assign(terms.names.begin() + first, terms.names.end());
    terms.weights.erase(terms.weights.begin() + first, terms.weights.end());
    terms.names.erase(terms.names.begin() + first, terms.names.end());

    const std::string name = build_combine_name(group);
    const std::string identifier = ZentuStringUtil::to_upper(name);
    if (reduction.index.Find(identifier) == nullptr) {
        ZentuCmd& generated = reduction.container.CreateCommand(Cmd::OPERATOR, "OPERATOR", name);
        reduction.index.AddOperator(identifier, generated);
        add_combine_items(group, reduction, generated);
    }
    marker = Token{name, 0.0, generated_reference_description()};
}

void push_product(double factor, std::string reference, Reduction& reduction) {
    reduction.terms.Append(factor, std::move(reference));
    reduction.stack.pop_back();
    reduction.stack.pop_back();
    reduction.stack.push_back(make_marker(0));
}

void reduce_product(Reduction& reduction) {
    std::vector<Token>& stack = reduction.stack;
    if (stack.size() < 2) {
        return;
    }
    Token& top = stack.back();
    Token& second = stack[stack.size() - 2];
    if (is_marker(top) && class_of(second) == NUMBER_CLASS) {
        close_group(top, reduction);
    } else if (is_marker(second) && class_of(top) == NUMBER_CLASS) {
        close_group(second, reduction);
    }
    if (class_of(top) == REFERENCE_CLASS && class_of(second) == NUMBER_CLASS) {
        push_product(second.value, top.text, reduction);
    } else if (class_of(top) == NUMBER_CLASS && class_of(second) == REFERENCE_CLASS) {
        push_product(top.value, second.text, reduction);
    }
}

void apply_to_last_weight(Reduction& reduction, const Token& joining) {
    std::vector<double>& weights = reduction.terms.weights;
    if (!weights.empty()) {
        weights.back() = evaluate_weight(weights.back(), joining, reduction.operands);
    }
}

void reduce_sum(const Token& joining, Reduction& reduction) {
    std::vector<Token>& stack = reduction.stack;
    PendingTerms& terms = reduction.terms;
    if (stack.size() < 2) {
        return;
    }
    Token& top = stack.back();
    Token& second = stack[stack.size() - 2];
    if (is_marker(second) && is_marker(top)) {  // two groups become one
        apply_to_last_weight(reduction, joining);
        const int joined = top.description.GetCounter() + 1;
        stack.pop_back();
        add_to_counter(stack.back(), joined);
    } else if (is_zero(second) && is_marker(top)) {  // a sign applied to a group's last term
        apply_to_last_weight(reduction, joining);
        stack.erase(stack.end() - 2);
    } else if (class_of(second) == REFERENCE_CLASS && is_marker(top)) {
        terms.weights.insert(terms.weights.end() - (terms.weights.empty() ? 0 : 1), 1.0);
        terms.names.insert(terms.names.end() - (terms.names.empty() ? 0 : 1), second.text);
        apply_to_last_weight(reduction, joining);
        stack.erase(stack.end() - 2);
        add_to_counter(stack.back(), 1);
    } else if (is_marker(second) && class_of(top) == REFERENCE_CLASS) {
        terms.Append(evaluate_weight(1.0, joining, reduction.operands), top.text);
        stack.pop_back();
        add_to_counter(stack.back(), 1);
    } else if (is_zero(second) && class_of(top) == REFERENCE_CLASS) {
        terms.Append(evaluate_weight(1.0, joining, reduction.operands), top.text);
        stack.pop_back();
        stack.back() = make_marker(0);
    } else if (class_of(second) == REFERENCE_CLASS && class_of(top) == REFERENCE_CLASS) {
        terms.Append(1.0, second.text);
        terms.Append(evaluate_weight(1.0, joining, reduction.operands), top.text);
        stack.pop_back();
        stack.back() = make_marker(1);
    }
}

// Moves the tokens onto the stack, leaving them in a valid but unspecified state.
void reduce_expression(std::vector<Token>& tokens, Reduction& reduction, ZentuCmd& command) {
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        Token& token = tokens[i];
        if (class_of(token) == PRODUCT_CLASS && token.text == "*") {
            // A product needs two factors before it; a leading one has none and is dropped.
            if (i >= 2) {
                reduce_product(reduction);
            }
        } else if (class_of(token) == JOINING_CLASS) {
            reduce_sum(token, reduction);
        } else {
            reduction.stack.push_back(std::move(token));
        }
    }
    if (!reduction.terms.weights.empty() && !reduction.stack.empty() &&
        is_marker(reduction.stack.back())) {
        add_combine_items(reduction.terms, reduction, command);
    }
}

// Sets reference to %ID_NAME% of the command, reusing its room; the identifier is read in place
// where the item's class allows.
void set_reference_text(const ZentuCmd& command, std::string& reference) {
    reference.assign(1, '%');
    if (const ZentuCmdItem* item = ZentuCmdIdentifier::item_of(command)) {
        ZentuOwnItems::WithText(
            *item, [&reference](std::string_view identifier) { reference.append(identifier); });
    }
    reference += '%';
}

// Matches the references of a container, %ID_NAME% of every DRESP and then every OPERATOR
// command, as find_strings matches the list of them: the first in list order that the text
// starts with, without case. Every reference starts and ends with '%', so the only candidates are
// the prefixes of the text that end at a '%', each looked up in an index.
class ReferenceMatcher {
  public:
    using Iterator = std::string::const_iterator;

    // The matcher of the container's references; with commands, the same walk over the
    // commands records them in that index too, so that their identifiers are read once.
    explicit ReferenceMatcher(const ZentuCmdContainer& container, CommandIndex* commands = nullptr)
        : index_(container.GetNumberOfCommands(Cmd::DRESP) +
                 container.GetNumberOfCommands(Cmd::OPERATOR)),
          commands_(commands) {
        std::size_t position = 0;
        for (Cmd kind : {Cmd::DRESP, Cmd::OPERATOR}) {
            for (const auto& command : container.GetCommands(kind)) {
                Prepare(kind, *command, position++);
            }
        }
        AddPending();
    }

    // The end of the matched reference, or begin when none matches.
    Iterator Match(Iterator begin, Iterator end) const {
        if (begin == end || *begin != '%') {
            return begin;
        }
        const Iterator last = EndOfReferenceBytes(
            begin, begin + static_cast<std::ptrdiff_t>(
                               std::min(longest_, static_cast<std::size_t>(end - begin))));
        Iterator matchEnd = begin;
        std::size_t matchPosition = SIZE_MAX;
        for (Iterator close = std::find(begin + 1, last, '%'); close != last;
             close = std::find(close + 1, last, '%')) {
            const std::string_view candidate(&*begin, static_cast<std::size_t>(close - begin) + 1);
            const std::size_t* position = index_.Find(candidate);
            if (position != nullptr && *position < matchPosition) {
                matchPosition = *position;
                matchEnd = close + 1;
            }
        }
        return matchEnd;
    }

  private:
    using Index = ZentuTextIndex<std::size_t, true>;

    // A command waiting to be indexed: its reference, the reference's hash and position in the
    // list, and, when it has an identifier, the identifier's hash.
    struct Pending {
        std::string reference;
        std::uint64_t hash = 0;
        std::size_t position = 0;
        Cmd kind = Cmd::DRESP;
        const ZentuCmd* command = nullptr;
        bool identified = false;
        std::uint64_t identifierHash = 0;

        // The identifier between the reference's delimiters.
        std::string_view Identifier() const {
            return std::string_view(reference).substr(1, reference.size() - 2);
        }
    };

    // Works out the command's reference and starts fetching the slots where it goes; the
    // commands are indexed in batches whose slots are fetched from memory together.
    void Prepare(Cmd kind, const ZentuCmd& command, std::size_t position) {
        Pending& pending = batch_[pendingCount_++];
        set_reference_text(command, pending.reference);
        longest_ = std::max(longest_, pending.reference.size());
        MarkBytes(pending.reference);
        pending.hash = Index::Hash(pending.reference);
        pending.position = position;
        index_.Prefetch(pending.hash);
        pending.kind = kind;
        pending.command = &command;
        pending.identified = ZentuCmdIdentifier::item_of(command) != nullptr;
        if (commands_ != nullptr && pending.identified) {
            pending.identifierHash = CommandIndex::Hash(pending.Identifier());
            commands_->Prefetch(kind, pending.identifierHash);
        }
        if (pendingCount_ == batch_.size()) {
            AddPending();
        }
    }

    // Indexes the waiting commands in list order, so that the first of equal ones stays.
    void AddPending() {
        for (std::size_t k = 0; k < pendingCount_; ++k) {
            const Pending& pending = batch_[k];
            index_.Add(pending.reference, pending.hash, pending.position);
            if (commands_ != nullptr && pending.identified) {
                commands_->Add(pending.kind, pending.Identifier(), pending.identifierHash,
                               *pending.command);
            }
        }
        pendingCount_ = 0;
    }

    // Records the bytes of a reference, an ASCII letter in both cases as the index compares them.
    void MarkBytes(std::string_view reference) {
        constexpr int CASE_DISTANCE = 'a' - 'A';
        for (const char c : reference) {
            referenceBytes_.set(static_cast<unsigned char>(c));
            if (c >= 'a' && c <= 'z') {
                referenceBytes_.set(static_cast<unsigned char>(c - CASE_DISTANCE));
            } else if (c >= 'A' && c <= 'Z') {
                referenceBytes_.set(static_cast<unsigned char>(c + CASE_DISTANCE));
            }
        }
    }

    // The first position before last whose byte no reference holds, or last; no reference
    // reaches past it, so the candidates that do are not looked up, each a wait for memory.
    Iterator EndOfReferenceBytes(Iterator begin, Iterator last) const {
        return std::find_if(begin, last, [this](char c) {
            return !referenceBytes_.test(static_cast<unsigned char>(c));
        });
    }

    Index index_;
    CommandIndex* commands_;
    std::array<Pending, 16> batch_;
    std::size_t pendingCount_ = 0;
    std::size_t longest_ = 0;
    std::bitset<UCHAR_MAX + 1> referenceBytes_;
};

// The setup of create_token_setup around a function that matches references.
template <typename MatchReferences>
std::vector<TokenDescription> setup_with(MatchReferences matchReferences) {
    std::vector<TokenDescription> setup;
    setup.emplace_back(REFERENCE_CLASS, ZentuMathExpressions::Matcher(std::move(matchReferences)));
    ZentuMathExpressions::create_default_token_setup(setup);
    return setup;
}

// Clears what the previous expression left, keeping the room.
void start_expression(Reduction& reduction) {
    reduction.stack.clear();
    reduction.terms.weights.clear();
    reduction.terms.names.clear();
}

// Reads the expression that an item holds into tokens, in place when the item's class holds its
// text.
void read_expression(const ZentuCmdItem& item, const std::vector<TokenDescription>& setup,
                     std::vector<Token>& tokens) {
    if (const std::string* text = ZentuOwnItems::TextOf(item)) {
        ZentuMathExpressions::create_expression(*text, setup, tokens);
    } else {
        ZentuMathExpressions::create_expression(item.GetString(), setup, tokens);
    }
}

}  // namespace

std::vector<TokenDescription> create_token_setup(const ZentuCmdContainer& container) {
    auto matcher = std::make_shared<const ReferenceMatcher>(container);
    return setup_with(
        [matcher](std::string::const_iterator begin, std::string::const_iterator end) {
            return matcher->Match(begin, end);
        });
}

// The matcher outlives the setup here, so the setup refers to it without sharing it: copying a
// token's description, as reading does for every token, then copies a pointer instead of
// allocating.
void dresp_expression_rule(ZentuCmdContainer& container,
                           const ZentuCmdItemDefs::KeywordMap& keywords) {
    CommandIndex index = CommandIndex::SizedFor(container);
    const ReferenceMatcher matcher(container, &index);
    const std::vector<TokenDescription> setup =
        setup_with([&matcher](std::string::const_iterator begin, std::string::const_iterator end) {
            return matcher.Match(begin, end);
        });
    Reduction reduction{keywords, container, index, {}, {}, {}, {}};
    std::vector<Token> tokens;
    UnreadableExpressions* const unreadable = UnreadableExpressions::Current();
    if (unreadable != nullptr) {
        unreadable->ruleRan_ = true;
    }
    // Generated commands are appended behind the ones that hold expressions and are not visited.
    const std::size_t operatorCount = container.GetNumberOfCommands(Cmd::OPERATOR);
    for (std::size_t i = 0; i < operatorCount; ++i) {
        ZentuCmd& command = container.GetCommand(Cmd::OPERATOR, i);
        if (!command.HasItem(CmdItem::ADD_FILE, 0) ||
            !command.Item(CmdItem::ADD_FILE, 0).HasString()) {
            continue;
        }
        try {
            read_expression(command.Item(CmdItem::ADD_FILE, 0), setup, tokens);
        } catch (const KPL_Exception& refusal) {
            if (unreadable == nullptr) {
                throw;
            }
            unreadable->handler_(command, command.Item(CmdItem::ADD_FILE, 0), refusal);
            command.Erase(CmdItem::ADD_FILE, command.begin(CmdItem::ADD_FILE));
            continue;
        }
        start_expression(reduction);
        reduce_expression(tokens, reduction, command);
        command.Erase(CmdItem::ADD_FILE, command.begin(CmdItem::ADD_FILE));
    }
}

namespace {

// The innermost handler of unreadable expressions of each thread.
thread_local UnreadableExpressions* currentUnreadable = nullptr;

}  // namespace

UnreadableExpressions::UnreadableExpressions(Handler handler)
    : handler_(std::move(handler)), enclosing_(currentUnreadable) {
    currentUnreadable = this;
}

UnreadableExpressions::~UnreadableExpressions() {
    currentUnreadable = enclosing_;
}

UnreadableExpressions* UnreadableExpressions::Current() {
    return currentUnreadable;
}

void find_combine_expressions(const std::vector<Token>& tokens,
                              const ZentuCmdItemDefs::KeywordMap& keywords,
                              ZentuCmdContainer& container, ZentuCmd& command) {
    CommandIndex index(container);
    Reduction reduction{keywords, container, index, {}, {}, {}, {}};
    std::vector<Token> reduced = tokens;
    reduce_expression(reduced, reduction, command);
}

}  // namespace ZentuDrespExpressionParser
