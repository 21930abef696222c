#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "BreltList.h"
#include "ZentuCmd.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdStringItem.h"
#include "ZentuMatrix.h"
#include "engine_test_support.h"

namespace {

using zentu_test::BareItem;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

DataType AsDataType(std::int32_t value) {
    return static_cast<DataType>(value);
}

// Every data type, plus values around and far beyond the enumeration that no item may claim.
std::vector<std::int32_t> DataTypeValuesToProbe() {
    std::vector<std::int32_t> values;
    for (std::int32_t value = 0; value <= 12; ++value) {
        values.push_back(value);
    }
    for (std::int32_t value : {100, INT32_MAX, -1, -2, INT32_MIN}) {
        values.push_back(value);
    }
    return values;
}

// The answers of every reading that no text item has: the base class's neutral answers.
void ExpectNoNumberOrListReading(const ZentuCmdItem& item) {
    EXPECT_FALSE(item.HasInteger());
    EXPECT_EQ(item.GetInteger(), 0);
    EXPECT_FALSE(item.HasReal());
    EXPECT_EQ(item.GetReal(), 0.0);
    EXPECT_FALSE(item.HasVector3d());
    const ZentuMatrix<3, 1, double> vector = item.GetVector3d();
    for (std::size_t row = 0; row < 3; ++row) {
        EXPECT_EQ(vector(row, 0), 0.0) << "component " << row;
    }
    EXPECT_FALSE(item.HasEnum());
    EXPECT_EQ(ToInt(item.GetEnum()), -1);
    EXPECT_FALSE(item.HasList());
    EXPECT_TRUE(item.GetList().empty());
    EXPECT_FALSE(item.HasBreltList());
    // Not an empty list: readers of a missing list still get the one element 0.
    const BreltList<int> list = item.GetBreltList();
    EXPECT_EQ(list.elements, std::set<int>{0});
    EXPECT_EQ(list.default_step, 1);
    EXPECT_TRUE(list.break_lines);
    EXPECT_TRUE(list.clear_on_read);
}

// A target command whose identifier is text (stored in upper case).
std::unique_ptr<ZentuCmd> CommandWithId(const std::string& text) {
    auto cmd = std::make_unique<ZentuCmd>(Cmd::GROUP_DEF);
    cmd->AddStringItem(CmdItem::ID_NAME, text);
    return cmd;
}

struct TextItemCase {
    std::string label;
    std::function<std::unique_ptr<ZentuCmdItem>(const ZentuCmd& target)> make;
    std::set<DataType> claimedTypes;
};

// The three text item classes, each with the data types it must claim.
std::vector<TextItemCase> TextItemCases() {
    return {
        {"raw string",
         [](const ZentuCmd&) { return std::make_unique<ZentuCmdRawStringItem>("N", "t"); },
         {DataType::STRING}},
        {"string",
         [](const ZentuCmd&) { return std::make_unique<ZentuCmdStringItem>("N", "t"); },
         {DataType::STRING}},
        {"reference",
         [](const ZentuCmd& target) {
             return std::make_unique<ZentuCmdReferenceItem>("N", target);
         },
         {DataType::STRING, DataType::REFERENCE}},
    };
}

TEST(ItemBase, GivesNeutralAnswersForEveryReading) {
    BareItem item("BARE");
    EXPECT_EQ(item.GetName(), "BARE");
    EXPECT_FALSE(item.HasString());
    EXPECT_EQ(item.GetString(), "");
    EXPECT_FALSE(item.HasReference());
    EXPECT_EQ(item.GetReference(), nullptr);
    ExpectNoNumberOrListReading(item);
    for (std::int32_t value : DataTypeValuesToProbe()) {
        EXPECT_FALSE(item.HasType(AsDataType(value))) << "data type " << value;
    }
}

TEST(ItemBase, IgnoresOfferedReferences) {
    BareItem item("BARE");
    const auto target = CommandWithId("g1");
    item.AddReference(*target);
    EXPECT_FALSE(item.HasReference());
    EXPECT_EQ(item.GetReference(), nullptr);
    EXPECT_EQ(item.GetString(), "");
}

TEST(ItemBase, AssignmentCopiesTheName) {
    BareItem item("FIRST");
    const BareItem other("SECOND");
    item = other;
    EXPECT_EQ(item.GetName(), "SECOND");
    const BareItem& alias = item;
    item = alias;
    EXPECT_EQ(item.GetName(), "SECOND");
}

TEST(ItemBase, HasTypeAsksTheItemsOwnQueries) {
    // A host item that overrides only the queries must be typed through them, so the base may
    // not answer from anything but the virtual Has... calls.
    const std::vector<std::pair<zentu_test::Reading, DataType>> dispatch = {
        {zentu_test::kInteger, DataType::INTEGER},      {zentu_test::kReal, DataType::REAL},
        {zentu_test::kVector3d, DataType::VECTOR3D},    {zentu_test::kString, DataType::STRING},
        {zentu_test::kBreltList, DataType::BRELT_LIST}, {zentu_test::kList, DataType::LIST},
        {zentu_test::kReference, DataType::REFERENCE},  {zentu_test::kEnum, DataType::ENUM},
    };
    for (const auto& [reading, claimed] : dispatch) {
        const ProbeItem item("P", "", reading);
        for (std::int32_t value : DataTypeValuesToProbe()) {
            EXPECT_EQ(item.HasType(AsDataType(value)), value == ToInt(claimed))
                << "reading " << reading << ", data type " << value;
        }
    }
}

TEST(ItemBase, TypesWithoutAQueryAreNeverClaimed) {
    const unsigned everyReading = ~0U;
    const ProbeItem item("P", "", everyReading);
    for (DataType type : {DataType::RAW_STRING, DataType::RESERVED, DataType::AUTO}) {
        EXPECT_FALSE(item.HasType(type)) << "data type " << ToInt(type);
    }
    for (std::int32_t value : {11, 12, 100, INT32_MAX, -1, INT32_MIN}) {
        EXPECT_FALSE(item.HasType(AsDataType(value))) << "data type " << value;
    }
}

TEST(TextItems, ClaimOnlyTheirOwnDataTypes) {
    const auto target = CommandWithId("g1");
    for (const TextItemCase& textCase : TextItemCases()) {
        const auto item = textCase.make(*target);
        for (std::int32_t value : DataTypeValuesToProbe()) {
            const bool claimed = textCase.claimedTypes.count(AsDataType(value)) == 1;
            EXPECT_EQ(item->HasType(AsDataType(value)), claimed)
                << textCase.label << ", data type " << value;
        }
    }
}

TEST(TextItems, KeepNeutralAnswersForReadingsTheyLack) {
    const auto target = CommandWithId("g1");
    for (const TextItemCase& textCase : TextItemCases()) {
        SCOPED_TRACE(textCase.label);
        const auto item = textCase.make(*target);
        EXPECT_TRUE(item->HasString());
        ExpectNoNumberOrListReading(*item);
    }
}

TEST(TextItems, IgnoreOfferedReferences) {
    const auto target = CommandWithId("g1");
    ZentuCmdRawStringItem raw("N", "t");
    ZentuCmdStringItem upper("N", "t");
    for (ZentuCmdItem* item :
         {static_cast<ZentuCmdItem*>(&raw), static_cast<ZentuCmdItem*>(&upper)}) {
        item->AddReference(*target);
        EXPECT_FALSE(item->HasReference());
        EXPECT_EQ(item->GetReference(), nullptr);
    }
    EXPECT_EQ(raw.GetString(), "t");
    EXPECT_EQ(upper.GetString(), "T");
}

struct CaseConversion {
    std::string input;
    std::string upper;
};

TEST(StringItem, RaisesOnlyLowerCaseAsciiLettersUpToTheFirstNul) {
    const std::vector<CaseConversion> conversions = {
        {"abc", "ABC"},
        {"", ""},
        {"MiXeD_09 z", "MIXED_09 Z"},
        // The neighbours of 'a'..'z' in the code table stay.
        {"`a{z@A[Z", "`A{Z@A[Z"},
        // Bytes of multi-byte characters are not letters to the rule.
        {"stra\xC3\x9F"
         "e \xC3\xA9t\xC3\xA9",
         "STRA\xC3\x9F"
         "E \xC3\xA9T\xC3\xA9"},
        {"\xE1\xF1x\x80\xFF", "\xE1\xF1X\x80\xFF"},
        {std::string("ab\0cd", 5), std::string("AB\0cd", 5)},
        {std::string("\0abc", 4), std::string("\0abc", 4)},
    };
    for (const CaseConversion& conversion : conversions) {
        const ZentuCmdStringItem item("name", conversion.input);
        EXPECT_EQ(item.GetString(), conversion.upper) << '"' << conversion.input << '"';
        EXPECT_EQ(item.GetString().size(), conversion.input.size());
        // The name is not part of the value and keeps its case.
        EXPECT_EQ(item.GetName(), "name");
    }
}

TEST(RawStringItem, KeepsTheTextByteForByte) {
    const std::vector<std::string> texts = {
        "abc", "MiXeD", "", "\xC3\xA9t\xC3\xA9", std::string("ab\0cd", 5), " padded "};
    for (const std::string& text : texts) {
        const ZentuCmdRawStringItem item("name", text);
        EXPECT_EQ(item.GetString(), text);
        EXPECT_EQ(item.GetName(), "name");
    }
}

TEST(ReferenceItem, TextFollowsTheTargetsFirstIdentifier) {
    ZentuCmd target(Cmd::DRESP);
    const ZentuCmdReferenceItem item("DRESP", target);
    EXPECT_TRUE(item.HasReference());
    EXPECT_EQ(item.GetReference(), &target);
    EXPECT_EQ(item.GetString(), "");

    // Read at call time, not captured at construction.
    target.AddStringItem(CmdItem::TYPE, "not an identifier");
    EXPECT_EQ(item.GetString(), "");
    target.AddStringItem(CmdItem::ID_NAME, "d1");
    EXPECT_EQ(item.GetString(), "D1");
    target.AddStringItem(CmdItem::ID_NAME, "d2");
    EXPECT_EQ(item.GetString(), "D1");

    // The identifier item's own text, whatever its class.
    target.EraseAll(CmdItem::ID_NAME);
    target.AddItem(CmdItem::ID_NAME, std::make_unique<ZentuCmdRawStringItem>("ID_NAME", "raw"));
    EXPECT_EQ(item.GetString(), "raw");
}

TEST(ReferenceItem, AddReferenceRetargets) {
    const auto first = CommandWithId("first");
    const auto second = CommandWithId("second");
    ZentuCmdReferenceItem item("R", *first);
    item.AddReference(*second);
    EXPECT_EQ(item.GetReference(), second.get());
    EXPECT_EQ(item.GetString(), "SECOND");
    EXPECT_EQ(item.GetName(), "R");

    const ZentuCmd withoutId(Cmd::DV);
    item.AddReference(withoutId);
    EXPECT_EQ(item.GetReference(), &withoutId);
    EXPECT_EQ(item.GetString(), "");
}

TEST(ItemClone, IsAnIndependentObjectOfTheSameClass) {
    const auto target = CommandWithId("g1");
    const std::vector<std::unique_ptr<ZentuCmdItem>> originals = [&] {
        std::vector<std::unique_ptr<ZentuCmdItem>> items;
        items.push_back(std::make_unique<ZentuCmdRawStringItem>("raw", "lower"));
        items.push_back(std::make_unique<ZentuCmdStringItem>("str", "lower"));
        items.push_back(std::make_unique<ZentuCmdReferenceItem>("ref", *target));
        items.push_back(std::make_unique<BareItem>("bare"));
        return items;
    }();
    for (const auto& original : originals) {
        SCOPED_TRACE(original->GetName());
        auto clone = original->Clone();
        ASSERT_NE(clone, nullptr);
        EXPECT_NE(clone.get(), original.get());
        const ZentuCmdItem& cloned = *clone;
        const ZentuCmdItem& source = *original;
        EXPECT_EQ(typeid(cloned), typeid(source));
        EXPECT_EQ(clone->GetName(), original->GetName());
        EXPECT_EQ(clone->GetString(), original->GetString());
        EXPECT_EQ(clone->GetReference(), original->GetReference());
    }
}

TEST(ItemClone, OutlivesItsOriginal) {
    auto original = std::make_unique<ZentuCmdRawStringItem>("raw", "kept as is");
    const auto clone = original->Clone();
    original.reset();
    EXPECT_EQ(clone->GetName(), "raw");
    EXPECT_EQ(clone->GetString(), "kept as is");
}

TEST(ItemClone, ReferenceCloneSharesTheTargetButRetargetsAlone) {
    const auto target = CommandWithId("g1");
    const auto other = CommandWithId("g2");
    ZentuCmdReferenceItem original("ref", *target);
    const auto clone = original.Clone();
    EXPECT_EQ(clone->GetReference(), target.get());

    original.AddReference(*other);
    EXPECT_EQ(clone->GetReference(), target.get());
    clone->AddReference(*other);
    clone->AddReference(*target);
    EXPECT_EQ(original.GetReference(), other.get());
}

TEST(TextItemCopies, CopyConstructionAndAssignmentTakeNameAndValue) {
    const ZentuCmdRawStringItem raw("raw", "abc");
    ZentuCmdRawStringItem rawCopy(raw);
    EXPECT_EQ(rawCopy.GetName(), "raw");
    EXPECT_EQ(rawCopy.GetString(), "abc");
    rawCopy = ZentuCmdRawStringItem("other", "xyz");
    EXPECT_EQ(rawCopy.GetName(), "other");
    EXPECT_EQ(rawCopy.GetString(), "xyz");

    const ZentuCmdStringItem upper("str", "abc");
    ZentuCmdStringItem upperCopy(upper);
    EXPECT_EQ(upperCopy.GetName(), "str");
    EXPECT_EQ(upperCopy.GetString(), "ABC");
    upperCopy = ZentuCmdStringItem("other", "xyz");
    EXPECT_EQ(upperCopy.GetName(), "other");
    EXPECT_EQ(upperCopy.GetString(), "XYZ");

    const ZentuCmdStringItem& alias = upperCopy;
    upperCopy = alias;
    EXPECT_EQ(upperCopy.GetName(), "other");
    EXPECT_EQ(upperCopy.GetString(), "XYZ");
}

TEST(TextItemCopies, ReferenceCopiesTakeNameAndTarget) {
    const auto first = CommandWithId("g1");
    const auto second = CommandWithId("g2");
    const ZentuCmdReferenceItem source("source", *first);
    ZentuCmdReferenceItem copy(source);
    EXPECT_EQ(copy.GetName(), "source");
    EXPECT_EQ(copy.GetReference(), first.get());

    ZentuCmdReferenceItem assigned("assigned", *second);
    assigned = source;
    EXPECT_EQ(assigned.GetName(), "source");
    EXPECT_EQ(assigned.GetReference(), first.get());
    EXPECT_EQ(assigned.GetString(), "G1");

    const ZentuCmdReferenceItem& alias = assigned;
    assigned = alias;
    EXPECT_EQ(assigned.GetName(), "source");
    EXPECT_EQ(assigned.GetReference(), first.get());
}

}  // namespace
