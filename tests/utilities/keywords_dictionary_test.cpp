#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "KeywordsDictionary.h"

namespace {

using Keywords = std::vector<std::pair<std::string, int>>;
using Lookup = std::optional<int>;

// Every code from 32 to 127: the alphabet that item descriptions give their dictionaries.
std::string PrintableCharacters() {
    std::string characters;
    for (int code = 32; code <= 127; ++code) {
        characters.push_back(static_cast<char>(code));
    }
    return characters;
}

// A dictionary over alphabet holding keywords, inserted in order; fails the test when one of
// them is refused, so a case never runs on a dictionary other than the one it names.
KeywordsDictionary<int> Dictionary(const Keywords& keywords,
                                   const std::string& alphabet = PrintableCharacters()) {
    KeywordsDictionary<int> dictionary;
    dictionary.Reset(-1);
    for (char c : alphabet) {
        dictionary.AllowCharacter(c);
    }
    dictionary.BuildAlphabet();
    for (const auto& [keyword, value] : keywords) {
        EXPECT_EQ(dictionary.Insert(keyword.c_str(), value), 0) << keyword;
    }
    return dictionary;
}

// What Find answers for text, with a guard value that a failed lookup must leave alone.
Lookup Find(const KeywordsDictionary<int>& dictionary, const char* text) {
    int value = 12345;
    if (dictionary.Find(text, value)) {
        return value;
    }
    EXPECT_EQ(value, 12345) << "a failed lookup changed the value";
    return std::nullopt;
}

std::map<std::string, int> Collected(const KeywordsDictionary<int>& dictionary) {
    std::map<std::string, int> out;
    dictionary.CollectKeywords(out);
    return out;
}

const Keywords kNodalKeywords = {{"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}};

struct FindCase {
    const char* text;
    Lookup expected;
};

TEST(KeywordsDictionaryFind, WholeKeywordsAndUniqueAbbreviations) {
    const KeywordsDictionary<int> dictionary = Dictionary(kNodalKeywords);
    const FindCase cases[] = {
        {"DENSITY", 1},
        {"DISTRIBUTION", 2},
        {"NODAL", 3},
        {"N", 3},
        {"NOD", 3},
        {"NODA", 3},
        {"DE", 1},
        {"DI", 2},
        {"DENS", 1},
        {"D", std::nullopt},
        {"", std::nullopt},
        {"NODALX", std::nullopt},
        {"DENSITYY", std::nullopt},
        {"nodal", std::nullopt},
        {"X", std::nullopt},
        {" ", std::nullopt},
        {"\x7f", std::nullopt},
        {"NO DAL", std::nullopt},
    };
    for (const FindCase& c : cases) {
        EXPECT_EQ(Find(dictionary, c.text), c.expected) << '"' << c.text << '"';
    }
}

TEST(KeywordsDictionaryFind, CharactersOutsideTheAlphabetAreNeverFound) {
    const KeywordsDictionary<int> dictionary = Dictionary(kNodalKeywords);
    for (const char* text : {"\t", "N\tODAL", "NODAL\t", "\n", "\x01", "\x80", "\xff", "N\xc3\xa9",
                             "NODAL\x80", "\x1f"}) {
        EXPECT_EQ(Find(dictionary, text), std::nullopt)
            << ::testing::PrintToString(std::string(text));
    }
}

// The lookup reads a C string, so whatever follows an embedded NUL is never seen.
TEST(KeywordsDictionaryFind, TextEndsAtTheFirstNul) {
    const KeywordsDictionary<int> dictionary = Dictionary(kNodalKeywords);
    const std::string nodal("NODAL\0XYZ", 9);
    const std::string empty("\0NODAL", 6);
    EXPECT_EQ(Find(dictionary, nodal.c_str()), 3);
    EXPECT_EQ(Find(dictionary, empty.c_str()), std::nullopt);
}

TEST(KeywordsDictionaryFind, KeywordThatPrefixesAnotherWinsOnItsOwnText) {
    for (const Keywords& keywords :
         {Keywords{{"ABC", 10}, {"ABCD", 20}}, Keywords{{"ABCD", 20}, {"ABC", 10}}}) {
        const KeywordsDictionary<int> dictionary = Dictionary(keywords);
        const std::string order = keywords.front().first + " first";
        EXPECT_EQ(Find(dictionary, "ABC"), 10) << order;
        EXPECT_EQ(Find(dictionary, "ABCD"), 20) << order;
        EXPECT_EQ(Find(dictionary, "AB"), std::nullopt) << order;
        EXPECT_EQ(Find(dictionary, "A"), std::nullopt) << order;
        EXPECT_EQ(Find(dictionary, "ABCDE"), std::nullopt) << order;
    }
}

TEST(KeywordsDictionaryFind, EmptyText) {
    EXPECT_EQ(Find(Dictionary({{"ONLY", 7}}), ""), 7);
    EXPECT_EQ(Find(Dictionary({{"ONE", 1}, {"TWO", 2}}), ""), std::nullopt);
    // A prepared dictionary without keywords answers its not-found value as a success.
    EXPECT_EQ(Find(Dictionary({}), ""), -1);

    KeywordsDictionary<int> withEmptyKeyword = Dictionary({{"ONE", 1}, {"TWO", 2}});
    EXPECT_EQ(withEmptyKeyword.Insert("", 5), 0);
    EXPECT_EQ(Find(withEmptyKeyword, ""), 5);
    EXPECT_EQ(Collected(withEmptyKeyword), (std::map<std::string, int>{{"ONE", 1}, {"TWO", 2}}));
}

TEST(KeywordsDictionaryFind, DictionaryWithoutAlphabetAcceptsNothing) {
    KeywordsDictionary<int> reset = Dictionary(kNodalKeywords);
    reset.Reset(-1);
    const KeywordsDictionary<int> fresh;
    for (const KeywordsDictionary<int>* dictionary : {&std::as_const(reset), &fresh}) {
        for (const char* text : {"", "N", "NODAL", " "}) {
            EXPECT_EQ(Find(*dictionary, text), std::nullopt) << '"' << text << '"';
        }
        EXPECT_TRUE(Collected(*dictionary).empty());
    }
    EXPECT_EQ(reset.Insert("NODAL", 3), 1);
    EXPECT_EQ(Find(reset, "NODAL"), std::nullopt);
}

TEST(KeywordsDictionaryInsert, ReportsAddedRefusedAndPresent) {
    KeywordsDictionary<int> dictionary = Dictionary({});
    const struct {
        const char* keyword;
        int value;
        int result;
    } steps[] = {
        {"ABC", 1, 0},   {"ABC", 2, 2},   {"abc", 3, 0},     {"AB", 4, 0},  {"AB", 5, 2},
        {"A\tB", 6, 1},  {"\x80", 7, 1},  {"ABC\xff", 8, 1}, {"A B", 9, 0}, {"~\x7f", 10, 0},
        {"\x1f", 11, 1}, {"ALL*", 12, 0}, {"ALL*", 13, 2},
    };
    for (const auto& step : steps) {
        EXPECT_EQ(dictionary.Insert(step.keyword, step.value), step.result) << step.keyword;
    }
    EXPECT_EQ(Collected(dictionary),
              (std::map<std::string, int>{
                  {"A B", 9}, {"AB", 4}, {"ABC", 1}, {"ALL*", 12}, {"abc", 3}, {"~\x7f", 10}}));
}

// A refused insert must give back the counts it raised, or later abbreviations turn ambiguous.
TEST(KeywordsDictionaryInsert, RefusedInsertLeavesAbbreviationsAlone) {
    struct Step {
        const char* keyword;
        int value;
        int result;
    };
    const struct {
        const char* label;
        std::vector<Step> steps;
    } cases[] = {
        {"outside the alphabet", {{"AB\x01", 1, 1}, {"ABC", 7, 0}}},
        {"outside at the first character", {{"\x01", 1, 1}, {"ABC", 7, 0}}},
        {"outside after a whole keyword", {{"ABC\x01", 1, 1}, {"ABC", 7, 0}}},
        {"present", {{"ABC", 7, 0}, {"ABC", 1, 2}, {"ABC", 2, 2}}},
    };
    for (const auto& c : cases) {
        KeywordsDictionary<int> dictionary = Dictionary({});
        for (const Step& step : c.steps) {
            EXPECT_EQ(dictionary.Insert(step.keyword, step.value), step.result) << c.label;
        }
        for (const char* text : {"A", "AB", "ABC"}) {
            EXPECT_EQ(Find(dictionary, text), 7) << c.label << ", text " << text;
        }
    }
}

// Abbreviations are completed through the first child that came into use, and a refused insert
// leaves the children it opened in use: such a branch completes to the not-found value.
TEST(KeywordsDictionaryInsert, RefusedInsertKeepsItsBranchOpen) {
    KeywordsDictionary<int> dictionary = Dictionary({});
    EXPECT_EQ(dictionary.Insert("AX\x01", 1), 1);
    EXPECT_EQ(dictionary.Insert("AB", 2), 0);
    EXPECT_EQ(Find(dictionary, "A"), -1);
    EXPECT_EQ(Find(dictionary, "AB"), 2);
    EXPECT_EQ(Find(dictionary, "AX"), -1);
    EXPECT_EQ(Collected(dictionary), (std::map<std::string, int>{{"AB", 2}}));
}

TEST(KeywordsDictionaryAlphabet, SlotsFollowCharacterCodesWhateverTheMarkingOrder) {
    KeywordsDictionary<int> dictionary = Dictionary({},
                                                    "CA\xe9"
                                                    "B");
    const struct {
        const char* keyword;
        int result;
    } steps[] = {{"CAB", 0}, {"ABBA", 0}, {"\xe9T\xe9", 1}, {"\xe9\xe9", 0}, {"ABD", 1}, {"a", 1}};
    for (const auto& step : steps) {
        EXPECT_EQ(dictionary.Insert(step.keyword, 1 + step.result), step.result) << step.keyword;
    }
    EXPECT_EQ(Find(dictionary, "\xe9"), 1);
    EXPECT_EQ(Find(dictionary, "C"), 1);
    EXPECT_EQ(Find(dictionary, "\xe8"), std::nullopt);
    EXPECT_EQ(Collected(dictionary),
              (std::map<std::string, int>{{"ABBA", 1}, {"CAB", 1}, {"\xe9\xe9", 1}}));
}

// Marked characters have no slot before the build, and the alphabet is fixed after it.
TEST(KeywordsDictionaryAlphabet, OnlyCharactersMarkedBeforeTheBuildCount) {
    KeywordsDictionary<int> dictionary;
    dictionary.AllowCharacter('A');
    EXPECT_EQ(dictionary.Insert("A", 1), 1);
    EXPECT_EQ(Find(dictionary, "A"), std::nullopt);
    dictionary.BuildAlphabet();
    dictionary.AllowCharacter('C');
    dictionary.BuildAlphabet();
    EXPECT_EQ(dictionary.Insert("A", 1), 0);
    EXPECT_EQ(dictionary.Insert("AC", 2), 1);
    EXPECT_EQ(Find(dictionary, "A"), 1);
}

TEST(KeywordsDictionaryCollect, AddsToWhatTheMapHolds) {
    std::map<std::string, int> out = {{"NODAL", 100}, {"OTHER", 200}};
    Dictionary(kNodalKeywords).CollectKeywords(out);
    EXPECT_EQ(out, (std::map<std::string, int>{
                       {"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}, {"OTHER", 200}}));
}

TEST(KeywordsDictionaryCollect, VeryLongKeyword) {
    const std::string longKeyword = std::string(2000, 'K') + "END";
    const KeywordsDictionary<int> dictionary = Dictionary({{longKeyword, 1}, {"K", 2}});
    EXPECT_EQ(Collected(dictionary), (std::map<std::string, int>{{"K", 2}, {longKeyword, 1}}));
    EXPECT_EQ(Find(dictionary, "KK"), 1);
    EXPECT_EQ(Find(dictionary, (longKeyword + "X").c_str()), std::nullopt);
}

TEST(KeywordsDictionaryValue, CopiesAreDeep) {
    KeywordsDictionary<int> original = Dictionary(kNodalKeywords);
    KeywordsDictionary<int> copy(original);
    KeywordsDictionary<int> assigned;
    assigned = original;
    EXPECT_EQ(copy.Insert("NODE", 4), 0);
    EXPECT_EQ(assigned.Insert("DENSE", 5), 0);
    original.Reset(-1);

    EXPECT_EQ(Find(original, "N"), std::nullopt);
    EXPECT_EQ(Find(copy, "N"), std::nullopt);
    EXPECT_EQ(Find(copy, "NODE"), 4);
    EXPECT_EQ(Find(copy, "DENS"), 1);
    EXPECT_EQ(Find(assigned, "N"), 3);
    EXPECT_EQ(Find(assigned, "DENS"), std::nullopt);
    EXPECT_EQ(Find(assigned, "DENSE"), 5);
}

TEST(KeywordsDictionaryValue, NullTextReadsAsEmpty) {
    KeywordsDictionary<int> dictionary = Dictionary({{"ONLY", 7}});
    EXPECT_EQ(Find(dictionary, nullptr), 7);
    EXPECT_EQ(dictionary.Insert(nullptr, 8), 0);
    EXPECT_EQ(dictionary.Insert("", 9), 2);
    EXPECT_EQ(Find(dictionary, nullptr), 8);
    EXPECT_EQ(Find(KeywordsDictionary<int>(), nullptr), std::nullopt);
}

TEST(KeywordsDictionaryValue, OtherValueTypes) {
    KeywordsDictionary<std::string> names;
    names.AllowCharacter('A');
    names.BuildAlphabet();
    std::string name = "unchanged";
    EXPECT_TRUE(names.Find("", name));
    EXPECT_EQ(name, "") << "default not-found value of a non-arithmetic type";
    EXPECT_EQ(names.Insert("AA", "double a"), 0);
    EXPECT_TRUE(names.Find("A", name));
    EXPECT_EQ(name, "double a");

    KeywordsDictionary<double> reals;
    reals.AllowCharacter('X');
    reals.BuildAlphabet();
    double real = 0.0;
    EXPECT_TRUE(reals.Find("", real));
    EXPECT_EQ(real, -1.0) << "default not-found value of a signed arithmetic type";
}

}  // namespace
