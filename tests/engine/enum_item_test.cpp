#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "KeywordsDictionary.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdItemDefs.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;

using Keywords = std::vector<std::pair<std::string, int>>;

const char* const kTag = "|%P|ZentuCmdEngine|ZentuCmdEnumItem";
const Keywords kNodalKeywords = {{"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}};

// A dictionary set up as item descriptions set theirs up: codes 32 to 127, not-found value -1.
KeywordsDictionary<int> Described(const Keywords& keywords) {
    KeywordsDictionary<int> dictionary;
    dictionary.Reset(-1);
    for (int code = 32; code <= 127; ++code) {
        dictionary.AllowCharacter(static_cast<char>(code));
    }
    dictionary.BuildAlphabet();
    for (const auto& [keyword, value] : keywords) {
        dictionary.Insert(keyword.c_str(), value);
    }
    return dictionary;
}

// The refusal of text for the item TYPE, whose valid options are list.
std::string Refusal(const std::string& text, const std::string& list) {
    return "The value \"" + text + "\" is not allowed for item TYPE.\nValid options are: \n" + list;
}

// The failure that building the item throws; fails the test when the item is built instead.
KPL_Failure RefusalOf(const std::string& name, const std::string& text,
                      const KeywordsDictionary<int>& keywords) {
    try {
        ZentuCmdEnumItem item(name, text, keywords);
        ADD_FAILURE() << "accepted \"" << text << "\" as " << item.GetInteger();
    } catch (const KPL_Failure& failure) {
        return failure;
    }
    return KPL_Failure("", "");
}

void ExpectRefusal(const KeywordsDictionary<int>& keywords, const std::string& text,
                   const std::string& message) {
    const KPL_Failure failure = RefusalOf("TYPE", text, keywords);
    EXPECT_EQ(failure.GetMessage(), message) << ::testing::PrintToString(text);
    EXPECT_EQ(failure.GetTag(), kTag);
    EXPECT_EQ(failure.GetErrorCode(), -14);
    EXPECT_TRUE(failure.GetId().empty());
}

TEST(EnumItem, AcceptsKeywordsAndUniqueAbbreviationsInAnyCase) {
    const KeywordsDictionary<int> keywords = Described(kNodalKeywords);
    const struct {
        std::string text;
        int value;
        std::string kept;
    } cases[] = {
        {"NODAL", 3, "NODAL"},
        {"nodal", 3, "NODAL"},
        {"N", 3, "N"},
        {"nOd", 3, "NOD"},
        {"de", 1, "DE"},
        {"Di", 2, "DI"},
        {"density", 1, "DENSITY"},
        {"distribution", 2, "DISTRIBUTION"},
        {std::string("nodal\0xyz", 9), 3, std::string("NODAL\0xyz", 9)},
    };
    for (const auto& c : cases) {
        const ZentuCmdEnumItem item("TYPE", c.text, keywords);
        EXPECT_EQ(item.GetName(), "TYPE");
        EXPECT_EQ(item.GetInteger(), c.value) << c.text;
        EXPECT_EQ(ToInt(item.GetEnum()), c.value) << c.text;
        EXPECT_EQ(item.GetString(), c.kept) << c.text;
    }
}

TEST(EnumItem, RefusesWithTheSortedListOfOptions) {
    const std::string list = "DENSITY, DISTRIBUTION, NODAL";
    const Keywords reversed(kNodalKeywords.rbegin(), kNodalKeywords.rend());
    for (const Keywords& order : {kNodalKeywords, reversed}) {
        const KeywordsDictionary<int> keywords = Described(order);
        for (const std::string text :
             {"D", "d", "NODALX", "", "X", "NO\tDAL", "NODAL\t", "N\xc3\xa9", "\x80", " NODAL"}) {
            ExpectRefusal(keywords, text, Refusal(text, list));
        }
    }
}

// The message quotes the text only up to an embedded NUL; what follows it is not looked up.
TEST(EnumItem, TextStartingWithNulIsTheEmptyText) {
    ExpectRefusal(Described(kNodalKeywords), std::string("\0NODAL", 6),
                  Refusal("", "DENSITY, DISTRIBUTION, NODAL"));
    const ZentuCmdEnumItem only("TYPE", std::string("\0x", 2), Described({{"ONLY", 4}}));
    EXPECT_EQ(only.GetInteger(), 4);
    EXPECT_EQ(only.GetString(), std::string("\0x", 2));
}

// Texts are arguments of the message, never part of its format.
TEST(EnumItem, PercentSignsAreQuotedLiterally) {
    const KPL_Failure failure = RefusalOf("A%sB%n", "100%d%s", Described({{"ALL", 1}}));
    EXPECT_EQ(failure.GetMessage(),
              "The value \"100%d%s\" is not allowed for item A%sB%n.\nValid options are: \nALL");
}

TEST(EnumItem, PrefixKeywords) {
    const KeywordsDictionary<int> keywords = Described({{"ABCD", 20}, {"ABC", 10}});
    EXPECT_EQ(ZentuCmdEnumItem("TYPE", "abc", keywords).GetInteger(), 10);
    EXPECT_EQ(ZentuCmdEnumItem("TYPE", "ABCD", keywords).GetInteger(), 20);
    for (const std::string text : {"AB", "A", "ABCDE"}) {
        ExpectRefusal(keywords, text, Refusal(text, "ABC, ABCD"));
    }
}

TEST(EnumItem, StarredKeywordsAreAcceptedButNotListed) {
    const KeywordsDictionary<int> keywords =
        Described({{"NODAL", 3}, {"ALL*", 9}, {"A*B", 5}, {"*", 6}});
    EXPECT_EQ(ZentuCmdEnumItem("TYPE", "all*", keywords).GetInteger(), 9);
    EXPECT_EQ(ZentuCmdEnumItem("TYPE", "AL", keywords).GetInteger(), 9);
    EXPECT_EQ(ZentuCmdEnumItem("TYPE", "*", keywords).GetInteger(), 6);
    ExpectRefusal(keywords, "A", Refusal("A", "A*B, NODAL"));
    ExpectRefusal(Described({{"ALL*", 9}, {"*", 6}}), "X", Refusal("X", ""));
}

TEST(EnumItem, EmptyText) {
    const ZentuCmdEnumItem only("TYPE", "", Described({{"ONLY", 4}}));
    EXPECT_EQ(only.GetInteger(), 4);
    EXPECT_EQ(only.GetString(), "");

    // A prepared dictionary without keywords accepts the empty text with its not-found value.
    const ZentuCmdEnumItem none("TYPE", "", Described({}));
    EXPECT_EQ(none.GetInteger(), -1);
    EXPECT_EQ(ToInt(none.GetEnum()), ToInt(ZentuCmdItemDefs::NO_ENUM_VALUE));
    ExpectRefusal(Described({}), "A", Refusal("A", ""));
}

// Without an alphabet nothing is accepted, and the message ends with the empty list.
TEST(EnumItem, DictionaryWithoutAlphabetRefusesEverything) {
    KeywordsDictionary<int> reset = Described(kNodalKeywords);
    reset.Reset(-1);
    for (const KeywordsDictionary<int>& keywords : {reset, KeywordsDictionary<int>()}) {
        for (const std::string text : {"", "NODAL", "N"}) {
            ExpectRefusal(keywords, text, Refusal(text, ""));
        }
    }
}

TEST(EnumItem, LongMessagesAreCutTo1023Characters) {
    Keywords many;
    std::string list;
    for (int i = 0; i < 200; ++i) {
        const std::string keyword = "KEYWORD_" + std::to_string(1000 + i);
        many.emplace_back(keyword, i);
        list += (i == 0 ? "" : ", ") + keyword;
    }
    const KPL_Failure listed = RefusalOf("TYPE", "X", Described(many));
    EXPECT_EQ(listed.GetMessage(), Refusal("X", list).substr(0, 1023));

    const std::string longText(100000, 'Q');
    const KPL_Failure quoted = RefusalOf("TYPE", longText, Described(kNodalKeywords));
    EXPECT_EQ(quoted.GetMessage(), Refusal(longText, "").substr(0, 1023));
}

// String, integer and keyword readings, through the base dispatch of HasType.
TEST(EnumItem, Readings) {
    const ZentuCmdEnumItem item("TYPE", "yes", Described({{"YES", 89}, {"NO", 78}}));
    EXPECT_EQ(ToInt(item.GetEnum()), ToInt(EnumValue::YES));
    EXPECT_EQ(item.GetReal(), 0.0);
    for (DataType type : {DataType::STRING, DataType::INTEGER, DataType::ENUM}) {
        EXPECT_TRUE(item.HasType(type)) << ToInt(type);
    }
    for (DataType type : {DataType::REAL, DataType::RAW_STRING, DataType::AUTO, DataType::REFERENCE,
                          DataType::BRELT_LIST, DataType::LIST}) {
        EXPECT_FALSE(item.HasType(type)) << ToInt(type);
    }
}

// The item keeps no reference to the dictionary, so it outlives it; copies are independent.
TEST(EnumItem, CopiesCloneAndAssignment) {
    auto dictionary = std::make_unique<KeywordsDictionary<int>>(Described(kNodalKeywords));
    const ZentuCmdEnumItem original("TYPE", "dist", *dictionary);
    ZentuCmdEnumItem assigned("OTHER", "n", *dictionary);
    dictionary.reset();

    const std::unique_ptr<ZentuCmdItem> clone = original.Clone();
    const auto* typed = dynamic_cast<const ZentuCmdEnumItem*>(clone.get());
    ASSERT_NE(typed, nullptr);
    const ZentuCmdEnumItem copy(original);
    assigned = original;
    for (const ZentuCmdEnumItem* item : {typed, &copy, &std::as_const(assigned)}) {
        EXPECT_EQ(item->GetName(), "TYPE");
        EXPECT_EQ(item->GetInteger(), 2);
        EXPECT_EQ(item->GetString(), "DIST");
    }

    ZentuCmdEnumItem& self = assigned;
    assigned = self;
    EXPECT_EQ(assigned.GetName(), "TYPE");
    EXPECT_EQ(assigned.GetString(), "DIST");
    EXPECT_EQ(assigned.GetInteger(), 2);
}

}  // namespace
