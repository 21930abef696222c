#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <map>
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

std::unique_ptr<ZentuCmd> CommandWithId(const std::string& text) {
    auto cmd = std::make_unique<ZentuCmd>(Cmd::GROUP_DEF);
    cmd->AddStringItem(CmdItem::ID_NAME, text);
    return cmd;
}

// The base class's own answers and the three text item classes, named after their class.
std::vector<std::unique_ptr<ZentuCmdItem>> EveryItemClass(const ZentuCmd& target) {
    std::vector<std::unique_ptr<ZentuCmdItem>> items;
    items.push_back(std::make_unique<BareItem>("bare"));
    items.push_back(std::make_unique<ZentuCmdRawStringItem>("raw", "lower"));
    items.push_back(std::make_unique<ZentuCmdStringItem>("string", "lower"));
    items.push_back(std::make_unique<ZentuCmdReferenceItem>("ref", target));
    return items;
}

TEST(ItemReadings, ReadingsAnItemLacksGiveNeutralAnswers) {
    const auto target = CommandWithId("g1");
    // Whether an item claims a reading at all is checked through HasType below.
    for (const auto& item : EveryItemClass(*target)) {
        SCOPED_TRACE(item->GetName());
        EXPECT_EQ(item->GetString().empty(), item->GetName() == "bare");
        EXPECT_EQ(item->GetReference() == nullptr, item->GetName() != "ref");
        EXPECT_EQ(item->GetInteger(), 0);
        EXPECT_EQ(item->GetReal(), 0.0);
        const ZentuMatrix<3, 1, double> vector = item->GetVector3d();
        for (std::size_t row = 0; row < 3; ++row) {
            EXPECT_EQ(vector(row, 0), 0.0) << "component " << row;
        }
        EXPECT_EQ(ToInt(item->GetEnum()), -1);
        EXPECT_TRUE(item->GetList().empty());
        // Not an empty list: readers of a missing list still get the one element 0.
        const BreltList<int> list = item->GetBreltList();
        EXPECT_EQ(list.elements, std::set<int>{0});
        EXPECT_EQ(list.default_step, 1);
        EXPECT_TRUE(list.break_lines);
        EXPECT_TRUE(list.clear_on_read);
    }
}

TEST(ItemHasType, ClaimsExactlyTheTypesThatItsOwnQueriesAnswer) {
    const auto target = CommandWithId("g1");
    std::vector<std::unique_ptr<ZentuCmdItem>> items = EveryItemClass(*target);
    std::map<std::string, std::set<DataType>> claimed = {
        {"bare", {}},
        {"raw", {DataType::STRING}},
        {"string", {DataType::STRING}},
        {"ref", {DataType::STRING, DataType::REFERENCE}}};
    // A host item that overrides only the queries must be typed through them.
    const std::vector<std::pair<zentu_test::Reading, DataType>> dispatch = {
        {zentu_test::kInteger, DataType::INTEGER},      {zentu_test::kReal, DataType::REAL},
        {zentu_test::kVector3d, DataType::VECTOR3D},    {zentu_test::kString, DataType::STRING},
        {zentu_test::kBreltList, DataType::BRELT_LIST}, {zentu_test::kList, DataType::LIST},
        {zentu_test::kReference, DataType::REFERENCE},  {zentu_test::kEnum, DataType::ENUM},
    };
    for (const auto& [reading, type] : dispatch) {
        const std::string label = "reading " + std::to_string(reading);
        items.push_back(std::make_unique<ProbeItem>(label, "", reading));
        claimed[label] = {type};
        claimed["every reading"].insert(type);
    }
    // RAW_STRING, RESERVED, AUTO and values outside the enumeration have no query to ask.
    items.push_back(std::make_unique<ProbeItem>("every reading", "", ~0U));
    const std::vector<std::int32_t> values = {INT32_MIN, -2, -1, 0, 1,  2,  3,  4,   5,
                                              6,         7,  8,  9, 10, 11, 12, 100, INT32_MAX};
    for (const auto& item : items) {
        for (std::int32_t value : values) {
            const auto type = static_cast<DataType>(value);
            EXPECT_EQ(item->HasType(type), claimed.at(item->GetName()).count(type) == 1)
                << item->GetName() << ", data type " << value;
        }
    }
}

TEST(ItemAddReference, OnlyTheReferenceItemTakesTheOffer) {
    const auto first = CommandWithId("first");
    const auto second = CommandWithId("second");
    for (const auto& item : EveryItemClass(*first)) {
        SCOPED_TRACE(item->GetName());
        const std::string text = item->GetString();
        const bool isReference = item->GetName() == "ref";
        item->AddReference(*second);
        EXPECT_EQ(item->HasReference(), isReference);
        EXPECT_EQ(item->GetReference(), isReference ? second.get() : nullptr);
        EXPECT_EQ(item->GetString(), isReference ? "SECOND" : text);
    }
}

TEST(TextItems, StringItemRaisesAsciiLettersUpToTheFirstNulRawItemKeepsEveryByte) {
    // Neighbours of 'a'..'z' in the code table and bytes of multi-byte characters are no letters.
    const std::vector<std::pair<std::string, std::string>> conversions = {
        {"abc", "ABC"},
        {"", ""},
        {"MiXeD_09 z", "MIXED_09 Z"},
        {" padded ", " PADDED "},
        {"`a{z@A[Z", "`A{Z@A[Z"},
        {"stra\xC3\x9Fx \xC3\xA9t\xC3\xA9", "STRA\xC3\x9FX \xC3\xA9T\xC3\xA9"},
        {"\xE1\xF1x\x80\xFF", "\xE1\xF1X\x80\xFF"},
        {std::string("ab\0cd", 5), std::string("AB\0cd", 5)},
        {std::string("\0abc", 4), std::string("\0abc", 4)}};
    for (const auto& [input, upper] : conversions) {
        SCOPED_TRACE('"' + input + '"');
        const ZentuCmdStringItem item("name", input);
        EXPECT_EQ(item.GetString(), upper);
        EXPECT_EQ(item.GetString().size(), input.size());
        // The name is not part of the value and keeps its case.
        EXPECT_EQ(item.GetName(), "name");
        EXPECT_EQ(ZentuCmdRawStringItem("name", input).GetString(), input);
    }
}

TEST(ReferenceItem, TextIsTheTargetsFirstIdentifierReadAtCallTime) {
    const auto first = CommandWithId("first");
    ZentuCmdReferenceItem item("DRESP", *first);
    ZentuCmd target(Cmd::DRESP);
    item.AddReference(target);
    EXPECT_EQ(item.GetReference(), &target);
    EXPECT_EQ(item.GetString(), "");
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

// Clone, copy construction and assignment (also onto itself) give objects of the source's
// class with its name and value, which stay so when the source is retargeted or destroyed.
template <typename Item>
void ExpectCopiesAlike(std::unique_ptr<Item> source, Item assigned, const ZentuCmd& other) {
    SCOPED_TRACE(source->GetName());
    const std::unique_ptr<ZentuCmdItem> clone = source->Clone();
    const Item constructed(*source);
    assigned = *source;
    Item& alias = assigned;
    assigned = alias;
    const std::string name = source->GetName();
    const std::string text = source->GetString();
    const ZentuCmd* reference = source->GetReference();
    source->AddReference(other);
    source.reset();
    const std::array<const ZentuCmdItem*, 3> copies = {clone.get(), &constructed, &assigned};
    for (const ZentuCmdItem* copy : copies) {
        EXPECT_EQ(typeid(*copy), typeid(Item));
        EXPECT_EQ(copy->GetName(), name);
        EXPECT_EQ(copy->GetString(), text);
        EXPECT_EQ(copy->GetReference(), reference);
    }
}

TEST(ItemCopies, CloneAndCopiesAreIndependentObjectsAlike) {
    const auto target = CommandWithId("g1");
    const auto other = CommandWithId("g2");
    ExpectCopiesAlike(std::make_unique<BareItem>("bare"), BareItem("other"), *other);
    ExpectCopiesAlike(std::make_unique<ZentuCmdRawStringItem>("raw", "lower"),
                      ZentuCmdRawStringItem("other", "xyz"), *other);
    ExpectCopiesAlike(std::make_unique<ZentuCmdStringItem>("string", "lower"),
                      ZentuCmdStringItem("other", "xyz"), *other);
    ExpectCopiesAlike(std::make_unique<ZentuCmdReferenceItem>("ref", *target),
                      ZentuCmdReferenceItem("other", *other), *other);
    ZentuCmdReferenceItem original("ref", *target);
    original.Clone()->AddReference(*other);
    EXPECT_EQ(original.GetReference(), target.get());
}

}  // namespace
