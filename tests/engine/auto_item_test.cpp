// The automatically typed item: every reading that a text allows, decided independently.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdItemDefs.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;

namespace {

struct Readings {
    bool integer = false;
    bool real = false;
    bool vector = false;
    bool list = false;
    bool integerList = false;
};

struct AutoCase {
    std::string text;
    std::string stored;
    Readings readings;
};

// Which readings each text has; values are checked in the tests that follow.
const std::vector<AutoCase>& reading_cases() {
    static const std::vector<AutoCase> cases = {
        {"5", "5", {true, true, false, true, true}},
        {"-5", "-5", {true, true, false, true, true}},
        {"2.5", "2.5", {false, true, false, true, false}},
        {"1e5", "1E5", {false, true, false, true, false}},
        {"1,2,3", "1,2,3", {false, false, true, true, true}},
        {"1,A,3", "1,A,3", {false, false, false, true, false}},
        {"1,2", "1,2", {false, false, false, true, true}},
        {"1-10:3", "1-10:3", {false, false, false, true, true}},
        {"\"1,2,3\"", "\"1,2,3\"", {false, false, false, true, false}},
        {"'7'", "'7'", {false, false, false, true, false}},
        {"  group_1  ", "GROUP_1", {false, false, false, true, false}},
        {"", "", {false, false, false, false, true}},
        {"   ", "", {false, false, false, false, true}},
        {" 1.5 , 2 , -3e1 ", "1.5 , 2 , -3E1", {false, false, true, true, false}},
        {"1-2000000000", "1-2000000000", {false, false, false, true, false}},
        // The integer-list reader, like a stream, ends quietly when a number runs out of range
        // at the very end of the text; the list is then empty.
        {"2147483648", "2147483648", {false, true, false, true, true}},
    };
    return cases;
}

TEST(AutoItem, DecidesEveryReadingOfItsText) {
    const KeywordMap noKeywords;
    for (const AutoCase& c : reading_cases()) {
        const ZentuCmdAutoItem item("VALUE", c.text, noKeywords);
        EXPECT_EQ(item.GetString(), c.stored) << c.text;
        EXPECT_TRUE(item.HasString()) << c.text;
        EXPECT_EQ(item.HasInteger(), c.readings.integer) << c.text;
        EXPECT_EQ(item.HasReal(), c.readings.real) << c.text;
        EXPECT_EQ(item.HasVector3d(), c.readings.vector) << c.text;
        EXPECT_EQ(item.HasList(), c.readings.list) << c.text;
        EXPECT_EQ(item.HasBreltList(), c.readings.integerList) << c.text;
        EXPECT_FALSE(item.HasEnum()) << c.text;
        EXPECT_FALSE(item.HasReference()) << c.text;
        EXPECT_EQ(item.HasType(DataType::INTEGER), c.readings.integer) << c.text;
        EXPECT_EQ(item.HasType(DataType::BRELT_LIST), c.readings.integerList) << c.text;
        EXPECT_TRUE(item.HasType(DataType::STRING)) << c.text;
        for (DataType never : {DataType::RAW_STRING, DataType::RESERVED, DataType::AUTO,
                               static_cast<DataType>(11), static_cast<DataType>(-1)}) {
            EXPECT_FALSE(item.HasType(never)) << c.text;
        }
    }
}

TEST(AutoItem, IntegerTextAlsoReadsAsRealListAndIntegerList) {
    const ZentuCmdAutoItem item("VALUE", " 5 ", {});
    EXPECT_EQ(item.GetInteger(), 5);
    EXPECT_EQ(item.GetReal(), 5.0);
    EXPECT_EQ(item.GetList(), std::vector<std::string>{"5"});
    EXPECT_EQ(item.GetBreltList().elements, std::set<int>{5});
}

TEST(AutoItem, ThreePartsGiveAVectorWithZeroForPartsThatAreNoNumber) {
    const ZentuCmdAutoItem numbers("DIRECTION", " 1.5 , 2 , -3e1 ", {});
    EXPECT_EQ(numbers.GetVector3d()(0, 0), 1.5);
    EXPECT_EQ(numbers.GetVector3d()(1, 0), 2.0);
    EXPECT_EQ(numbers.GetVector3d()(2, 0), -30.0);
    EXPECT_EQ(numbers.GetList(), (std::vector<std::string>{"1.5", "2", "-3E1"}));

    const ZentuCmdAutoItem mixed("DIRECTION", "1,A,3", {});
    EXPECT_EQ(mixed.GetVector3d()(0, 0), 1.0);
    EXPECT_EQ(mixed.GetVector3d()(1, 0), 0.0);
    EXPECT_EQ(mixed.GetVector3d()(2, 0), 3.0);
}

TEST(AutoItem, IntegerListsKeepTheirRangesAndQuotedTextsHaveNone) {
    EXPECT_EQ(ZentuCmdAutoItem("GROUP", "1-10:3", {}).GetBreltList().elements,
              (std::set<int>{1, 4, 7, 10}));
    EXPECT_EQ(ZentuCmdAutoItem("GROUP", "1,2,3", {}).GetBreltList().elements,
              (std::set<int>{1, 2, 3}));
    EXPECT_TRUE(ZentuCmdAutoItem("GROUP", "", {}).GetBreltList().elements.empty());

    const ZentuCmdAutoItem quoted("GROUP", "\"1,2,3\"", {});
    EXPECT_EQ(quoted.GetList(), (std::vector<std::string>{"\"1", "2", "3\""}));
    EXPECT_TRUE(quoted.GetBreltList().elements.empty());
}

TEST(AutoItem, KeywordsMatchOnlyWholeUpperCasedTexts) {
    const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    const ZentuCmdAutoItem density("TYPE", " density ", keywords);
    EXPECT_TRUE(density.HasEnum());
    EXPECT_EQ(density.GetEnum(), EnumValue::DENSITY);
    EXPECT_TRUE(density.HasType(DataType::ENUM));

    const ZentuCmdAutoItem abbreviation("TYPE", "dens", keywords);
    EXPECT_FALSE(abbreviation.HasEnum());
    EXPECT_EQ(abbreviation.GetEnum(), ZentuCmdItemDefs::NO_ENUM_VALUE);

    EXPECT_EQ(ZentuCmdAutoItem("TYPE", "combine", keywords).GetEnum(), EnumValue::WEIGHTED_SUM);
}

TEST(AutoItem, GettersAnswerTheirFieldWhateverTheFlag) {
    const ZentuCmdAutoItem item("VALUE", "NAME", {});
    EXPECT_EQ(item.GetInteger(), 0);
    EXPECT_EQ(item.GetReal(), 0.0);
    EXPECT_EQ(item.GetVector3d(), (ZentuMatrix<3, 1, double>()));
    EXPECT_EQ(item.GetReference(), nullptr);
    EXPECT_TRUE(item.GetBreltList().elements.empty());
}

TEST(AutoItem, TakesAndReplacesAReference) {
    const ZentuCmd first(Cmd::GROUP_DEF);
    const ZentuCmd second(Cmd::DRESP);
    ZentuCmdAutoItem item("GROUP", "G1", {});
    EXPECT_FALSE(item.HasType(DataType::REFERENCE));
    item.AddReference(first);
    EXPECT_TRUE(item.HasReference());
    EXPECT_TRUE(item.HasType(DataType::REFERENCE));
    EXPECT_EQ(item.GetReference(), &first);
    item.AddReference(second);
    EXPECT_EQ(item.GetReference(), &second);
    EXPECT_EQ(item.GetString(), "G1");
}

TEST(AutoItem, ClonesCopyEveryReadingAndTheSameReference) {
    const ZentuCmd target(Cmd::GROUP_DEF);
    ZentuCmdAutoItem item("GROUP", "1-5:2", {});
    item.AddReference(target);
    const auto clone = item.Clone();
    const auto* copy = dynamic_cast<const ZentuCmdAutoItem*>(clone.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetName(), "GROUP");
    EXPECT_EQ(copy->GetString(), "1-5:2");
    EXPECT_EQ(copy->GetBreltList(), item.GetBreltList());
    EXPECT_EQ(copy->GetReference(), &target);
    EXPECT_TRUE(copy->HasReference());
}

TEST(AutoItem, SurvivesArbitraryBytes) {
    const std::string texts[] = {std::string("1\0,2,3", 6),
                                 std::string("\xff\xfe,\x80", 4),
                                 std::string(100000, '7'),
                                 std::string(5000, ','),
                                 "1--5",
                                 "+-1",
                                 "-",
                                 ":",
                                 "1-",
                                 "1-5:0"};
    for (const std::string& text : texts) {
        const ZentuCmdAutoItem item("VALUE", text, {});
        EXPECT_TRUE(item.HasString());
    }
}

}  // namespace
