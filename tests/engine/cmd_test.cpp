#include <gtest/gtest.h>

#include <algorithm>
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
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdRawStringItem.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ClassOf;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;

using Strings = std::vector<std::string>;

Strings Texts(const ZentuCmd& cmd, CmdItem kind) {
    Strings texts;
    for (const auto& item : cmd.GetItemRange(kind)) {
        texts.push_back(item->GetString());
    }
    return texts;
}

// Every item as "kind class name=text", plus the name of the command that it refers to.
Strings Describe(const ZentuCmd& cmd) {
    Strings described;
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        for (const auto& item : cmd.Items(static_cast<CmdItem>(kind))) {
            const ZentuCmd* target = item->GetReference();
            described.push_back(std::to_string(kind) + ' ' + ClassOf(*item) + ' ' +
                                item->GetName() + '=' + item->GetString() +
                                (target != nullptr ? " ->" + target->GetName() : ""));
        }
    }
    return described;
}

std::size_t TotalItems(const ZentuCmd& cmd) {
    return zentu_test::Identities(cmd).size();
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

TEST(CmdConstruction, NamesTheCommandAfterItsKindUnlessGivenAName) {
    for (std::size_t kind = 0; kind < ZentuCmdDefs::CMD_KIND_COUNT; ++kind) {
        const ZentuCmd cmd(static_cast<Cmd>(kind));
        EXPECT_EQ(cmd.GetName(), ZentuCmdDefs::CMD_NAMES[kind]);
        EXPECT_EQ(ToInt(cmd.GetType()), static_cast<std::int64_t>(kind));
        EXPECT_EQ(TotalItems(cmd), 0U) << kind;
    }
    for (const char* name : {"X", "dv_Topo lower", ""}) {
        const ZentuCmd named(Cmd::DRESP, name);
        EXPECT_EQ(named.GetName(), name);
        EXPECT_EQ(ToInt(named.GetType()), ToInt(Cmd::DRESP));
    }
    ZentuCmd cmd(Cmd::DRESP, "renamed");
    // The argument aliases the name being assigned.
    cmd.SetName(cmd.GetName());
    EXPECT_EQ(cmd.GetName(), "renamed");
}

TEST(CmdAddItem, EveryFormAppendsInCallOrder) {
    // The string forms raise the case and name the item after its kind.
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        ZentuCmd cmd(Cmd::DV);
        cmd.AddStringItem(static_cast<CmdItem>(kind), "abc");
        EXPECT_EQ(Describe(cmd), Strings{std::to_string(kind) + " string " +
                                         ZentuCmdItemDefs::CMD_ITEM_NAMES[kind] + "=ABC"});
    }
    ZentuCmd target(Cmd::GROUP_DEF, "TARGET");
    target.AddStringItem(CmdItem::ID_NAME, "t");
    ZentuCmd cmd(Cmd::DV);
    cmd.AddStringItem(CmdItem::GROUP, "a");
    cmd.AddItem(CmdItem::GROUP, target);
    cmd.AddItem(CmdItem::GROUP, "own name", target);
    cmd.AddItem(CmdItem::GROUP, std::make_unique<ZentuCmdRawStringItem>("GROUP", "c"));
    cmd.AddStringItem(CmdItem::GROUP, "my Name", "x y");
    EXPECT_EQ(Describe(cmd),
              (Strings{"4 string GROUP=A", "4 ref GROUP=T ->TARGET", "4 ref own name=T ->TARGET",
                       "4 raw GROUP=c", "4 string my Name=X Y"}));
}

TEST(CmdAddItem, KeepsThePreparedItemItselfAndIgnoresANullOne) {
    Watched<1> watched;
    {
        ZentuCmd cmd(Cmd::DV);
        auto probe = watched.Probe(0, "text");
        const ZentuCmdItem* handedIn = probe.get();
        cmd.AddItem(CmdItem::VALUE, std::move(probe));
        cmd.AddItem(CmdItem::VALUE, std::unique_ptr<ZentuCmdItem>());
        cmd.AddItem(CmdItem::TYPE, nullptr);
        // Counted before anything reads the items, since a stored null would crash the reading.
        ASSERT_EQ(TotalItems(cmd), 1U);
        EXPECT_EQ(&cmd.Item(CmdItem::VALUE, 0), handedIn);
        EXPECT_FALSE(watched.destroyed[0]);
    }
    EXPECT_TRUE(watched.destroyed[0]);
}

TEST(CmdReplaceItem, ReplacesInPlaceOrElseDeletesTheNewItemAndChangesNothing) {
    for (std::size_t index : {std::size_t{1}, std::size_t{3}, std::size_t{4}, SIZE_MAX}) {
        SCOPED_TRACE(index);
        Watched<4> watched;
        ZentuCmd cmd(Cmd::DV);
        for (std::size_t i = 0; i < 3; ++i) {
            cmd.AddItem(CmdItem::GROUP, watched.Probe(i, "old"));
        }
        std::vector<const ZentuCmdItem*> expected = zentu_test::Identities(cmd);
        auto replacement = watched.Probe(3, "new");
        std::array<bool, 4> destroyed = {false, false, false, true};
        if (index < expected.size()) {
            expected[index] = replacement.get();
            destroyed = {false, true, false, false};
        }
        cmd.ReplaceItem(CmdItem::GROUP, std::move(replacement), index);
        EXPECT_EQ(zentu_test::Identities(cmd), expected);
        EXPECT_EQ(watched.destroyed, destroyed);
    }
}

enum class EraseForm { kPosition, kRange, kAll };

TEST(CmdErase, DeletesExactlyTheChosenItemsAndKeepsTheRestInOrder) {
    const std::vector<std::tuple<EraseForm, std::size_t, std::size_t>> cases = {
        {EraseForm::kPosition, 1, 2}, {EraseForm::kRange, 1, 3}, {EraseForm::kRange, 0, 1},
        {EraseForm::kRange, 3, 5},    {EraseForm::kRange, 0, 5}, {EraseForm::kRange, 2, 2},
        {EraseForm::kAll, 0, 5}};
    for (const auto& [form, first, last] : cases) {
        SCOPED_TRACE(testing::Message() << ToInt(form) << ": " << first << ".." << last);
        Watched<5> watched;
        ZentuCmd cmd(Cmd::DV);
        cmd.AddStringItem(CmdItem::TYPE, "untouched");
        Strings remaining;
        for (std::size_t i = 0; i < 5; ++i) {
            const std::string text(1, static_cast<char>('a' + i));
            cmd.AddItem(CmdItem::GROUP, watched.Probe(i, text));
            if (i < first || i >= last) {
                remaining.push_back(text);
            }
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
        EXPECT_EQ(Texts(cmd, CmdItem::GROUP), remaining);
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(watched.destroyed[i], i >= first && i < last) << i;
        }
        EXPECT_EQ(Texts(cmd, CmdItem::TYPE), Strings{"UNTOUCHED"});
    }
}

TEST(CmdCopyItemsFrom, ReplacesEveryKindWithIndependentClonesAndKeepsNameAndKind) {
    // Items of several classes and kinds, one of them referring to target.
    ZentuCmd target(Cmd::GROUP_DEF, "TARGET");
    auto source = std::make_unique<ZentuCmd>(Cmd::DRESP, "SOURCE");
    source->AddStringItem(CmdItem::ID_NAME, "src");
    for (const char* text : {"a", "b", "c"}) {
        source->AddStringItem(CmdItem::GROUP, text);
    }
    source->AddItem(CmdItem::TARGET, target);
    source->AddItem(CmdItem::VALUE, std::make_unique<ZentuCmdRawStringItem>("raw", "lower"));
    source->AddItem(CmdItem::PLACEHOLDER, std::make_unique<ProbeItem>("probe", "p"));
    const std::vector<const ZentuCmdItem*> sourceItems = zentu_test::Identities(*source);
    const Strings described = Describe(*source);
    Watched<3> watched;
    ZentuCmd copy(Cmd::OBJ_FUNC, "COPY");
    copy.AddItem(CmdItem::GROUP, watched.Probe(0, "x"));
    // Kinds the source lacks must not survive either.
    copy.AddItem(CmdItem::DV, watched.Probe(1, "y"));
    copy.AddItem(CmdItem::ID_NAME, watched.Probe(2, "z"));
    copy.CopyItemsFrom(*source);
    EXPECT_EQ(watched.destroyed, (std::array<bool, 3>{true, true, true}));
    EXPECT_EQ(copy.GetName(), "COPY");
    EXPECT_EQ(ToInt(copy.GetType()), ToInt(Cmd::OBJ_FUNC));
    EXPECT_EQ(Describe(copy), described);
    EXPECT_EQ(copy.Item(CmdItem::TARGET, 0).GetReference(), &target);
    EXPECT_EQ(zentu_test::Identities(*source), sourceItems);
    for (const ZentuCmdItem* item : zentu_test::Identities(copy)) {
        EXPECT_EQ(std::count(sourceItems.begin(), sourceItems.end(), item), 0);
    }
    source->AddStringItem(CmdItem::GROUP, "later");
    source->EraseAll(CmdItem::VALUE);
    source.reset();
    EXPECT_EQ(Describe(copy), described);
    copy.CopyItemsFrom(ZentuCmd(Cmd::DV));
    EXPECT_EQ(TotalItems(copy), 0U);
    EXPECT_EQ(copy.GetName(), "COPY");
}

TEST(CmdMove, TakesEverythingAndLeavesTheSourceEmpty) {
    Watched<1> watched;
    ZentuCmd source(Cmd::DRESP, "SOURCE");
    source.AddStringItem(CmdItem::ID_NAME, "d1");
    source.AddStringItem(CmdItem::PLACEHOLDER, "p");
    const std::vector<const ZentuCmdItem*> items = zentu_test::Identities(source);
    ZentuCmd constructed(std::move(source));
    ZentuCmd assigned(Cmd::DV, "DESTINATION");
    assigned.AddItem(CmdItem::GROUP, watched.Probe(0, "old"));
    assigned = std::move(constructed);
    ZentuCmd& alias = assigned;
    assigned = std::move(alias);
    EXPECT_TRUE(watched.destroyed[0]);
    EXPECT_EQ(assigned.GetName(), "SOURCE");
    EXPECT_EQ(ToInt(assigned.GetType()), ToInt(Cmd::DRESP));
    EXPECT_EQ(zentu_test::Identities(assigned), items);
    // NOLINTNEXTLINE(bugprone-use-after-move)
    for (const ZentuCmd* emptied : {&source, &constructed}) {
        EXPECT_EQ(emptied->GetName(), "");
        EXPECT_EQ(TotalItems(*emptied), 0U);
    }
}

TEST(CmdItems, ViewsAndRangesAreTheLiveStorageInOrder) {
    ZentuCmd cmd(Cmd::DV);
    const ZentuCmd& constCmd = cmd;
    const ZentuCmd::ConstItemSequence& view = cmd.Items(CmdItem::GROUP);
    for (const char* text : {"a", "b", "c"}) {
        cmd.AddStringItem(CmdItem::GROUP, text);
    }
    EXPECT_EQ(&cmd.Items(CmdItem::GROUP), &view);
    EXPECT_EQ(Texts(cmd, CmdItem::GROUP), (Strings{"A", "B", "C"}));
    ASSERT_EQ(view.size(), 3U);
    for (std::size_t i = 0; i < view.size(); ++i) {
        EXPECT_EQ(view[i].get(), &cmd.Item(CmdItem::GROUP, i));
        EXPECT_EQ(cmd.GetItemRange(CmdItem::GROUP).begin()[i].get(),
                  &constCmd.Item(CmdItem::GROUP, i));
    }
    EXPECT_EQ(std::distance(cmd.begin(CmdItem::GROUP), cmd.end(CmdItem::GROUP)), 3);
    EXPECT_TRUE(cmd.HasItem(CmdItem::GROUP, 2));
    EXPECT_FALSE(cmd.HasItem(CmdItem::GROUP, 3));
    EXPECT_FALSE(cmd.HasItem(CmdItem::GROUP, SIZE_MAX));
    EXPECT_FALSE(cmd.HasItem(CmdItem::ELEMENT_GROUP, 0));
    cmd.EraseAll(CmdItem::GROUP);
    EXPECT_TRUE(view.empty());
}

}  // namespace
