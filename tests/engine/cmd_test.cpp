#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdStringItem.h"
#include "engine_test_support.h"

namespace {

using zentu_test::Attach;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;

std::vector<CmdItem> AllItemKinds() {
    std::vector<CmdItem> kinds;
    for (std::size_t i = 0; i < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++i) {
        kinds.push_back(static_cast<CmdItem>(i));
    }
    return kinds;
}

std::vector<Cmd> AllCommandKinds() {
    std::vector<Cmd> kinds;
    for (std::size_t i = 0; i < ZentuCmdDefs::CMD_KIND_COUNT; ++i) {
        kinds.push_back(static_cast<Cmd>(i));
    }
    return kinds;
}

std::vector<std::string> Texts(const ZentuCmd& cmd, CmdItem kind) {
    std::vector<std::string> texts;
    for (const auto& item : cmd.GetItemRange(kind)) {
        texts.push_back(item->GetString());
    }
    return texts;
}

std::vector<const ZentuCmdItem*> Addresses(const ZentuCmd& cmd, CmdItem kind) {
    std::vector<const ZentuCmdItem*> addresses;
    for (const auto& item : cmd.GetItemRange(kind)) {
        addresses.push_back(item.get());
    }
    return addresses;
}

std::size_t TotalItems(const ZentuCmd& cmd) {
    std::size_t total = 0;
    for (CmdItem kind : AllItemKinds()) {
        total += cmd.Items(kind).size();
    }
    return total;
}

void ExpectNoItems(const ZentuCmd& cmd) {
    for (CmdItem kind : AllItemKinds()) {
        EXPECT_FALSE(cmd.HasItem(kind, 0)) << "item kind " << ToInt(kind);
        EXPECT_TRUE(cmd.Items(kind).empty()) << "item kind " << ToInt(kind);
        EXPECT_EQ(cmd.begin(kind), cmd.end(kind)) << "item kind " << ToInt(kind);
    }
}

// Watches a fixed number of probes for destruction; the flags live as long as the fixture.
template <std::size_t N>
struct Watched {
    std::array<bool, N> destroyed{};

    std::unique_ptr<ProbeItem> Probe(std::size_t i, const std::string& text) {
        auto probe = std::make_unique<ProbeItem>("P" + std::to_string(i), text);
        probe->WatchDestruction(&destroyed[i]);
        return probe;
    }
};

TEST(CmdConstruction, NamesTheCommandAfterItsKindWithoutItems) {
    for (Cmd kind : AllCommandKinds()) {
        SCOPED_TRACE(ToInt(kind));
        const ZentuCmd cmd(kind);
        EXPECT_EQ(cmd.GetName(), ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)]);
        EXPECT_EQ(ToInt(cmd.GetType()), ToInt(kind));
        ExpectNoItems(cmd);
    }
}

TEST(CmdConstruction, KeepsAGivenNameAsIs) {
    const ZentuCmd named(Cmd::DRESP, "X");
    EXPECT_EQ(named.GetName(), "X");
    EXPECT_EQ(ToInt(named.GetType()), ToInt(Cmd::DRESP));
    EXPECT_EQ(ZentuCmd(Cmd::DV, "dv_Topo lower").GetName(), "dv_Topo lower");
    EXPECT_EQ(ZentuCmd(Cmd::DV, "").GetName(), "");
}

TEST(CmdAddStringItem, StoresUpperCaseTextNamedAfterItsKindInItsKindOnly) {
    for (CmdItem kind : AllItemKinds()) {
        SCOPED_TRACE(ToInt(kind));
        ZentuCmd cmd(Cmd::DV);
        cmd.AddStringItem(kind, "abc");
        ASSERT_EQ(TotalItems(cmd), 1U);
        ASSERT_TRUE(cmd.HasItem(kind, 0));
        const ZentuCmdItem& item = cmd.Item(kind, 0);
        EXPECT_NE(dynamic_cast<const ZentuCmdStringItem*>(&item), nullptr);
        EXPECT_EQ(item.GetName(), ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(kind)]);
        EXPECT_EQ(item.GetString(), "ABC");
    }
}

TEST(CmdAddStringItem, KeepsAGivenNameAsIs) {
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::TYPE, "my Type", "x y");
    EXPECT_EQ(cmd.Item(CmdItem::TYPE, 0).GetName(), "my Type");
    EXPECT_EQ(cmd.Item(CmdItem::TYPE, 0).GetString(), "X Y");
}

TEST(CmdAddItem, ReferenceFormsReferToTheTarget) {
    ZentuCmd target(Cmd::GROUP_DEF);
    target.AddStringItem(CmdItem::ID_NAME, "g1");
    ZentuCmd cmd(Cmd::DV);
    cmd.AddItem(CmdItem::GROUP, target);
    cmd.AddItem(CmdItem::GROUP, "own name", target);

    ASSERT_EQ(cmd.Items(CmdItem::GROUP).size(), 2U);
    EXPECT_EQ(cmd.Item(CmdItem::GROUP, 0).GetName(), "GROUP");
    EXPECT_EQ(cmd.Item(CmdItem::GROUP, 1).GetName(), "own name");
    for (std::size_t i = 0; i < 2; ++i) {
        const ZentuCmdItem& item = cmd.Item(CmdItem::GROUP, i);
        EXPECT_NE(dynamic_cast<const ZentuCmdReferenceItem*>(&item), nullptr);
        EXPECT_EQ(item.GetReference(), &target);
        EXPECT_EQ(item.GetString(), "G1");
    }
    EXPECT_EQ(TotalItems(cmd), 2U);
}

TEST(CmdAddItem, TakesOwnershipOfAPreparedItem) {
    bool destroyed = false;
    {
        ZentuCmd cmd(Cmd::DV);
        auto probe = std::make_unique<ProbeItem>("P", "text");
        probe->WatchDestruction(&destroyed);
        const ZentuCmdItem* handedIn = probe.get();
        cmd.AddItem(CmdItem::VALUE, std::move(probe));
        ASSERT_TRUE(cmd.HasItem(CmdItem::VALUE, 0));
        EXPECT_EQ(&cmd.Item(CmdItem::VALUE, 0), handedIn);
        EXPECT_FALSE(destroyed);
    }
    EXPECT_TRUE(destroyed);
}

TEST(CmdAddItem, NullPointerAddsNothing) {
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::VALUE, "kept");
    cmd.AddItem(CmdItem::VALUE, std::unique_ptr<ZentuCmdItem>());
    cmd.AddItem(CmdItem::TYPE, nullptr);
    // Counted before anything reads the items, since a stored null would crash the reading.
    ASSERT_EQ(TotalItems(cmd), 1U);
    EXPECT_FALSE(cmd.HasItem(CmdItem::TYPE, 0));
    EXPECT_EQ(Texts(cmd, CmdItem::VALUE), std::vector<std::string>{"KEPT"});
}

TEST(CmdAddItem, EveryFormAppendsInCallOrder) {
    ZentuCmd target(Cmd::GROUP_DEF);
    target.AddStringItem(CmdItem::ID_NAME, "t");
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::GROUP, "a");
    cmd.AddItem(CmdItem::GROUP, target);
    cmd.AddItem(CmdItem::GROUP, std::make_unique<ZentuCmdRawStringItem>("GROUP", "c"));
    cmd.AddStringItem(CmdItem::GROUP, "GROUP", "d");
    EXPECT_EQ(Texts(cmd, CmdItem::GROUP), (std::vector<std::string>{"A", "T", "c", "D"}));
}

TEST(CmdReplaceItem, PutsTheNewItemInPlaceAndDeletesTheOld) {
    Watched<4> watched;
    ZentuCmd cmd(Cmd::DV);
    for (std::size_t i = 0; i < 3; ++i) {
        cmd.AddItem(CmdItem::GROUP, watched.Probe(i, "old" + std::to_string(i)));
    }
    const auto before = Addresses(cmd, CmdItem::GROUP);
    auto replacement = watched.Probe(3, "new");
    const ZentuCmdItem* handedIn = replacement.get();

    cmd.ReplaceItem(CmdItem::GROUP, std::move(replacement), 1);

    EXPECT_EQ(Addresses(cmd, CmdItem::GROUP),
              (std::vector<const ZentuCmdItem*>{before[0], handedIn, before[2]}));
    EXPECT_EQ(watched.destroyed, (std::array<bool, 4>{false, true, false, false}));
}

TEST(CmdReplaceItem, WithoutAnItemAtTheIndexDeletesTheNewItemAndChangesNothing) {
    for (std::size_t index : {std::size_t{2}, std::size_t{3}, SIZE_MAX}) {
        SCOPED_TRACE(index);
        Watched<1> watched;
        ZentuCmd cmd(Cmd::DV);
        cmd.AddStringItem(CmdItem::GROUP, "a");
        cmd.AddStringItem(CmdItem::GROUP, "b");
        const auto before = Addresses(cmd, CmdItem::GROUP);

        cmd.ReplaceItem(CmdItem::GROUP, watched.Probe(0, "new"), index);

        EXPECT_TRUE(watched.destroyed[0]);
        EXPECT_EQ(Addresses(cmd, CmdItem::GROUP), before);
        EXPECT_EQ(Texts(cmd, CmdItem::GROUP), (std::vector<std::string>{"A", "B"}));
        EXPECT_EQ(TotalItems(cmd), 2U);
    }
    Watched<1> watched;
    ZentuCmd empty(Cmd::DV);
    empty.ReplaceItem(CmdItem::TYPE, watched.Probe(0, "new"), 0);
    EXPECT_TRUE(watched.destroyed[0]);
    ExpectNoItems(empty);
}

TEST(CmdErase, ErasingTheMiddleOfThreeKeepsFirstAndThird) {
    ZentuCmd cmd(Cmd::DV);
    for (const char* text : {"first", "second", "third"}) {
        cmd.AddStringItem(CmdItem::GROUP, text);
    }
    cmd.Erase(CmdItem::GROUP, std::next(cmd.begin(CmdItem::GROUP)));
    EXPECT_EQ(Texts(cmd, CmdItem::GROUP), (std::vector<std::string>{"FIRST", "THIRD"}));
}

struct RangeCase {
    std::size_t first;
    std::size_t last;
    std::vector<std::string> remaining;
};

TEST(CmdErase, RangeDeletesExactlyItsItemsAndKeepsTheRestInOrder) {
    const std::vector<RangeCase> cases = {
        {1, 3, {"a", "d", "e"}},           {0, 1, {"b", "c", "d", "e"}},
        {3, 5, {"a", "b", "c"}},           {0, 5, {}},
        {2, 2, {"a", "b", "c", "d", "e"}},
    };
    const std::vector<std::string> texts = {"a", "b", "c", "d", "e"};
    for (const RangeCase& range : cases) {
        SCOPED_TRACE(std::to_string(range.first) + ".." + std::to_string(range.last));
        Watched<5> watched;
        ZentuCmd cmd(Cmd::DV);
        cmd.AddStringItem(CmdItem::TYPE, "untouched");
        for (std::size_t i = 0; i < texts.size(); ++i) {
            cmd.AddItem(CmdItem::GROUP, watched.Probe(i, texts[i]));
        }
        const ZentuCmd& view = cmd;
        const auto begin = view.begin(CmdItem::GROUP);

        cmd.Erase(CmdItem::GROUP, begin + static_cast<std::ptrdiff_t>(range.first),
                  begin + static_cast<std::ptrdiff_t>(range.last));

        EXPECT_EQ(Texts(cmd, CmdItem::GROUP), range.remaining);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const bool erased = i >= range.first && i < range.last;
            EXPECT_EQ(watched.destroyed[i], erased) << "item " << texts[i];
        }
        EXPECT_EQ(Texts(cmd, CmdItem::TYPE), std::vector<std::string>{"UNTOUCHED"});
    }
}

TEST(CmdErase, EraseAllEmptiesOnlyItsKind) {
    Watched<2> watched;
    ZentuCmd cmd(Cmd::DV);
    cmd.AddItem(CmdItem::GROUP, watched.Probe(0, "a"));
    cmd.AddItem(CmdItem::GROUP, watched.Probe(1, "b"));
    cmd.AddStringItem(CmdItem::ID_NAME, "id");

    cmd.EraseAll(CmdItem::GROUP);

    EXPECT_FALSE(cmd.HasItem(CmdItem::GROUP, 0));
    EXPECT_EQ(watched.destroyed, (std::array<bool, 2>{true, true}));
    EXPECT_EQ(Texts(cmd, CmdItem::ID_NAME), std::vector<std::string>{"ID"});
    cmd.EraseAll(CmdItem::GROUP);
    EXPECT_EQ(TotalItems(cmd), 1U);
}

// A source command with items of several classes and kinds, one of them referring to target.
std::unique_ptr<ZentuCmd> CopySource(const ZentuCmd& target) {
    auto source = std::make_unique<ZentuCmd>(Cmd::DRESP, "SOURCE");
    source->AddStringItem(CmdItem::ID_NAME, "src");
    for (const char* text : {"a", "b", "c"}) {
        source->AddStringItem(CmdItem::GROUP, text);
    }
    source->AddItem(CmdItem::TARGET, target);
    source->AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdRawStringItem>("raw", "lower"));
    source->AddItem(CmdItem::PLACEHOLDER, std::make_unique<ProbeItem>("probe", "p"));
    return source;
}

TEST(CmdCopyItemsFrom, ReplacesEveryKindWithClonesAndKeepsNameAndKind) {
    ZentuCmd target(Cmd::GROUP_DEF);
    const auto source = CopySource(target);
    Watched<3> watched;
    ZentuCmd copy(Cmd::OBJ_FUNC, "COPY");
    copy.AddItem(CmdItem::GROUP, watched.Probe(0, "x"));
    // Kinds the source lacks must not survive either.
    copy.AddItem(CmdItem::DV, watched.Probe(1, "y"));
    copy.AddItem(CmdItem::ID_NAME, watched.Probe(2, "z"));
    const auto sourceItems = Addresses(*source, CmdItem::GROUP);

    copy.CopyItemsFrom(*source);

    EXPECT_EQ(watched.destroyed, (std::array<bool, 3>{true, true, true}));
    EXPECT_EQ(copy.GetName(), "COPY");
    EXPECT_EQ(ToInt(copy.GetType()), ToInt(Cmd::OBJ_FUNC));
    for (CmdItem kind : AllItemKinds()) {
        SCOPED_TRACE(ToInt(kind));
        ASSERT_EQ(copy.Items(kind).size(), source->Items(kind).size());
        for (std::size_t i = 0; i < copy.Items(kind).size(); ++i) {
            const ZentuCmdItem& cloned = copy.Item(kind, i);
            const ZentuCmdItem& original = source->Item(kind, i);
            EXPECT_NE(&cloned, &original);
            EXPECT_EQ(typeid(cloned), typeid(original));
            EXPECT_EQ(cloned.GetName(), original.GetName());
            EXPECT_EQ(cloned.GetString(), original.GetString());
            EXPECT_EQ(cloned.GetReference(), original.GetReference());
        }
    }
    EXPECT_EQ(copy.Item(CmdItem::TARGET, 0).GetReference(), &target);
    EXPECT_EQ(Addresses(*source, CmdItem::GROUP), sourceItems);
}

TEST(CmdCopyItemsFrom, CopyIsIndependentOfItsSource) {
    ZentuCmd target(Cmd::GROUP_DEF);
    auto source = CopySource(target);
    ZentuCmd copy(Cmd::DRESP);
    copy.CopyItemsFrom(*source);

    source->AddStringItem(CmdItem::GROUP, "later");
    source->EraseAll(CmdItem::VALUE);
    EXPECT_EQ(Texts(copy, CmdItem::GROUP), (std::vector<std::string>{"A", "B", "C"}));
    EXPECT_EQ(Texts(copy, CmdItem::VALUE), std::vector<std::string>{"lower"});

    source.reset();
    EXPECT_EQ(Texts(copy, CmdItem::ID_NAME), std::vector<std::string>{"SRC"});
    EXPECT_EQ(copy.Item(CmdItem::PLACEHOLDER, 0).GetString(), "p");
    EXPECT_EQ(TotalItems(copy), 7U);
}

TEST(CmdCopyItemsFrom, CopyingAnEmptyCommandClearsEverything) {
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::ID_NAME, "id");
    cmd.AddStringItem(CmdItem::PLACEHOLDER, "last kind");
    cmd.CopyItemsFrom(ZentuCmd(Cmd::DV));
    ExpectNoItems(cmd);
    EXPECT_EQ(cmd.GetName(), "DV");
}

TEST(CmdMove, ConstructionTakesEverythingAndEmptiesTheSource) {
    ZentuCmd source(Cmd::DRESP, "SOURCE");
    source.AddStringItem(CmdItem::ID_NAME, "d1");
    source.AddStringItem(CmdItem::PLACEHOLDER, "p");
    const ZentuCmdItem* idItem = &source.Item(CmdItem::ID_NAME, 0);

    const ZentuCmd moved(std::move(source));

    EXPECT_EQ(moved.GetName(), "SOURCE");
    EXPECT_EQ(ToInt(moved.GetType()), ToInt(Cmd::DRESP));
    EXPECT_EQ(&moved.Item(CmdItem::ID_NAME, 0), idItem);
    EXPECT_EQ(TotalItems(moved), 2U);
    EXPECT_EQ(source.GetName(), "");  // NOLINT(bugprone-use-after-move)
    ExpectNoItems(source);
}

TEST(CmdMove, AssignmentReplacesEverythingAndEmptiesTheSource) {
    Watched<1> watched;
    ZentuCmd destination(Cmd::DV, "DESTINATION");
    destination.AddItem(CmdItem::GROUP, watched.Probe(0, "old"));
    ZentuCmd source(Cmd::DRESP, "SOURCE");
    source.AddStringItem(CmdItem::TARGET, "t");
    const ZentuCmdItem* targetItem = &source.Item(CmdItem::TARGET, 0);

    destination = std::move(source);

    EXPECT_TRUE(watched.destroyed[0]);
    EXPECT_EQ(destination.GetName(), "SOURCE");
    EXPECT_EQ(ToInt(destination.GetType()), ToInt(Cmd::DRESP));
    EXPECT_FALSE(destination.HasItem(CmdItem::GROUP, 0));
    EXPECT_EQ(&destination.Item(CmdItem::TARGET, 0), targetItem);
    EXPECT_EQ(TotalItems(destination), 1U);
    EXPECT_EQ(source.GetName(), "");  // NOLINT(bugprone-use-after-move)
    ExpectNoItems(source);
}

TEST(CmdMove, AssignmentToItselfKeepsEverything) {
    ZentuCmd cmd(Cmd::DRESP, "SELF");
    cmd.AddStringItem(CmdItem::GROUP, "a");
    ZentuCmd& alias = cmd;
    cmd = std::move(alias);
    EXPECT_EQ(cmd.GetName(), "SELF");
    EXPECT_EQ(Texts(cmd, CmdItem::GROUP), std::vector<std::string>{"A"});
}

TEST(CmdItems, ViewIsTheLiveStorage) {
    ZentuCmd cmd(Cmd::DV);
    const ZentuCmd::ConstItemSequence& view = cmd.Items(CmdItem::GROUP);
    EXPECT_TRUE(view.empty());
    for (const char* text : {"a", "b", "c"}) {
        cmd.AddStringItem(CmdItem::GROUP, text);
    }
    ASSERT_EQ(view.size(), 3U);
    for (std::size_t i = 0; i < view.size(); ++i) {
        EXPECT_EQ(view[i].get(), &cmd.Item(CmdItem::GROUP, i));
    }
    EXPECT_EQ(&cmd.Items(CmdItem::GROUP), &view);
    cmd.EraseAll(CmdItem::GROUP);
    EXPECT_TRUE(view.empty());
}

TEST(CmdItems, HasItemMarksTheEndOfTheKind) {
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::GROUP, "a");
    cmd.AddStringItem(CmdItem::GROUP, "b");
    EXPECT_TRUE(cmd.HasItem(CmdItem::GROUP, 1));
    EXPECT_FALSE(cmd.HasItem(CmdItem::GROUP, 2));
    EXPECT_FALSE(cmd.HasItem(CmdItem::GROUP, SIZE_MAX));
    EXPECT_FALSE(cmd.HasItem(CmdItem::ELEMENT_GROUP, 0));
    const ZentuCmd& view = cmd;
    EXPECT_EQ(&view.Item(CmdItem::GROUP, 1), &cmd.Item(CmdItem::GROUP, 1));
}

TEST(CmdItems, RangesWalkTheKindInOrder) {
    ZentuCmd cmd(Cmd::DV);
    for (const char* text : {"a", "b", "c"}) {
        cmd.AddStringItem(CmdItem::GROUP, text);
    }
    std::vector<const ZentuCmdItem*> walked;
    for (std::unique_ptr<ZentuCmdItem>& item : cmd.GetItemRange(CmdItem::GROUP)) {
        walked.push_back(item.get());
    }
    EXPECT_EQ(walked, Addresses(cmd, CmdItem::GROUP));
    EXPECT_EQ(walked.size(), 3U);
    EXPECT_EQ(cmd.GetItemRange(CmdItem::GROUP).begin(), cmd.begin(CmdItem::GROUP));
    EXPECT_EQ(cmd.GetItemRange(CmdItem::GROUP).end(), cmd.end(CmdItem::GROUP));
    EXPECT_TRUE(cmd.GetItemRange(CmdItem::TYPE).empty());
    EXPECT_EQ(std::distance(cmd.begin(CmdItem::GROUP), cmd.end(CmdItem::GROUP)), 3);
}

TEST(CmdNameAndType, ChangeIndependently) {
    ZentuCmd cmd(Cmd::DRESP);
    cmd.SetType(Cmd::OBJ_FUNC);
    EXPECT_EQ(ToInt(cmd.GetType()), ToInt(Cmd::OBJ_FUNC));
    EXPECT_EQ(cmd.GetName(), "DRESP");

    cmd.SetName("renamed");
    EXPECT_EQ(cmd.GetName(), "renamed");
    EXPECT_EQ(ToInt(cmd.GetType()), ToInt(Cmd::OBJ_FUNC));

    // The argument aliases the name being assigned.
    cmd.SetName(cmd.GetName());
    EXPECT_EQ(cmd.GetName(), "renamed");
}

}  // namespace
