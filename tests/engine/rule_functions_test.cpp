#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <tuple>

#include "ZentuCmdContainerRules.h"
#include "engine_test_support.h"
#include "zentu_test_cases.h"

namespace {

namespace Rules = ZentuCmdContainerRules;
using zentu_test::Identities;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using Texts = std::vector<std::string>;

// Items as "class name=text" (a reference's text names its target): hosts rely on the class.
std::string Items(const ZentuCmd& cmd, CmdItem kind) {
    std::string out;
    for (const auto& item : cmd.Items(kind)) {
        out += (out.empty() ? "" : "; ") + zentu_test::ClassOf(*item) + " " + item->GetName() +
               "=" + item->GetString();
    }
    return out;
}

class RuleFunctionTest : public ::testing::Test {
  protected:
    // Rules find their targets by identifier, so every command gets one.
    ZentuCmd& Command(Cmd kind, const std::string& id) {
        return container_.CreateCommand(kind, ZentuCmdDefs::CMD_NAMES.at(zentu_test::ToInt(kind)),
                                        id);
    }

    ZentuCmdContainer container_;
    const ZentuCmdItemDefs::KeywordMap keywords_ = ZentuCmdItemDefs::create_enum_map();
};

// Each rule adds its one item, and since rules run again on every read, a second run or a kind
// already held must change nothing.
TEST_F(RuleFunctionTest, PerCommandRulesAddOneItemOnceAndNeverToAKindAlreadyHeld) {
    Command(Cmd::DV, "V1");
    Command(Cmd::DRESP, "D1").AddAutoItem(CmdItem::VALUE, "LIMIT", "7", keywords_);
    Command(Cmd::OBJ_FUNC, "O1").AddItem(CmdItem::DRESP, container_.GetCommand(Cmd::DRESP, 0));
    const auto& all = container_;
    const auto& words = keywords_;
    // clang-format off
    const std::tuple<const char*, CmdItem, const char*, std::function<void(ZentuCmd&)>> rules[] = {
        {"AddReference", CmdItem::DRESP, "ref RESPONSE=D1", [&](ZentuCmd& cmd) {
            Rules::Rule_AddReference(cmd, all, CmdItem::DRESP, "RESPONSE", Cmd::DRESP, "D1"); }},
        {"AddReferenceToFirstCmd", CmdItem::DV, "ref DESIGN=V1", [&](ZentuCmd& cmd) {
            Rules::Rule_AddReferenceToFirstCmd(cmd, all, CmdItem::DV, "DESIGN", Cmd::DV); }},
        {"AddValueIfEnumPresent", CmdItem::VALUE, "auto VALUE=1.5", [&](ZentuCmd& cmd) {
            Rules::Rule_AddValueIfEnumPresent(cmd, all, CmdItem::TYPE, EnumValue::COMBINE,
                                              CmdItem::VALUE, "VALUE", "1.5", words); }},
        {"AddValueIfNotPresent", CmdItem::MIN, "auto MIN=0", [&](ZentuCmd& cmd) {
            Rules::Rule_AddValueIfNotPresent(cmd, all, CmdItem::MIN, "MIN", "0", words); }},
        {"CopyTypeToCmd", CmdItem::MAX, "auto UPPER=7", [&](ZentuCmd& cmd) {
            Rules::Rule_CopyTypeToCmd(cmd, all, Cmd::OBJ_FUNC, CmdItem::DRESP, CmdItem::VALUE,
                                      CmdItem::MAX, "UPPER", DataType::INTEGER, words, false); }},
        {"CopyTypeToCmdShort", CmdItem::VALUE, "auto LIMIT=7", [&](ZentuCmd& cmd) {
            Rules::Rule_CopyTypeToCmd(cmd, all, Cmd::OBJ_FUNC, CmdItem::DRESP, CmdItem::VALUE,
                                      DataType::INTEGER, words, false); }}};
    // clang-format on
    for (const auto& [name, adds, added, apply] : rules) {
        SCOPED_TRACE(name);
        ZentuCmd& subject = Command(Cmd::CONSTRAINT, "C1");
        ZentuCmd& holder = Command(Cmd::CONSTRAINT, "C2");
        subject.AddAutoItem(CmdItem::TYPE, "combine", keywords_);
        holder.AddAutoItem(CmdItem::TYPE, "combine", keywords_);
        holder.AddStringItem(adds, "HELD", "other");
        const auto held = Identities(holder);
        apply(subject);
        apply(holder);
        EXPECT_EQ(Identities(holder), held);
        EXPECT_EQ(Items(subject, adds), added);
        EXPECT_EQ(Identities(subject).size(), 3U);
        const auto once = Identities(subject);
        apply(subject);
        EXPECT_EQ(Identities(subject), once);
    }
}

// Reference rules add nothing without a fitting command, else refer to the first of the kind.
TEST_F(RuleFunctionTest, ReferenceRulesReferToTheFirstFittingCommandIfAny) {
    ZentuCmd& objective = Command(Cmd::OBJ_FUNC, "O1");
    ZentuCmd& design = Command(Cmd::DV, "D1");  // bears the identifier, but is of another kind
    Command(Cmd::DV, "V2");
    ZentuCmd& response = Command(Cmd::DRESP, "D1");
    Command(Cmd::DRESP, "D1");
    // Identifiers are matched exactly, case included.
    for (const char* id : {"D9", "d1"}) {
        Rules::Rule_AddReference(objective, container_, CmdItem::DRESP, "RESPONSE", Cmd::DRESP, id);
    }
    Rules::Rule_AddReferenceToFirstCmd(objective, container_, CmdItem::DV, "DESIGN", Cmd::SMOOTH);
    EXPECT_EQ(Identities(objective).size(), 1U);
    Rules::Rule_AddReference(objective, container_, CmdItem::DRESP, "RESPONSE", Cmd::DRESP, "D1");
    Rules::Rule_AddReferenceToFirstCmd(objective, container_, CmdItem::DV, "DESIGN", Cmd::DV);
    EXPECT_EQ(Items(objective, CmdItem::DRESP) + "; " + Items(objective, CmdItem::DV),
              "ref RESPONSE=D1; ref DESIGN=D1");
    EXPECT_EQ(objective.Item(CmdItem::DRESP, 0).GetReference(), &response);
    EXPECT_EQ(objective.Item(CmdItem::DV, 0).GetReference(), &design);
}

// The value is added only when the first item of the kind carries the keyword.
TEST_F(RuleFunctionTest, AddValueIfEnumPresentLooksOnlyAtTheFirstItemOfTheKind) {
    for (const auto& c : zentu_test::DataCases("engine/cases/enum_present_values.txt", 3)) {
        ZentuCmd& subject = Command(Cmd::OPERATOR, "P1");
        for (const std::string& text : zentu_test::FieldLines(c.fields[0])) {
            subject.AddAutoItem(CmdItem::TYPE, text, keywords_);
        }
        for (const std::string& text : zentu_test::FieldLines(c.fields[1])) {
            subject.AddStringItem(CmdItem::TYPE, text);
        }
        Rules::Rule_AddValueIfEnumPresent(subject, container_, CmdItem::TYPE, EnumValue::COMBINE,
                                          CmdItem::VALUE, "WEIGHT", "1.5", keywords_);
        EXPECT_EQ(Items(subject, CmdItem::VALUE), c.fields[2] == "-" ? "" : c.fields[2]) << c.where;
    }
}

// Each of the first objective's responses but the last, GOOD, fails the search in its own way.
class RuleCopyTypeToCmd : public RuleFunctionTest {
  protected:
    RuleCopyTypeToCmd() {
        zentu_test::Attach(
            source_, CmdItem::DRESP,
            std::make_unique<zentu_test::ProbeItem>("CLAIM", "X", zentu_test::kReference));
        source_.AddAutoItem(CmdItem::DRESP, "UNBOUND", keywords_);
        source_.AddItem(CmdItem::DRESP, Command(Cmd::DRESP, "BARE"));
        source_.AddItem(CmdItem::DRESP, Response("TEXT", {"abc"}));
        source_.AddItem(CmdItem::DRESP, Response("LATE", {"abc", "8"}));
        source_.AddItem(CmdItem::DRESP, Response("GOOD", {"7"}));
        Command(Cmd::OBJ_FUNC, "O2").AddItem(CmdItem::REFERENCE, Response("LATER", {"9"}));
    }

    // Every VALUE bears the same name, so the copied name cannot tell which one was copied.
    ZentuCmd& Response(const std::string& id, const Texts& values) {
        ZentuCmd& response = Command(Cmd::DRESP, id);
        for (const std::string& value : values) {
            response.AddAutoItem(CmdItem::VALUE, "LIMIT", value, keywords_);
        }
        return response;
    }

    // Copies into MAX, a kind the source items do not have, to tell the target kind apart.
    void CopyToMax(CmdItem refItem) {
        Rules::Rule_CopyTypeToCmd(subject_, container_, Cmd::OBJ_FUNC, refItem, CmdItem::VALUE,
                                  CmdItem::MAX, "UPPER", DataType::INTEGER, keywords_, false);
    }

    // The short form, whose replace case hosts use to refresh a value.
    void CopyValue(bool replace, Cmd sourceKind = Cmd::OBJ_FUNC) {
        Rules::Rule_CopyTypeToCmd(subject_, container_, sourceKind, CmdItem::DRESP, CmdItem::VALUE,
                                  DataType::INTEGER, keywords_, replace);
    }

    ZentuCmd& source_ = Command(Cmd::OBJ_FUNC, "O1");
    ZentuCmd& subject_ = Command(Cmd::CONSTRAINT, "C1");
};

// Only the first source command counts, and in it the first response holding a typed value.
TEST_F(RuleCopyTypeToCmd, CopiesTheFirstValueOfTheTypeFromTheFirstSourceOnly) {
    CopyToMax(CmdItem::REFERENCE);
    CopyValue(true, Cmd::OPERATOR);
    EXPECT_EQ(Identities(subject_).size(), 1U);
    CopyToMax(CmdItem::DRESP);
    EXPECT_EQ(Items(subject_, CmdItem::MAX), "auto UPPER=7");
    EXPECT_EQ(Identities(subject_).size(), 2U);
    // The short form names no item, so the copy keeps the copied item's name.
    CopyValue(false);
    EXPECT_EQ(Items(subject_, CmdItem::VALUE), "auto LIMIT=7");
}

// Replacing must leave later items and an already equal first item alone.
TEST_F(RuleCopyTypeToCmd, ReplaceSwapsOnlyADifferingFirstItemAndOnlyOnce) {
    subject_.AddStringItem(CmdItem::VALUE, "OWN", "5");
    subject_.AddStringItem(CmdItem::VALUE, "OWN", "6");
    const ZentuCmdItem* second = &subject_.Item(CmdItem::VALUE, 1);
    CopyValue(true);
    EXPECT_EQ(Items(subject_, CmdItem::VALUE), "auto LIMIT=7; string OWN=6");
    EXPECT_EQ(&subject_.Item(CmdItem::VALUE, 1), second);
    // A first item that has the text already stays.
    const auto replaced = Identities(subject_);
    CopyValue(true);
    EXPECT_EQ(Identities(subject_), replaced);
}

// Collections (DV_CONSTRAINT) name their target (a DV) by a member; the target gets a LINK back.
class RuleCollection : public RuleFunctionTest {
  protected:
    void Apply(bool fallbackToFirst, Cmd targetKind = Cmd::DV) {
        Rules::rule_add_reference_to_collection_cmd(container_, Cmd::DV_CONSTRAINT, CmdItem::DV,
                                                    targetKind, CmdItem::DV_CONSTRAINT, "LINK",
                                                    fallbackToFirst);
    }

    // Members are reference items, as reading and CreateReferences leave them.
    ZentuCmd& Collection(const std::string& id, const std::vector<const ZentuCmd*>& members) {
        ZentuCmd& collection = Command(Cmd::DV_CONSTRAINT, id);
        for (const ZentuCmd* member : members) {
            collection.AddItem(CmdItem::DV, *member);
        }
        return collection;
    }

    // Every target's links, which show a missing, wrong or duplicated one, then the members left.
    Texts State() const {
        Texts state;
        for (const auto& target : container_.GetCommands(Cmd::DV)) {
            state.push_back(Items(*target, CmdItem::DV_CONSTRAINT));
        }
        std::size_t members = 0;
        for (const auto& collection : container_.GetCommands(Cmd::DV_CONSTRAINT)) {
            members += collection->Items(CmdItem::DV).size();
        }
        state.push_back("members left: " + std::to_string(members));
        return state;
    }

    ZentuCmd& response_ = Command(Cmd::DRESP, "R1");
    ZentuCmd& first_ = Command(Cmd::DV, "V1");
    ZentuCmd& second_ = Command(Cmd::DV, "V2");
};

// The first member picks the target by identifier; a member of another kind links nothing.
TEST_F(RuleCollection, TheFirstMemberNamesTheTargetByIdentifierAndOtherKindsLinkNothing) {
    ZentuCmd& twin = Command(Cmd::DV, "V1");
    ZentuCmd& collection = Collection("C1", {&twin, &second_});
    Collection("C2", {&response_});
    Apply(false);
    EXPECT_EQ(State(), (Texts{"ref LINK=C1", "", "", "members left: 0"}));
    EXPECT_EQ(first_.Item(CmdItem::DV_CONSTRAINT, 0).GetReference(), &collection);
}

// A named target gets its link even twice, and a named but missing target gets no fallback.
TEST_F(RuleCollection, ANamedTargetIsLinkedEvenWhenLinkedAlreadyButNeverFallenBackTo) {
    ZentuCmd& collection = Collection("C1", {&second_});
    second_.AddItem(CmdItem::DV_CONSTRAINT, "LINK", collection);
    // A usable member that names no target gets no fallback either.
    Collection("C2", {&container_.CreateCommand(Cmd::DV)});
    Apply(true);
    EXPECT_EQ(State(), (Texts{"", "ref LINK=C1; ref LINK=C1", "", "members left: 0"}));
}

// Without a usable member the fallback links the first target, once however often it runs.
TEST_F(RuleCollection, FallbackLinksUnusableMembersToTheFirstTargetOnce) {
    Collection("C1", {});
    Collection("C2", {&response_});
    container_.CreateCommand(Cmd::DV_CONSTRAINT).AddItem(CmdItem::DV, second_);
    Apply(true, Cmd::SMOOTH);  // without a target command nothing changes
    EXPECT_EQ(State(), (Texts{"", "", "members left: 2"}));
    Apply(true);
    Apply(true);
    EXPECT_EQ(State(), (Texts{"ref LINK=C1; ref LINK=C2; ref LINK=", "", "members left: 0"}));
}

}  // namespace
