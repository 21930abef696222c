// The vocabulary of kinds and keywords, and commands: adding, replacing, erasing, copying and
// moving items, the typed item forms, and the query helpers over commands and containers.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <tuple>

#include "ZentuCmdContainer_Util.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmd_Util.h"
#include "engine_test_support.h"
#include "zentu_test_cases.h"

namespace {

using zentu_test::CmdLine;
using zentu_test::FailureOf;
using zentu_test::Identities;
using zentu_test::Keywords;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;

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
// and meet the placeholder command, whose name deliberately differs from its kind's. A command is
// named after its kind unless given a name, and starts without items.
TEST(Vocabulary, NamesThatHostsRelyOn) {
    EXPECT_EQ(CmdLine(ZentuCmd(Cmd::MODEL_INPUT)) + CmdLine(ZentuCmd(Cmd::OPTIMIZE)) +
                  CmdLine(ZentuCmd(Cmd::CMD_PLACEHOLDER)),
              "MODEL_INPUT@MODEL_INPUTOPTIMIZE@OPTIMIZECMD_PLACEHOLDER@CMD_PLACEHOLDER");
    EXPECT_EQ(&ZentuCmdDefs::get_default_cmd_names(), &ZentuCmdDefs::CMD_NAMES);
    EXPECT_EQ(ZentuCmdItemDefs::MODIFY_NAME + ZentuCmdItemDefs::ALL_NAME, "MODIFYALL");
    EXPECT_EQ(ZentuCmdItemDefs::VALUE_TYPE_NAMES[0] + ZentuCmdItemDefs::VALUE_TYPE_NAMES[11],
              "vtmIntegervtmUnknown");
    EXPECT_EQ(CmdLine(ZentuCmdContainer::s_DefaultCmd), "PLACEHOLDER@CMD_PLACEHOLDER");
    ZentuCmd cmd(Cmd::DRESP, "dv_Topo lower");
    EXPECT_EQ(CmdLine(cmd), "dv_Topo lower@DRESP");
    cmd.SetName(cmd.GetName());  // the argument aliases the name being assigned
    EXPECT_EQ(cmd.GetName(), "dv_Topo lower");
    // Hosts compare keyword values, synonyms included, and -1 stands for no keyword.
    const KeywordMap& map = Keywords();
    EXPECT_EQ(map.size(), 139U);
    for (const auto& [synonym, keyword] : {std::pair{"COMBINE", "WEIGHTED_SUM"},
                                           {"TOPO_SENS", "TOPO_SENSITIVITY"},
                                           {"SEQ", "SEQUENTIAL"}}) {
        EXPECT_EQ(map.at(synonym), map.at(keyword)) << synonym;
    }
    EXPECT_EQ(ToInt(map.at("YES")), 89);
    EXPECT_EQ(ToInt(map.at("SEQUENTIAL")), 0);
    EXPECT_EQ(ToInt(map.at("COMBINE")), ToInt(EnumValue::COMBINE));
    EXPECT_EQ(ToInt(ZentuCmdItemDefs::NO_ENUM_VALUE), -1);
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

// A prepared item is kept itself (not copied) and owned, a null one is ignored, and the views
// are the live storage, whose positions HasItem bounds exactly.
TEST(Cmd, KeepsThePreparedItemInTheLiveStorage) {
    Watched<1> watched;
    {
        ZentuCmd cmd(Cmd::DV);
        const ZentuCmd::ConstItemSequence& view = cmd.Items(CmdItem::GROUP);
        auto probe = watched.Probe(0, "text");
        const ZentuCmdItem* handedIn = probe.get();
        cmd.AddItem(CmdItem::VALUE, std::move(probe));
        cmd.AddItem(CmdItem::TYPE, nullptr);
        // Counted before anything reads the items, since a stored null would crash the reading.
        EXPECT_EQ(Identities(cmd), std::vector<const ZentuCmdItem*>{handedIn});
        cmd.AddStringItem(CmdItem::GROUP, "a");
        cmd.AddStringItem(CmdItem::GROUP, "b");
        EXPECT_EQ(&cmd.Items(CmdItem::GROUP), &view);
        EXPECT_EQ(Identities(cmd),
                  (std::vector<const ZentuCmdItem*>{view[0].get(), view[1].get(), handedIn}));
        EXPECT_EQ(std::distance(cmd.begin(CmdItem::GROUP), cmd.end(CmdItem::GROUP)), 2);
        EXPECT_TRUE(cmd.HasItem(CmdItem::GROUP, 1));
        EXPECT_FALSE(cmd.HasItem(CmdItem::GROUP, 2));
        EXPECT_FALSE(cmd.HasItem(CmdItem::ELEMENT_GROUP, 0));
        cmd.EraseAll(CmdItem::GROUP);
        EXPECT_TRUE(view.empty());
        EXPECT_FALSE(watched.destroyed[0]);
    }
    EXPECT_TRUE(watched.destroyed[0]);
}

// Replacing at a held position swaps exactly that item for the new one and elsewhere deletes the
// new item; erasing deletes exactly the chosen items of one kind. The rest stay, in order.
TEST(Cmd, ReplaceAndEraseTouchExactlyTheChosenItems) {
    for (const auto& c : zentu_test::DataCases("engine/cases/item_edits.txt", 4)) {
        SCOPED_TRACE(c.where);
        const std::string& edit = c.fields[0];
        const std::size_t first = std::stoull(c.fields[1]);
        const std::string remaining = c.fields[3] == "-" ? "" : c.fields[3];
        Watched<6> watched;
        ZentuCmd cmd(Cmd::DV);
        cmd.AddStringItem(CmdItem::TYPE, "untouched");
        for (std::size_t i = 0; i < 5; ++i) {
            cmd.AddItem(CmdItem::GROUP, watched.Probe(i, "old"));
        }
        auto replacement = watched.Probe(5, "new");
        std::vector<const ZentuCmdItem*> items = Identities(cmd);  // the items "TabcdeN"
        items.push_back(replacement.get());
        const auto at = [&cmd](std::size_t index) {
            return static_cast<const ZentuCmd&>(cmd).begin(CmdItem::GROUP) +
                   static_cast<std::ptrdiff_t>(index);
        };
        if (edit == "replace") {
            cmd.ReplaceItem(CmdItem::GROUP, std::move(replacement), first);
        } else if (edit == "erase") {
            cmd.Erase(CmdItem::GROUP, at(first));
        } else if (edit == "erase range") {
            cmd.Erase(CmdItem::GROUP, at(first), at(std::stoull(c.fields[2])));
        } else {
            cmd.EraseAll(CmdItem::GROUP);
        }
        replacement.reset();  // a new item that the edit did not take
        std::vector<const ZentuCmdItem*> expected;
        for (char letter : "T" + remaining) {
            expected.push_back(items[std::string("TabcdeN").find(letter)]);
        }
        EXPECT_EQ(Identities(cmd), expected);
        for (std::size_t i = 0; i < 6; ++i) {
            EXPECT_EQ(watched.destroyed[i], remaining.find("abcdeN"[i]) == std::string::npos) << i;
        }
    }
}

// Copying items replaces every kind (even those the source lacks) with independent clones;
// moving takes name, kind and the very items, and leaves the source nameless and empty.
TEST(Cmd, CopyItemsFromClonesEveryKindAndMovingTakesEverything) {
    ZentuCmd target(Cmd::GROUP_DEF, "TARGET");
    target.AddStringItem(CmdItem::ID_NAME, "g1");
    auto source = std::make_unique<ZentuCmd>(Cmd::DRESP, "SOURCE");
    source->AddStringItem(CmdItem::ID_NAME, "src");
    source->AddStringItem(CmdItem::GROUP, "a");
    source->AddStringItem(CmdItem::GROUP, "b");
    source->AddItem(CmdItem::TARGET, target);
    source->AddItem(CmdItem::PLACEHOLDER, std::make_unique<ZentuCmdRawStringItem>("raw", "p"));
    const std::vector<const ZentuCmdItem*> sourceItems = Identities(*source);
    Watched<4> watched;
    ZentuCmd copy(Cmd::OBJ_FUNC, "COPY");
    copy.AddItem(CmdItem::GROUP, watched.Probe(0, "x"));
    copy.AddItem(CmdItem::DV, watched.Probe(1, "y"));
    copy.AddItem(CmdItem::ID_NAME, watched.Probe(2, "z"));
    copy.CopyItemsFrom(*source);
    copy.CopyItemsFrom(copy);
    EXPECT_EQ(watched.destroyed, (std::array<bool, 4>{true, true, true, false}));
    const std::string described =
        "COPY@OBJ_FUNC ID_NAME:ID_NAME=SRC/string GROUP:GROUP=A/string "
        "GROUP:GROUP=B/string TARGET:TARGET=G1/ref->G1 "
        "PLACEHOLDER:raw=p/raw";
    EXPECT_EQ(CmdLine(copy), described);
    EXPECT_EQ(copy.Item(CmdItem::TARGET, 0).GetReference(), &target);
    EXPECT_EQ(Identities(*source), sourceItems);
    source.reset();
    EXPECT_EQ(CmdLine(copy), described);

    const std::vector<const ZentuCmdItem*> items = Identities(copy);
    const std::uint64_t kinds = copy.KindsWithSequences();
    ZentuCmd constructed(std::move(copy));
    ZentuCmd assigned(Cmd::DV, "DESTINATION");
    assigned.AddItem(CmdItem::GROUP, watched.Probe(3, "old"));
    assigned = std::move(constructed);
    ZentuCmd& alias = assigned;
    assigned = std::move(alias);
    EXPECT_TRUE(watched.destroyed[3]);
    EXPECT_EQ(CmdLine(assigned), described);
    EXPECT_EQ(Identities(assigned), items);
    EXPECT_EQ(assigned.KindsWithSequences(), kinds);
    // NOLINTNEXTLINE(bugprone-use-after-move)
    for (const ZentuCmd* emptied : {&copy, &constructed}) {
        EXPECT_EQ(emptied->KindsWithSequences(), 0U);
        EXPECT_EQ(emptied->GetName(), "");
        EXPECT_TRUE(Identities(*emptied).empty());
    }
    assigned.CopyItemsFrom(ZentuCmd(Cmd::DV));
    EXPECT_EQ(CmdLine(assigned), "COPY@OBJ_FUNC");
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
    // Replacing every item of a kind, held or not, leaves one automatic item and the other kinds.
    cmd.AddStringItem(CmdItem::TYPE, "kept");
    ZentuCmd_Util::replace_items(cmd, CmdItem::VALUE, "Members", " combine ", Keywords());
    ZentuCmd_Util::replace_items(cmd, CmdItem::GROUP, "Group", " combine ", Keywords());
    EXPECT_EQ(CmdLine(cmd),
              "DV@DV TYPE:TYPE=KEPT/string GROUP:Group=COMBINE/auto "
              "VALUE:Members=COMBINE/auto");
    EXPECT_EQ(ToInt(cmd.Item(CmdItem::GROUP, 0).GetEnum()), ToInt(EnumValue::COMBINE));
    EXPECT_EQ(ToInt(cmd.Item(CmdItem::VALUE, 0).GetEnum()), ToInt(EnumValue::COMBINE));
}

// The keyword test reads the first item of the kind only, and -1 never counts as a match.
TEST(CmdUtil, EnumTestLooksAtTheFirstItemOnly) {
    for (const auto& c : zentu_test::DataCases("engine/cases/enum_tests.txt", 3)) {
        SCOPED_TRACE(c.where);
        const EnumValue value =
            c.fields[1] == "-1" ? ZentuCmdItemDefs::NO_ENUM_VALUE : Keywords().at(c.fields[1]);
        const bool expected = c.fields[2] == "yes";
        ZentuCmdContainer container;
        ZentuCmd& cmd = container.CreateCommand(Cmd::OPERATOR);
        for (const std::string& text : zentu_test::FieldLines(c.fields[0])) {
            if (text.rfind("s:", 0) == 0) {
                cmd.AddStringItem(CmdItem::TYPE, text.substr(2));
            } else {
                cmd.AddAutoItem(CmdItem::TYPE, text, Keywords());
            }
        }
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

// The text test compares the item at the given position exactly; the reference test finds the
// very target in any position, and an empty entry is skipped.
TEST(CmdUtil, TextAndReferenceTestsLookAtTheItemsExactly) {
    const ZentuCmd target(Cmd::GROUP_DEF);
    const ZentuCmd twin(Cmd::GROUP_DEF);
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::ID_NAME, "d1");
    cmd.AddStringItem(CmdItem::ID_NAME, "d2");
    cmd.AddStringItem(CmdItem::GROUP, "G1");
    cmd.AddItem(CmdItem::GROUP, target);
    const std::tuple<CmdItem, const char*, std::size_t, bool> cases[] = {
        {CmdItem::ID_NAME, "D1", 0, true},  {CmdItem::ID_NAME, "D2", 1, true},
        {CmdItem::ID_NAME, "d1", 0, false}, {CmdItem::ID_NAME, "D1 ", 0, false},
        {CmdItem::ID_NAME, "D2", 0, false}, {CmdItem::ID_NAME, "D1", 2, false},
        {CmdItem::TYPE, "", 0, false}};
    for (const auto& [kind, text, index, expected] : cases) {
        EXPECT_EQ(ZentuCmd_Util::has_command_item_with_value(cmd, kind, text, index), expected)
            << text << " at " << index;
    }
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

}  // namespace
