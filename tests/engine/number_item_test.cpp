// Integer and real items: what texts they accept, the exact refusals, and their answers.
#include <gtest/gtest.h>

#include <string>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdItem_Util.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuCmdStringItem.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace {

// The failure that building an item of class Item from text raises; fails the test if none.
template <typename Item>
KPL_Failure refusal_of(const std::string& name, const std::string& text) {
    try {
        Item item(name, text);
    } catch (const KPL_Failure& failure) {
        return failure;
    }
    ADD_FAILURE() << "'" << text << "' was accepted";
    return KPL_Failure("", "");
}

struct IntCase {
    const char* text;
    int value;
};

TEST(IntItem, AcceptsWholeDecimalIntegers) {
    const IntCase cases[] = {
        {"0", 0},
        {"42", 42},
        {"-7", -7},
        {"+7", 7},
        {"  12  ", 12},
        {"\t-3\n", -3},
        {"007", 7},
        {"2147483647", 2147483647},
        {"-2147483648", -2147483647 - 1},
    };
    for (const IntCase& c : cases) {
        ZentuCmdIntItem item("VALUE", std::string(c.text));
        EXPECT_EQ(item.GetInteger(), c.value) << c.text;
        EXPECT_EQ(item.GetString(), std::to_string(c.value)) << c.text;
    }
}

TEST(IntItem, RefusesEveryOtherTextWithTheIntegerMessage) {
    const char* const refused[] = {"",     " ",   "+",   "-",          "12abc",       "1.0", "1e3",
                                   "0x10", "1 2", "--1", "2147483648", "-2147483649", "one", "1,2"};
    for (const char* text : refused) {
        const KPL_Failure failure = refusal_of<ZentuCmdIntItem>("ITER_MAX", text);
        EXPECT_EQ(failure.GetMessage(), std::string("The item ITER_MAX has an invalid type. '") +
                                            text + "' must be an integer value.");
        EXPECT_EQ(failure.GetTag(), "|%P|ZentuCmdEngine|ZentuCmdIntItem");
        EXPECT_EQ(failure.GetErrorCode(), -14);
        EXPECT_TRUE(failure.GetId().empty());
    }
}

TEST(IntItem, AnswersOnlyAsAnInteger) {
    const ZentuCmdIntItem item("VALUE", 5);
    EXPECT_TRUE(item.HasInteger());
    EXPECT_FALSE(item.HasString());
    EXPECT_EQ(item.GetString(), "5");
    EXPECT_FALSE(item.HasReal());
    EXPECT_EQ(item.GetReal(), 0.0);
    for (int type = 0; type <= 11; ++type) {
        EXPECT_EQ(item.HasType(static_cast<DataType>(type)), type == 0) << type;
    }
}

TEST(ScalarItem, AcceptsNumbersAndIntegers) {
    const std::pair<const char*, double> cases[] = {
        {"7", 7.0},      {"2.5", 2.5},    {" -0.125 ", -0.125},
        {"1e-3", 1e-3},  {"+.5", 0.5},    {"3.", 3.0},
        {"1E+2", 100.0}, {"1e-400", 0.0}, {"-2147483648", -2147483648.0},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(ZentuCmdScalarItem("WEIGHT", std::string(text)).GetReal(), value) << text;
    }
}

TEST(ScalarItem, RefusesEveryOtherTextWithTheScalarMessage) {
    const char* const refused[] = {"",    ".",     "1e",    "e5",  "abc", "1.5x", "inf",
                                   "nan", "0x1p3", "1e999", "1 2", "1,5", "- 1"};
    for (const char* text : refused) {
        const KPL_Failure failure = refusal_of<ZentuCmdScalarItem>("WEIGHT", text);
        EXPECT_EQ(failure.GetMessage(), std::string("The item WEIGHT has an invalid type. '") +
                                            text + "' must be a scalar value.");
        EXPECT_EQ(failure.GetTag(), "|%P|ZentuCmdEngine|ZentuCmdScalarItem");
        EXPECT_EQ(failure.GetErrorCode(), -14);
    }
}

TEST(ScalarItem, WritesTheShortestTextThatReadsBack) {
    EXPECT_EQ(ZentuCmdScalarItem("W", 2.0).GetString(), "2");
    EXPECT_EQ(ZentuCmdScalarItem("W", 0.1).GetString(), "0.1");
    EXPECT_EQ(ZentuCmdScalarItem("W", -1.5).GetString(), "-1.5");
    const ZentuCmdScalarItem item("W", 0.1);
    EXPECT_FALSE(item.HasString());
    EXPECT_FALSE(item.HasInteger());
    EXPECT_EQ(item.GetInteger(), 0);
    EXPECT_TRUE(item.HasType(DataType::REAL));
    EXPECT_FALSE(item.HasType(DataType::INTEGER));
}

TEST(NumberItems, RefusalMessagesAreCutAt1023Characters) {
    const std::string longText(3000, '9');
    const KPL_Failure failure = refusal_of<ZentuCmdIntItem>("VALUE", longText + "x");
    EXPECT_EQ(failure.GetMessage().size(), 1023U);
    EXPECT_EQ(failure.GetMessage().rfind("The item VALUE has an invalid type. '999", 0), 0U);
}

TEST(NumberItems, ClonesAreIndependentCopiesOfTheirOwnClass) {
    const ZentuCmdIntItem integer("N", 3);
    const ZentuCmdScalarItem real("R", 1.25);
    const auto integerClone = integer.Clone();
    const auto realClone = real.Clone();
    ASSERT_NE(dynamic_cast<ZentuCmdIntItem*>(integerClone.get()), nullptr);
    ASSERT_NE(dynamic_cast<ZentuCmdScalarItem*>(realClone.get()), nullptr);
    EXPECT_EQ(integerClone->GetName(), "N");
    EXPECT_EQ(integerClone->GetInteger(), 3);
    EXPECT_EQ(realClone->GetReal(), 1.25);
}

TEST(ItemUtil, ListWithCharNeedsAListReading) {
    const ZentuCmdItemDefs::KeywordMap noKeywords;
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_list_with_char(ZentuCmdStringItem("S", "A\nB"), '\n'));
    EXPECT_TRUE(ZentuCmdItem_Util::has_item_list_with_char(
        ZentuCmdAutoItem("L", "A\nB, C", noKeywords), '\n'));
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_list_with_char(
        ZentuCmdAutoItem("L", "A, B", noKeywords), '\n'));
}

TEST(ItemUtil, ReferenceOfTypeLooksAtTheTargetsKind) {
    const ZentuCmd group(Cmd::GROUP_DEF);
    const ZentuCmdReferenceItem reference("GROUP", group);
    EXPECT_TRUE(ZentuCmdItem_Util::has_item_reference_of_type(reference, Cmd::GROUP_DEF));
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_reference_of_type(reference, Cmd::DV));

    ZentuCmdAutoItem automatic("GROUP", "G1", {});
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_reference_of_type(automatic, Cmd::GROUP_DEF));
    automatic.AddReference(group);
    EXPECT_TRUE(ZentuCmdItem_Util::has_item_reference_of_type(automatic, Cmd::GROUP_DEF));
    EXPECT_FALSE(
        ZentuCmdItem_Util::has_item_reference_of_type(ZentuCmdIntItem("N", 1), Cmd::GROUP_DEF));
}

}  // namespace
