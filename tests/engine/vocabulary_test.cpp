#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::EnumValue;

// Hosts write command and item kinds by these names and index the tables by enumerator.
TEST(Vocabulary, NamesThatHostsWriteStandAtTheirEnumerators) {
    const std::map<std::int64_t, std::string> commands = {
        {ToInt(Cmd::MODEL_INPUT), "MODEL_INPUT"},
        {ToInt(Cmd::DRESP), "DRESP"},
        {ToInt(Cmd::OPTIMIZE), "OPTIMIZE"},
        {ToInt(Cmd::CMD_PLACEHOLDER), "CMD_PLACEHOLDER"}};
    const std::map<std::int64_t, std::string> items = {
        {ToInt(CmdItem::ID_NAME), "ID_NAME"},
        {ToInt(CmdItem::GROUP), "GROUP"},
        {ToInt(CmdItem::ITER_MAX), "ITER_MAX"},
        {ToInt(CmdItem::PLACEHOLDER), "PLACEHOLDER"}};
    for (const auto& [index, name] : commands) {
        EXPECT_EQ(ZentuCmdDefs::CMD_NAMES.at(static_cast<std::size_t>(index)), name);
    }
    for (const auto& [index, name] : items) {
        EXPECT_EQ(ZentuCmdItemDefs::CMD_ITEM_NAMES.at(static_cast<std::size_t>(index)), name);
    }
    // Hosts keep the reference for the life of the library, so it must not be a copy.
    EXPECT_EQ(&ZentuCmdDefs::get_default_cmd_names(), &ZentuCmdDefs::CMD_NAMES);
    EXPECT_EQ(ZentuCmdItemDefs::MODIFY_NAME, "MODIFY");
    EXPECT_EQ(ZentuCmdItemDefs::ALL_NAME, "ALL");
    EXPECT_EQ(ZentuCmdItemDefs::VALUE_TYPE_NAMES[0], "vtmInteger");
    EXPECT_EQ(ZentuCmdItemDefs::VALUE_TYPE_NAMES[11], "vtmUnknown");
    // Its name deliberately differs from its kind's table name "CMD_PLACEHOLDER".
    EXPECT_EQ(ZentuCmdContainer::s_DefaultCmd.GetName(), "PLACEHOLDER");
    EXPECT_EQ(ToInt(ZentuCmdContainer::s_DefaultCmd.GetType()), ToInt(Cmd::CMD_PLACEHOLDER));
    EXPECT_TRUE(zentu_test::Identities(ZentuCmdContainer::s_DefaultCmd).empty());
}

// Every keyword reads back as its own enumerator, and synonyms share the value hosts compare with.
TEST(Vocabulary, KeywordMapRoundTripsEveryKeyword) {
    const ZentuCmdItemDefs::KeywordMap map = ZentuCmdItemDefs::create_enum_map();
    std::size_t count = 0;
#define ZENTU_TEST_KEYWORD(word, value)                               \
    EXPECT_EQ(ToInt(map.at(#word)), ToInt(EnumValue::word)) << #word; \
    ++count;
    ZENTU_CMD_ITEM_KEYWORDS(ZENTU_TEST_KEYWORD)
#undef ZENTU_TEST_KEYWORD
    EXPECT_EQ(map.size(), count);
    EXPECT_EQ(count, 139U);
    for (const auto& [synonym, keyword] :
         std::map<std::string, std::string>{{"COMBINE", "WEIGHTED_SUM"},
                                            {"TOPO_SENS", "TOPO_SENSITIVITY"},
                                            {"SEQ", "SEQUENTIAL"}}) {
        EXPECT_EQ(map.at(synonym), map.at(keyword)) << synonym;
    }
    EXPECT_EQ(ToInt(map.at("YES")), 89);
    EXPECT_EQ(ToInt(map.at("SEQUENTIAL")), 0);
    EXPECT_EQ(ToInt(ZentuCmdItemDefs::NO_ENUM_VALUE), -1);
}

}  // namespace
