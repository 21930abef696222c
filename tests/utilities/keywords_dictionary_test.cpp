#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "KeywordsDictionary.h"

namespace {

using namespace std::string_literals;
using Keywords = std::vector<std::pair<std::string, int>>;
using Lookup = std::optional<int>;
using Collection = std::map<std::string, int>;
constexpr Lookup kNone = std::nullopt;

// Inserts each keyword with its value and expects the result given beside them.
void InsertAll(KeywordsDictionary<int>& dictionary,
               const std::vector<std::tuple<const char*, int, int>>& steps) {
    for (const auto& [keyword, value, result] : steps) {
        EXPECT_EQ(dictionary.Insert(keyword, value), result)
            << ::testing::PrintToString(std::string(keyword != nullptr ? keyword : "(null)"));
    }
}

// Holds keywords, each of which must be accepted, over alphabet (by default codes 32 to 127).
KeywordsDictionary<int> Dictionary(const Keywords& keywords, std::string alphabet = {}) {
    if (alphabet.empty()) {
        alphabet.resize(96);
        std::iota(alphabet.begin(), alphabet.end(), ' ');
    }
    KeywordsDictionary<int> dictionary;
    for (char c : alphabet) {
        dictionary.AllowCharacter(c);
    }
    dictionary.BuildAlphabet();
    for (const auto& [keyword, value] : keywords) {
        EXPECT_EQ(dictionary.Insert(keyword.c_str(), value), 0) << keyword;
    }
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

const Keywords kNodal = {{"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}};

TEST(KeywordsDictionary, FindsWholeKeywordsAndUniqueAbbreviationsOnly) {
    const KeywordsDictionary<int> dictionary = Dictionary(kNodal);
    // Bytes from 128 up lie outside the alphabet too, and must not index below the table.
    // clang-format off
    const std::pair<const char*, Lookup> cases[] = {
        {"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}, {"N", 3}, {"NODA", 3}, {"DE", 1},
        {"DI", 2}, {"D", kNone}, {"", kNone}, {"NODALX", kNone}, {"nodal", kNone}, {"X", kNone},
        {" ", kNone}, {"\t", kNone}, {"N\tODAL", kNone}, {"\x1f", kNone}, {"\x80", kNone},
        {"\xff", kNone}, {"NODAL\x80", kNone}};
    // clang-format on
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(Find(dictionary, text), expected) << ::testing::PrintToString(std::string(text));
    }
    // The text is a C string, so whatever follows a NUL is never seen.
    EXPECT_EQ(Find(dictionary, std::string("NODAL\0XYZ", 9).c_str()), 3);
    EXPECT_EQ(Find(dictionary, std::string("\0NODAL", 6).c_str()), kNone);
    // A keyword that prefixes another wins on its own text, whichever came first.
    for (const Keywords& keywords :
         {Keywords{{"ABC", 1}, {"ABCD", 2}}, Keywords{{"ABCD", 2}, {"ABC", 1}}}) {
        const KeywordsDictionary<int> prefixed = Dictionary(keywords);
        EXPECT_EQ(
            std::make_tuple(Find(prefixed, "ABC"), Find(prefixed, "ABCD"), Find(prefixed, "AB")),
            std::make_tuple(Lookup(1), Lookup(2), kNone));
    }
    // Long keywords must not make the tree recurse in lookups and collecting.
    const std::string longKeyword = std::string(2000, 'K') + "END";
    const KeywordsDictionary<int> longOne = Dictionary({{longKeyword, 1}, {"K", 2}});
    EXPECT_EQ(Collected(longOne), (Collection{{"K", 2}, {longKeyword, 1}}));
    EXPECT_EQ(Find(longOne, "KK"), 1);
    EXPECT_EQ(Find(longOne, (longKeyword + "X").c_str()), kNone);
}

TEST(KeywordsDictionary, EmptyAndNullTextsAbbreviateAnOnlyKeyword) {
    EXPECT_EQ(Find(Dictionary({{"ONLY", 7}}), ""), 7);
    EXPECT_EQ(Find(Dictionary({{"ONLY", 7}}), nullptr), 7);
    EXPECT_EQ(Find(Dictionary({{"ONE", 1}, {"TWO", 2}}), ""), kNone);
    // A prepared dictionary without keywords answers its not-found value as a success.
    EXPECT_EQ(Find(Dictionary({}), ""), -1);
    KeywordsDictionary<int> dictionary = Dictionary({{"ONE", 1}, {"TWO", 2}});
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
        for (const char* text : {"", "N", "NODAL"}) {
            EXPECT_EQ(Find(*dictionary, text), kNone) << '"' << text << '"';
        }
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

TEST(KeywordsDictionary, InsertReportsAddedRefusedAndPresent) {
    KeywordsDictionary<int> dictionary = Dictionary({});
    InsertAll(dictionary, {{"ABC", 1, 0}, {"ABC", 2, 2}, {"abc", 3, 0}, {"AB", 4, 0}});
    InsertAll(dictionary, {{"AB", 5, 2}, {"A\tB", 6, 1}, {"\x80", 7, 1}, {"ABC\xff", 8, 1}});
    InsertAll(dictionary, {{"A B", 9, 0}, {"~\x7f", 10, 0}, {"ALL*", 12, 0}, {"ALL*", 13, 2}});
    EXPECT_EQ(
        Collected(dictionary),
        (Collection{{"A B", 9}, {"AB", 4}, {"ABC", 1}, {"ALL*", 12}, {"abc", 3}, {"~\x7f", 10}}));
    EXPECT_EQ(Find(dictionary, "AL"), 12);
}

// A refused insert must give back the counts it raised, or later abbreviations turn ambiguous.
TEST(KeywordsDictionary, ARefusedInsertLeavesAbbreviationsAlone) {
    // clang-format off
    const std::vector<std::tuple<const char*, int, int>> cases[] = {
        {{"AB\x01", 1, 1}, {"ABC", 7, 0}}, {{"\x01", 1, 1}, {"ABC", 7, 0}},
        {{"ABC\x01", 1, 1}, {"ABC", 7, 0}}, {{"ABC", 7, 0}, {"ABC", 1, 2}, {"ABC", 2, 2}}};
    // clang-format on
    for (const auto& steps : cases) {
        SCOPED_TRACE(::testing::PrintToString(std::string(std::get<0>(steps.front()))));
        KeywordsDictionary<int> dictionary = Dictionary({});
        InsertAll(dictionary, steps);
        for (const char* text : {"A", "AB", "ABC"}) {
            EXPECT_EQ(Find(dictionary, text), 7) << text;
        }
    }
    // The branch that a refused insert opened stays in use and completes to the not-found value.
    KeywordsDictionary<int> dictionary = Dictionary({});
    InsertAll(dictionary, {{"AX\x01", 1, 1}, {"AB", 2, 0}});
    EXPECT_EQ(Find(dictionary, "A"), -1);
    EXPECT_EQ(Find(dictionary, "AB"), 2);
    EXPECT_EQ(Find(dictionary, "AX"), -1);
    EXPECT_EQ(Collected(dictionary), (Collection{{"AB", 2}}));
}

TEST(KeywordsDictionary, SlotsFollowCharacterCodesWhateverTheMarkingOrder) {
    KeywordsDictionary<int> dictionary = Dictionary({}, "CA\xe9"s + "B");
    InsertAll(dictionary, {{"CAB", 1, 0}, {"ABBA", 1, 0}, {"\xe9\xe9", 1, 0}});
    InsertAll(dictionary, {{"\xe9T\xe9", 2, 1}, {"ABD", 2, 1}, {"a", 2, 1}});
    EXPECT_EQ(Find(dictionary, "\xe9"), 1);
    EXPECT_EQ(Find(dictionary, "C"), 1);
    EXPECT_EQ(Find(dictionary, "\xe8"), kNone);
    EXPECT_EQ(Collected(dictionary), (Collection{{"ABBA", 1}, {"CAB", 1}, {"\xe9\xe9", 1}}));
}

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
    EXPECT_EQ(Collected(copy),
              (Collection{{"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}, {"NODE", 4}}));
}

TEST(KeywordsDictionary, NotFoundValueDefaultsByValueType) {
    KeywordsDictionary<std::string> names;
    KeywordsDictionary<double> reals;
    names.AllowCharacter('A');
    reals.AllowCharacter('A');
    names.BuildAlphabet();
    reals.BuildAlphabet();
    std::string name = "unchanged";
    double real = 0.0;
    EXPECT_TRUE(names.Find("", name) && name.empty() && reals.Find("", real) && real == -1.0);
    EXPECT_EQ(names.Insert("AA", "double a"), 0);
    EXPECT_TRUE(names.Find("A", name) && name == "double a");
}

}  // namespace
