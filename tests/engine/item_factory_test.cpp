// The item factory: the class built for each data type, text handed to the item unchanged,
// refusals passed through with their own texts, and items built from a description's default.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "ZentuCmdItemFactory.h"
#include "ZentuCmdItemMetaData.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ClassOf;
using zentu_test::FailureLine;
using zentu_test::FailureOf;
using zentu_test::ToInt;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemFactory::create;

const ZentuCmdItemDefs::KeywordMap& Keywords() {
    static const ZentuCmdItemDefs::KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    return keywords;
}

// An item as "class name=text integer real keyword".
std::string Line(const ZentuCmdItem& item) {
    return ClassOf(item) + " " + item.GetName() + "=" + item.GetString() + " " +
           std::to_string(item.GetInteger()) + " " + std::to_string(item.GetReal()) + " " +
           std::to_string(ToInt(item.GetEnum()));
}

// Each data type gets its class, by description or by type alone, and the text unchanged; only
// automatically typed items read the keyword map, keyword items read the description's keywords.
TEST(ItemFactory, BuildsTheClassOfTheDataTypeFromUnchangedText) {
    const std::tuple<int, const char*, std::string> cases[] = {
        {0, " 5 ", "int Name=5 5 0.000000 -1"},
        {1, "0.5", "real Name=0.5 0 0.500000 -1"},
        {2, " 1,2,3 ", "auto Name=1,2,3 0 0.000000 -1"},
        {3, " aBc ", "string Name= ABC  0 0.000000 -1"},
        {4, " aBc ", "raw Name= aBc  0 0.000000 -1"},
        {8, "combine", "auto Name=COMBINE 0 0.000000 87"},
        {9, "nod", "enum Name=NOD 3 0.000000 3"},
        {10, "combine", "auto Name=COMBINE 0 0.000000 87"},
        {-1, "1-5", "auto Name=1-5 0 0.000000 -1"},
    };
    for (const auto& [type, text, expected] : cases) {
        ZentuCmdItemMetaData description(CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}}, "");
        description.type = static_cast<DataType>(type);
        EXPECT_EQ(Line(*create("Name", text, description, Keywords())), expected);
        if (type != 9) {
            EXPECT_EQ(Line(*create(static_cast<DataType>(type), "Name", text, Keywords())),
                      expected);
        }
    }
    EXPECT_FALSE(create(DataType::REFERENCE, "G", "G1", Keywords())->HasReference());
}

// Refusals of the built item pass through with its own texts; by type alone a keyword item has
// no keywords and takes only the empty text.
TEST(ItemFactory, RefusalsPassThroughWithTheItemsTexts) {
    const std::tuple<DataType, const char*, std::string> cases[] = {
        {DataType::INTEGER, "12abc",
         "|%P|ZentuCmdEngine|ZentuCmdIntItem [] -14: The item TYPE has an invalid type. '12abc' "
         "must be an integer value."},
        {DataType::REAL, "1,5",
         "|%P|ZentuCmdEngine|ZentuCmdScalarItem [] -14: The item TYPE has an invalid type. '1,5' "
         "must be a scalar value."},
        {DataType::ENUM, "yes",
         "|%P|ZentuCmdEngine|ZentuCmdEnumItem [] -14: The value \"yes\" is not allowed for item "
         "TYPE.\nValid options are: \n"},
    };
    for (const auto& [type, text, expected] : cases) {
        EXPECT_EQ(FailureLine(FailureOf([&] { create(type, "TYPE", text, Keywords()); })),
                  expected);
    }
    EXPECT_EQ(Line(*create(DataType::ENUM, "TYPE", "", Keywords())), "enum TYPE= -1 0.000000 -1");
    const ZentuCmdItemMetaData description(CmdItem::TYPE, {{"NODAL", 3}}, "");
    EXPECT_EQ(FailureOf([&] { create("TYPE", "COMBINE", description, Keywords()); }).GetMessage(),
              "The value \"COMBINE\" is not allowed for item TYPE.\nValid options are: \nNODAL");
}

// Default items read the default of their type: numbers from the numeric default, everything
// else from the default text, even where the description says it has none.
TEST(ItemFactory, DefaultValueItemsReadTheDefaultOfTheirType) {
    ZentuCmdItemMetaData integer(CmdItem::VALUE, 42, "", 1);
    integer.default_value = "7";
    ZentuCmdItemMetaData keyword(CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}}, "nodal");
    const std::pair<ZentuCmdItemMetaData, const char*> cases[] = {
        {integer, "int Name=42 42 0.000000 -1"},
        {ZentuCmdItemMetaData(CmdItem::MIN, 0.1, "", 1), "real Name=0.1 0 0.100000 -1"},
        {ZentuCmdItemMetaData(CmdItem::DESCRIPTION, std::string("mixed"), "", 1),
         "string Name=MIXED 0 0.000000 -1"},
        {ZentuCmdItemMetaData(CmdItem::FILE, DataType::RAW_STRING, "a.Dat", "", 1),
         "raw Name=a.Dat 0 0.000000 -1"},
        {keyword, "enum Name=NODAL 3 0.000000 3"},
        {ZentuCmdItemMetaData(CmdItem::GROUP), "auto Name= 0 0.000000 -1"},
        {ZentuCmdItemMetaData(CmdItem::GROUP, ZentuCmdDefs::Cmd::GROUP_DEF, " 8 "),
         "auto Name=8 8 8.000000 -1"},
    };
    for (const auto& [description, expected] : cases) {
        EXPECT_EQ(
            Line(*ZentuCmdItemFactory::create_default_value_item("Name", description, Keywords())),
            expected);
    }
    keyword.default_value = "LINEAR";
    EXPECT_EQ(FailureOf([&] {
                  ZentuCmdItemFactory::create_default_value_item("TYPE", keyword, Keywords());
              }).GetMessage(),
              "The value \"LINEAR\" is not allowed for item TYPE.\nValid options are: \n"
              "DENSITY, NODAL");
}

}  // namespace
