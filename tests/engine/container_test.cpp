#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerIterator.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdStringItem.h"
#include "engine_test_support.h"

namespace {

using zentu_test::Attach;
using zentu_test::AttachProbe;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

std::vector<Cmd> AllCommandKinds() {
    std::vector<Cmd> kinds;
    for (std::size_t i = 0; i < ZentuCmdDefs::CMD_KIND_COUNT; ++i) {
        kinds.push_back(static_cast<Cmd>(i));
    }
    return kinds;
}

// The commands in the order that the container's iterator gives them.
std::vector<const ZentuCmd*> Walk(const ZentuCmdContainer& container) {
    std::vector<const ZentuCmd*> walked;
    for (const ZentuCmd& cmd : container) {
        walked.push_back(&cmd);
    }
    return walked;
}

// The commands in container order, read kind by kind without the iterator, so that iterator
// tests and reference tests have an independent yardstick.
std::vector<const ZentuCmd*> ContainerOrder(const ZentuCmdContainer& container) {
    std::vector<const ZentuCmd*> ordered;
    for (Cmd kind : AllCommandKinds()) {
        for (const auto& cmd : container.GetCommands(kind)) {
            ordered.push_back(cmd.get());
        }
    }
    return ordered;
}

std::vector<const ZentuCmd*> Sequence(const ZentuCmdContainer& container, Cmd kind) {
    std::vector<const ZentuCmd*> sequence;
    for (const auto& cmd : container.GetCommandRange(kind)) {
        sequence.push_back(cmd.get());
    }
    return sequence;
}

// Everything but reference targets, written out so that a difference reads as text.
std::string Snapshot(const ZentuCmdContainer& container) {
    std::ostringstream out;
    for (Cmd kind : AllCommandKinds()) {
        for (const auto& cmd : container.GetCommands(kind)) {
            out << "kind " << ToInt(kind) << ' ' << cmd.get() << ' ' << ToInt(cmd->GetType()) << ' '
                << cmd->GetName() << '\n';
            for (std::size_t item = 0; item < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++item) {
                for (const auto& entry : cmd->Items(static_cast<CmdItem>(item))) {
                    out << "  item " << item << ' ' << entry.get() << ' ' << entry->GetName() << '='
                        << entry->GetString() << '\n';
                }
            }
        }
    }
    return out.str();
}

// A command whose identifier is stored exactly as given (string items would raise its case).
ZentuCmd& CreateWithRawId(ZentuCmdContainer& container, Cmd kind, const std::string& id) {
    ZentuCmd& cmd = container.CreateCommand(kind);
    cmd.AddItem(CmdItem::ID_NAME, std::make_unique<ZentuCmdRawStringItem>("ID_NAME", id));
    return cmd;
}

template <typename Commands>
std::vector<const ZentuCmd*> Addresses(const Commands& commands) {
    std::vector<const ZentuCmd*> addresses;
    for (const auto& cmd : commands) {
        addresses.push_back(&cmd.get());
    }
    return addresses;
}

TEST(ContainerEmpty, GivesNeutralAnswersForEveryKind) {
    ZentuCmdContainer container;
    const ZentuCmdContainer& view = container;
    EXPECT_EQ(container.begin(), container.end());
    for (Cmd kind : AllCommandKinds()) {
        SCOPED_TRACE(ToInt(kind));
        EXPECT_EQ(&container.GetCommand(kind, 0), &ZentuCmdContainer::s_DefaultCmd);
        EXPECT_EQ(&view.GetCommand(kind, 3), &ZentuCmdContainer::s_DefaultCmd);
        EXPECT_FALSE(container.HasCommand(kind));
        EXPECT_EQ(container.GetNumberOfCommands(kind), 0U);
        EXPECT_TRUE(container.GetCommands(kind).empty());
        EXPECT_EQ(container.GetCommandBegin(kind), container.GetCommandEnd(kind));
        EXPECT_TRUE(container.GetCommandRange(kind).empty());
        EXPECT_TRUE(container.Filter(kind, CmdItem::ID_NAME, "").empty());
        EXPECT_TRUE(view.Filter(kind, CmdItem::ID_NAME, "").empty());
        EXPECT_FALSE(container.HasCommandWithReference(kind, CmdItem::GROUP));
        EXPECT_FALSE(container.HasCommandWithType(kind, CmdItem::GROUP, DataType::STRING));
    }
    container.CreateReferences();
    EXPECT_EQ(container.begin(), container.end());
}

TEST(ContainerGetCommand, IndexPastTheLastGivesTheFirstCommandOfTheKind) {
    ZentuCmdContainer container;
    ZentuCmd& first = container.CreateCommand(Cmd::DV, "first");
    ZentuCmd& second = container.CreateCommand(Cmd::DV, "second");
    const ZentuCmdContainer& view = container;
    EXPECT_EQ(&container.GetCommand(Cmd::DV, 0), &first);
    EXPECT_EQ(&container.GetCommand(Cmd::DV, 1), &second);
    for (std::size_t index : {std::size_t{2}, std::size_t{99}, SIZE_MAX}) {
        EXPECT_EQ(&container.GetCommand(Cmd::DV, index), &first) << index;
        EXPECT_EQ(&view.GetCommand(Cmd::DV, index), &first) << index;
    }
}

TEST(ContainerGetCommand, KindWithoutCommandsGivesThePlaceholder) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::DV);
    container.CreateCommand(Cmd::DRESP);
    const ZentuCmdContainer& view = container;
    for (std::size_t index : {std::size_t{0}, std::size_t{1}, SIZE_MAX}) {
        const ZentuCmd& placeholder = view.GetCommand(Cmd::OBJ_FUNC, index);
        EXPECT_EQ(&placeholder, &ZentuCmdContainer::s_DefaultCmd) << index;
        EXPECT_EQ(&container.GetCommand(Cmd::CMD_PLACEHOLDER, index),
                  &ZentuCmdContainer::s_DefaultCmd)
            << index;
    }
    EXPECT_EQ(view.GetCommand(Cmd::OBJ_FUNC, 0).GetName(), "PLACEHOLDER");
}

TEST(ContainerCreateCommand, FormsNameTheCommandAndItsIdentifier) {
    ZentuCmdContainer container;
    ZentuCmd& byKind = container.CreateCommand(Cmd::DV);
    ZentuCmd& named = container.CreateCommand(Cmd::DV, "DV_TOPO");
    ZentuCmd& identified = container.CreateCommand(Cmd::DV, "DV_TOPO", "d1");

    EXPECT_EQ(byKind.GetName(), "DV");
    EXPECT_EQ(named.GetName(), "DV_TOPO");
    EXPECT_EQ(identified.GetName(), "DV_TOPO");
    for (const ZentuCmd* cmd : {&byKind, &named, &identified}) {
        EXPECT_EQ(ToInt(cmd->GetType()), ToInt(Cmd::DV));
    }
    EXPECT_FALSE(byKind.HasItem(CmdItem::ID_NAME, 0));
    EXPECT_FALSE(named.HasItem(CmdItem::ID_NAME, 0));

    ASSERT_EQ(identified.Items(CmdItem::ID_NAME).size(), 1U);
    const ZentuCmdItem& id = identified.Item(CmdItem::ID_NAME, 0);
    EXPECT_EQ(id.GetName(), "ID_NAME");
    EXPECT_EQ(id.GetString(), "D1");
    EXPECT_NE(dynamic_cast<const ZentuCmdStringItem*>(&id), nullptr);
    for (std::size_t item = 1; item < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++item) {
        EXPECT_FALSE(identified.HasItem(static_cast<CmdItem>(item), 0)) << item;
    }

    // The returned references are the stored commands, appended in call order.
    EXPECT_EQ(Sequence(container, Cmd::DV),
              (std::vector<const ZentuCmd*>{&byKind, &named, &identified}));
}

TEST(ContainerOrder, WalksKindsAscendingThenInCreationOrder) {
    ZentuCmdContainer container;
    ZentuCmd& a = container.CreateCommand(Cmd::DRESP, "a");
    ZentuCmd& b = container.CreateCommand(Cmd::DV, "b");
    ZentuCmd& c = container.CreateCommand(Cmd::DRESP, "c");
    ZentuCmd& last = container.CreateCommand(Cmd::CMD_PLACEHOLDER, "last");
    ZentuCmd& first = container.CreateCommand(Cmd::MODEL_INPUT, "first");

    const std::vector<const ZentuCmd*> expected = {&first, &b, &a, &c, &last};
    EXPECT_EQ(Walk(container), expected);
    EXPECT_EQ(ContainerOrder(container), expected);
    EXPECT_EQ(container.GetNumberOfCommands(Cmd::DRESP), 2U);
    EXPECT_TRUE(container.HasCommand(Cmd::CMD_PLACEHOLDER));
}

TEST(ContainerOrder, CommandAddressesStayWhileSequencesChange) {
    ZentuCmdContainer container;
    ZentuCmd& doomed = container.CreateCommand(Cmd::DV, "doomed");
    ZentuCmd& kept = container.CreateCommand(Cmd::DV, "kept", "k");
    const ZentuCmdItem* keptId = &kept.Item(CmdItem::ID_NAME, 0);
    for (int i = 0; i < 1000; ++i) {
        container.CreateCommand(Cmd::DV);
    }
    container.Erase(Cmd::DV, container.GetCommandBegin(Cmd::DV));
    EXPECT_NE(&container.GetCommand(Cmd::DV, 0), &doomed);
    EXPECT_EQ(&container.GetCommand(Cmd::DV, 0), &kept);
    EXPECT_EQ(kept.GetName(), "kept");
    EXPECT_EQ(&kept.Item(CmdItem::ID_NAME, 0), keptId);

    container.MoveCmd(Cmd::DV, 0, Cmd::DRESP);
    EXPECT_EQ(&container.GetCommand(Cmd::DRESP, 0), &kept);
    EXPECT_EQ(kept.Item(CmdItem::ID_NAME, 0).GetString(), "K");
}

TEST(ContainerAccessors, ViewsAreTheLiveStorageInOrder) {
    ZentuCmdContainer container;
    const ZentuCmdContainer::ConstCmdSequence& view = container.GetCommands(Cmd::DRESP);
    for (const char* name : {"x", "y", "z"}) {
        container.CreateCommand(Cmd::DRESP, name);
    }
    ASSERT_EQ(view.size(), 3U);
    EXPECT_EQ(&container.GetCommands(Cmd::DRESP), &view);
    for (std::size_t i = 0; i < view.size(); ++i) {
        EXPECT_EQ(view[i].get(), &container.GetCommand(Cmd::DRESP, i));
    }
    EXPECT_EQ(
        std::distance(container.GetCommandBegin(Cmd::DRESP), container.GetCommandEnd(Cmd::DRESP)),
        3);
    EXPECT_EQ(container.GetCommandRange(Cmd::DRESP).begin(), container.GetCommandBegin(Cmd::DRESP));
    EXPECT_EQ(container.GetCommandRange(Cmd::DRESP).end(), container.GetCommandEnd(Cmd::DRESP));
    EXPECT_EQ(container.GetNumberOfCommands(Cmd::DRESP), 3U);
    EXPECT_FALSE(container.HasCommand(Cmd::DV));
}

TEST(ContainerAccessors, SetTypeLeavesTheCommandWhereItIs) {
    ZentuCmdContainer container;
    ZentuCmd& cmd = container.CreateCommand(Cmd::DRESP);
    cmd.SetType(Cmd::OBJ_FUNC);
    EXPECT_EQ(&container.GetCommand(Cmd::DRESP, 0), &cmd);
    EXPECT_FALSE(container.HasCommand(Cmd::OBJ_FUNC));
    EXPECT_EQ(cmd.GetName(), "DRESP");
}

// Three named DRESP commands with identifiers and one OBJ_FUNC command.
struct ContainerMoveCmd : ::testing::Test {
    ZentuCmdContainer container;
    ZentuCmd& a = container.CreateCommand(Cmd::DRESP, "OWN_A", "a");
    ZentuCmd& b = container.CreateCommand(Cmd::DRESP, "OWN_B", "b");
    ZentuCmd& c = container.CreateCommand(Cmd::DRESP, "OWN_C", "c");
    ZentuCmd& existing = container.CreateCommand(Cmd::OBJ_FUNC, "EXISTING");
};

TEST_F(ContainerMoveCmd, MovedCommandIsRenamedAndAppendedToTheNewKind) {
    container.MoveCmd(Cmd::DRESP, 0, Cmd::OBJ_FUNC);

    EXPECT_EQ(Sequence(container, Cmd::DRESP), (std::vector<const ZentuCmd*>{&b, &c}));
    EXPECT_EQ(Sequence(container, Cmd::OBJ_FUNC), (std::vector<const ZentuCmd*>{&existing, &a}));
    EXPECT_EQ(ToInt(a.GetType()), ToInt(Cmd::OBJ_FUNC));
    EXPECT_EQ(a.GetName(), "OBJ_FUNC");
    EXPECT_EQ(a.Item(CmdItem::ID_NAME, 0).GetString(), "A");
    EXPECT_EQ(b.GetName(), "OWN_B");

    // The table name of the last kind, not the placeholder command's own name.
    container.MoveCmd(Cmd::OBJ_FUNC, 1, Cmd::CMD_PLACEHOLDER);
    EXPECT_EQ(Sequence(container, Cmd::CMD_PLACEHOLDER), std::vector<const ZentuCmd*>{&a});
    EXPECT_EQ(a.GetName(), "CMD_PLACEHOLDER");
    EXPECT_EQ(ToInt(a.GetType()), ToInt(Cmd::CMD_PLACEHOLDER));
}

TEST_F(ContainerMoveCmd, IndexPastTheLastChangesNothing) {
    const std::string before = Snapshot(container);
    for (std::size_t index : {std::size_t{3}, std::size_t{5}, SIZE_MAX}) {
        container.MoveCmd(Cmd::DRESP, index, Cmd::OBJ_FUNC);
        EXPECT_EQ(Snapshot(container), before) << index;
    }
    container.MoveCmd(Cmd::REPORT, 0, Cmd::DRESP);
    EXPECT_EQ(Snapshot(container), before);
}

TEST_F(ContainerMoveCmd, MovingWithinAKindGoesToItsEnd) {
    container.MoveCmd(Cmd::DRESP, 0, Cmd::DRESP);
    EXPECT_EQ(Sequence(container, Cmd::DRESP), (std::vector<const ZentuCmd*>{&b, &c, &a}));
    EXPECT_EQ(a.GetName(), "DRESP");
    container.MoveCmd(Cmd::DRESP, 2, Cmd::DRESP);
    EXPECT_EQ(Sequence(container, Cmd::DRESP), (std::vector<const ZentuCmd*>{&b, &c, &a}));
}

TEST(ContainerErase, ReturnsThePositionOfTheCommandThatMovedUp) {
    std::array<bool, 3> destroyed{};
    ZentuCmdContainer container;
    std::vector<const ZentuCmd*> created;
    for (std::size_t i = 0; i < destroyed.size(); ++i) {
        ZentuCmd& cmd = container.CreateCommand(Cmd::DRESP);
        AttachProbe(cmd, CmdItem::VALUE, "v").WatchDestruction(&destroyed[i]);
        created.push_back(&cmd);
    }

    auto next = container.Erase(Cmd::DRESP, std::next(container.GetCommandBegin(Cmd::DRESP)));
    EXPECT_EQ(destroyed, (std::array<bool, 3>{false, true, false}));
    ASSERT_NE(next, container.GetCommandEnd(Cmd::DRESP));
    EXPECT_EQ(next->get(), created[2]);
    EXPECT_EQ(Sequence(container, Cmd::DRESP),
              (std::vector<const ZentuCmd*>{created[0], created[2]}));

    next = container.Erase(Cmd::DRESP, next);
    EXPECT_EQ(next, container.GetCommandEnd(Cmd::DRESP));
    next = container.Erase(Cmd::DRESP, container.GetCommandBegin(Cmd::DRESP));
    EXPECT_EQ(next, container.GetCommandEnd(Cmd::DRESP));
    EXPECT_EQ(destroyed, (std::array<bool, 3>{true, true, true}));
    EXPECT_FALSE(container.HasCommand(Cmd::DRESP));
}

TEST(ContainerErase, IteratorPassesOverAnEmptiedKind) {
    ZentuCmdContainer container;
    ZentuCmd& dv = container.CreateCommand(Cmd::DV);
    container.CreateCommand(Cmd::DRESP);
    ZentuCmd& objective = container.CreateCommand(Cmd::OBJ_FUNC);
    const auto next = container.Erase(Cmd::DRESP, container.GetCommandBegin(Cmd::DRESP));
    EXPECT_EQ(next, container.GetCommandEnd(Cmd::DRESP));
    EXPECT_EQ(Walk(container), (std::vector<const ZentuCmd*>{&dv, &objective}));

    container.Erase(Cmd::OBJ_FUNC, container.GetCommandBegin(Cmd::OBJ_FUNC));
    container.Erase(Cmd::DV, container.GetCommandBegin(Cmd::DV));
    EXPECT_EQ(container.begin(), container.end());
}

TEST(ContainerFilter, KeepsCommandsWhoseFirstItemMatchesExactly) {
    ZentuCmdContainer container;
    auto addType = [](ZentuCmd& cmd, const std::string& text) {
        cmd.AddItem(CmdItem::TYPE, std::make_unique<ZentuCmdRawStringItem>("TYPE", text));
    };
    ZentuCmd& match = container.CreateCommand(Cmd::DV);
    addType(match, "A");
    ZentuCmd& lower = container.CreateCommand(Cmd::DV);
    addType(lower, "a");
    container.CreateCommand(Cmd::DV);
    ZentuCmd& secondItemMatches = container.CreateCommand(Cmd::DV);
    addType(secondItemMatches, "B");
    addType(secondItemMatches, "A");
    ZentuCmd& laterMatch = container.CreateCommand(Cmd::DV);
    addType(laterMatch, "A");
    addType(container.CreateCommand(Cmd::DV), "A ");
    addType(container.CreateCommand(Cmd::GROUP_DEF), "A");

    const ZentuCmdContainer& view = container;
    const std::vector<const ZentuCmd*> expected = {&match, &laterMatch};
    EXPECT_EQ(Addresses(container.Filter(Cmd::DV, CmdItem::TYPE, "A")), expected);
    EXPECT_EQ(Addresses(view.Filter(Cmd::DV, CmdItem::TYPE, "A")), expected);
    EXPECT_EQ(Addresses(view.Filter(Cmd::DV, CmdItem::TYPE, "a")),
              std::vector<const ZentuCmd*>{&lower});
    EXPECT_TRUE(container.Filter(Cmd::DV, CmdItem::TYPE, "").empty());
    EXPECT_TRUE(container.Filter(Cmd::DV, CmdItem::GROUP, "A").empty());
    EXPECT_TRUE(container.Filter(Cmd::OBJ_FUNC, CmdItem::TYPE, "A").empty());

    // The result refers to the stored commands, not to copies.
    container.Filter(Cmd::DV, CmdItem::TYPE, "a").front().get().SetName("FOUND");
    EXPECT_EQ(lower.GetName(), "FOUND");
}

TEST(ContainerHasCommandWith, LooksOnlyAtTheFirstItemOfTheFirstCommand) {
    ZentuCmdContainer container;
    ZentuCmd& target = container.CreateCommand(Cmd::GROUP_DEF, "G", "g");

    ZentuCmd& firstDv = container.CreateCommand(Cmd::DV);
    firstDv.AddStringItem(CmdItem::GROUP, "text first");
    firstDv.AddItem(CmdItem::GROUP, target);
    firstDv.AddItem(CmdItem::ELEMENT_GROUP, target);
    container.CreateCommand(Cmd::DV).AddItem(CmdItem::GROUP, target);
    container.CreateCommand(Cmd::DV).AddItem(CmdItem::NODE_GROUP, target);
    Attach(firstDv, CmdItem::VALUE, std::make_unique<ProbeItem>("VALUE", "", zentu_test::kInteger));

    EXPECT_FALSE(container.HasCommandWithReference(Cmd::DV, CmdItem::GROUP));
    EXPECT_TRUE(container.HasCommandWithType(Cmd::DV, CmdItem::GROUP, DataType::STRING));
    EXPECT_FALSE(container.HasCommandWithType(Cmd::DV, CmdItem::GROUP, DataType::REFERENCE));
    EXPECT_FALSE(container.HasCommandWithType(Cmd::DV, CmdItem::GROUP, DataType::RAW_STRING));
    EXPECT_TRUE(container.HasCommandWithReference(Cmd::DV, CmdItem::ELEMENT_GROUP));
    EXPECT_TRUE(container.HasCommandWithType(Cmd::DV, CmdItem::ELEMENT_GROUP, DataType::STRING));
    // Only the second DV command has a NODE_GROUP item.
    EXPECT_FALSE(container.HasCommandWithReference(Cmd::DV, CmdItem::NODE_GROUP));
    EXPECT_FALSE(container.HasCommandWithType(Cmd::DV, CmdItem::NODE_GROUP, DataType::STRING));
    EXPECT_TRUE(container.HasCommandWithType(Cmd::DV, CmdItem::VALUE, DataType::INTEGER));
    EXPECT_FALSE(container.HasCommandWithType(Cmd::DV, CmdItem::VALUE, DataType::REAL));
    EXPECT_FALSE(container.HasCommandWithReference(Cmd::DRESP, CmdItem::GROUP));
}

TEST(ContainerIterator, StepsToTheEndAndStaysThere) {
    ZentuCmdContainer container;
    ZentuCmd& objective = container.CreateCommand(Cmd::OBJ_FUNC);
    ZentuCmd& dv = container.CreateCommand(Cmd::DV);

    ZentuCmdContainerIterator it(container);
    EXPECT_EQ(it, container.begin());
    EXPECT_EQ(&*it, &dv);
    EXPECT_EQ(it->GetName(), "DV");
    const ZentuCmdContainerIterator before = it++;
    EXPECT_EQ(&*before, &dv);
    EXPECT_EQ(&*it, &objective);
    ++it;
    EXPECT_EQ(it, container.end());
    ++it;
    EXPECT_EQ(it, container.end());
    EXPECT_EQ(std::distance(container.begin(), container.end()), 2);

    ZentuCmdContainerIterator other = container.begin();
    EXPECT_NE(other, container.end());
    other.end();
    EXPECT_EQ(other, container.end());
    other = before;
    EXPECT_EQ(other, container.begin());
}

TEST(ContainerIterator, ChangesReachTheStoredCommand) {
    ZentuCmdContainer container;
    ZentuCmd& cmd = container.CreateCommand(Cmd::DV);
    ZentuCmdContainerIterator it = container.begin();
    it->SetName("RENAMED");
    (*it).AddStringItem(CmdItem::TYPE, "t");
    EXPECT_EQ(cmd.GetName(), "RENAMED");
    EXPECT_TRUE(cmd.HasItem(CmdItem::TYPE, 0));
    const ZentuCmdContainerIterator& view = it;
    EXPECT_EQ(&*view, &cmd);
    EXPECT_EQ(view->GetName(), "RENAMED");
}

TEST(ContainerIterator, IteratorsOfDifferentContainersDiffer) {
    ZentuCmdContainer first;
    ZentuCmdContainer second;
    EXPECT_NE(first.end(), second.end());
    EXPECT_NE(first.begin(), second.begin());
    EXPECT_EQ(first.end(), first.end());
}

TEST(ContainerMove, ConstructionTakesEveryCommandAndEmptiesTheSource) {
    ZentuCmdContainer source;
    ZentuCmd& dv = source.CreateCommand(Cmd::DV);
    ZentuCmd& last = source.CreateCommand(Cmd::CMD_PLACEHOLDER);

    ZentuCmdContainer moved(std::move(source));

    EXPECT_EQ(Walk(moved), (std::vector<const ZentuCmd*>{&dv, &last}));
    EXPECT_EQ(source.begin(), source.end());  // NOLINT(bugprone-use-after-move)
    for (Cmd kind : AllCommandKinds()) {
        EXPECT_EQ(source.GetNumberOfCommands(kind), 0U) << ToInt(kind);
    }
}

TEST(ContainerMove, AssignmentReplacesEveryCommand) {
    bool destroyed = false;
    ZentuCmdContainer destination;
    AttachProbe(destination.CreateCommand(Cmd::DV), CmdItem::VALUE, "v")
        .WatchDestruction(&destroyed);
    destination.CreateCommand(Cmd::REPORT);
    ZentuCmdContainer source;
    ZentuCmd& dresp = source.CreateCommand(Cmd::DRESP);

    destination = std::move(source);

    EXPECT_TRUE(destroyed);
    EXPECT_EQ(Walk(destination), std::vector<const ZentuCmd*>{&dresp});
    EXPECT_EQ(source.begin(), source.end());  // NOLINT(bugprone-use-after-move)

    ZentuCmdContainer& alias = destination;
    destination = std::move(alias);
    EXPECT_EQ(Walk(destination), std::vector<const ZentuCmd*>{&dresp});
}

// Reference resolution ------------------------------------------------------------------------

TEST(CreateReferences, BindsAnItemToTheCommandThatItsTextNames) {
    ZentuCmdContainer container;
    ZentuCmd& group = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
    ZentuCmd& dv = container.CreateCommand(Cmd::DV);
    ProbeItem& probe = AttachProbe(dv, CmdItem::GROUP, "G1");
    ProbeItem& unmatched = AttachProbe(dv, CmdItem::GROUP, "G2");

    container.CreateReferences();

    EXPECT_EQ(probe.Offers(), std::vector<const ZentuCmd*>{&group});
    EXPECT_TRUE(unmatched.Offers().empty());
}

TEST(CreateReferences, FirstMatchInContainerOrderWins) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::DV, "DV", "shared");
    container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "other");
    ZentuCmd& winner = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "shared");
    container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "shared");
    // Kind 0 comes first, but without an identifier it matches nothing.
    container.CreateCommand(Cmd::MODEL_INPUT);
    ProbeItem& probe =
        AttachProbe(container.CreateCommand(Cmd::OPERATOR), CmdItem::DRESP, "SHARED");

    container.CreateReferences();

    EXPECT_EQ(probe.Offers(), std::vector<const ZentuCmd*>{&winner});
}

TEST(CreateReferences, IdentifiersCompareByteForByte) {
    ZentuCmdContainer container;
    ZentuCmd& lower = CreateWithRawId(container, Cmd::GROUP_DEF, "g1");
    ZentuCmd& upper = container.CreateCommand(Cmd::DV, "DV", "G1");
    ZentuCmd& user = container.CreateCommand(Cmd::OPERATOR);
    ProbeItem& byUpper = AttachProbe(user, CmdItem::GROUP, "G1");
    ProbeItem& byLower = AttachProbe(user, CmdItem::GROUP, "g1");
    ProbeItem& padded = AttachProbe(user, CmdItem::GROUP, "G1 ");

    container.CreateReferences();

    EXPECT_EQ(byUpper.Offers(), std::vector<const ZentuCmd*>{&upper});
    EXPECT_EQ(byLower.Offers(), std::vector<const ZentuCmd*>{&lower});
    EXPECT_TRUE(padded.Offers().empty());
}

TEST(CreateReferences, OnlyTheFirstIdentifierOfACommandCounts) {
    ZentuCmdContainer container;
    ZentuCmd& twoIds = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "first");
    twoIds.AddStringItem(CmdItem::ID_NAME, "second");
    ZentuCmd& user = container.CreateCommand(Cmd::DV);
    ProbeItem& bySecond = AttachProbe(user, CmdItem::GROUP, "SECOND");
    ProbeItem& byFirst = AttachProbe(user, CmdItem::GROUP, "FIRST");

    container.CreateReferences();

    EXPECT_TRUE(bySecond.Offers().empty());
    EXPECT_EQ(byFirst.Offers(), std::vector<const ZentuCmd*>{&twoIds});
}

TEST(CreateReferences, EmptyTextMatchesOnlyAnEmptyIdentifier) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::MODEL_INPUT);
    ZentuCmd& user = container.CreateCommand(Cmd::DV);
    ProbeItem& empty = AttachProbe(user, CmdItem::GROUP, "");

    container.CreateReferences();
    EXPECT_TRUE(empty.Offers().empty());

    ZentuCmd& emptyId = container.CreateCommand(Cmd::OBJ_FUNC, "OBJ_FUNC", "");
    container.CreateReferences();
    EXPECT_EQ(empty.Offers(), std::vector<const ZentuCmd*>{&emptyId});
}

TEST(CreateReferences, TextItemsAreOfferedButKeepNoReference) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
    ZentuCmd& dv = container.CreateCommand(Cmd::DV);
    dv.AddStringItem(CmdItem::GROUP, "g1");
    dv.AddItem(CmdItem::GROUP, std::make_unique<ZentuCmdRawStringItem>("GROUP", "G1"));
    ProbeItem& after = AttachProbe(dv, CmdItem::GROUP, "G1");

    container.CreateReferences();

    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_FALSE(dv.Item(CmdItem::GROUP, i).HasReference()) << i;
        EXPECT_EQ(dv.Item(CmdItem::GROUP, i).GetReference(), nullptr) << i;
    }
    EXPECT_EQ(after.Offers().size(), 1U);
}

TEST(CreateReferences, IdentifierItemsAreNeverOffered) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
    ZentuCmd& dv = container.CreateCommand(Cmd::DV);
    ProbeItem& firstId = Attach(dv, CmdItem::ID_NAME, std::make_unique<ProbeItem>("ID_NAME", "G1"));
    ProbeItem& secondId =
        Attach(dv, CmdItem::ID_NAME, std::make_unique<ProbeItem>("ID_NAME", "G1"));

    container.CreateReferences();

    EXPECT_TRUE(firstId.Offers().empty());
    EXPECT_TRUE(secondId.Offers().empty());
}

struct ListKeyCase {
    std::string label;
    unsigned readings;
    std::vector<std::string> list;
    std::string text;
    std::string boundTo;  // identifier of the expected command; empty for none
};

TEST(CreateReferences, ListWithMoreThanOneTextIsKeyedByItsFirst) {
    const unsigned listed = zentu_test::kString | zentu_test::kList;
    const std::vector<ListKeyCase> cases = {
        {"two texts", listed, {"G1", "G2"}, "G2", "G1"},
        {"two texts reversed", listed, {"G2", "G1"}, "G1", "G2"},
        {"three texts", listed, {"G1", "G2", "G3"}, "", "G1"},
        {"first text names nothing", listed, {"NONE", "G1"}, "G1", ""},
        {"one text", listed, {"G1"}, "G2", "G2"},
        {"empty list", listed, {}, "G1", "G1"},
        {"list not claimed", zentu_test::kString, {"G1", "G2"}, "G2", "G2"},
        {"no reading claimed", zentu_test::kNoReading, {}, "G1", "G1"},
    };
    ZentuCmdContainer container;
    ZentuCmd& g1 = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "G1");
    ZentuCmd& g2 = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "G2");
    ZentuCmd& user = container.CreateCommand(Cmd::DV);
    std::vector<ProbeItem*> probes;
    for (const ListKeyCase& keyCase : cases) {
        auto probe = std::make_unique<ProbeItem>(keyCase.label, keyCase.text, keyCase.readings);
        probe->WithList(keyCase.list);
        probes.push_back(&Attach(user, CmdItem::GROUP, std::move(probe)));
    }

    container.CreateReferences();

    for (std::size_t i = 0; i < cases.size(); ++i) {
        std::vector<const ZentuCmd*> expected;
        if (!cases[i].boundTo.empty()) {
            expected.push_back(cases[i].boundTo == "G1" ? &g1 : &g2);
        }
        EXPECT_EQ(probes[i]->Offers(), expected) << cases[i].label;
    }
}

TEST(CreateReferences, ReferenceItemMovesToAnEarlierNamesake) {
    ZentuCmdContainer container;
    ZentuCmd& earlier = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
    ZentuCmd& later = container.CreateCommand(Cmd::DV, "DV", "g1");
    ZentuCmd& withoutId = container.CreateCommand(Cmd::DV);
    ZentuCmd& user = container.CreateCommand(Cmd::OPERATOR);
    user.AddItem(CmdItem::DRESP, later);
    user.AddItem(CmdItem::DRESP, withoutId);

    container.CreateReferences();

    EXPECT_EQ(user.Item(CmdItem::DRESP, 0).GetReference(), &earlier);
    // Its key is the empty text, which names no command here.
    EXPECT_EQ(user.Item(CmdItem::DRESP, 1).GetReference(), &withoutId);
}

TEST(CreateReferences, ItemNamingItsOwnCommandBindsToIt) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::DRESP, "DRESP", "d0");
    ZentuCmd& self = container.CreateCommand(Cmd::DRESP, "DRESP", "d1");
    ProbeItem& probe = AttachProbe(self, CmdItem::TARGET, "D1");

    container.CreateReferences();

    EXPECT_EQ(probe.Offers(), std::vector<const ZentuCmd*>{&self});
}

TEST(CreateReferences, OffersEveryItemKindButTheIdentifierInContainerOrder) {
    ZentuCmdContainer container;
    std::vector<std::string> log;
    auto attach = [&log](ZentuCmd& cmd, CmdItem kind, const std::string& label) {
        Attach(cmd, kind, std::make_unique<ProbeItem>(label, "T")).LogOffersTo(&log);
    };
    ZentuCmd& operatorCmd = container.CreateCommand(Cmd::OPERATOR);
    attach(operatorCmd, CmdItem::TYPE, "operator");
    ZentuCmd& dv = container.CreateCommand(Cmd::DV);
    // Added last kind first, so only an ordered walk yields ascending kinds.
    for (std::size_t kind = ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT - 1; kind > 0; --kind) {
        attach(dv, static_cast<CmdItem>(kind), std::to_string(kind));
    }
    attach(dv, CmdItem::GROUP, "4 again");
    attach(dv, CmdItem::ID_NAME, "identifier");
    ZentuCmd& group = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "T");
    attach(group, CmdItem::PLACEHOLDER, "group");

    container.CreateReferences();

    std::vector<std::string> expected = {"group"};
    for (std::size_t kind = 1; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        expected.push_back(std::to_string(kind));
        if (kind == 4) {
            expected.push_back("4 again");
        }
    }
    expected.push_back("operator");
    EXPECT_EQ(log, expected);
}

TEST(CreateReferences, RunningAgainResolvesAgainstTheCurrentState) {
    ZentuCmdContainer container;
    ZentuCmd& group = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
    ZentuCmd& user = container.CreateCommand(Cmd::DV);
    ProbeItem& probe = AttachProbe(user, CmdItem::GROUP, "G1");
    user.AddItem(CmdItem::ELEMENT_GROUP, group);

    container.CreateReferences();
    EXPECT_EQ(probe.Offers(), std::vector<const ZentuCmd*>{&group});

    ZentuCmd& model = container.CreateCommand(Cmd::MODEL_INPUT, "MODEL_INPUT", "g1");
    container.CreateReferences();
    EXPECT_EQ(probe.Offers(), (std::vector<const ZentuCmd*>{&group, &model}));
    EXPECT_EQ(user.Item(CmdItem::ELEMENT_GROUP, 0).GetReference(), &model);

    // A reference item must not outlive its target, so it goes before the command does.
    user.EraseAll(CmdItem::ELEMENT_GROUP);
    container.Erase(Cmd::MODEL_INPUT, container.GetCommandBegin(Cmd::MODEL_INPUT));
    container.CreateReferences();
    EXPECT_EQ(probe.Offers(), (std::vector<const ZentuCmd*>{&group, &model, &group}));
}

TEST(CreateReferences, ChangesNothingButTheBindings) {
    ZentuCmdContainer container;
    container.CreateCommand(Cmd::DRESP, "RESPONSE", "d1");
    ZentuCmd& group = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "g1");
    ZentuCmd& dv = container.CreateCommand(Cmd::DV, "DV_TOPO", "v1");
    AttachProbe(dv, CmdItem::GROUP, "G1");
    dv.AddStringItem(CmdItem::TYPE, "d1");
    dv.AddItem(CmdItem::DRESP, group);
    container.CreateCommand(Cmd::CMD_PLACEHOLDER, "ANY", "d1");
    const std::string before = Snapshot(container);

    container.CreateReferences();

    EXPECT_EQ(Snapshot(container), before);
}

// A small deterministic generator, so the large case is the same on every platform.
class DeterministicRandom {
  public:
    std::uint32_t Next(std::uint32_t bound) {
        state_ = state_ * 1664525U + 1013904223U;
        return (state_ >> 8) % bound;
    }

  private:
    std::uint32_t state_ = 20240611U;
};

// The rule written as plainly as possible: the key of an item, and the first command in
// container order whose first identifier equals it.
std::string KeyOf(const ZentuCmdItem& item) {
    const std::vector<std::string> list = item.GetList();
    return item.HasList() && list.size() > 1 ? list.front() : item.GetString();
}

const ZentuCmd* NaiveMatch(const ZentuCmdContainer& container, const std::string& key) {
    for (const ZentuCmd* cmd : ContainerOrder(container)) {
        if (cmd->HasItem(CmdItem::ID_NAME, 0) &&
            cmd->Item(CmdItem::ID_NAME, 0).GetString() == key) {
            return cmd;
        }
    }
    return nullptr;
}

std::string RandomId(DeterministicRandom& random) {
    const std::uint32_t choice = random.Next(100);
    const std::string number = std::to_string(random.Next(900));
    if (choice < 3) {
        return "";
    }
    return (choice < 10 ? "id" : "ID") + number;
}

TEST(CreateReferences, AgreesWithAPlainSearchOnALargeContainer) {
    constexpr std::size_t kCommands = 2000;
    DeterministicRandom random;
    ZentuCmdContainer container;
    std::vector<ZentuCmd*> commands;
    for (std::size_t i = 0; i < kCommands; ++i) {
        ZentuCmd& cmd = container.CreateCommand(static_cast<Cmd>(random.Next(21)));
        // Most commands carry one identifier, some none, and a few a second one that must be
        // ignored.
        const std::uint32_t roll = random.Next(20);
        const std::uint32_t idCount = roll < 2 ? 0 : (roll < 4 ? 2 : 1);
        for (std::uint32_t id = 0; id < idCount; ++id) {
            cmd.AddItem(CmdItem::ID_NAME,
                        std::make_unique<ZentuCmdRawStringItem>("ID_NAME", RandomId(random)));
        }
        commands.push_back(&cmd);
    }

    struct Expectation {
        const ZentuCmdItem* item;
        const ZentuCmd* before;
        std::string key;
    };
    std::vector<Expectation> expectations;
    for (ZentuCmd* cmd : commands) {
        for (std::uint32_t n = random.Next(4); n > 0; --n) {
            const auto kind = static_cast<CmdItem>(1 + random.Next(39));
            const std::uint32_t shape = random.Next(10);
            if (shape < 2) {
                cmd->AddItem(kind, *commands[random.Next(kCommands)]);
            } else {
                auto probe = std::make_unique<ProbeItem>("P", RandomId(random),
                                                         zentu_test::kString | zentu_test::kList);
                if (shape < 5) {
                    probe->WithList({RandomId(random), RandomId(random)});
                }
                Attach(*cmd, kind, std::move(probe));
            }
            const ZentuCmdItem& added = cmd->Item(kind, cmd->Items(kind).size() - 1);
            expectations.push_back({&added, added.GetReference(), KeyOf(added)});
        }
    }
    ASSERT_GT(expectations.size(), kCommands);

    container.CreateReferences();

    std::size_t bound = 0;
    for (const Expectation& expectation : expectations) {
        const ZentuCmd* match = NaiveMatch(container, expectation.key);
        bound += match != nullptr ? 1 : 0;
        const auto* probe = dynamic_cast<const ProbeItem*>(expectation.item);
        if (probe != nullptr) {
            const std::vector<const ZentuCmd*> offers = match == nullptr
                                                            ? std::vector<const ZentuCmd*>{}
                                                            : std::vector<const ZentuCmd*>{match};
            ASSERT_EQ(probe->Offers(), offers) << "key \"" << expectation.key << '"';
        } else {
            ASSERT_EQ(expectation.item->GetReference(),
                      match == nullptr ? expectation.before : match)
                << "key \"" << expectation.key << '"';
        }
    }
    // The data must exercise both outcomes to mean anything.
    EXPECT_GT(bound, expectations.size() / 4);
    EXPECT_LT(bound, expectations.size());
}

}  // namespace
