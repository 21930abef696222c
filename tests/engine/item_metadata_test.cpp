// Item descriptions: what each constructor sets, when a description has a default, its keyword
// dictionary, and that copies are independent.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "KeywordsDictionary.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

std::map<std::string, int> KeywordsOf(const KeywordsDictionary<int>& dictionary) {
    std::map<std::string, int> keywords;
    dictionary.CollectKeywords(keywords);
    return keywords;
}

// A prepared dictionary takes keywords of exactly the codes 32 to 127. Probed on a copy, since
// inserting changes the dictionary.
bool IsPrepared(const KeywordsDictionary<int>& dictionary) {
    KeywordsDictionary<int> probe = dictionary;
    return probe.Insert(" ", 1) == 0 && probe.Insert("\x7f", 2) == 0 &&
           probe.Insert("\x1f", 3) == 1 && probe.Insert("\x80", 4) == 1;
}

// The empty text finds the not-found value -1 only in a dictionary whose root is open.
bool FindsEmptyTextAsMinusOne(const KeywordsDictionary<int>& dictionary) {
    int value = 0;
    return dictionary.Find("", value) && value == -1;
}

struct ConstructorCase {
    const char* label;
    std::function<ZentuCmdItemMetaData()> build;
    CmdItem key;
    DataType type;
    const char* defaultValue;
    const char* extraText;
    bool hasDefault;
    int extraFlag;
    int extraValue;
    bool prepared;
    std::vector<Cmd> referencedKinds;
    double numericDefault;
};

TEST(ItemMetaData, EveryConstructorSetsItsFields) {
    const std::string empty;
    const ConstructorCase cases[] = {
        {"default", [] { return ZentuCmdItemMetaData(); }, CmdItem::PLACEHOLDER, DataType::STRING,
         "", "", false, 1, 1, true, {}, 0.0},
        {"kind only", [] { return ZentuCmdItemMetaData(CmdItem::GROUP); }, CmdItem::GROUP,
         DataType::AUTO, "", "", false, 1, 1, true, {}, 0.0},
        {"typed", [] { return ZentuCmdItemMetaData(CmdItem::TYPE, DataType::RAW_STRING, "aBc",
                                                   "host", 7); },
         CmdItem::TYPE, DataType::RAW_STRING, "aBc", "host", true, 1, 7, true, {}, 0.0},
        {"typed, empty default",
         [&] { return ZentuCmdItemMetaData(CmdItem::FILE, DataType::REAL, empty, "", -2); },
         CmdItem::FILE, DataType::REAL, "", "", false, 1, -2, true, {}, 0.0},
        {"integer", [] { return ZentuCmdItemMetaData(CmdItem::ITER_MAX, 42, "it", 3); },
         CmdItem::ITER_MAX, DataType::INTEGER, "", "it", true, 1, 3, true, {}, 42.0},
        {"real", [] { return ZentuCmdItemMetaData(CmdItem::MIN, 2.5, "lo", 4); }, CmdItem::MIN,
         DataType::REAL, "", "lo", true, 1, 4, true, {}, 2.5},
        {"string", [] { return ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "Text", "d", 5); },
         CmdItem::DESCRIPTION, DataType::STRING, "Text", "d", true, 0, 5, false, {}, 0.0},
        {"string, empty default",
         [&] { return ZentuCmdItemMetaData(CmdItem::FORMAT, empty, "", 6); }, CmdItem::FORMAT,
         DataType::STRING, "", "", true, 0, 6, false, {}, 0.0},
        {"keywords", [] { return ZentuCmdItemMetaData(CmdItem::TYPE, {{"NODAL", 3}}, "nodal"); },
         CmdItem::TYPE, DataType::ENUM, "nodal", "", true, 1, 1, true, {}, 0.0},
        {"keywords, empty default",
         [] { return ZentuCmdItemMetaData(CmdItem::TYPE, {{"NODAL", 3}}, ""); }, CmdItem::TYPE,
         DataType::ENUM, "", "", false, 1, 1, true, {}, 0.0},
        {"reference",
         [] { return ZentuCmdItemMetaData(CmdItem::GROUP, Cmd::GROUP_DEF, "G1"); },
         CmdItem::GROUP, DataType::REFERENCE, "G1", "", false, 0, 1, false,
         {Cmd::GROUP_DEF, Cmd::GROUP_DEF}, 0.0},
    };
    for (const ConstructorCase& c : cases) {
        SCOPED_TRACE(c.label);
        const ZentuCmdItemMetaData record = c.build();
        EXPECT_EQ(ToInt(record.key), ToInt(c.key));
        EXPECT_EQ(ToInt(record.type), ToInt(c.type));
        EXPECT_EQ(record.default_value, c.defaultValue);
        EXPECT_EQ(record.extra_text, c.extraText);
        EXPECT_EQ(record.has_default, c.hasDefault);
        EXPECT_EQ(record.extra_flag, c.extraFlag);
        EXPECT_EQ(record.extra_value, c.extraValue);
        EXPECT_EQ(IsPrepared(record.keywords), c.prepared);
        EXPECT_EQ(record.referenced_kinds.values, c.referencedKinds);
        EXPECT_TRUE(record.spare_list.values.empty());
        EXPECT_TRUE(record.spare_ints.empty());
        EXPECT_EQ(c.type == DataType::INTEGER ? record.default_int : record.default_real,
                  c.numericDefault);
    }
}

TEST(ItemMetaData, KeywordDictionaryIsPreparedOrInitial) {
    // Prepared and empty: every text but the empty one is refused, which yields -1.
    const ZentuCmdItemMetaData typed(CmdItem::TYPE, DataType::ENUM, "", "", 1);
    EXPECT_TRUE(KeywordsOf(typed.keywords).empty());
    EXPECT_TRUE(FindsEmptyTextAsMinusOne(typed.keywords));

    // Initial: accepts nothing, not even the empty text.
    const ZentuCmdItemMetaData text(CmdItem::DESCRIPTION, std::string("x"), "", 1);
    const ZentuCmdItemMetaData reference(CmdItem::GROUP, Cmd::GROUP_DEF, "");
    for (const ZentuCmdItemMetaData* record : {&text, &reference}) {
        int value = 0;
        EXPECT_FALSE(record->keywords.Find("", value));
        EXPECT_TRUE(KeywordsOf(record->keywords).empty());
    }
}

TEST(ItemMetaData, KeywordListKeepsFirstValueAndDropsUnfitTexts) {
    const ZentuCmdItemMetaData record(
        CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}, {"NODAL", 9}, {"TAB\tBED", 4}, {"~ *", 5}},
        "");
    const std::map<std::string, int> expected = {{"DENSITY", 1}, {"NODAL", 3}, {"~ *", 5}};
    EXPECT_EQ(KeywordsOf(record.keywords), expected);
    int value = 0;
    EXPECT_TRUE(record.keywords.Find("NOD", value));
    EXPECT_EQ(value, 3);
}

TEST(ItemMetaData, NumericDefaultsShareOneStorage) {
    const ZentuCmdItemMetaData integer(CmdItem::VALUE, -2147483647 - 1, "", 1);
    const ZentuCmdItemMetaData real(CmdItem::VALUE, -0.125, "", 1);
    EXPECT_EQ(integer.default_int, -2147483647 - 1);
    EXPECT_EQ(real.default_real, -0.125);
    EXPECT_EQ(static_cast<const void*>(&integer.default_int),
              static_cast<const void*>(&integer.default_real));
}

TEST(ItemMetaData, CopiesAndMovesAreDeep) {
    ZentuCmdItemMetaData original(CmdItem::TYPE, {{"DENSITY", 1}}, "DENSITY");
    original.spare_ints = {1, 2};
    original.spare_list.values = {3};

    ZentuCmdItemMetaData copy(original);
    copy.keywords.Insert("NODAL", 3);
    copy.spare_ints.push_back(9);
    copy.default_value = "NODAL";
    const std::map<std::string, int> onlyDensity = {{"DENSITY", 1}};
    EXPECT_EQ(KeywordsOf(original.keywords), onlyDensity);
    EXPECT_EQ(original.spare_ints, (std::vector<int>{1, 2}));
    EXPECT_EQ(original.default_value, "DENSITY");

    ZentuCmdItemMetaData assigned;
    assigned = copy;
    copy.keywords.Insert("ZERO", 0);
    EXPECT_EQ(KeywordsOf(assigned.keywords).size(), 2U);
    EXPECT_EQ(assigned.spare_ints, (std::vector<int>{1, 2, 9}));

    const ZentuCmdItemMetaData moved(std::move(assigned));
    EXPECT_EQ(ToInt(moved.type), ToInt(DataType::ENUM));
    EXPECT_EQ(KeywordsOf(moved.keywords).size(), 2U);
    EXPECT_EQ(moved.spare_list.values, std::vector<int>{3});
    EXPECT_TRUE(moved.has_default);
}

}  // namespace
