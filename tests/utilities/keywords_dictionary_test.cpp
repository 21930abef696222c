#include "KeywordsDictionary.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "zentu_test_cases.h"

namespace {

using Lookup = std::optional<int>;
using Collection = std::map<std::string, int>;
using Steps = std::vector<std::tuple<const char*, int, int>>;
constexpr Lookup kNone = std::nullopt;

// Inserts each keyword with its value and expects the result given beside them.
void InsertAll(KeywordsDictionary<int>& dictionary, const Steps& steps) {
    for (const auto& [keyword, value, result] : steps) {
        EXPECT_EQ(dictionary.Insert(keyword, value), result)
            << testing::PrintToString(std::string(keyword != nullptr ? keyword : "(null)"));
    }
}

// A dictionary over the codes 32 to 127 after the insert steps.
KeywordsDictionary<int> Dictionary(const Steps& steps) {
    KeywordsDictionary<int> dictionary;
    for (int code = ' '; code < 128; ++code) {
        dictionary.AllowCharacter(static_cast<char>(code));
    }
    dictionary.BuildAlphabet();
    InsertAll(dictionary, steps);
    return dictionary;
}

// What Find answers; a failed lookup must leave the value alone.
Lookup Find(const KeywordsDictionary<int>& dictionary, const char* text) {
    int value = 12345;
    if (dictionary.Find(text, value)) {
        return value;
    }
    EXPECT_EQ(value, 12345) << "a failed lookup changed the value";
    return kNone;
}

Collection Collected(const KeywordsDictionary<int>& dictionary) {
    Collection out;
    dictionary.CollectKeywords(out);
    return out;
}

const Steps kNodal = {{"DENSITY", 1, 0}, {"DISTRIBUTION", 2, 0}, {"NODAL", 3, 0}};

// Hosts let users abbreviate keywords, so only whole keywords and unique prefixes may match.
TEST(KeywordsDictionary, FindsWholeKeywordsAndUniqueAbbreviationsOnly) {
    const KeywordsDictionary<int> dictionary = Dictionary(kNodal);
    for (const auto& c : zentu_test::DataCases("utilities/cases/keyword_finds.txt", 2)) {
        const Lookup expected = c.fields[1] == "-" ? kNone : Lookup(std::stoi(c.fields[1]));
        EXPECT_EQ(Find(dictionary, zentu_test::Bytes(c.fields[0]).c_str()), expected) << c.where;
    }
    // A keyword that prefixes another wins on its own text, whichever came first.
    for (const Steps& steps :
         {Steps{{"ABC", 1, 0}, {"ABCD", 2, 0}}, Steps{{"ABCD", 2, 0}, {"ABC", 1, 0}}}) {
        const KeywordsDictionary<int> prefixed = Dictionary(steps);
        EXPECT_EQ(
            std::make_tuple(Find(prefixed, "ABC"), Find(prefixed, "ABCD"), Find(prefixed, "AB")),
            std::make_tuple(Lookup(1), Lookup(2), kNone));
    }
    // Long keywords must not make the tree recurse in lookups and collecting.
    const std::string longKeyword = std::string(2000, 'K') + "END";
    const KeywordsDictionary<int> longOne = Dictionary({{longKeyword.c_str(), 1, 0}, {"K", 2, 0}});
    EXPECT_EQ(Collected(longOne), (Collection{{"K", 2}, {longKeyword, 1}}));
    EXPECT_EQ(Find(longOne, "KK"), 1);
}

// An empty or null text abbreviates an only keyword; the empty keyword is kept but never listed.
TEST(KeywordsDictionary, EmptyAndNullTextsAbbreviateAnOnlyKeyword) {
    EXPECT_EQ(Find(Dictionary({{"ONLY", 7, 0}}), nullptr), 7);
    // A prepared dictionary without keywords answers its not-found value as a success.
    EXPECT_EQ(Find(Dictionary({}), ""), -1);
    KeywordsDictionary<int> dictionary = Dictionary({{"ONE", 1, 0}, {"TWO", 2, 0}});
    EXPECT_EQ(Find(dictionary, ""), kNone);
    InsertAll(dictionary, {{nullptr, 5, 0}, {"", 9, 2}});
    EXPECT_EQ(Find(dictionary, ""), 5);
    EXPECT_EQ(Collected(dictionary), (Collection{{"ONE", 1}, {"TWO", 2}}));
}

// A dictionary accepts nothing until its alphabet is built, and the alphabet is fixed after that.
TEST(KeywordsDictionary, OnlyAnAlphabetBuiltBeforehandAdmitsKeywords) {
    KeywordsDictionary<int> reset = Dictionary(kNodal);
    reset.Reset(-1);
    const KeywordsDictionary<int> fresh;
    for (const KeywordsDictionary<int>* dictionary : {&std::as_const(reset), &fresh}) {
        EXPECT_EQ(Find(*dictionary, ""), kNone);
        EXPECT_EQ(Find(*dictionary, "N"), kNone);
        EXPECT_TRUE(Collected(*dictionary).empty());
    }
    reset.AllowCharacter('A');
    EXPECT_EQ(reset.Insert("A", 1), 1);
    EXPECT_EQ(Find(reset, "A"), kNone);
    reset.BuildAlphabet();
    reset.AllowCharacter('C');
    reset.BuildAlphabet();
    InsertAll(reset, {{"A", 1, 0}, {"AC", 2, 1}});
    EXPECT_EQ(Find(reset, "A"), 1);
}

// Insert answers added (0), refused for a character outside the alphabet (1) or present (2); a
// refused insert must give back the counts it raised, or later abbreviations turn ambiguous.
TEST(KeywordsDictionary, InsertReportsAddedRefusedOrPresentAndARefusalLeavesAbbreviationsAlone) {
    const Steps steps = {{"ABC", 1, 0},  {"ABC", 2, 2},  {"abc", 3, 0}, {"AB", 4, 0},
                         {"A\tB", 6, 1}, {"\x80", 7, 1}, {"A B", 9, 0}, {"~\x7f", 10, 0}};
    EXPECT_EQ(Collected(Dictionary(steps)),
              (Collection{{"A B", 9}, {"AB", 4}, {"ABC", 1}, {"abc", 3}, {"~\x7f", 10}}));
    for (const Steps& steps :
         {Steps{{"\x01", 1, 1}, {"ABC", 7, 0}}, Steps{{"ABC\x01", 1, 1}, {"ABC", 7, 0}},
          Steps{{"ABC", 7, 0}, {"ABC", 1, 2}, {"ABC", 2, 2}}}) {
        const KeywordsDictionary<int> dictionary = Dictionary(steps);
        EXPECT_EQ(std::make_tuple(Find(dictionary, "A"), Find(dictionary, "ABC")),
                  std::make_tuple(Lookup(7), Lookup(7)))
            << testing::PrintToString(std::string(std::get<0>(steps.front())));
    }
    // The branch that a refused insert opened stays in use and completes to the not-found value.
    const KeywordsDictionary<int> dictionary = Dictionary({{"AX\x01", 1, 1}, {"AB", 2, 0}});
    EXPECT_EQ(
        std::make_tuple(Find(dictionary, "A"), Find(dictionary, "AB"), Find(dictionary, "AX")),
        std::make_tuple(Lookup(-1), Lookup(2), Lookup(-1)));
    EXPECT_EQ(Collected(dictionary), (Collection{{"AB", 2}}));
}

// Copies share no nodes, and collecting replaces entries of the same text but keeps the others.
TEST(KeywordsDictionary, CopiesAreDeepAndCollectingAddsToTheMap) {
    KeywordsDictionary<int> original = Dictionary(kNodal);
    KeywordsDictionary<int> copy(original);
    KeywordsDictionary<int> assigned;
    assigned = original;
    InsertAll(copy, {{"NODE", 4, 0}});
    original.Reset(-1);
    EXPECT_EQ(Find(original, "DENS"), kNone);
    EXPECT_EQ(Find(copy, "N"), kNone);
    Collection out = {{"NODAL", 100}, {"OTHER", 200}};
    assigned.CollectKeywords(out);
    EXPECT_EQ(out, (Collection{{"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}, {"OTHER", 200}}));
}

}  // namespace
