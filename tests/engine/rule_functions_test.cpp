#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdReferenceItem.h"
#include "engine_test_support.h"

namespace {

namespace Rules = ZentuCmdContainerRules;
using zentu_test::Attach;
using zentu_test::Identities;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
using ZentuCmdItemDefs::KeywordMap;

// The rules promise a reference item, not merely an item that happens to refer to the target.
::testing::AssertionResult HoldsOnlyReference(const ZentuCmd& cmd, CmdItem kind,
                                              const std::string& name, const ZentuCmd& target) {
    if (cmd.Items(kind).size() != 1) {
        return ::testing::AssertionFailure() << cmd.Items(kind).size() << " items of the kind";
    }
    const auto* reference = dynamic_cast<const ZentuCmdReferenceItem*>(&cmd.Item(kind, 0));
    if (reference == nullptr) {
        return ::testing::AssertionFailure() << "not a reference item";
    }
    if (reference->GetName() != name || reference->GetReference() != &target) {
        return ::testing::AssertionFailure() << reference->GetName() << " refers elsewhere";
    }
    return ::testing::AssertionSuccess();
}

// Values are added as automatically typed items, whose readings a host relies on.
::testing::AssertionResult IsAutoItem(const ZentuCmd& cmd, CmdItem kind, std::size_t index,
                                      const std::string& name, const std::string& text) {
    if (!cmd.HasItem(kind, index)) {
        return ::testing::AssertionFailure() << "no item at " << index;
    }
    const auto* item = dynamic_cast<const ZentuCmdAutoItem*>(&cmd.Item(kind, index));
    if (item == nullptr) {
        return ::testing::AssertionFailure() << "not an automatically typed item";
    }
    if (item->GetName() != name || item->GetString() != text) {
        return ::testing::AssertionFailure() << item->GetName() << " = " << item->GetString();
    }
    return ::testing::AssertionSuccess();
}

// A container to build each case in, with the library's keyword map.
class RuleFunctionTest : public ::testing::Test {
  protected:
    // Rules find their targets by identifier, so every command gets one.
    ZentuCmd& Command(Cmd kind, const std::string& id) {
        return container_.CreateCommand(
            kind, ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)], id);
    }

    ZentuCmdContainer container_;
    const KeywordMap keywords_ = ZentuCmdItemDefs::create_enum_map();
};

// ---- What every per-command rule shares: it adds once, and never to a kind already held ----

// A per-command rule with its host parameters bound, and the item kind that it adds.
struct BoundRule {
    const char* name;
    CmdItem adds;
    std::function<void(ZentuCmd&, const ZentuCmdContainer&, const KeywordMap&)> apply;
};

// Failure messages name the rule instead of dumping its bytes.
void PrintTo(const BoundRule& rule, std::ostream* out) {
    *out << rule.name;
}

// A job in which every bound rule finds what it needs to add its item to the subject.
class RulePerCommand : public RuleFunctionTest, public ::testing::WithParamInterface<BoundRule> {
  protected:
    RulePerCommand() {
        Command(Cmd::DV, "V1");
        Command(Cmd::DRESP, "D1").AddAutoItem(CmdItem::VALUE, "LIMIT", "7", keywords_);
        Command(Cmd::OBJ_FUNC, "O1").AddItem(CmdItem::DRESP, container_.GetCommand(Cmd::DRESP, 0));
        subject_.AddAutoItem(CmdItem::TYPE, "combine", keywords_);
    }

    // The rule under test, as a host would have bound it.
    void Apply() { GetParam().apply(subject_, container_, keywords_); }

    ZentuCmd& subject_ = Command(Cmd::CONSTRAINT, "C1");
};

TEST_P(RulePerCommand, AddsOneItemOfItsKind) {
    const std::size_t before = Identities(subject_).size();
    Apply();
    EXPECT_EQ(subject_.Items(GetParam().adds).size(), 1U);
    EXPECT_EQ(Identities(subject_).size(), before + 1);
}

TEST_P(RulePerCommand, SecondApplicationChangesNothing) {
    Apply();
    const auto once = Identities(subject_);
    Apply();
    EXPECT_EQ(Identities(subject_), once);
}

TEST_P(RulePerCommand, LeavesAKindAlreadyHeld) {
    subject_.AddStringItem(GetParam().adds, "HELD", "other");
    const auto before = Identities(subject_);
    Apply();
    EXPECT_EQ(Identities(subject_), before);
}

INSTANTIATE_TEST_SUITE_P(
    Bound, RulePerCommand,
    ::testing::Values(
        BoundRule{"AddReference", CmdItem::DRESP,
                  [](ZentuCmd& cmd, const ZentuCmdContainer& container, const KeywordMap&) {
                      Rules::Rule_AddReference(cmd, container, CmdItem::DRESP, "RESPONSE",
                                               Cmd::DRESP, "D1");
                  }},
        BoundRule{"AddReferenceToFirstCmd", CmdItem::DV,
                  [](ZentuCmd& cmd, const ZentuCmdContainer& container, const KeywordMap&) {
                      Rules::Rule_AddReferenceToFirstCmd(cmd, container, CmdItem::DV, "DESIGN",
                                                         Cmd::DV);
                  }},
        BoundRule{"AddValueIfEnumPresent", CmdItem::VALUE,
                  [](ZentuCmd& cmd, const ZentuCmdContainer& container, const KeywordMap& words) {
                      Rules::Rule_AddValueIfEnumPresent(cmd, container, CmdItem::TYPE,
                                                        EnumValue::COMBINE, CmdItem::VALUE, "VALUE",
                                                        "1.5", words);
                  }},
        BoundRule{"AddValueIfNotPresent", CmdItem::MIN,
                  [](ZentuCmd& cmd, const ZentuCmdContainer& container, const KeywordMap& words) {
                      Rules::Rule_AddValueIfNotPresent(cmd, container, CmdItem::MIN, "MIN", "0",
                                                       words);
                  }},
        BoundRule{"CopyTypeToCmd", CmdItem::MAX,
                  [](ZentuCmd& cmd, const ZentuCmdContainer& container, const KeywordMap& words) {
                      Rules::Rule_CopyTypeToCmd(cmd, container, Cmd::OBJ_FUNC, CmdItem::DRESP,
                                                CmdItem::VALUE, CmdItem::MAX, "UPPER",
                                                DataType::INTEGER, words, false);
                  }},
        BoundRule{"CopyTypeToCmdShort", CmdItem::VALUE,
                  [](ZentuCmd& cmd, const ZentuCmdContainer& container, const KeywordMap& words) {
                      Rules::Rule_CopyTypeToCmd(cmd, container, Cmd::OBJ_FUNC, CmdItem::DRESP,
                                                CmdItem::VALUE, DataType::INTEGER, words, false);
                  }}),
    [](const ::testing::TestParamInfo<BoundRule>& info) { return std::string(info.param.name); });

// ---- References ----

// Two responses share an identifier, and a design variable, of a kind that comes earlier in
// container order, bears it too.
class RuleAddReference : public RuleFunctionTest {
  protected:
    // Only the identifier varies between the cases.
    void Apply(const std::string& id) {
        Rules::Rule_AddReference(objective_, container_, CmdItem::DRESP, "RESPONSE", Cmd::DRESP,
                                 id);
    }

    ZentuCmd& objective_ = Command(Cmd::OBJ_FUNC, "O1");
    ZentuCmd& decoy_ = Command(Cmd::DV, "D1");
    ZentuCmd& first_ = Command(Cmd::DRESP, "D1");
    ZentuCmd& second_ = Command(Cmd::DRESP, "D1");
};

TEST_F(RuleAddReference, RefersToTheFirstCommandOfTheKindBearingTheIdentifier) {
    Apply("D1");
    EXPECT_TRUE(HoldsOnlyReference(objective_, CmdItem::DRESP, "RESPONSE", first_));
}

TEST_F(RuleAddReference, AddsNothingWhenNoCommandBearsTheIdentifier) {
    Apply("D9");
    EXPECT_TRUE(objective_.Items(CmdItem::DRESP).empty());
}

TEST_F(RuleAddReference, LowerCaseNeverMatchesAStoredIdentifier) {
    Apply("d1");
    EXPECT_TRUE(objective_.Items(CmdItem::DRESP).empty());
}

TEST_F(RuleFunctionTest, RuleAddReferenceToFirstCmdRefersToTheFirstOfTheKind) {
    ZentuCmd& objective = Command(Cmd::OBJ_FUNC, "O1");
    ZentuCmd& first = Command(Cmd::DV, "V1");
    Command(Cmd::DV, "V2");
    Rules::Rule_AddReferenceToFirstCmd(objective, container_, CmdItem::DV, "DESIGN", Cmd::DV);
    EXPECT_TRUE(HoldsOnlyReference(objective, CmdItem::DV, "DESIGN", first));
}

TEST_F(RuleFunctionTest, RuleAddReferenceToFirstCmdAddsNothingWithoutACommandOfTheKind) {
    ZentuCmd& objective = Command(Cmd::OBJ_FUNC, "O1");
    Rules::Rule_AddReferenceToFirstCmd(objective, container_, CmdItem::DV, "DESIGN", Cmd::DV);
    EXPECT_TRUE(objective.Items(CmdItem::DV).empty());
}

// ---- Values ----

// A subject whose TYPE items decide whether a VALUE is added.
class RuleAddValueIfEnumPresent : public RuleFunctionTest {
  protected:
    // The subject's TYPE items are what each case varies.
    void Apply() {
        Rules::Rule_AddValueIfEnumPresent(subject_, container_, CmdItem::TYPE, EnumValue::COMBINE,
                                          CmdItem::VALUE, "WEIGHT", "1.5", keywords_);
    }

    ZentuCmd& subject_ = Command(Cmd::OPERATOR, "P1");
};

TEST_F(RuleAddValueIfEnumPresent, AddsTheValueWhenTheFirstItemHoldsTheKeyword) {
    subject_.AddAutoItem(CmdItem::TYPE, "combine", keywords_);
    Apply();
    EXPECT_TRUE(IsAutoItem(subject_, CmdItem::VALUE, 0, "WEIGHT", "1.5"));
}

TEST_F(RuleAddValueIfEnumPresent, AnyKeywordOfTheSameValueCounts) {
    subject_.AddAutoItem(CmdItem::TYPE, "WEIGHTED_SUM", keywords_);
    Apply();
    EXPECT_TRUE(IsAutoItem(subject_, CmdItem::VALUE, 0, "WEIGHT", "1.5"));
}

TEST_F(RuleAddValueIfEnumPresent, LooksOnlyAtTheFirstItemOfTheKind) {
    subject_.AddAutoItem(CmdItem::TYPE, "MIN", keywords_);
    subject_.AddAutoItem(CmdItem::TYPE, "COMBINE", keywords_);
    Apply();
    EXPECT_TRUE(subject_.Items(CmdItem::VALUE).empty());
}

TEST_F(RuleAddValueIfEnumPresent, AStringItemHoldsNoKeyword) {
    subject_.AddStringItem(CmdItem::TYPE, "COMBINE");
    Apply();
    EXPECT_TRUE(subject_.Items(CmdItem::VALUE).empty());
}

TEST_F(RuleAddValueIfEnumPresent, AddsNothingWithoutTheKind) {
    Apply();
    EXPECT_TRUE(subject_.Items(CmdItem::VALUE).empty());
}

TEST_F(RuleFunctionTest, RuleAddValueIfNotPresentTypesTheValueWithTheKeywordMap) {
    ZentuCmd& subject = Command(Cmd::CONSTRAINT, "C1");
    Rules::Rule_AddValueIfNotPresent(subject, container_, CmdItem::TARGET, "GOAL", "min",
                                     keywords_);
    ASSERT_TRUE(IsAutoItem(subject, CmdItem::TARGET, 0, "GOAL", "MIN"));
    EXPECT_EQ(ToInt(subject.Item(CmdItem::TARGET, 0).GetEnum()), ToInt(EnumValue::MIN));
}

// ---- Copying a typed value found through references ----

// The first objective's responses, in order: a host item that claims a reference without one, an
// unresolved value, a response without VALUE, one whose VALUE is no integer, one whose integer
// is only its second VALUE, and finally GOOD, whose VALUE "LIMIT" is 7 and is the one copied.
class RuleCopyTypeToCmd : public RuleFunctionTest {
  protected:
    RuleCopyTypeToCmd() {
        Attach(source_, CmdItem::DRESP,
               std::make_unique<ProbeItem>("CLAIM", "X", zentu_test::kReference));
        source_.AddAutoItem(CmdItem::DRESP, "UNBOUND", keywords_);
        source_.AddItem(CmdItem::DRESP, Command(Cmd::DRESP, "BARE"));
        source_.AddItem(CmdItem::DRESP, Response("TEXT", {"abc"}));
        source_.AddItem(CmdItem::DRESP, Response("LATE", {"abc", "8"}));
        source_.AddItem(CmdItem::DRESP, Response("GOOD", {"7"}));
        Command(Cmd::OBJ_FUNC, "O2").AddItem(CmdItem::REFERENCE, Response("LATER", {"9"}));
    }

    // Every VALUE bears the same name, so the copied name cannot tell which one was copied.
    ZentuCmd& Response(const std::string& id, const std::vector<std::string>& values) {
        ZentuCmd& response = Command(Cmd::DRESP, id);
        for (const std::string& value : values) {
            response.AddAutoItem(CmdItem::VALUE, "LIMIT", value, keywords_);
        }
        return response;
    }

    // Copies into MAX, a kind the source items do not have, to tell the target kind apart.
    void Copy(CmdItem refItem, const std::string& itemName) {
        Rules::Rule_CopyTypeToCmd(subject_, container_, Cmd::OBJ_FUNC, refItem, CmdItem::VALUE,
                                  CmdItem::MAX, itemName, DataType::INTEGER, keywords_, false);
    }

    // The short form, the one whose replace case hosts use to refresh a value.
    void CopyValue(bool replace) {
        Rules::Rule_CopyTypeToCmd(subject_, container_, Cmd::OBJ_FUNC, CmdItem::DRESP,
                                  CmdItem::VALUE, DataType::INTEGER, keywords_, replace);
    }

    ZentuCmd& source_ = Command(Cmd::OBJ_FUNC, "O1");
    ZentuCmd& subject_ = Command(Cmd::CONSTRAINT, "C1");
};

TEST_F(RuleCopyTypeToCmd, CopiesTheFirstValueOfTheTypeUnderTheGivenKindAndName) {
    Copy(CmdItem::DRESP, "UPPER");
    EXPECT_TRUE(IsAutoItem(subject_, CmdItem::MAX, 0, "UPPER", "7"));
    EXPECT_EQ(Identities(subject_).size(), 2U);
}

TEST_F(RuleCopyTypeToCmd, AnEmptyNameKeepsTheCopiedItemsName) {
    Copy(CmdItem::DRESP, "");
    EXPECT_TRUE(IsAutoItem(subject_, CmdItem::MAX, 0, "LIMIT", "7"));
}

TEST_F(RuleCopyTypeToCmd, ShortFormKeepsTheCopiedKindAndName) {
    CopyValue(false);
    EXPECT_TRUE(IsAutoItem(subject_, CmdItem::VALUE, 0, "LIMIT", "7"));
}

TEST_F(RuleCopyTypeToCmd, SearchesOnlyTheFirstSourceCommand) {
    Copy(CmdItem::REFERENCE, "UPPER");
    EXPECT_TRUE(subject_.Items(CmdItem::MAX).empty());
}

TEST_F(RuleCopyTypeToCmd, AddsNothingWithoutASourceCommand) {
    Rules::Rule_CopyTypeToCmd(subject_, container_, Cmd::OPERATOR, CmdItem::DRESP, CmdItem::VALUE,
                              DataType::INTEGER, keywords_, true);
    EXPECT_TRUE(subject_.Items(CmdItem::VALUE).empty());
}

TEST_F(RuleCopyTypeToCmd, ReplaceKeepsAFirstItemThatHasTheTextAlready) {
    subject_.AddStringItem(CmdItem::VALUE, "OWN", "7");
    const auto before = Identities(subject_);
    CopyValue(true);
    EXPECT_EQ(Identities(subject_), before);
    EXPECT_EQ(subject_.Item(CmdItem::VALUE, 0).GetName(), "OWN");
}

TEST_F(RuleCopyTypeToCmd, ReplaceSwapsOnlyADifferingFirstItemAndOnlyOnce) {
    subject_.AddStringItem(CmdItem::VALUE, "OWN", "5");
    subject_.AddStringItem(CmdItem::VALUE, "OWN", "6");
    const ZentuCmdItem* second = &subject_.Item(CmdItem::VALUE, 1);
    CopyValue(true);
    EXPECT_TRUE(IsAutoItem(subject_, CmdItem::VALUE, 0, "LIMIT", "7"));
    EXPECT_EQ(&subject_.Item(CmdItem::VALUE, 1), second);
    const auto replaced = Identities(subject_);
    CopyValue(true);
    EXPECT_EQ(Identities(subject_), replaced);
}

// ---- Collections that name their target ----

// Design-variable constraints (the collections) name a design variable (the target) through a
// DV member; the target receives a LINK back reference to the constraint.
class RuleCollection : public RuleFunctionTest {
  protected:
    // Only the fallback varies between the cases.
    void Apply(bool fallbackToFirst) {
        Rules::rule_add_reference_to_collection_cmd(container_, Cmd::DV_CONSTRAINT, CmdItem::DV,
                                                    Cmd::DV, CmdItem::DV_CONSTRAINT, "LINK",
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

    // Counting back references shows both a missing and a duplicated link.
    std::size_t Links(const ZentuCmd& target) const {
        return target.Items(CmdItem::DV_CONSTRAINT).size();
    }

    ZentuCmd& response_ = Command(Cmd::DRESP, "R1");
    ZentuCmd& first_ = Command(Cmd::DV, "V1");
    ZentuCmd& second_ = Command(Cmd::DV, "V2");
};

TEST_F(RuleCollection, TheFirstMemberNamesTheTargetAndEveryMemberGoes) {
    ZentuCmd& collection = Collection("C1", {&second_, &first_});
    Apply(false);
    EXPECT_TRUE(HoldsOnlyReference(second_, CmdItem::DV_CONSTRAINT, "LINK", collection));
    EXPECT_EQ(Links(first_), 0U);
    EXPECT_TRUE(collection.Items(CmdItem::DV).empty());
}

TEST_F(RuleCollection, TheIdentifierDecidesAmongTargetsSharingIt) {
    ZentuCmd& twin = Command(Cmd::DV, "V1");
    ZentuCmd& collection = Collection("C1", {&twin});
    Apply(false);
    EXPECT_TRUE(HoldsOnlyReference(first_, CmdItem::DV_CONSTRAINT, "LINK", collection));
    EXPECT_EQ(Links(twin), 0U);
}

TEST_F(RuleCollection, ANamedTargetIsLinkedEvenWhenLinkedAlready) {
    ZentuCmd& collection = Collection("C1", {&second_});
    second_.AddItem(CmdItem::DV_CONSTRAINT, "LINK", collection);
    Apply(true);
    EXPECT_EQ(Links(second_), 2U);
}

TEST_F(RuleCollection, ChangesNothingWithoutATargetCommand) {
    ZentuCmd& collection = Collection("C1", {&first_});
    Rules::rule_add_reference_to_collection_cmd(container_, Cmd::DV_CONSTRAINT, CmdItem::DV,
                                                Cmd::SMOOTH, CmdItem::DV_CONSTRAINT, "LINK", true);
    EXPECT_EQ(collection.Items(CmdItem::DV).size(), 1U);
}

TEST_F(RuleCollection, WithoutFallbackAMemberOfAnotherKindLinksNothingButGoes) {
    ZentuCmd& collection = Collection("C1", {&response_});
    Apply(false);
    EXPECT_EQ(Links(first_) + Links(second_), 0U);
    EXPECT_TRUE(collection.Items(CmdItem::DV).empty());
}

TEST_F(RuleCollection, AUsableMemberThatNamesNoTargetGetsNoFallback) {
    ZentuCmd& nameless = container_.CreateCommand(Cmd::DV);
    ZentuCmd& collection = Collection("C1", {&nameless});
    Apply(true);
    EXPECT_EQ(Links(first_) + Links(second_) + Links(nameless), 0U);
    EXPECT_TRUE(collection.Items(CmdItem::DV).empty());
}

TEST_F(RuleCollection, FallbackLinksUnusableMembersToTheFirstTargetOnce) {
    ZentuCmd& memberless = Collection("C1", {});
    ZentuCmd& foreign = Collection("C2", {&response_});
    ZentuCmd& anonymous = container_.CreateCommand(Cmd::DV_CONSTRAINT);
    anonymous.AddItem(CmdItem::DV, second_);
    Apply(true);
    Apply(true);
    ASSERT_EQ(Links(first_), 3U);
    EXPECT_EQ(first_.Item(CmdItem::DV_CONSTRAINT, 0).GetReference(), &memberless);
    EXPECT_EQ(first_.Item(CmdItem::DV_CONSTRAINT, 1).GetReference(), &foreign);
    EXPECT_EQ(first_.Item(CmdItem::DV_CONSTRAINT, 2).GetReference(), &anonymous);
    EXPECT_EQ(Links(second_), 0U);
}

// ---- Bound into a configuration ----

TEST_F(RuleFunctionTest, RuleFunctionsBoundIntoAConfigurationRunThroughTheEngine) {
    ZentuCmdIoConfig config;
    config.AddCmdMetadata("OBJ_FUNC", ZentuCmdMetaData(Cmd::OBJ_FUNC, false));
    config.AddRule(Rules::DefaultValueRule{
        Cmd::OBJ_FUNC,
        [](ZentuCmd& cmd, const ZentuCmdContainer& container, const ZentuCmdMetaData&,
           const KeywordMap& keywords) {
            Rules::Rule_AddReference(cmd, container, CmdItem::DRESP, "RESPONSE", Cmd::DRESP, "D1");
            Rules::Rule_AddValueIfNotPresent(cmd, container, CmdItem::TARGET, "GOAL", "min",
                                             keywords);
        },
        false});
    ZentuCmd& objective = Command(Cmd::OBJ_FUNC, "O1");
    ZentuCmd& response = Command(Cmd::DRESP, "D1");
    Rules::apply_rules(container_, config);
    EXPECT_TRUE(HoldsOnlyReference(objective, CmdItem::DRESP, "RESPONSE", response));
    ASSERT_TRUE(IsAutoItem(objective, CmdItem::TARGET, 0, "GOAL", "MIN"));
    EXPECT_EQ(ToInt(objective.Item(CmdItem::TARGET, 0).GetEnum()), ToInt(EnumValue::MIN));
}

}  // namespace
