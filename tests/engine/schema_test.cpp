// Item and command descriptions and the input/output configuration: what each constructor sets,
// the first description under a name wins, the order of registered rules, and deep copies.
#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "KeywordsDictionary.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdIo.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::KeywordMap;
using Strings = std::vector<std::string>;

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

// A description as one line: kind, data type, default text, extra text, has default, extra flag,
// extra value, prepared dictionary, referenced kinds, and the numeric default of its type.
std::string Line(const ZentuCmdItemMetaData& record) {
    std::string line = std::to_string(ToInt(record.key)) + " " +
                       std::to_string(ToInt(record.type)) + " '" + record.default_value + "' '" +
                       record.extra_text + "' " + std::to_string(record.has_default) + " " +
                       std::to_string(record.extra_flag) + " " +
                       std::to_string(record.extra_value) + " " +
                       (IsPrepared(record.keywords) ? "prepared" : "initial") + " [";
    for (Cmd kind : record.referenced_kinds.values) {
        line += std::to_string(ToInt(kind)) + ";";
    }
    line += "] " + (record.type == DataType::INTEGER ? std::to_string(record.default_int)
                                                     : std::to_string(record.default_real));
    return line + (record.spare_list.values.empty() && record.spare_ints.empty() ? "" : " spare");
}

// A command description as one line: kind, whether it is created by default, item names in order.
std::string Line(const ZentuCmdMetaData& metadata) {
    std::string line = std::to_string(ToInt(metadata.GetKey())) +
                       (metadata.GetCreateDefault() ? " default" : "") + " [";
    for (const auto& entry : metadata.GetMetaData()) {
        line += entry.first + ";";
    }
    return line + "]";
}

// Every constructor of an item description sets its fields, and its dictionary, its own way.
TEST(ItemMetaData, EveryConstructorSetsItsFields) {
    const std::string none;
    using K = CmdItem;
    const std::pair<ZentuCmdItemMetaData, const char*> cases[] = {
        {ZentuCmdItemMetaData(), "39 3 '' '' 0 1 1 prepared [] 0.000000"},
        {ZentuCmdItemMetaData(K::GROUP), "4 10 '' '' 0 1 1 prepared [] 0.000000"},
        {ZentuCmdItemMetaData(K::TYPE, DataType::RAW_STRING, "aBc", "host", 7),
         "1 4 'aBc' 'host' 1 1 7 prepared [] 0.000000"},
        {ZentuCmdItemMetaData(K::FILE, DataType::REAL, none, "", -2),
         "2 1 '' '' 0 1 -2 prepared [] 0.000000"},
        {ZentuCmdItemMetaData(K::ITER_MAX, -2147483647 - 1, "it", 3),
         "21 0 '' 'it' 1 1 3 prepared [] -2147483648"},
        {ZentuCmdItemMetaData(K::MIN, -0.125, "lo", 4), "11 1 '' 'lo' 1 1 4 prepared [] -0.125000"},
        {ZentuCmdItemMetaData(K::DESCRIPTION, std::string("Text"), "d", 5),
         "31 3 'Text' 'd' 1 0 5 initial [] 0.000000"},
        {ZentuCmdItemMetaData(K::FORMAT, none, "", 6), "30 3 '' '' 1 0 6 initial [] 0.000000"},
        {ZentuCmdItemMetaData(K::TYPE, {{"NODAL", 3}}, ""), "1 9 '' '' 0 1 1 prepared [] 0.000000"},
        {ZentuCmdItemMetaData(K::GROUP, Cmd::GROUP_DEF, "G1"),
         "4 8 'G1' '' 0 0 1 initial [1;1;] 0.000000"},
    };
    for (const auto& [record, expected] : cases) {
        EXPECT_EQ(Line(record), expected);
    }
    // Prepared and empty, the dictionary finds the empty text alone, with the not-found value -1.
    int found = 0;
    EXPECT_TRUE(
        ZentuCmdItemMetaData(CmdItem::TYPE, DataType::ENUM, "", "", 1).keywords.Find("", found));
    EXPECT_EQ(found, -1);
    EXPECT_FALSE(ZentuCmdItemMetaData(CmdItem::GROUP, Cmd::GROUP_DEF, "").keywords.Find("", found));
    // Both numeric defaults share one storage.
    const ZentuCmdItemMetaData integer(CmdItem::VALUE, 1, "", 1);
    EXPECT_EQ(static_cast<const void*>(&integer.default_int),
              static_cast<const void*>(&integer.default_real));
}

// A keyword list keeps the first value of a keyword and drops texts outside the alphabet; copies
// and moves of a description carry their own dictionary and lists.
TEST(ItemMetaData, KeywordListAndDeepCopies) {
    ZentuCmdItemMetaData original(
        CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}, {"NODAL", 9}, {"TAB\tBED", 4}, {"~ *", 5}},
        "nodal");
    EXPECT_EQ(Line(original), "1 9 'nodal' '' 1 1 1 prepared [] 0.000000");
    EXPECT_EQ(KeywordsOf(original.keywords),
              (std::map<std::string, int>{{"DENSITY", 1}, {"NODAL", 3}, {"~ *", 5}}));
    int value = 0;
    EXPECT_TRUE(original.keywords.Find("NOD", value) && value == 3);
    original.spare_ints = {1};
    ZentuCmdItemMetaData copy(original);
    copy.keywords.Insert("ZERO", 0);
    copy.spare_list.values = {3};
    ZentuCmdItemMetaData assigned;
    assigned = copy;
    copy.default_value = "X";
    const ZentuCmdItemMetaData moved(std::move(assigned));
    EXPECT_EQ(KeywordsOf(original.keywords).size(), 3U);
    EXPECT_EQ(Line(original), "1 9 'nodal' '' 1 1 1 prepared [] 0.000000 spare");
    EXPECT_EQ(KeywordsOf(moved.keywords).size(), 4U);
    EXPECT_EQ(Line(moved), "1 9 'nodal' '' 1 1 1 prepared [] 0.000000 spare");
    EXPECT_EQ(moved.spare_list.values, std::vector<int>{3});
}

// Command descriptions hold kind, default flag and items, in byte order of the names as given;
// the first item description under a name stays, and a refused entry is not moved from. Copies
// are deep; moves take the items and empty the source.
TEST(CmdMetaData, ConstructorsItemsCopiesAndMoves) {
    EXPECT_EQ(Line(ZentuCmdMetaData()), "20 []");
    ZentuCmdMetaData::ItemMap items = {{"TYPE", ZentuCmdItemMetaData(CmdItem::TYPE)}};
    EXPECT_EQ(Line(ZentuCmdMetaData(Cmd::DV, std::move(items), true)), "3 default [TYPE;]");
    EXPECT_TRUE(items.empty());  // NOLINT(bugprone-use-after-move): the map is taken over
    ZentuCmdMetaData metadata(Cmd::DV, false);
    const std::pair<const std::string, ZentuCmdItemMetaData> entry = {
        "TYPE", ZentuCmdItemMetaData(CmdItem::VALUE, 1, "first", 1)};
    std::string name = "TYPE";
    ZentuCmdItemMetaData second(CmdItem::TYPE, {{"NODAL", 3}}, "NODAL");
    ZentuCmdMetaData& result = metadata.AddItem(entry)
                                   .AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME))
                                   .AddItem(std::move(name), std::move(second))
                                   .AddItem({"Z", ZentuCmdItemMetaData(CmdItem::VALUE)})
                                   .AddItem({"group", ZentuCmdItemMetaData(CmdItem::GROUP)})
                                   .AddItem({"Z", ZentuCmdItemMetaData(CmdItem::MAX, 3.5, "", 1)});
    EXPECT_EQ(&result, &metadata);
    EXPECT_EQ(Line(metadata), "3 [ID_NAME;TYPE;Z;group;]");
    EXPECT_EQ(Line(metadata.GetMetaData().at("TYPE")), "10 0 '' 'first' 1 1 1 prepared [] 1");
    EXPECT_EQ(Line(metadata.GetMetaData().at("Z")), "10 10 '' '' 0 1 1 prepared [] 0.000000");
    EXPECT_EQ(name, "TYPE");  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(Line(second), "1 9 'NODAL' '' 1 1 1 prepared [] 0.000000");  // NOLINT
    ZentuCmdMetaData original(Cmd::STOP, true);
    original.AddItem("ITER_MAX", ZentuCmdItemMetaData(CmdItem::ITER_MAX, 50, "", 1));
    ZentuCmdMetaData copy(original);
    copy.AddItem("VALUE", ZentuCmdItemMetaData(CmdItem::VALUE));
    EXPECT_EQ(Line(original), "12 default [ITER_MAX;]");
    ZentuCmdMetaData moved(std::move(copy));
    ZentuCmdMetaData target;
    target = std::move(moved);
    ZentuCmdMetaData& self = target;
    target = std::move(self);
    EXPECT_EQ(Line(copy), "12 default []");   // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(Line(moved), "12 default []");  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(Line(target), "12 default [ITER_MAX;VALUE;]");
}

// Only the configuration with default values holds the keyword map; preparing replaces it whole.
TEST(IoConfig, DefaultValuesAreTheKeywordMap) {
    const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    EXPECT_EQ(ZentuCmdIoConfig().enum_map, keywords);
    for (const auto addValues :
         {ZentuCmdIoConfig::NO_DEFAULT_VALUES, static_cast<ZentuCmdIoConfig::AddValues>(7)}) {
        const ZentuCmdIoConfig bare(addValues);
        EXPECT_TRUE(bare.enum_map.empty()) << addValues;
        EXPECT_TRUE(bare.cmd_metadata.empty());
        EXPECT_TRUE(bare.GetRuleSequence().empty());
    }
    ZentuCmdIoConfig config(ZentuCmdIoConfig::NO_DEFAULT_VALUES);
    config.enum_map = {{"CUSTOM_WORD", ZentuCmdItemDefs::EnumValue::YES}};
    ZentuCmdIo::prepare_cmd_settings_with_defaults(config);
    EXPECT_EQ(config.enum_map, keywords);
}

// The first command description under a keyword stays; keywords are case-sensitive.
TEST(IoConfig, FirstDescriptionUnderAKeywordStays) {
    ZentuCmdIoConfig config;
    ZentuCmdMetaData& first = config.AddCmdMetadata("DV", ZentuCmdMetaData(Cmd::DV, true));
    first.AddItem("TYPE", ZentuCmdItemMetaData(CmdItem::TYPE));
    ZentuCmdMetaData refused(Cmd::DRESP, false);
    refused.AddItem("VALUE", ZentuCmdItemMetaData(CmdItem::VALUE));
    EXPECT_EQ(&config.AddCmdMetadata("DV", std::move(refused)), &first);
    EXPECT_EQ(Line(first), "3 default [TYPE;]");
    EXPECT_EQ(Line(refused), "4 [VALUE;]");  // NOLINT(bugprone-use-after-move)
    EXPECT_NE(&config.AddCmdMetadata("dv", ZentuCmdMetaData(Cmd::DRESP, false)), &first);
    EXPECT_EQ(config.cmd_metadata.size(), 2U);
}

// Rules that record their call, so the test can tell which stored rule is which.
Strings g_calls;

void ManipulateFirst(ZentuCmdContainer&, const KeywordMap&) {
    g_calls.emplace_back("M0");
}

void DefaultFirst(ZentuCmd&, const ZentuCmdContainer&, const ZentuCmdMetaData&, const KeywordMap&) {
    g_calls.emplace_back("D0");
}

// The rule sequence records the order of registration across both kinds of rule, also in copies.
TEST(IoConfig, RuleSequenceFollowsTheOrderOfRegistration) {
    g_calls.clear();
    ZentuCmdIoConfig config;
    config.AddRule(&ManipulateFirst);
    config.AddRule(ZentuCmdContainerRules::DefaultValueRule{Cmd::DV, &DefaultFirst, true});
    config.AddRule(ZentuCmdContainerRules::DefaultValueRule{
        Cmd::STOP,
        [](ZentuCmd&, const ZentuCmdContainer&, const ZentuCmdMetaData&, const KeywordMap&) {
            g_calls.emplace_back("D1");
        },
        false});
    config.AddRule([](ZentuCmdContainer&, const KeywordMap&) { g_calls.emplace_back("M1"); });
    const std::vector<std::pair<ZentuCmdIoConfig::RuleType, std::size_t>> expected = {
        {ZentuCmdIoConfig::CONTAINER_MANIPULATOR_RULE, 0},
        {ZentuCmdIoConfig::DEFAULT_VALUE_RULE, 0},
        {ZentuCmdIoConfig::DEFAULT_VALUE_RULE, 1},
        {ZentuCmdIoConfig::CONTAINER_MANIPULATOR_RULE, 1}};
    ASSERT_EQ(config.GetRuleSequence(), expected);
    const auto& defaults = config.GetDefaultValueRules();
    EXPECT_EQ(ToInt(defaults[1].cmd), ToInt(Cmd::STOP));
    EXPECT_TRUE(defaults[0].create_if_missing);
    EXPECT_FALSE(defaults[1].create_if_missing);

    ZentuCmdIoConfig copy(ZentuCmdIoConfig::NO_DEFAULT_VALUES);
    copy = ZentuCmdIoConfig(config);
    config.AddRule(&ManipulateFirst);
    ZentuCmdContainer container;
    ZentuCmd& cmd = container.CreateCommand(Cmd::DV);
    for (const auto& [type, index] : copy.GetRuleSequence()) {
        if (type == ZentuCmdIoConfig::DEFAULT_VALUE_RULE) {
            copy.GetDefaultValueRules()[index].func(cmd, container, ZentuCmdMetaData(),
                                                    copy.enum_map);
        } else {
            copy.GetContainerManipulatorRules()[index](container, copy.enum_map);
        }
    }
    EXPECT_EQ(g_calls, (Strings{"M0", "D0", "D1", "M1"}));
    EXPECT_EQ(copy.enum_map.size(), 139U);
}

}  // namespace
