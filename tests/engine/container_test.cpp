#include <gtest/gtest.h>

#include <array>
#include <map>
#include <sstream>

#include "ZentuCmdContainerIterator.h"
#include "engine_test_support.h"
#include "zentu_test_cases.h"

namespace {

using zentu_test::Attach;
using zentu_test::AttachProbe;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using Cmds = std::vector<const ZentuCmd*>;

constexpr unsigned kListed = zentu_test::kString | zentu_test::kList;

// The commands of a walk, a sequence or a search result, in the order given.
template <typename Range>
Cmds Addresses(const Range& range) {
    Cmds addresses;
    for (const auto& cmd : range) {
        if constexpr (std::is_convertible_v<decltype(cmd), const ZentuCmd&>) {
            addresses.push_back(&static_cast<const ZentuCmd&>(cmd));
        } else {
            addresses.push_back(cmd.get());
        }
    }
    return addresses;
}

Cmds Sequence(const ZentuCmdContainer& container, Cmd kind) {
    return Addresses(container.GetCommandRange(kind));
}

// Container order read kind by kind without the iterator, an independent yardstick.
Cmds ContainerOrder(const ZentuCmdContainer& container) {
    Cmds ordered;
    for (std::size_t kind = 0; kind < ZentuCmdDefs::CMD_KIND_COUNT; ++kind) {
        const Cmds sequence = Sequence(container, static_cast<Cmd>(kind));
        ordered.insert(ordered.end(), sequence.begin(), sequence.end());
    }
    return ordered;
}

// Everything but reference targets, written out so that a difference reads as text.
std::string Snapshot(const ZentuCmdContainer& container) {
    std::ostringstream out;
    for (std::size_t kind = 0; kind < ZentuCmdDefs::CMD_KIND_COUNT; ++kind) {
        for (const ZentuCmd* cmd : Sequence(container, static_cast<Cmd>(kind))) {
            out << kind << ' ' << cmd << ' ' << ToInt(cmd->GetType()) << ' ' << cmd->GetName();
            for (const ZentuCmdItem* item : zentu_test::Identities(*cmd)) {
                out << ' ' << item << ':' << item->GetName() << '=' << item->GetString();
            }
            out << '\n';
        }
    }
    return out.str();
}

// Hosts query kinds they never filled, so a container must answer for them without creating;
// each way of creating names the command as asked and gives only the identified one an item.
TEST(ContainerCreateCommand, KindsWithoutCommandsAnswerNeutrallyAndGetCommandFindsByIndex) {
    ZentuCmdContainer container;
    const ZentuCmdContainer& view = container;
    container.CreateReferences();
    EXPECT_EQ(container.begin(), container.end());
    for (std::size_t i = 0; i < ZentuCmdDefs::CMD_KIND_COUNT; ++i) {
        SCOPED_TRACE(i);
        const auto kind = static_cast<Cmd>(i);
        EXPECT_EQ(&container.GetCommand(kind, 0), &ZentuCmdContainer::s_DefaultCmd);
        EXPECT_EQ(&view.GetCommand(kind, 3), &ZentuCmdContainer::s_DefaultCmd);
        EXPECT_FALSE(container.HasCommand(kind));
        EXPECT_EQ(container.GetNumberOfCommands(kind), 0U);
        EXPECT_TRUE(container.GetCommands(kind).empty());
        EXPECT_EQ(container.GetCommandBegin(kind), container.GetCommandEnd(kind));
        EXPECT_TRUE(container.Filter(kind, CmdItem::ID_NAME, "").empty());
        EXPECT_TRUE(view.Filter(kind, CmdItem::ID_NAME, "").empty());
        EXPECT_FALSE(container.HasCommandWithReference(kind, CmdItem::GROUP));
        EXPECT_FALSE(container.HasCommandWithType(kind, CmdItem::GROUP, DataType::STRING));
    }
    ZentuCmd& byKind = container.CreateCommand(Cmd::DV);
    ZentuCmd& named = container.CreateCommand(Cmd::DV, "DV_TOPO");
    ZentuCmd& identified = container.CreateCommand(Cmd::DV, "DV_TOPO", "d1");
    container.CreateCommand(Cmd::DRESP);
    EXPECT_EQ(Sequence(container, Cmd::DV), (Cmds{&byKind, &named, &identified}));
    EXPECT_EQ(zentu_test::CmdLines(container),
              (std::vector<std::string>{"DV@DV", "DV_TOPO@DV",
                                        "DV_TOPO@DV ID_NAME:ID_NAME=D1/string", "DRESP@DRESP"}));
    // Past the last index comes the first command of the kind, else the placeholder.
    EXPECT_EQ(&container.GetCommand(Cmd::DV, 2), &identified);
    for (std::size_t index : {std::size_t{0}, std::size_t{3}, std::size_t{99}, SIZE_MAX}) {
        EXPECT_EQ(&container.GetCommand(Cmd::DV, index), &byKind) << index;
        EXPECT_EQ(&view.GetCommand(Cmd::DV, index), &byKind) << index;
        EXPECT_EQ(&view.GetCommand(Cmd::OBJ_FUNC, index), &ZentuCmdContainer::s_DefaultCmd);
    }
}

// Writers and reference resolution walk commands kind by kind, so the order is part of the API;
// erasing in a loop relies on the returned position and on the command being destroyed.
TEST(ContainerOrder, KindsAscendThenCreationOrderAndErasingKeepsIt) {
    std::array<bool, 3> destroyed{};
    ZentuCmdContainer container;
    const ZentuCmdContainer::ConstCmdSequence& view = container.GetCommands(Cmd::DRESP);
    ZentuCmd& a = container.CreateCommand(Cmd::DRESP, "a");
    ZentuCmd& b = container.CreateCommand(Cmd::DV, "b");
    ZentuCmd& c = container.CreateCommand(Cmd::DRESP, "c");
    ZentuCmd& d = container.CreateCommand(Cmd::DRESP, "d");
    ZentuCmd& last = container.CreateCommand(Cmd::CMD_PLACEHOLDER, "last");
    ZentuCmd& first = container.CreateCommand(Cmd::MODEL_INPUT, "first");
    AttachProbe(a, CmdItem::VALUE, "v").WatchDestruction(&destroyed[0]);
    AttachProbe(c, CmdItem::VALUE, "v").WatchDestruction(&destroyed[1]);
    AttachProbe(d, CmdItem::VALUE, "v").WatchDestruction(&destroyed[2]);
    // The command stays where it was created whatever kind it later claims.
    a.SetType(Cmd::OBJ_FUNC);
    EXPECT_EQ(Addresses(container), (Cmds{&first, &b, &a, &c, &d, &last}));
    EXPECT_EQ(ContainerOrder(container), Addresses(container));
    EXPECT_EQ(&container.GetCommands(Cmd::DRESP), &view);
    EXPECT_EQ(Addresses(view), (Cmds{&a, &c, &d}));
    EXPECT_EQ(container.GetNumberOfCommands(Cmd::DRESP), 3U);
    EXPECT_TRUE(container.HasCommand(Cmd::CMD_PLACEHOLDER));
    EXPECT_FALSE(container.HasCommand(Cmd::OBJ_FUNC));
    EXPECT_EQ(a.GetName(), "a");
    auto next = container.Erase(Cmd::DRESP, std::next(container.GetCommandBegin(Cmd::DRESP)));
    EXPECT_EQ(destroyed, (std::array<bool, 3>{false, true, false}));
    ASSERT_NE(next, container.GetCommandEnd(Cmd::DRESP));
    EXPECT_EQ(next->get(), &d);
    EXPECT_EQ(Addresses(view), (Cmds{&a, &d}));
    next = container.Erase(Cmd::DRESP, next);
    EXPECT_EQ(next, container.GetCommandEnd(Cmd::DRESP));
    EXPECT_EQ(destroyed, (std::array<bool, 3>{false, true, true}));
    // The iterator passes over kinds that have been emptied.
    container.Erase(Cmd::DRESP, container.GetCommandBegin(Cmd::DRESP));
    EXPECT_EQ(Addresses(container), (Cmds{&first, &b, &last}));
    for (Cmd kind : {Cmd::MODEL_INPUT, Cmd::DV, Cmd::CMD_PLACEHOLDER}) {
        container.Erase(kind, container.GetCommandBegin(kind));
    }
    EXPECT_EQ(container.begin(), container.end());
}

// Moving re-kinds a command in place; indices past the end and empty kinds change nothing.
TEST(ContainerMoveCmd, AppendsTheCommandToItsNewKindUnderThatKindsName) {
    ZentuCmdContainer container;
    ZentuCmd& a = container.CreateCommand(Cmd::DRESP, "OWN_A", "a");
    ZentuCmd& b = container.CreateCommand(Cmd::DRESP, "OWN_B", "b");
    ZentuCmd& c = container.CreateCommand(Cmd::DRESP, "OWN_C", "c");
    ZentuCmd& existing = container.CreateCommand(Cmd::OBJ_FUNC, "EXISTING");
    const std::string before = Snapshot(container);
    for (std::size_t index : {std::size_t{3}, std::size_t{5}, SIZE_MAX}) {
        container.MoveCmd(Cmd::DRESP, index, Cmd::OBJ_FUNC);
    }
    container.MoveCmd(Cmd::REPORT, 0, Cmd::DRESP);
    EXPECT_EQ(Snapshot(container), before);
    container.MoveCmd(Cmd::DRESP, 0, Cmd::DRESP);
    EXPECT_EQ(Sequence(container, Cmd::DRESP), (Cmds{&b, &c, &a}));
    EXPECT_EQ(a.GetName(), "DRESP");
    container.MoveCmd(Cmd::DRESP, 2, Cmd::DRESP);
    EXPECT_EQ(Sequence(container, Cmd::DRESP), (Cmds{&b, &c, &a}));
    container.MoveCmd(Cmd::DRESP, 0, Cmd::OBJ_FUNC);
    EXPECT_EQ(Sequence(container, Cmd::DRESP), (Cmds{&c, &a}));
    EXPECT_EQ(Sequence(container, Cmd::OBJ_FUNC), (Cmds{&existing, &b}));
    EXPECT_EQ(ToInt(b.GetType()), ToInt(Cmd::OBJ_FUNC));
    EXPECT_EQ(b.GetName(), "OBJ_FUNC");
    EXPECT_EQ(b.Item(CmdItem::ID_NAME, 0).GetString(), "B");
    EXPECT_EQ(c.GetName(), "OWN_C");
    // The table name of the last kind, not the placeholder command's own name.
    container.MoveCmd(Cmd::OBJ_FUNC, 1, Cmd::CMD_PLACEHOLDER);
    EXPECT_EQ(Sequence(container, Cmd::CMD_PLACEHOLDER), Cmds{&b});
    EXPECT_EQ(b.GetName(), "CMD_PLACEHOLDER");
}

// Filter compares only the first item of the kind, case included, and hands out the originals;
// rules decide from the first command's first item alone, so later items must not count.
TEST(ContainerFirstItem, FilterAndTypeTestsLookOnlyAtTheFirstItemOfTheKind) {
    ZentuCmdContainer container;
    ZentuCmd& target = container.CreateCommand(Cmd::GROUP_DEF, "G", "g");
    target.AddStringItem(CmdItem::TYPE, "A");
    const std::vector<std::vector<std::string>> dvTypes = {{"A"},      {"a"}, {},
                                                           {"B", "A"}, {"A"}, {"A "}};
    std::vector<ZentuCmd*> dvs;
    for (const auto& types : dvTypes) {
        dvs.push_back(&container.CreateCommand(Cmd::DV));
        for (const std::string& type : types) {
            dvs.back()->AddItem(CmdItem::TYPE,
                                std::make_unique<ZentuCmdRawStringItem>("TYPE", type));
        }
    }
    dvs[0]->AddStringItem(CmdItem::GROUP, "text first");
    dvs[0]->AddItem(CmdItem::GROUP, target);
    dvs[0]->AddItem(CmdItem::ELEMENT_GROUP, target);
    Attach(*dvs[0], CmdItem::VALUE, std::make_unique<ProbeItem>("VALUE", "", zentu_test::kInteger));
    dvs[1]->AddItem(CmdItem::GROUP, target);
    dvs[1]->AddItem(CmdItem::NODE_GROUP, target);
    const ZentuCmdContainer& view = container;
    EXPECT_EQ(Addresses(container.Filter(Cmd::DV, CmdItem::TYPE, "A")), (Cmds{dvs[0], dvs[4]}));
    EXPECT_EQ(Addresses(view.Filter(Cmd::DV, CmdItem::TYPE, "A")), (Cmds{dvs[0], dvs[4]}));
    EXPECT_EQ(Addresses(view.Filter(Cmd::DV, CmdItem::TYPE, "a")), Cmds{dvs[1]});
    EXPECT_TRUE(container.Filter(Cmd::DV, CmdItem::TYPE, "").empty());
    EXPECT_TRUE(container.Filter(Cmd::DV, CmdItem::GROUP, "A").empty());
    EXPECT_TRUE(container.Filter(Cmd::OBJ_FUNC, CmdItem::TYPE, "A").empty());
    // The result refers to the stored commands, not to copies.
    container.Filter(Cmd::DV, CmdItem::TYPE, "a").front().get().SetName("FOUND");
    EXPECT_EQ(dvs[1]->GetName(), "FOUND");
    EXPECT_FALSE(container.HasCommandWithReference(Cmd::DV, CmdItem::GROUP));
    EXPECT_TRUE(container.HasCommandWithType(Cmd::DV, CmdItem::GROUP, DataType::STRING));
    EXPECT_FALSE(container.HasCommandWithType(Cmd::DV, CmdItem::GROUP, DataType::REFERENCE));
    EXPECT_FALSE(container.HasCommandWithType(Cmd::DV, CmdItem::GROUP, DataType::RAW_STRING));
    EXPECT_TRUE(container.HasCommandWithReference(Cmd::DV, CmdItem::ELEMENT_GROUP));
    EXPECT_TRUE(container.HasCommandWithType(Cmd::DV, CmdItem::ELEMENT_GROUP, DataType::STRING));
    EXPECT_FALSE(container.HasCommandWithReference(Cmd::DV, CmdItem::NODE_GROUP));
    EXPECT_FALSE(container.HasCommandWithType(Cmd::DV, CmdItem::NODE_GROUP, DataType::STRING));
    EXPECT_TRUE(container.HasCommandWithType(Cmd::DV, CmdItem::VALUE, DataType::INTEGER));
    EXPECT_FALSE(container.HasCommandWithType(Cmd::DV, CmdItem::VALUE, DataType::REAL));
}

// The iterator reaches the stored commands, saturates at the end and tells containers apart;
// moving a container hands over the commands themselves and frees what the target held.
TEST(ContainerIterator, StepsToTheEndStaysThereAndMovesWithTheCommands) {
    ZentuCmdContainer container;
    ZentuCmd& objective = container.CreateCommand(Cmd::OBJ_FUNC);
    ZentuCmd& dv = container.CreateCommand(Cmd::DV);
    ZentuCmdContainerIterator it(container);
    EXPECT_EQ(it, container.begin());
    it->SetName("RENAMED");
    (*it).AddStringItem(CmdItem::TYPE, "t");
    EXPECT_EQ(dv.GetName(), "RENAMED");
    EXPECT_TRUE(dv.HasItem(CmdItem::TYPE, 0));
    const ZentuCmdContainerIterator before = it++;
    EXPECT_EQ(&*before, &dv);
    EXPECT_EQ(before->GetName(), "RENAMED");
    EXPECT_EQ(&*it, &objective);
    EXPECT_EQ(++it, container.end());
    EXPECT_EQ(++it, container.end());
    ZentuCmdContainerIterator other = container.begin();
    EXPECT_NE(other, container.end());
    other.end();
    EXPECT_EQ(other, container.end());
    other = before;
    EXPECT_EQ(other, container.begin());
    const ZentuCmdContainer first;
    const ZentuCmdContainer second;
    EXPECT_NE(first.end(), second.end());
    EXPECT_NE(first.begin(), second.begin());

    bool destroyed = false;
    ZentuCmd& last = container.CreateCommand(Cmd::CMD_PLACEHOLDER);
    ZentuCmdContainer constructed(std::move(container));
    EXPECT_EQ(Addresses(constructed), (Cmds{&dv, &objective, &last}));
    ZentuCmdContainer assigned;
    AttachProbe(assigned.CreateCommand(Cmd::DV), CmdItem::VALUE, "v").WatchDestruction(&destroyed);
    assigned.CreateCommand(Cmd::REPORT);
    assigned = std::move(constructed);
    ZentuCmdContainer& alias = assigned;
    assigned = std::move(alias);
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(Addresses(assigned), (Cmds{&dv, &objective, &last}));
    // NOLINTNEXTLINE(bugprone-use-after-move)
    for (const ZentuCmdContainer* emptied : {&container, &constructed}) {
        EXPECT_EQ(emptied->begin(), emptied->end());
        EXPECT_EQ(ContainerOrder(*emptied), Cmds{});
    }
}

// Reference resolution ------------------------------------------------------------------------

// Binding follows container order and the first identifier only, with a list keyed by its head.
TEST(CreateReferences, KeyBindsToTheFirstCommandInContainerOrderWithThatFirstIdentifier) {
    ZentuCmdContainer container;
    // Kind 0 comes first, but without an identifier it matches nothing, not even "".
    ZentuCmd& withoutId = container.CreateCommand(Cmd::MODEL_INPUT);
    ZentuCmd& laterShared = container.CreateCommand(Cmd::DV, "DV", "shared");
    ZentuCmd& upperG1 = container.CreateCommand(Cmd::DV, "DV", "G1");
    ZentuCmd& lowerG1 = container.CreateCommand(Cmd::GROUP_DEF);
    lowerG1.AddItem(CmdItem::ID_NAME, std::make_unique<ZentuCmdRawStringItem>("ID_NAME", "g1"));
    ZentuCmd& other = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "other");
    ZentuCmd& shared = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "shared");
    container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "shared");
    ZentuCmd& twoIds = container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "first");
    twoIds.AddStringItem(CmdItem::ID_NAME, "second");
    // Identifier items are never offered, though the first one makes the command "D1".
    ZentuCmd& self = container.CreateCommand(Cmd::DRESP);
    const std::array<ProbeItem*, 2> ids = {&AttachProbe(self, CmdItem::ID_NAME, "D1"),
                                           &AttachProbe(self, CmdItem::ID_NAME, "G1")};
    // Text items are offered too but keep no reference.
    self.AddStringItem(CmdItem::GROUP, "g1");
    self.AddItem(CmdItem::GROUP, std::make_unique<ZentuCmdRawStringItem>("GROUP", "G1"));
    self.AddItem(CmdItem::DRESP, laterShared);
    self.AddItem(CmdItem::DRESP, withoutId);
    // An automatically typed list is keyed by its first part, trimmed.
    self.AddAutoItem(CmdItem::VALUE, "VALUE", "G1 , OTHER", {});
    const std::map<std::string, const ZentuCmd*> targets = {
        {"-", nullptr},       {"upper G1", &upperG1}, {"lower g1", &lowerG1}, {"shared", &shared},
        {"two ids", &twoIds}, {"self", &self},        {"other", &other}};
    const auto cases = zentu_test::DataCases("engine/cases/reference_keys.txt", 4);
    std::vector<ProbeItem*> probes;
    for (const auto& c : cases) {
        const unsigned readings = c.fields[2] == "list"   ? kListed
                                  : c.fields[2] == "text" ? zentu_test::kString
                                                          : zentu_test::kNoReading;
        probes.push_back(
            &Attach(self, CmdItem::TARGET,
                    std::make_unique<ProbeItem>("P", c.fields[0] == "-" ? "" : c.fields[0],
                                                readings, zentu_test::FieldLines(c.fields[3]))));
    }
    const std::string before = Snapshot(container);

    container.CreateReferences();

    for (std::size_t i = 0; i < cases.size(); ++i) {
        const ZentuCmd* boundTo = targets.at(cases[i].fields[1]);
        EXPECT_EQ(probes[i]->Offers(), boundTo == nullptr ? Cmds{} : Cmds{boundTo})
            << cases[i].where;
    }
    for (const ProbeItem* id : ids) {
        EXPECT_TRUE(id->Offers().empty());
    }
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(self.Item(CmdItem::GROUP, i).GetReference(), nullptr) << i;
    }
    // A reference item moves to an earlier namesake of its target, or stays without a match.
    EXPECT_EQ(self.Item(CmdItem::DRESP, 0).GetReference(), &shared);
    EXPECT_EQ(self.Item(CmdItem::DRESP, 1).GetReference(), &withoutId);
    EXPECT_EQ(self.Item(CmdItem::VALUE, 0).GetReference(), &upperG1);
    EXPECT_EQ(Snapshot(container), before);
    // Every run resolves against the container as it is then.
    ZentuCmd& emptyId = container.CreateCommand(Cmd::OBJ_FUNC, "OBJ_FUNC", "");
    ZentuCmd& earlierG1 = container.CreateCommand(Cmd::MODEL_INPUT, "MODEL_INPUT", "G1");
    container.CreateReferences();
    EXPECT_EQ(probes[0]->Offers(), (Cmds{&upperG1, &earlierG1}));
    EXPECT_EQ(probes[1]->Offers(), Cmds{&emptyId});
    EXPECT_EQ(self.Item(CmdItem::DRESP, 1).GetReference(), &emptyId);
    container.Erase(Cmd::MODEL_INPUT, std::next(container.GetCommandBegin(Cmd::MODEL_INPUT)));
    container.CreateReferences();
    EXPECT_EQ(probes[0]->Offers(), (Cmds{&upperG1, &earlierG1, &upperG1}));
}

// Every item but an identifier is offered its target, kinds ascending, in container order.
TEST(CreateReferences, OffersEveryItemKindButTheIdentifierInContainerOrder) {
    ZentuCmdContainer container;
    std::vector<std::string> log;
    auto attach = [&log](ZentuCmd& cmd, CmdItem kind, const std::string& label) {
        Attach(cmd, kind, std::make_unique<ProbeItem>(label, "T")).LogOffersTo(&log);
    };
    attach(container.CreateCommand(Cmd::OPERATOR), CmdItem::TYPE, "operator");
    ZentuCmd& dv = container.CreateCommand(Cmd::DV);
    // Added last kind first, so only an ordered walk yields ascending kinds.
    for (std::size_t kind = ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT - 1; kind > 0; --kind) {
        attach(dv, static_cast<CmdItem>(kind), std::to_string(kind));
    }
    attach(dv, CmdItem::GROUP, "4 again");
    attach(container.CreateCommand(Cmd::GROUP_DEF, "GROUP_DEF", "T"), CmdItem::PLACEHOLDER,
           "group");
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

}  // namespace
