// Item descriptions: what each constructor sets, when a description has a default, its keyword
// dictionary, and that copies are independent.
#include <gtest/gtest.h>

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

struct ConstructorCase {
    const char* label;
    ZentuCmdItemMetaData record;
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
    const std::string none;
    const std::string text = "Text";
    using K = CmdItem;
    using T = DataType;
    // clang-format off
    const ConstructorCase cases[] = {
        // label, record,
        //     key, type, default text, extra text, has default, extra flag, extra value,
        //     prepared dictionary, referenced kinds, numeric default
        {"default", ZentuCmdItemMetaData(),
            K::PLACEHOLDER, T::STRING,     "",      "",     false, 1, 1,  true,  {}, 0.0},
        {"kind", ZentuCmdItemMetaData(K::GROUP),
            K::GROUP,       T::AUTO,       "",      "",     false, 1, 1,  true,  {}, 0.0},
        {"typed", ZentuCmdItemMetaData(K::TYPE, T::RAW_STRING, "aBc", "host", 7),
            K::TYPE,        T::RAW_STRING, "aBc",   "host", true,  1, 7,  true,  {}, 0.0},
        {"typed empty", ZentuCmdItemMetaData(K::FILE, T::REAL, none, "", -2),
            K::FILE,        T::REAL,       "",      "",     false, 1, -2, true,  {}, 0.0},
        {"integer", ZentuCmdItemMetaData(K::ITER_MAX, 42, "it", 3),
            K::ITER_MAX,    T::INTEGER,    "",      "it",   true,  1, 3,  true,  {}, 42.0},
        {"real", ZentuCmdItemMetaData(K::MIN, 2.5, "lo", 4),
            K::MIN,         T::REAL,       "",      "lo",   true,  1, 4,  true,  {}, 2.5},
        {"string", ZentuCmdItemMetaData(K::DESCRIPTION, text, "d", 5),
            K::DESCRIPTION, T::STRING,     "Text",  "d",    true,  0, 5,  false, {}, 0.0},
        {"string empty", ZentuCmdItemMetaData(K::FORMAT, none, "", 6),
            K::FORMAT,      T::STRING,     "",      "",     true,  0, 6,  false, {}, 0.0},
        {"keywords", ZentuCmdItemMetaData(K::TYPE, {{"NODAL", 3}}, "nodal"),
            K::TYPE,        T::ENUM,       "nodal", "",     true,  1, 1,  true,  {}, 0.0},
        {"keywords empty", ZentuCmdItemMetaData(K::TYPE, {{"NODAL", 3}}, ""),
            K::TYPE,        T::ENUM,       "",      "",     false, 1, 1,  true,  {}, 0.0},
        {"reference", ZentuCmdItemMetaData(K::GROUP, Cmd::GROUP_DEF, "G1"),
            K::GROUP,       T::REFERENCE,  "G1",    "",     false, 0, 1,  false,
            {Cmd::GROUP_DEF, Cmd::GROUP_DEF}, 0.0},
    };
    // clang-format on
    for (const ConstructorCase& c : cases) {
        SCOPED_TRACE(c.label);
        const ZentuCmdItemMetaData& record = c.record;
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
    // Prepared and empty: the empty text alone is found, with the not-found value -1.
    const ZentuCmdItemMetaData typed(CmdItem::TYPE, DataType::ENUM, "", "", 1);
    int found = 0;
    EXPECT_TRUE(typed.keywords.Find("", found));
    EXPECT_EQ(found, -1);
    EXPECT_FALSE(typed.keywords.Find("A", found));
    EXPECT_TRUE(KeywordsOf(typed.keywords).empty());

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
