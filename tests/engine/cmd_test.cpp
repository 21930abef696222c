// The vocabulary of kinds and keywords, and commands: adding, replacing, erasing, copying and
// moving items, the typed item forms, and the query helpers over commands and containers.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainer_Util.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmd_Util.h"
#include "engine_test_support.h"

namespace {

using zentu_test::CmdLine;
using zentu_test::FailureOf;
using zentu_test::Identities;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;
using Strings = std::vector<std::string>;

const KeywordMap& Keywords() {
    static const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    return keywords;
}

// The texts of the items of one kind, run together.
std::string Texts(const ZentuCmd& cmd, CmdItem kind) {
    std::string texts;
    for (const auto& item : cmd.GetItemRange(kind)) {
        texts += item->GetString();
    }
    return texts;
}

// Watches a fixed number of probes for destruction; the flags live as long as the watcher.
template <std::size_t N>
struct Watched {
    std::array<bool, N> destroyed{};
    std::unique_ptr<ProbeItem> Probe(std::size_t i, const std::string& text) {
        auto probe = std::make_unique<ProbeItem>("P" + std::to_string(i), text);
        probe->WatchDestruction(&destroyed[i]);
        return probe;
    }
};

// Hosts write kinds by these names, keep the name table by reference for the life of the library,
// and meet the placeholder command, whose name deliberately differs from its kind's.
TEST(Vocabulary, NamesThatHostsRelyOn) {
    EXPECT_EQ(CmdLine(ZentuCmd(Cmd::MODEL_INPUT)) + CmdLine(ZentuCmd(Cmd::OPTIMIZE)) +
                  CmdLine(ZentuCmd(Cmd::CMD_PLACEHOLDER)),
              "MODEL_INPUT@MODEL_INPUTOPTIMIZE@OPTIMIZECMD_PLACEHOLDER@CMD_PLACEHOLDER");
    EXPECT_EQ(&ZentuCmdDefs::get_default_cmd_names(), &ZentuCmdDefs::CMD_NAMES);
    EXPECT_EQ(ZentuCmdItemDefs::MODIFY_NAME + ZentuCmdItemDefs::ALL_NAME, "MODIFYALL");
    EXPECT_EQ(ZentuCmdItemDefs::VALUE_TYPE_NAMES[0] + ZentuCmdItemDefs::VALUE_TYPE_NAMES[11],
              "vtmIntegervtmUnknown");
    EXPECT_EQ(CmdLine(ZentuCmdContainer::s_DefaultCmd), "PLACEHOLDER@CMD_PLACEHOLDER");
}

// Every keyword reads back as its own enumerator, and synonyms share the value hosts compare with.
TEST(Vocabulary, KeywordMapRoundTripsEveryKeyword) {
    const KeywordMap& map = Keywords();
    std::size_t count = 0;
#define ZENTU_TEST_KEYWORD(word, value)                               \
    EXPECT_EQ(ToInt(map.at(#word)), ToInt(EnumValue::word)) << #word; \
    ++count;
    ZENTU_CMD_ITEM_KEYWORDS(ZENTU_TEST_KEYWORD)
#undef ZENTU_TEST_KEYWORD
    EXPECT_EQ(map.size(), count);
    EXPECT_EQ(count, 139U);
    for (const auto& [synonym, keyword] : {std::pair{"COMBINE", "WEIGHTED_SUM"},
                                           {"TOPO_SENS", "TOPO_SENSITIVITY"},
                                           {"SEQ", "SEQUENTIAL"}}) {
        EXPECT_EQ(map.at(synonym), map.at(keyword)) << synonym;
    }
    EXPECT_EQ(ToInt(map.at("YES")), 89);
    EXPECT_EQ(ToInt(map.at("SEQUENTIAL")), 0);
    EXPECT_EQ(ToInt(ZentuCmdItemDefs::NO_ENUM_VALUE), -1);
}

// A command is named after its kind unless given a name, and starts without items.
TEST(Cmd, ConstructionNamesTheCommand) {
    for (std::size_t kind = 0; kind < ZentuCmdDefs::CMD_KIND_COUNT; ++kind) {
        const ZentuCmd cmd(static_cast<Cmd>(kind));
        EXPECT_EQ(CmdLine(cmd),
                  ZentuCmdDefs::CMD_NAMES[kind] + "@" + ZentuCmdDefs::CMD_NAMES[kind]);
    }
    ZentuCmd cmd(Cmd::DRESP, "dv_Topo lower");
    EXPECT_EQ(CmdLine(cmd), "dv_Topo lower@DRESP");
    cmd.SetName(cmd.GetName());  // the argument aliases the name being assigned
    EXPECT_EQ(cmd.GetName(), "dv_Topo lower");
}

// Every adding form appends in call order, and items of every kind live side by side.
TEST(Cmd, EveryAddFormAppendsInCallOrder) {
    ZentuCmd all(Cmd::DV);
    std::string expected = "DV@DV";
    for (std::size_t kind = ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; kind-- > 0;) {
        all.AddStringItem(static_cast<CmdItem>(kind), "abc");
    }
    for (const std::string& name : ZentuCmdItemDefs::CMD_ITEM_NAMES) {
        expected += " " + name + ":" + name + "=ABC/string";
    }
    EXPECT_EQ(CmdLine(all), expected);

    ZentuCmd target(Cmd::GROUP_DEF);
    target.AddStringItem(CmdItem::ID_NAME, "t");
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::GROUP, "a");
    cmd.AddItem(CmdItem::GROUP, target);
    cmd.AddItem(CmdItem::GROUP, "own name", target);
    cmd.AddItem(CmdItem::GROUP, std::make_unique<ZentuCmdRawStringItem>("GROUP", "c"));
    cmd.AddStringItem(CmdItem::GROUP, "my Name", "x y");
    cmd.AddAutoItem(CmdItem::TYPE, " combine ", Keywords());
    cmd.AddAutoItem(CmdItem::TYPE, "weight", "0.5", KeywordMap());
    EXPECT_EQ(CmdLine(cmd),
              "DV@DV TYPE:TYPE=COMBINE/auto TYPE:weight=0.5/auto GROUP:GROUP=A/string "
              "GROUP:GROUP=T/ref->T GROUP:own name=T/ref->T GROUP:GROUP=c/raw "
              "GROUP:my Name=X Y/string");
    EXPECT_EQ(cmd.Item(CmdItem::GROUP, 1).GetReference(), &target);
    EXPECT_EQ(ToInt(cmd.Item(CmdItem::TYPE, 0).GetEnum()), ToInt(EnumValue::COMBINE));
    EXPECT_EQ(cmd.Item(CmdItem::TYPE, 1).GetReal(), 0.5);
}

// A prepared item is kept itself (not copied) and owned; a null one is ignored.
TEST(Cmd, AddKeepsThePreparedItemAndIgnoresANullOne) {
    Watched<1> watched;
    {
        ZentuCmd cmd(Cmd::DV);
        auto probe = watched.Probe(0, "text");
        const ZentuCmdItem* handedIn = probe.get();
        cmd.AddItem(CmdItem::VALUE, std::move(probe));
        cmd.AddItem(CmdItem::TYPE, nullptr);
        // Counted before anything reads the items, since a stored null would crash the reading.
        EXPECT_EQ(Identities(cmd), std::vector<const ZentuCmdItem*>{handedIn});
        EXPECT_FALSE(watched.destroyed[0]);
    }
    EXPECT_TRUE(watched.destroyed[0]);
}

// Replacing at a held position swaps exactly that item; elsewhere the new item is deleted.
TEST(Cmd, ReplaceItemInPlaceOrDeleteTheNewItem) {
    for (std::size_t index : {std::size_t{1}, std::size_t{3}, SIZE_MAX}) {
        SCOPED_TRACE(index);
        Watched<4> watched;
        ZentuCmd cmd(Cmd::DV);
        for (std::size_t i = 0; i < 3; ++i) {
            cmd.AddItem(CmdItem::GROUP, watched.Probe(i, "old"));
        }
        std::vector<const ZentuCmdItem*> expected = Identities(cmd);
        auto replacement = watched.Probe(3, "new");
        std::array<bool, 4> destroyed = {false, false, false, true};
        if (index < expected.size()) {
            expected[index] = replacement.get();
            destroyed = {false, true, false, false};
        }
        cmd.ReplaceItem(CmdItem::GROUP, std::move(replacement), index);
        EXPECT_EQ(Identities(cmd), expected);
        EXPECT_EQ(watched.destroyed, destroyed);
    }
}

enum class EraseForm { kPosition, kRange, kAll };

// Erasing deletes exactly the chosen items of one kind and keeps the rest in order.
TEST(Cmd, EraseDeletesExactlyTheChosenItems) {
    const std::tuple<EraseForm, std::size_t, std::size_t, const char*> cases[] = {
        {EraseForm::kPosition, 1, 2, "acde"}, {EraseForm::kRange, 1, 3, "ade"},
        {EraseForm::kRange, 0, 1, "bcde"},    {EraseForm::kRange, 3, 5, "abc"},
        {EraseForm::kRange, 2, 2, "abcde"},   {EraseForm::kAll, 0, 5, ""}};
    for (const auto& [form, first, last, remaining] : cases) {
        SCOPED_TRACE(testing::Message() << ToInt(form) << ": " << first << ".." << last);
        Watched<5> watched;
        ZentuCmd cmd(Cmd::DV);
        cmd.AddStringItem(CmdItem::TYPE, "untouched");
        for (std::size_t i = 0; i < 5; ++i) {
            cmd.AddItem(CmdItem::GROUP,
                        watched.Probe(i, std::string(1, static_cast<char>('a' + i))));
        }
        const auto begin = static_cast<const ZentuCmd&>(cmd).begin(CmdItem::GROUP);
        if (form == EraseForm::kPosition) {
            cmd.Erase(CmdItem::GROUP, begin + static_cast<std::ptrdiff_t>(first));
        } else if (form == EraseForm::kRange) {
            cmd.Erase(CmdItem::GROUP, begin + static_cast<std::ptrdiff_t>(first),
                      begin + static_cast<std::ptrdiff_t>(last));
        } else {
            cmd.EraseAll(CmdItem::GROUP);
        }
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(watched.destroyed[i], i >= first && i < last) << i;
        }
        EXPECT_EQ(Texts(cmd, CmdItem::GROUP), remaining);
        EXPECT_EQ(Texts(cmd, CmdItem::TYPE), "UNTOUCHED");
    }
}

// Copying items replaces every kind (even those the source lacks) with independent clones.
TEST(Cmd, CopyItemsFromClonesEveryKind) {
    ZentuCmd target(Cmd::GROUP_DEF, "TARGET");
    target.AddStringItem(CmdItem::ID_NAME, "g1");
    auto source = std::make_unique<ZentuCmd>(Cmd::DRESP, "SOURCE");
    source->AddStringItem(CmdItem::ID_NAME, "src");
    source->AddStringItem(CmdItem::GROUP, "a");
    source->AddStringItem(CmdItem::GROUP, "b");
    source->AddItem(CmdItem::TARGET, target);
    source->AddItem(CmdItem::PLACEHOLDER, std::make_unique<ZentuCmdRawStringItem>("raw", "p"));
    const std::vector<const ZentuCmdItem*> sourceItems = Identities(*source);
    Watched<3> watched;
    ZentuCmd copy(Cmd::OBJ_FUNC, "COPY");
    copy.AddItem(CmdItem::GROUP, watched.Probe(0, "x"));
    copy.AddItem(CmdItem::DV, watched.Probe(1, "y"));
    copy.AddItem(CmdItem::ID_NAME, watched.Probe(2, "z"));
    copy.CopyItemsFrom(*source);
    copy.CopyItemsFrom(copy);
    EXPECT_EQ(watched.destroyed, (std::array<bool, 3>{true, true, true}));
    const std::string described =
        "COPY@OBJ_FUNC ID_NAME:ID_NAME=SRC/string GROUP:GROUP=A/string "
        "GROUP:GROUP=B/string TARGET:TARGET=G1/ref->G1 "
        "PLACEHOLDER:raw=p/raw";
    EXPECT_EQ(CmdLine(copy), described);
    EXPECT_EQ(copy.Item(CmdItem::TARGET, 0).GetReference(), &target);
    EXPECT_EQ(Identities(*source), sourceItems);
    source.reset();
    EXPECT_EQ(CmdLine(copy), described);
    copy.CopyItemsFrom(ZentuCmd(Cmd::DV));
    EXPECT_EQ(CmdLine(copy), "COPY@OBJ_FUNC");
}

// Moving takes name, kind and the very items, and leaves the source nameless and empty.
TEST(Cmd, MoveTakesEverything) {
    Watched<1> watched;
    ZentuCmd source(Cmd::DRESP, "SOURCE");
    source.AddStringItem(CmdItem::ID_NAME, "d1");
    source.AddStringItem(CmdItem::PLACEHOLDER, "p");
    const std::vector<const ZentuCmdItem*> items = Identities(source);
    ZentuCmd constructed(std::move(source));
    ZentuCmd assigned(Cmd::DV, "DESTINATION");
    assigned.AddItem(CmdItem::GROUP, watched.Probe(0, "old"));
    assigned = std::move(constructed);
    ZentuCmd& alias = assigned;
    assigned = std::move(alias);
    EXPECT_TRUE(watched.destroyed[0]);
    EXPECT_EQ(CmdLine(assigned),
              "SOURCE@DRESP ID_NAME:ID_NAME=D1/string PLACEHOLDER:PLACEHOLDER=P/string");
    EXPECT_EQ(Identities(assigned), items);
    // NOLINTNEXTLINE(bugprone-use-after-move)
    for (const ZentuCmd* emptied : {&source, &constructed}) {
        EXPECT_EQ(emptied->GetName(), "");
        EXPECT_TRUE(Identities(*emptied).empty());
    }
}

// Views are the live storage, and HasItem bounds the positions exactly.
TEST(Cmd, ViewsAreTheLiveStorageInOrder) {
    ZentuCmd cmd(Cmd::DV);
    const ZentuCmd::ConstItemSequence& view = cmd.Items(CmdItem::GROUP);
    cmd.AddStringItem(CmdItem::GROUP, "a");
    cmd.AddStringItem(CmdItem::GROUP, "b");
    EXPECT_EQ(&cmd.Items(CmdItem::GROUP), &view);
    EXPECT_EQ(Identities(cmd), (std::vector<const ZentuCmdItem*>{view[0].get(), view[1].get()}));
    EXPECT_EQ(std::distance(cmd.begin(CmdItem::GROUP), cmd.end(CmdItem::GROUP)), 2);
    EXPECT_TRUE(cmd.HasItem(CmdItem::GROUP, 1));
    EXPECT_FALSE(cmd.HasItem(CmdItem::GROUP, 2));
    EXPECT_FALSE(cmd.HasItem(CmdItem::ELEMENT_GROUP, 0));
    cmd.EraseAll(CmdItem::GROUP);
    EXPECT_TRUE(view.empty());
}

// Typed replacement builds the class the description or data type asks for, in place; past the
// end nothing is built (a refusable text shows the factory is never asked), and a refused text
// passes the item's own refusal on and leaves the old item.
TEST(Cmd, TypedReplaceBuildsTheClassAskedInPlace) {
    ZentuCmd cmd(Cmd::DV);
    for (const char* text : {"A", "B", "C"}) {
        cmd.AddStringItem(CmdItem::VALUE, text);
    }
    const std::vector<const ZentuCmdItem*> before = Identities(cmd);
    const ZentuCmdItemMetaData integer(CmdItem::VALUE, DataType::INTEGER, "", "", 1);
    cmd.ReplaceItem(integer, "N", "abc", Keywords(), 3);
    cmd.ReplaceItem(CmdItem::TYPE, "N", "abc", Keywords(), 0, DataType::INTEGER);
    cmd.ReplaceItem(CmdItem::VALUE, "abc", Keywords(), 3, DataType::INTEGER);
    EXPECT_EQ(FailureOf([&] {
                  cmd.ReplaceItem(CmdItem::VALUE, "2x", Keywords(), 1, DataType::REAL);
              }).GetMessage(),
              "The item VALUE has an invalid type. '2x' must be a scalar value.");
    EXPECT_EQ(Identities(cmd), before);
    cmd.ReplaceItem(integer, "N", " 12 ", Keywords(), 1);
    EXPECT_EQ(Identities(cmd)[0], before[0]);
    EXPECT_EQ(Identities(cmd)[2], before[2]);
    cmd.ReplaceItem(ZentuCmdItemMetaData(CmdItem::VALUE, {{"NODAL", 3}}, ""), "K", "n", Keywords(),
                    2);
    EXPECT_EQ(CmdLine(cmd), "DV@DV VALUE:VALUE=A/string VALUE:N=12/int VALUE:K=N/enum");
    EXPECT_EQ(cmd.Item(CmdItem::VALUE, 2).GetInteger(), 3);
    cmd.ReplaceItem(CmdItem::VALUE, "S", "x", Keywords(), 0, DataType::STRING);
    cmd.ReplaceItem(CmdItem::VALUE, "R", "combine", Keywords(), 1, DataType::REFERENCE);
    cmd.ReplaceItem(CmdItem::VALUE, "E", "", Keywords(), 2, DataType::ENUM);
    EXPECT_EQ(CmdLine(cmd), "DV@DV VALUE:S=X/string VALUE:R=COMBINE/auto VALUE:E=/enum");
    EXPECT_EQ(ToInt(cmd.Item(CmdItem::VALUE, 1).GetEnum()), ToInt(EnumValue::COMBINE));
    // The value-only form keeps the replaced item's name.
    cmd.ReplaceItem(CmdItem::VALUE, "y", Keywords(), 1, DataType::AUTO);
    cmd.ReplaceItem(CmdItem::VALUE, "z", Keywords(), 0, DataType::STRING);
    EXPECT_EQ(CmdLine(cmd), "DV@DV VALUE:S=Z/string VALUE:R=Y/auto VALUE:E=/enum");
}

// The keyword test reads the first item of the kind only, and -1 never counts as a match.
TEST(CmdUtil, EnumTestLooksAtTheFirstItemOnly) {
    const std::tuple<Strings, EnumValue, bool> cases[] = {
        {{"COMBINE"}, EnumValue::COMBINE, true},
        {{"MERGE"}, EnumValue::MAX, false},
        {{"s:COMBINE", "COMBINE"}, EnumValue::COMBINE, false},
        {{"LINEAR", "COMBINE"}, EnumValue::COMBINE, false},
        {{}, EnumValue::COMBINE, false},
        {{"s:TEXT"}, ZentuCmdItemDefs::NO_ENUM_VALUE, false},
    };
    for (const auto& [texts, value, expected] : cases) {
        ZentuCmdContainer container;
        ZentuCmd& cmd = container.CreateCommand(Cmd::OPERATOR);
        for (const std::string& text : texts) {
            if (text.rfind("s:", 0) == 0) {
                cmd.AddStringItem(CmdItem::TYPE, text.substr(2));
            } else {
                cmd.AddAutoItem(CmdItem::TYPE, text, Keywords());
            }
        }
        SCOPED_TRACE(testing::PrintToString(texts));
        EXPECT_EQ(ZentuCmd_Util::has_command_enum_with_value(cmd, CmdItem::TYPE, value), expected);
        EXPECT_EQ(ZentuCmdContainer_Util::has_container_enum_with_value(container, Cmd::OPERATOR,
                                                                        CmdItem::TYPE, value),
                  expected);
        EXPECT_FALSE(ZentuCmdContainer_Util::has_container_enum_with_value(container, Cmd::DRESP,
                                                                           CmdItem::TYPE, value));
    }
    // Any command of the kind may match, not only the first.
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::OPERATOR).AddAutoItem(CmdItem::TYPE, "LINEAR", Keywords());
    container.CreateCommand(Cmd::OPERATOR).AddAutoItem(CmdItem::TYPE, "COMBINE", Keywords());
    EXPECT_TRUE(ZentuCmdContainer_Util::has_container_enum_with_value(
        container, Cmd::OPERATOR, CmdItem::TYPE, EnumValue::COMBINE));
}

// The text test compares the item at the given position exactly.
TEST(CmdUtil, TextTestComparesTheItemAtTheIndexExactly) {
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::ID_NAME, "d1");
    cmd.AddStringItem(CmdItem::ID_NAME, "d2");
    const std::tuple<CmdItem, const char*, std::size_t, bool> cases[] = {
        {CmdItem::ID_NAME, "D1", 0, true},  {CmdItem::ID_NAME, "D2", 1, true},
        {CmdItem::ID_NAME, "d1", 0, false}, {CmdItem::ID_NAME, "D1 ", 0, false},
        {CmdItem::ID_NAME, "D2", 0, false}, {CmdItem::ID_NAME, "D1", 2, false},
        {CmdItem::TYPE, "", 0, false}};
    for (const auto& [kind, text, index, expected] : cases) {
        EXPECT_EQ(ZentuCmd_Util::has_command_item_with_value(cmd, kind, text, index), expected)
            << text << " at " << index;
    }
}

// The reference test finds the very target in any position; an empty entry is skipped.
TEST(CmdUtil, ReferenceTestFindsTheTargetObject) {
    const ZentuCmd target(Cmd::GROUP_DEF);
    const ZentuCmd twin(Cmd::GROUP_DEF);
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::GROUP, "G1");
    cmd.AddItem(CmdItem::GROUP, target);
    const auto has = [&](CmdItem kind, const ZentuCmd* wanted) {
        return ZentuCmd_Util::has_command_reference_to_target(cmd, kind, wanted);
    };
    EXPECT_TRUE(has(CmdItem::GROUP, &target));
    EXPECT_FALSE(has(CmdItem::GROUP, &twin));
    EXPECT_FALSE(has(CmdItem::ELEMENT_GROUP, &target));
    EXPECT_TRUE(has(CmdItem::GROUP, nullptr));  // items that refer to nothing answer null
    EXPECT_FALSE(has(CmdItem::ELEMENT_GROUP, nullptr));
    cmd.begin(CmdItem::GROUP)->reset();
    EXPECT_FALSE(has(CmdItem::GROUP, nullptr));
    EXPECT_TRUE(has(CmdItem::GROUP, &target));
}

// Replacing every item of a kind leaves one automatic item and the other kinds alone.
TEST(CmdUtil, ReplaceItemsLeavesOneAutomaticItem) {
    for (std::size_t existing : {0U, 3U}) {
        ZentuCmd cmd(Cmd::DV);
        for (std::size_t i = 0; i < existing; ++i) {
            cmd.AddStringItem(CmdItem::GROUP, "OLD");
        }
        cmd.AddStringItem(CmdItem::TYPE, "kept");
        ZentuCmd_Util::replace_items(cmd, CmdItem::GROUP, "Members", " combine ", Keywords());
        EXPECT_EQ(CmdLine(cmd), "DV@DV TYPE:TYPE=KEPT/string GROUP:Members=COMBINE/auto");
        EXPECT_EQ(ToInt(cmd.Item(CmdItem::GROUP, 0).GetEnum()), ToInt(EnumValue::COMBINE));
    }
}

}  // namespace
