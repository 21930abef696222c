// The rule engine that completes a container: default-valued items, default commands, and the
// configured sequence of rules with its configuration failure.
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuCmdStringItem.h"

#include "engine_test_support.h"

namespace {

using zentu_test::ClassOf;
using zentu_test::Identities;

namespace Rules = ZentuCmdContainerRules;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::KeywordMap;
using RuleType = ZentuCmdIoConfig::RuleType;

constexpr const char* kRulesTag = "|%P|ZentuJobDefinition|ZentuCmdContainerRules";
constexpr const char* kConfigurationId = "202810221842";

// One line per command, so that whole containers are compared as text: its name, its kind, and
// per item its kind, name, text and class.
std::string Render(const ZentuCmd& cmd) {
    std::string line =
        cmd.GetName() + "@" + ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(cmd.GetType())];
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        for (const auto& item : cmd.Items(static_cast<CmdItem>(kind))) {
            line += " " + ZentuCmdItemDefs::CMD_ITEM_NAMES[kind] + ":" + item->GetName() + "=" +
                    item->GetString() + "/" + ClassOf(*item);
        }
    }
    return line;
}

std::vector<std::string> Render(const ZentuCmdContainer& container) {
    std::vector<std::string> lines;
    for (const ZentuCmd& cmd : container) {
        lines.push_back(Render(cmd));
    }
    return lines;
}

// What a per-command rule was handed on one call.
struct Visit {
    std::string rule;
    std::string command;
    const ZentuCmdContainer* container;
    const ZentuCmdMetaData* metadata;
    const KeywordMap* keywords;
};

class RuleEngineTest : public ::testing::Test {
  protected:
    ZentuCmdMetaData& Describe(const std::string& keyword, Cmd kind, bool createDefault = false) {
        return config_.AddCmdMetadata(keyword, ZentuCmdMetaData(kind, createDefault));
    }

    // A rule for the kind that records each call and marks the visited command with a
    // DESCRIPTION item, so that what a rule did stays visible in the container.
    void AddVisitingRule(const std::string& label, Cmd kind, bool createIfMissing = false) {
        config_.AddRule(Rules::DefaultValueRule{
            kind,
            [this, label](ZentuCmd& cmd, const ZentuCmdContainer& container,
                          const ZentuCmdMetaData& metadata, const KeywordMap& keywords) {
                visits_.push_back({label, cmd.GetName(), &container, &metadata, &keywords});
                cmd.AddStringItem(CmdItem::DESCRIPTION, "SEEN_BY_" + label);
            },
            createIfMissing});
    }

    // A container rule that only records that it ran.
    void AddLoggingRule(const std::string& label) {
        config_.AddRule(
            [this, label](ZentuCmdContainer&, const KeywordMap&) { log_.push_back(label); });
    }

    std::vector<std::string> VisitOrder() const {
        std::vector<std::string> order;
        for (const Visit& visit : visits_) {
            order.push_back(visit.rule + ":" + visit.command);
        }
        return order;
    }

    ZentuCmdContainer container_;
    ZentuCmdIoConfig config_;
    std::vector<Visit> visits_;
    std::vector<std::string> log_;
};

// ---- The rule sequence ----

TEST_F(RuleEngineTest, AnEmptyRuleSequenceLeavesTheContainerUnchanged) {
    container_.CreateCommand(Cmd::DV, "DV", "v1").AddStringItem(CmdItem::TYPE, "topo");
    container_.CreateCommand(Cmd::DRESP, "DRESP_X");
    Describe("DV", Cmd::DV, true);
    const std::vector<std::string> before = Render(container_);

    Rules::apply_rules(container_, config_);

    EXPECT_EQ(Render(container_), before);
}

TEST_F(RuleEngineTest, RunsRulesOfBothTypesInTheOrderTheyWereAddedEachSeeingTheOnesBefore) {
    Describe("DV", Cmd::DV);
    container_.CreateCommand(Cmd::DV, "DV", "v1");
    config_.AddRule([this](ZentuCmdContainer& container, const KeywordMap& keywords) {
        log_.push_back("create");
        EXPECT_EQ(&container, &container_);
        EXPECT_EQ(&keywords, &config_.enum_map);
        container.CreateCommand(Cmd::DV, "DV", "v2");
    });
    AddVisitingRule("VISIT", Cmd::DV);
    config_.AddRule([this](ZentuCmdContainer& container, const KeywordMap&) {
        std::size_t marked = 0;
        for (const auto& cmd : container.GetCommands(Cmd::DV)) {
            marked += cmd->Items(CmdItem::DESCRIPTION).size();
        }
        log_.push_back("count " + std::to_string(marked));
    });

    Rules::apply_rules(container_, config_);

    EXPECT_EQ(log_, (std::vector<std::string>{"create", "count 2"}));
    EXPECT_EQ(VisitOrder(), (std::vector<std::string>{"VISIT:DV", "VISIT:DV"}));
    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{"DV@DV ID_NAME:ID_NAME=V1/string "
                                        "DESCRIPTION:DESCRIPTION=SEEN_BY_VISIT/string",
                                        "DV@DV ID_NAME:ID_NAME=V2/string "
                                        "DESCRIPTION:DESCRIPTION=SEEN_BY_VISIT/string"}));
}

TEST_F(RuleEngineTest, SkipsPairsOfOtherRuleTypesAndRunsTheRest) {
    AddLoggingRule("first");
    config_.rule_sequence.emplace_back(static_cast<RuleType>(2), 0);
    config_.rule_sequence.emplace_back(static_cast<RuleType>(-1), 99);
    AddLoggingRule("second");

    Rules::apply_rules(container_, config_);

    EXPECT_EQ(log_, (std::vector<std::string>{"first", "second"}));
}

TEST_F(RuleEngineTest, HandsEachCommandOfTheKindTheDescriptionStoredUnderItsName) {
    Describe("DV", Cmd::DV);
    Describe("DV_TOPO", Cmd::DV);
    Describe("DRESP", Cmd::DRESP);
    container_.CreateCommand(Cmd::DV, "DV_TOPO", "v1");
    container_.CreateCommand(Cmd::DRESP, "DRESP", "r1");
    container_.CreateCommand(Cmd::DV, "DV", "v2");
    AddVisitingRule("VISIT", Cmd::DV);

    Rules::apply_rules(container_, config_);

    ASSERT_EQ(VisitOrder(), (std::vector<std::string>{"VISIT:DV_TOPO", "VISIT:DV"}));
    EXPECT_EQ(visits_[0].metadata, &config_.cmd_metadata.at("DV_TOPO"));
    EXPECT_EQ(visits_[1].metadata, &config_.cmd_metadata.at("DV"));
    for (const Visit& visit : visits_) {
        EXPECT_EQ(visit.container, &container_);
        EXPECT_EQ(visit.keywords, &config_.enum_map);
    }
    EXPECT_TRUE(container_.GetCommand(Cmd::DRESP, 0).Items(CmdItem::DESCRIPTION).empty());
}

TEST_F(RuleEngineTest, LeavesAKindWithoutCommandsAloneUnlessAskedToCreateOne) {
    container_.CreateCommand(Cmd::DV, "DV", "v1");
    const std::vector<std::string> before = Render(container_);
    AddVisitingRule("VISIT", Cmd::DRESP);

    Rules::apply_rules(container_, config_);

    EXPECT_TRUE(visits_.empty());
    EXPECT_EQ(Render(container_), before);
}

TEST_F(RuleEngineTest, CreatesAMissingCommandUnderTheKindsNameWithoutDefaultItems) {
    Describe("DRESP", Cmd::DRESP).AddItem("LIMIT", ZentuCmdItemMetaData(CmdItem::VALUE, 7, "", 1));
    AddVisitingRule("VISIT", Cmd::DRESP, true);

    Rules::apply_rules(container_, config_);

    EXPECT_EQ(VisitOrder(), (std::vector<std::string>{"VISIT:DRESP"}));
    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{"DRESP@DRESP ID_NAME:ID_NAME=__DEFAULT_DRESP/string "
                                        "DESCRIPTION:DESCRIPTION=SEEN_BY_VISIT/string"}));
}

TEST_F(RuleEngineTest, CreatesNoCommandWhenTheKindHasOneUnderAnyKeyword) {
    Describe("DRESP_X", Cmd::DRESP);
    container_.CreateCommand(Cmd::DRESP, "DRESP_X", "r1");
    AddVisitingRule("VISIT", Cmd::DRESP, true);

    Rules::apply_rules(container_, config_);

    EXPECT_EQ(VisitOrder(), (std::vector<std::string>{"VISIT:DRESP_X"}));
    EXPECT_EQ(container_.GetNumberOfCommands(Cmd::DRESP), 1U);
}

// ---- The configuration failure ----

// A command whose description a per-command rule cannot find, and what stays afterwards.
struct MissingConfigurationCase {
    const char* label;
    Cmd kind;
    const char* name;  // null: no command, the rule creates it
    std::vector<std::pair<const char*, Cmd>> descriptions;
    const char* message;
    std::vector<std::string> after;
};

void PrintTo(const MissingConfigurationCase& c, std::ostream* out) {
    *out << c.label;
}

class MissingConfiguration : public RuleEngineTest,
                             public ::testing::WithParamInterface<MissingConfigurationCase> {};

TEST_P(MissingConfiguration, FailsWithTheIdentifiedMessageAndRunsNoLaterRule) {
    const MissingConfigurationCase& c = GetParam();
    for (const auto& [keyword, kind] : c.descriptions) {
        Describe(keyword, kind);
    }
    if (c.name != nullptr) {
        container_.CreateCommand(c.kind, c.name, "c1");
    }
    AddLoggingRule("before");
    AddVisitingRule("VISIT", c.kind, c.name == nullptr);
    AddLoggingRule("after");

    try {
        Rules::apply_rules(container_, config_);
        FAIL() << "no failure";
    } catch (const KPL_Failure& failure) {
        EXPECT_EQ(failure.GetId(), kConfigurationId);
        EXPECT_EQ(failure.GetErrorCode(), -1);
        EXPECT_EQ(failure.GetMessage(), c.message);
        EXPECT_EQ(failure.GetTag(), kRulesTag);
        EXPECT_EQ(failure.GetCause(), nullptr);
    }
    EXPECT_EQ(log_, (std::vector<std::string>{"before"}));
    EXPECT_TRUE(visits_.empty());
    EXPECT_EQ(Render(container_), c.after);
}

INSTANTIATE_TEST_SUITE_P(
    RuleEngine, MissingConfiguration,
    ::testing::Values(MissingConfigurationCase{"no description at all",
                                               Cmd::DV,
                                               "DV",
                                               {},
                                               "Configuration for DV of type 3 not available.",
                                               {"DV@DV ID_NAME:ID_NAME=C1/string"}},
                      MissingConfigurationCase{"the name describes another kind",
                                               Cmd::DV,
                                               "DV",
                                               {{"DV", Cmd::DRESP}},
                                               "Configuration for DV of type 3 not available.",
                                               {"DV@DV ID_NAME:ID_NAME=C1/string"}},
                      MissingConfigurationCase{"names are matched exactly, case included",
                                               Cmd::DV,
                                               "dv",
                                               {{"DV", Cmd::DV}},
                                               "Configuration for dv of type 3 not available.",
                                               {"dv@DV ID_NAME:ID_NAME=C1/string"}},
                      MissingConfigurationCase{"another keyword of the kind is no match",
                                               Cmd::DV,
                                               "DV_TOPO",
                                               {{"DV", Cmd::DV}},
                                               "Configuration for DV_TOPO of type 3 not available.",
                                               {"DV_TOPO@DV ID_NAME:ID_NAME=C1/string"}},
                      MissingConfigurationCase{"a keyword read without description",
                                               Cmd::CMD_PLACEHOLDER,
                                               "FOO",
                                               {{"DV", Cmd::DV}},
                                               "Configuration for FOO of type 20 not available.",
                                               {"FOO@CMD_PLACEHOLDER ID_NAME:ID_NAME=C1/string"}},
                      MissingConfigurationCase{
                          "the created command stays",
                          Cmd::DRESP,
                          nullptr,
                          {{"DRESP_X", Cmd::DRESP}},
                          "Configuration for DRESP of type 4 not available.",
                          {"DRESP@DRESP ID_NAME:ID_NAME=__DEFAULT_DRESP/string"}}));

TEST_F(RuleEngineTest, CommandsVisitedBeforeTheFailingOneKeepWhatTheRuleDid) {
    Describe("DV", Cmd::DV);
    container_.CreateCommand(Cmd::DV, "DV", "v1");
    container_.CreateCommand(Cmd::DV, "DV_TOPO", "v2");
    container_.CreateCommand(Cmd::DV, "DV", "v3");
    AddVisitingRule("VISIT", Cmd::DV);

    EXPECT_THROW(Rules::apply_rules(container_, config_), KPL_Failure);

    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{
                  "DV@DV ID_NAME:ID_NAME=V1/string DESCRIPTION:DESCRIPTION=SEEN_BY_VISIT/string",
                  "DV_TOPO@DV ID_NAME:ID_NAME=V2/string", "DV@DV ID_NAME:ID_NAME=V3/string"}));
}

TEST_F(RuleEngineTest, CutsTheConfigurationMessageTo1023Characters) {
    const std::string name(1500, 'N');
    container_.CreateCommand(Cmd::DV, name);
    AddVisitingRule("VISIT", Cmd::DV);

    try {
        Rules::apply_rules(container_, config_);
        FAIL() << "no failure";
    } catch (const KPL_Failure& failure) {
        EXPECT_EQ(failure.GetMessage(),
                  ("Configuration for " + name + " of type 3 not available.").substr(0, 1023));
    }
}

TEST_F(RuleEngineTest, PassesARulesFailureOnUnchanged) {
    config_.AddRule([](ZentuCmdContainer&, const KeywordMap&) {
        throw KPL_Failure("the rule refused", "|%P|Host|Rule");
    });
    AddLoggingRule("after");

    try {
        Rules::apply_rules(container_, config_);
        FAIL() << "no failure";
    } catch (const KPL_Failure& failure) {
        EXPECT_EQ(failure.GetMessage(), "the rule refused");
        EXPECT_EQ(failure.GetTag(), "|%P|Host|Rule");
        EXPECT_EQ(failure.GetCause(), nullptr);
    }
    EXPECT_TRUE(log_.empty());
}

// ---- Default commands ----

TEST_F(RuleEngineTest, CreatesADefaultCommandForEachFlaggedKindWithoutCommand) {
    Describe("dresp", Cmd::DRESP, true)
        .AddItem("LIMIT", ZentuCmdItemMetaData(CmdItem::VALUE, 7, "", 1))
        .AddItem("KIND", ZentuCmdItemMetaData(CmdItem::TYPE, "max", "", 1))
        .AddItem("NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, DataType::STRING, "", "", 1));
    Describe("OPT_PARAM", Cmd::OPT_PARAM, true);
    Describe("DV", Cmd::DV, true);
    Describe("OBJ_FUNC", Cmd::OBJ_FUNC, false);
    container_.CreateCommand(Cmd::DV, "DV_TOPO", "v1");

    Rules::create_default_commands(container_, config_.cmd_metadata, config_.enum_map);

    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{"DV_TOPO@DV ID_NAME:ID_NAME=V1/string",
                                        "dresp@DRESP ID_NAME:ID_NAME=__DEFAULT_DRESP_/string "
                                        "TYPE:KIND=MAX/string VALUE:LIMIT=7/int",
                                        "OPT_PARAM@OPT_PARAM "
                                        "ID_NAME:ID_NAME=__DEFAULT_OPT_PARAM_/string"}));
}

TEST_F(RuleEngineTest, TwoFlaggedKeywordsOfOneKindCreateOneCommand) {
    Describe("DRESP", Cmd::DRESP, true)
        .AddItem("NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "from DRESP", "", 1));
    Describe("DRESP_ALT", Cmd::DRESP, true)
        .AddItem("NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "from DRESP_ALT", "", 1));

    Rules::create_default_commands(container_, config_.cmd_metadata, config_.enum_map);

    ASSERT_EQ(container_.GetNumberOfCommands(Cmd::DRESP), 1U);
    const std::string name = container_.GetCommand(Cmd::DRESP, 0).GetName();
    ASSERT_TRUE(name == "DRESP" || name == "DRESP_ALT") << name;
    EXPECT_EQ(Render(container_),
              (std::vector<std::string>{name + "@DRESP ID_NAME:ID_NAME=__DEFAULT_" + name +
                                        "_/string DESCRIPTION:NOTE=FROM " + name + "/string"}));
}

// ---- Default-valued items ----

TEST_F(RuleEngineTest, AddsEveryDefaultInTheClassOfItsDataType) {
    ZentuCmdMetaData metadata(Cmd::DV, false);
    metadata.AddItem("COUNT", ZentuCmdItemMetaData(CmdItem::VALUE, 5, "", 1))
        .AddItem("LIMIT", ZentuCmdItemMetaData(CmdItem::MIN, 2.5, "", 1))
        .AddItem("NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "", "", 1))
        .AddItem("KIND", ZentuCmdItemMetaData(CmdItem::TYPE, {{"SOFT", 1}, {"HARD", 2}}, "hard"))
        .AddItem("DIR", ZentuCmdItemMetaData(CmdItem::DIRECTION, DataType::AUTO, "1,0,0", "", 1))
        .AddItem("PATH", ZentuCmdItemMetaData(CmdItem::FILE, DataType::RAW_STRING, "a.Txt", "", 1))
        .AddItem("TARGET", ZentuCmdItemMetaData(CmdItem::DRESP, Cmd::DRESP, "R1"))
        .AddItem("UNSET", ZentuCmdItemMetaData(CmdItem::FORMAT, DataType::STRING, "", "", 1))
        .AddItem("BARE", ZentuCmdItemMetaData(CmdItem::UPPER));
    ZentuCmd& cmd = container_.CreateCommand(Cmd::DV, "DV", "v1");

    Rules::add_default_valued_items(cmd, metadata, config_.enum_map);

    EXPECT_EQ(Render(cmd),
              "DV@DV ID_NAME:ID_NAME=V1/string TYPE:KIND=HARD/enum FILE:PATH=a.Txt/raw "
              "VALUE:COUNT=5/int MIN:LIMIT=2.5/real DESCRIPTION:NOTE=/string "
              "DIRECTION:DIR=1,0,0/auto");
}

TEST_F(RuleEngineTest, KeepsExactlyTheItemsOfAKindTheCommandHolds) {
    ZentuCmdMetaData metadata(Cmd::DV, false);
    metadata.AddItem("KIND", ZentuCmdItemMetaData(CmdItem::TYPE, "soft", "", 1))
        .AddItem("COUNT", ZentuCmdItemMetaData(CmdItem::VALUE, 5, "", 1))
        .AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME, "default id", "", 1));
    ZentuCmd& cmd = container_.CreateCommand(Cmd::DV, "DV", "v1");
    cmd.AddStringItem(CmdItem::TYPE, "first");
    cmd.AddStringItem(CmdItem::TYPE, "second");
    const std::vector<const ZentuCmdItem*> before = Identities(cmd);

    Rules::add_default_valued_items(cmd, metadata, config_.enum_map);

    std::vector<const ZentuCmdItem*> after = Identities(cmd);
    ASSERT_EQ(after.size(), before.size() + 1);
    after.pop_back();
    EXPECT_EQ(after, before);
    EXPECT_EQ(Render(cmd),
              "DV@DV ID_NAME:ID_NAME=V1/string TYPE:TYPE=FIRST/string TYPE:TYPE=SECOND/string "
              "VALUE:COUNT=5/int");
}

TEST_F(RuleEngineTest, TheFirstDescriptionInNameOrderAddsTheDefaultOfASharedKind) {
    ZentuCmdMetaData metadata(Cmd::DV, false);
    metadata.AddItem("ZULU", ZentuCmdItemMetaData(CmdItem::TYPE, "last", "", 1))
        .AddItem("ALPHA", ZentuCmdItemMetaData(CmdItem::TYPE, "first", "", 1))
        .AddItem("MIKE", ZentuCmdItemMetaData(CmdItem::TYPE, "middle", "", 1));
    ZentuCmd& cmd = container_.CreateCommand(Cmd::DV);

    Rules::add_default_valued_items(cmd, metadata, config_.enum_map);

    EXPECT_EQ(Render(cmd), "DV@DV TYPE:ALPHA=FIRST/string");
}

TEST_F(RuleEngineTest, ARefusedDefaultPassesThroughAndKeepsTheDefaultsAddedBefore) {
    ZentuCmdMetaData metadata(Cmd::DV, false);
    metadata.AddItem("A_COUNT", ZentuCmdItemMetaData(CmdItem::VALUE, 5, "", 1))
        .AddItem("B_KIND", ZentuCmdItemMetaData(CmdItem::TYPE, {{"SOFT", 1}, {"HARD", 2}}, "bogus"))
        .AddItem("C_NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "note", "", 1));
    ZentuCmd& cmd = container_.CreateCommand(Cmd::DV);

    try {
        Rules::add_default_valued_items(cmd, metadata, config_.enum_map);
        FAIL() << "no failure";
    } catch (const KPL_Failure& failure) {
        EXPECT_EQ(failure.GetMessage(),
                  "The value \"bogus\" is not allowed for item B_KIND.\nValid options are: "
                  "\nHARD, SOFT");
        EXPECT_EQ(failure.GetTag(), "|%P|ZentuCmdEngine|ZentuCmdEnumItem");
        EXPECT_EQ(failure.GetCause(), nullptr);
    }
    EXPECT_EQ(Render(cmd), "DV@DV VALUE:A_COUNT=5/int");
}

}  // namespace
