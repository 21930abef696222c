// The item factory: the class built for each data type, text handed to the item unchanged,
// refusals passed through with their own texts, and items built from a description's default.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeindex>
#include <typeinfo>

#include "KPL_Failure.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuCmdStringItem.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;

const KeywordMap& Keywords() {
    static const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    return keywords;
}

std::type_index ClassOf(const ZentuCmdItem& item) {
    return std::type_index(typeid(item));
}

template <typename Build>
KPL_Failure RefusalOf(Build build) {
    try {
        build();
    } catch (const KPL_Failure& failure) {
        return failure;
    }
    ADD_FAILURE() << "the text was accepted";
    return KPL_Failure("", "");
}

std::string EnumRefusal(const std::string& text, const std::string& name,
                        const std::string& options) {
    return "The value \"" + text + "\" is not allowed for item " + name +
           ".\nValid options are: \n" + options;
}

struct ClassCase {
    int type;
    std::type_index expected;
    const char* text;
    const char* answer;
};

TEST(ItemFactory, BuildsTheClassOfTheDataTypeFromUnchangedText) {
    const ClassCase cases[] = {
        {0, typeid(ZentuCmdIntItem), " 5 ", "5"},
        {1, typeid(ZentuCmdScalarItem), "0.5", "0.5"},
        {2, typeid(ZentuCmdAutoItem), " 1,2,3 ", "1,2,3"},
        {3, typeid(ZentuCmdStringItem), " aBc ", " ABC "},
        {4, typeid(ZentuCmdRawStringItem), " aBc ", " aBc "},
        {5, typeid(ZentuCmdAutoItem), "x", "X"},
        {6, typeid(ZentuCmdAutoItem), "1-5", "1-5"},
        {7, typeid(ZentuCmdAutoItem), "a, b", "A, B"},
        {8, typeid(ZentuCmdAutoItem), "g1", "G1"},
        {9, typeid(ZentuCmdEnumItem), "nod", "NOD"},
        {10, typeid(ZentuCmdAutoItem), "combine", "COMBINE"},
        {11, typeid(ZentuCmdAutoItem), "combine", "COMBINE"},
        {-1, typeid(ZentuCmdAutoItem), "combine", "COMBINE"},
    };
    for (const ClassCase& c : cases) {
        SCOPED_TRACE(c.type);
        const DataType type = static_cast<DataType>(c.type);
        ZentuCmdItemMetaData description(CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}}, "");
        description.type = type;
        const auto item = ZentuCmdItemFactory::create("Name", c.text, description, Keywords());
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(ClassOf(*item), c.expected);
        EXPECT_EQ(item->GetName(), "Name");
        EXPECT_EQ(item->GetString(), c.answer);
        if (c.type != 9) {
            const auto byType = ZentuCmdItemFactory::create(type, "Name", c.text, Keywords());
            EXPECT_EQ(ClassOf(*byType), c.expected);
            EXPECT_EQ(byType->GetString(), c.answer);
        }
    }
}

TEST(ItemFactory, OnlyAutomaticItemsUseTheKeywordMap) {
    const auto automatic = ZentuCmdItemFactory::create(DataType::AUTO, "T", "combine", Keywords());
    EXPECT_EQ(ToInt(automatic->GetEnum()), ToInt(EnumValue::COMBINE));
    const auto reference = ZentuCmdItemFactory::create(DataType::REFERENCE, "G", "G1", Keywords());
    EXPECT_EQ(ClassOf(*reference), ClassOf(*automatic));
    EXPECT_FALSE(reference->HasReference());

    const ZentuCmdItemMetaData description(CmdItem::TYPE, {{"NODAL", 3}}, "");
    const KPL_Failure failure =
        RefusalOf([&] { ZentuCmdItemFactory::create("TYPE", "COMBINE", description, Keywords()); });
    EXPECT_EQ(failure.GetMessage(), EnumRefusal("COMBINE", "TYPE", "NODAL"));
    EXPECT_EQ(failure.GetTag(), "|%P|ZentuCmdEngine|ZentuCmdEnumItem");
}

TEST(ItemFactory, RefusalsPassThroughWithTheItemsTexts) {
    const ZentuCmdItemMetaData integer(CmdItem::VALUE, DataType::INTEGER, "", "", 1);
    const KPL_Failure intFailure =
        RefusalOf([&] { ZentuCmdItemFactory::create("VALUE", "12abc", integer, Keywords()); });
    EXPECT_EQ(intFailure.GetMessage(),
              "The item VALUE has an invalid type. '12abc' must be an integer value.");
    EXPECT_EQ(intFailure.GetTag(), "|%P|ZentuCmdEngine|ZentuCmdIntItem");

    const auto automatic = ZentuCmdItemFactory::create(DataType::AUTO, "V", "12abc", Keywords());
    EXPECT_EQ(automatic->GetString(), "12ABC");

    const KPL_Failure realFailure =
        RefusalOf([] { ZentuCmdItemFactory::create(DataType::REAL, "WEIGHT", "1,5", Keywords()); });
    EXPECT_EQ(realFailure.GetMessage(),
              "The item WEIGHT has an invalid type. '1,5' must be a scalar value.");
    EXPECT_EQ(realFailure.GetTag(), "|%P|ZentuCmdEngine|ZentuCmdScalarItem");
}

TEST(ItemFactory, KeywordTypeAloneAcceptsOnlyTheEmptyText) {
    const auto empty = ZentuCmdItemFactory::create(DataType::ENUM, "TYPE", "", Keywords());
    EXPECT_EQ(ClassOf(*empty), std::type_index(typeid(ZentuCmdEnumItem)));
    EXPECT_EQ(ToInt(empty->GetEnum()), -1);

    for (const char* text : {"COMBINE", "yes", " ", "A"}) {
        const KPL_Failure failure = RefusalOf(
            [&] { ZentuCmdItemFactory::create(DataType::ENUM, "TYPE", text, Keywords()); });
        EXPECT_EQ(failure.GetMessage(), EnumRefusal(text, "TYPE", ""));
    }
}

struct DefaultCase {
    const char* label;
    ZentuCmdItemMetaData description;
    std::type_index expected;
    const char* text;
    int integer;
    double real;
};

TEST(ItemFactory, DefaultValueItemsReadTheDefaultOfTheirType) {
    ZentuCmdItemMetaData integer(CmdItem::VALUE, 42, "", 1);
    integer.default_value = "7";
    ZentuCmdItemMetaData raw(CmdItem::FILE, DataType::RAW_STRING, "a.Dat", "", 1);
    ZentuCmdItemMetaData keyword(CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}}, "nodal");
    const DefaultCase cases[] = {
        {"integer", integer, typeid(ZentuCmdIntItem), "42", 42, 0.0},
        {"real", ZentuCmdItemMetaData(CmdItem::MIN, 0.1, "", 1), typeid(ZentuCmdScalarItem), "0.1",
         0, 0.1},
        {"string", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "mixed", "", 1),
         typeid(ZentuCmdStringItem), "MIXED", 0, 0.0},
        {"empty string", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, std::string(), "", 1),
         typeid(ZentuCmdStringItem), "", 0, 0.0},
        {"raw string", raw, typeid(ZentuCmdRawStringItem), "a.Dat", 0, 0.0},
        {"keyword", keyword, typeid(ZentuCmdEnumItem), "NODAL", 3, 0.0},
        {"automatic", ZentuCmdItemMetaData(CmdItem::GROUP), typeid(ZentuCmdAutoItem), "", 0, 0.0},
        // No default as far as has_default goes, yet the text is used.
        {"reference", ZentuCmdItemMetaData(CmdItem::GROUP, ZentuCmdDefs::Cmd::GROUP_DEF, " 8 "),
         typeid(ZentuCmdAutoItem), "8", 8, 8.0},
    };
    for (const DefaultCase& c : cases) {
        SCOPED_TRACE(c.label);
        const auto item =
            ZentuCmdItemFactory::create_default_value_item("Name", c.description, Keywords());
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(ClassOf(*item), c.expected);
        EXPECT_EQ(item->GetName(), "Name");
        EXPECT_EQ(item->GetString(), c.text);
        EXPECT_EQ(item->GetInteger(), c.integer);
        EXPECT_EQ(item->GetReal(), c.real);
    }

    keyword.default_value = "LINEAR";
    const KPL_Failure failure = RefusalOf(
        [&] { ZentuCmdItemFactory::create_default_value_item("TYPE", keyword, Keywords()); });
    EXPECT_EQ(failure.GetMessage(), EnumRefusal("LINEAR", "TYPE", "DENSITY, NODAL"));
}

}  // namespace
