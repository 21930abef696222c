// The rule engine that completes a container: default-valued items, default commands, and the
// configured sequence of rules with its configuration failure.
#include <gtest/gtest.h>

#include "ZentuCmdContainerRules.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "engine_test_support.h"
#include "zentu_test_cases.h"

namespace {

using zentu_test::CmdLine;
using zentu_test::CmdLines;
using zentu_test::Identities;
namespace Rules = ZentuCmdContainerRules;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::KeywordMap;
using Lines = std::vector<std::string>;

const std::string kSeen = " DESCRIPTION:DESCRIPTION=SEEN/string";

// Rules are plain function pointers, so the ones below reach the running test through this.
class RuleEngineTest;
RuleEngineTest* g_test = nullptr;

// What a logging rule writes to the log.
enum Label { BEFORE, AFTER };
const char* const kLabels[] = {"before", "after"};

class RuleEngineTest : public ::testing::Test {
  public:
    RuleEngineTest() { g_test = this; }
    ~RuleEngineTest() override { g_test = nullptr; }

    ZentuCmdMetaData& Describe(const std::string& keyword, Cmd kind, bool createDefault = false) {
        return config_.AddCmdMetadata(keyword, ZentuCmdMetaData(kind, createDefault));
    }

    // Records each command it is handed and marks it, so that what the rule did stays visible;
    // checks that it is handed the description stored under the command's name.
    void AddVisitingRule(Cmd kind, bool createIfMissing = false) {
        config_.AddRule(Rules::DefaultValueRule{kind, &Visit, createIfMissing});
    }

    static void Visit(ZentuCmd& cmd, const ZentuCmdContainer& container,
                      const ZentuCmdMetaData& metadata, const KeywordMap& keywords) {
        g_test->visits_.push_back(cmd.GetName());
        EXPECT_EQ(&metadata, &g_test->config_.cmd_metadata.at(cmd.GetName()));
        EXPECT_EQ(&container, &g_test->container_);
        EXPECT_EQ(&keywords, &g_test->config_.enum_map);
        cmd.AddStringItem(CmdItem::DESCRIPTION, "seen");
    }

    template <Label label>
    void AddLoggingRule() {
        config_.AddRule([](ZentuCmdContainer&, const KeywordMap&) {
            g_test->log_.emplace_back(kLabels[label]);
        });
    }

    std::string ApplyFailure() {
        return zentu_test::FailureLine(
            zentu_test::FailureOf([this] { Rules::apply_rules(container_, config_); }));
    }

    ZentuCmdContainer container_;
    ZentuCmdIoConfig config_;
    Lines visits_;
    Lines log_;
};

// Rules run in the order added, each on the container that the rules before it left; neither
// unknown rule types nor indices just past the rules (one default-value rule, two manipulators),
// nor a kind flagged for a default command, may make apply_rules do anything beyond its rules.
TEST_F(RuleEngineTest, RunsTheConfiguredRulesInTheOrderAddedEachSeeingTheOnesBefore) {
    Describe("DV", Cmd::DV);
    Describe("DRESP", Cmd::DRESP, true);
    container_.CreateCommand(Cmd::DV, "DV", "v1");
    config_.AddRule([](ZentuCmdContainer& container, const KeywordMap& keywords) {
        g_test->log_.emplace_back("create");
        EXPECT_EQ(&container, &g_test->container_);
        EXPECT_EQ(&keywords, &g_test->config_.enum_map);
        container.CreateCommand(Cmd::DV, "DV", "v2");
    });
    AddVisitingRule(Cmd::DV);
    config_.rule_sequence.emplace_back(static_cast<ZentuCmdIoConfig::RuleType>(2), 0);
    config_.rule_sequence.emplace_back(static_cast<ZentuCmdIoConfig::RuleType>(-1), 99);
    config_.rule_sequence.emplace_back(ZentuCmdIoConfig::DEFAULT_VALUE_RULE, 1);
    config_.rule_sequence.emplace_back(ZentuCmdIoConfig::CONTAINER_MANIPULATOR_RULE, 2);
    config_.AddRule([](ZentuCmdContainer& container, const KeywordMap&) {
        std::size_t marked = 0;
        for (const auto& cmd : container.GetCommands(Cmd::DV)) {
            marked += cmd->Items(CmdItem::DESCRIPTION).size();
        }
        g_test->log_.push_back("count " + std::to_string(marked));
    });

    Rules::apply_rules(container_, config_);

    EXPECT_EQ(log_, (Lines{"create", "count 2"}));
    EXPECT_EQ(CmdLines(container_), (Lines{"DV@DV ID_NAME:ID_NAME=V1/string" + kSeen,
                                           "DV@DV ID_NAME:ID_NAME=V2/string" + kSeen}));
}

// Each command of the kind is handed the description stored under its name (no command is named
// after the kind, so creating a missing one would show); a per-command rule creates its command
// only when asked, and the creation adds no defaults.
TEST_F(RuleEngineTest, HandsEachCommandItsDescriptionAndCreatesAMissingOneOnlyWhenAsked) {
    Describe("DV_SIZE", Cmd::DV);
    Describe("DV_TOPO", Cmd::DV);
    Describe("DRESP", Cmd::DRESP).AddItem("LIMIT", ZentuCmdItemMetaData(CmdItem::VALUE, 7, "", 1));
    container_.CreateCommand(Cmd::DV, "DV_TOPO", "v1");
    container_.CreateCommand(Cmd::DV, "DV_SIZE", "v2");
    AddVisitingRule(Cmd::DV, true);
    AddVisitingRule(Cmd::DRESP);
    Rules::apply_rules(container_, config_);
    EXPECT_EQ(visits_, (Lines{"DV_TOPO", "DV_SIZE"}));
    const Lines visited = CmdLines(container_);
    EXPECT_EQ(visited, (Lines{"DV_TOPO@DV ID_NAME:ID_NAME=V1/string" + kSeen,
                              "DV_SIZE@DV ID_NAME:ID_NAME=V2/string" + kSeen}));

    AddVisitingRule(Cmd::DRESP, true);
    Rules::apply_rules(container_, config_);
    EXPECT_EQ(visits_, (Lines{"DV_TOPO", "DV_SIZE", "DV_TOPO", "DV_SIZE", "DRESP"}));
    EXPECT_EQ(CmdLines(container_),
              (Lines{visited[0] + kSeen, visited[1] + kSeen,
                     "DRESP@DRESP ID_NAME:ID_NAME=__DEFAULT_DRESP/string" + kSeen}));
}

// A command whose description a per-command rule cannot find stops all rules from it on.
TEST_F(RuleEngineTest, FailsWithTheConfigurationFailureAndRunsNoLaterRule) {
    for (const auto& c : zentu_test::DataCases("engine/cases/rules_missing_configuration.txt", 3)) {
        SCOPED_TRACE(c.where);
        const auto kindOf = [](const std::string& name) {
            return static_cast<Cmd>(zentu_test::IndexOf(ZentuCmdDefs::CMD_NAMES, name));
        };
        const Cmd kind = kindOf(c.fields[0]);
        const bool created = c.fields[1] == "-";
        const std::string name = created ? "DRESP" : c.fields[1];
        container_ = ZentuCmdContainer();
        config_ = ZentuCmdIoConfig();
        visits_.clear();
        log_.clear();
        for (const std::string& description : zentu_test::FieldLines(c.fields[2])) {
            const std::size_t blank = description.find(' ');
            Describe(description.substr(0, blank), kindOf(description.substr(blank + 1)));
        }
        if (!created) {
            container_.CreateCommand(kind, name, "c1");
        }
        AddLoggingRule<BEFORE>();
        AddVisitingRule(kind, created);
        AddLoggingRule<AFTER>();

        EXPECT_EQ(ApplyFailure(),
                  "|%P|ZentuJobDefinition|ZentuCmdContainerRules [202810221842] -1: "
                  "Configuration for " +
                      name + " of type " + std::to_string(zentu_test::ToInt(kind)) +
                      " not available.");
        EXPECT_EQ(log_, Lines{"before"});
        EXPECT_TRUE(visits_.empty());
        EXPECT_EQ(CmdLines(container_), Lines{name + "@" + c.fields[0] + " ID_NAME:ID_NAME=" +
                                              (created ? "__DEFAULT_DRESP" : "C1") + "/string"});
    }
}

// A configuration failure does not undo what the rule did to the commands before.
TEST_F(RuleEngineTest, AFailureKeepsWhatRulesDidBeforeAndReachesTheHostAsThrown) {
    Describe("DV", Cmd::DV);
    container_.CreateCommand(Cmd::DV, "DV", "v1");
    container_.CreateCommand(Cmd::DV, "DV_TOPO", "v2");
    container_.CreateCommand(Cmd::DV, "DV", "v3");
    AddVisitingRule(Cmd::DV);

    ApplyFailure();

    EXPECT_EQ(CmdLines(container_),
              (Lines{"DV@DV ID_NAME:ID_NAME=V1/string" + kSeen,
                     "DV_TOPO@DV ID_NAME:ID_NAME=V2/string", "DV@DV ID_NAME:ID_NAME=V3/string"}));

    // A rule's own failure reaches the host as thrown and stops the later rules.
    config_ = ZentuCmdIoConfig();
    config_.AddRule([](ZentuCmdContainer&, const KeywordMap&) {
        throw KPL_Failure("the rule refused", "|%P|Host|Rule");
    });
    AddLoggingRule<AFTER>();

    EXPECT_EQ(ApplyFailure(), "|%P|Host|Rule [] -14: the rule refused");
    EXPECT_TRUE(log_.empty());
}

// Only flagged kinds without any command get one, named by the keyword and holding its defaults.
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

    EXPECT_EQ(CmdLines(container_),
              (Lines{"DV_TOPO@DV ID_NAME:ID_NAME=V1/string",
                     "dresp@DRESP ID_NAME:ID_NAME=__DEFAULT_DRESP_/string TYPE:KIND=MAX/string "
                     "VALUE:LIMIT=7/int",
                     "OPT_PARAM@OPT_PARAM ID_NAME:ID_NAME=__DEFAULT_OPT_PARAM_/string"}));
}

// Two flagged keywords of one kind must not make two default commands of that kind.
TEST_F(RuleEngineTest, TwoFlaggedKeywordsOfOneKindCreateOneCommand) {
    Describe("DRESP", Cmd::DRESP, true)
        .AddItem("NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "from DRESP", "", 1));
    Describe("DRESP_ALT", Cmd::DRESP, true)
        .AddItem("NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "from DRESP_ALT", "", 1));

    Rules::create_default_commands(container_, config_.cmd_metadata, config_.enum_map);

    ASSERT_EQ(container_.GetNumberOfCommands(Cmd::DRESP), 1U);
    const std::string name = container_.GetCommand(Cmd::DRESP, 0).GetName();
    ASSERT_TRUE(name == "DRESP" || name == "DRESP_ALT") << name;
    EXPECT_EQ(CmdLines(container_), Lines{name + "@DRESP ID_NAME:ID_NAME=__DEFAULT_" + name +
                                          "_/string DESCRIPTION:NOTE=FROM " + name + "/string"});
}

// A kind the command lacks gets the first default by name in its data type's class, and a kind it
// holds keeps exactly its items; of defaults sharing a kind neither the first nor the last added
// comes first by name.
TEST_F(RuleEngineTest, AddsEveryDefaultInTheClassOfItsDataTypeTheFirstByNameOfAKind) {
    ZentuCmdMetaData metadata(Cmd::DV, false);
    metadata.AddItem("ZULU", ZentuCmdItemMetaData(CmdItem::VALUE, 9, "", 1))
        .AddItem("COUNT", ZentuCmdItemMetaData(CmdItem::VALUE, 5, "", 1))
        .AddItem("LIMIT", ZentuCmdItemMetaData(CmdItem::MIN, 2.5, "", 1))
        .AddItem("NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "", "", 1))
        .AddItem("KIND", ZentuCmdItemMetaData(CmdItem::TYPE, {{"SOFT", 1}, {"HARD", 2}}, "hard"))
        .AddItem("DIR", ZentuCmdItemMetaData(CmdItem::DIRECTION, DataType::AUTO, "1,0,0", "", 1))
        .AddItem("PATH", ZentuCmdItemMetaData(CmdItem::FILE, DataType::RAW_STRING, "a.Txt", "", 1))
        .AddItem("TARGET", ZentuCmdItemMetaData(CmdItem::DRESP, Cmd::DRESP, "R1"))
        .AddItem("UNSET", ZentuCmdItemMetaData(CmdItem::FORMAT, DataType::STRING, "", "", 1))
        .AddItem("BARE", ZentuCmdItemMetaData(CmdItem::UPPER))
        .AddItem("MIKE", ZentuCmdItemMetaData(CmdItem::VALUE, 8, "", 1))
        .AddItem("ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME, "default id", "", 1))
        .AddItem("TOP", ZentuCmdItemMetaData(CmdItem::MAX, 1, "", 1));
    ZentuCmd& cmd = container_.CreateCommand(Cmd::DV, "DV", "v1");
    cmd.AddStringItem(CmdItem::MAX, "first");
    cmd.AddStringItem(CmdItem::MAX, "second");
    const std::vector<const ZentuCmdItem*> held = Identities(cmd);

    Rules::add_default_valued_items(cmd, metadata, config_.enum_map);

    const std::vector<const ZentuCmdItem*> after = Identities(cmd);
    for (const ZentuCmdItem* item : held) {
        EXPECT_NE(std::find(after.begin(), after.end(), item), after.end());
    }

    EXPECT_EQ(CmdLine(cmd),
              "DV@DV ID_NAME:ID_NAME=V1/string TYPE:KIND=HARD/enum FILE:PATH=a.Txt/raw "
              "VALUE:COUNT=5/int MIN:LIMIT=2.5/real MAX:MAX=FIRST/string MAX:MAX=SECOND/string "
              "DESCRIPTION:NOTE=/string DIRECTION:DIR=1,0,0/auto");
}

// A refused default must not take back the defaults added before it.
TEST_F(RuleEngineTest, ARefusedDefaultPassesThroughAndKeepsTheDefaultsAddedBefore) {
    ZentuCmdMetaData metadata(Cmd::DV, false);
    metadata.AddItem("A_COUNT", ZentuCmdItemMetaData(CmdItem::VALUE, 5, "", 1))
        .AddItem("B_KIND", ZentuCmdItemMetaData(CmdItem::TYPE, {{"SOFT", 1}, {"HARD", 2}}, "bogus"))
        .AddItem("C_NOTE", ZentuCmdItemMetaData(CmdItem::DESCRIPTION, "note", "", 1));
    ZentuCmd& cmd = container_.CreateCommand(Cmd::DV);

    EXPECT_EQ(zentu_test::FailureLine(zentu_test::FailureOf(
                  [&] { Rules::add_default_valued_items(cmd, metadata, config_.enum_map); })),
              "|%P|ZentuCmdEngine|ZentuCmdEnumItem [] -14: The value \"bogus\" is not allowed for "
              "item B_KIND.\nValid options are: \nHARD, SOFT");
    EXPECT_EQ(CmdLine(cmd), "DV@DV VALUE:A_COUNT=5/int");
}

}  // namespace
