#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "engine_test_support.h"

namespace {

using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;

// Position i holds the enumerator whose value must be i, and the name that the table gives it.
const std::vector<std::pair<Cmd, std::string>> kCommandKinds = {
    {Cmd::MODEL_INPUT, "MODEL_INPUT"},
    {Cmd::GROUP_DEF, "GROUP_DEF"},
    {Cmd::FILTER, "FILTER"},
    {Cmd::DV, "DV"},
    {Cmd::DRESP, "DRESP"},
    {Cmd::OPERATOR, "OPERATOR"},
    {Cmd::OBJ_FUNC, "OBJ_FUNC"},
    {Cmd::CONSTRAINT, "CONSTRAINT"},
    {Cmd::DV_CONSTRAINT, "DV_CONSTRAINT"},
    {Cmd::MESH_SMOOTH, "MESH_SMOOTH"},
    {Cmd::OPTIMIZE, "OPTIMIZE"},
    {Cmd::OPT_PARAM, "OPT_PARAM"},
    {Cmd::STOP, "STOP"},
    {Cmd::OUTPUT, "OUTPUT"},
    {Cmd::SMOOTH, "SMOOTH"},
    {Cmd::OPTIONS, "OPTIONS"},
    {Cmd::DV_UPDATE_PARAM, "DV_UPDATE_PARAM"},
    {Cmd::SCALING_CURVE, "SCALING_CURVE"},
    {Cmd::CONTOURPLOT, "CONTOURPLOT"},
    {Cmd::REPORT, "REPORT"},
    {Cmd::CMD_PLACEHOLDER, "CMD_PLACEHOLDER"},
};

const std::vector<std::pair<CmdItem, std::string>> kItemKinds = {
    {CmdItem::ID_NAME, "ID_NAME"},
    {CmdItem::TYPE, "TYPE"},
    {CmdItem::FILE, "FILE"},
    {CmdItem::ADD_FILE, "ADD_FILE"},
    {CmdItem::GROUP, "GROUP"},
    {CmdItem::ELEMENT_GROUP, "ELEMENT_GROUP"},
    {CmdItem::NODE_GROUP, "NODE_GROUP"},
    {CmdItem::FACE_GROUP, "FACE_GROUP"},
    {CmdItem::DRESP, "DRESP"},
    {CmdItem::TARGET, "TARGET"},
    {CmdItem::VALUE, "VALUE"},
    {CmdItem::MIN, "MIN"},
    {CmdItem::MAX, "MAX"},
    {CmdItem::LIST_BEGIN, "LIST_BEGIN"},
    {CmdItem::DV, "DV"},
    {CmdItem::OBJ_FUNC, "OBJ_FUNC"},
    {CmdItem::CONSTRAINT, "CONSTRAINT"},
    {CmdItem::DV_CONSTRAINT, "DV_CONSTRAINT"},
    {CmdItem::STRATEGY, "STRATEGY"},
    {CmdItem::STOP, "STOP"},
    {CmdItem::MESH_SMOOTH, "MESH_SMOOTH"},
    {CmdItem::ITER_MAX, "ITER_MAX"},
    {CmdItem::OPT_PARAM, "OPT_PARAM"},
    {CmdItem::DV_UPDATE_PARAM, "DV_UPDATE_PARAM"},
    {CmdItem::REFERENCE, "REFERENCE"},
    {CmdItem::COEFFICIENT, "COEFFICIENT"},
    {CmdItem::SOLVER_RUN_MODE, "SOLVER_RUN_MODE"},
    {CmdItem::SENS_CALC_MODE, "SENS_CALC_MODE"},
    {CmdItem::UPDATE_TYPE, "UPDATE_TYPE"},
    {CmdItem::UPDATE_ID, "UPDATE_ID"},
    {CmdItem::FORMAT, "FORMAT"},
    {CmdItem::DESCRIPTION, "DESCRIPTION"},
    {CmdItem::DIRECTION, "DIRECTION"},
    {CmdItem::LOADCASE, "LOADCASE"},
    {CmdItem::MAGNITUDE, "MAGNITUDE"},
    {CmdItem::LOWER, "LOWER"},
    {CmdItem::UPPER, "UPPER"},
    {CmdItem::CS, "CS"},
    {CmdItem::FILTER, "FILTER"},
    {CmdItem::PLACEHOLDER, "PLACEHOLDER"},
};

// Every keyword with its value, written out independently of the enumeration, so a slip in
// either the map or the enumerators shows up as a disagreement.
// clang-format off
const std::vector<std::pair<std::string, int>> kKeywords = {
    {"YES", 89}, {"NO", 78},
    {"CALCULATED", 67}, {"RECEIVED", 82},
    {"MIN", 77}, {"MAX", 88},
    {"LESS_EQUAL", 76}, {"GREATER_EQUAL", 71},
    {"TOPO_SENSITIVITY", 84}, {"TOPO_SENS", 84}, {"SHAPE_SENSITIVITY", 83}, {"SHAPE_SENS", 83},
    {"SYSTEM", 83}, {"OPER", 79},
    {"VOLUME", 146}, {"ROT_ABS", 9}, {"ROT_X", 11}, {"ROT_Y", 13}, {"ROT_Z", 15}, {"DISP_ABS", 8},
        {"DISP_X", 17}, {"DISP_Y", 19}, {"DISP_Z", 21}, {"DYN_FREQ", 26},
        {"ENERGY_STIFF_MEASURE", 29},
    {"INTERNAL_FORCE_ABS", 60}, {"INTERNAL_FORCE_X", 62}, {"INTERNAL_FORCE_Y", 64},
        {"INTERNAL_FORCE_Z", 66}, {"INTERNAL_MOMENT_ABS", 68}, {"INTERNAL_MOMENT_X", 70},
        {"INTERNAL_MOMENT_Y", 72}, {"INTERNAL_MOMENT_Z", 74},
    {"REACTION_FORCE_ABS", 87}, {"REACTION_FORCE_X", 89}, {"REACTION_FORCE_Y", 91},
        {"REACTION_FORCE_Z", 93}, {"REACTION_MOMENT_ABS", 95}, {"REACTION_MOMENT_X", 97},
        {"REACTION_MOMENT_Y", 99}, {"REACTION_MOMENT_Z", 101},
    {"SENSITIVITY_ONF", 106}, {"SENSITIVITY_ELEMENT", 106}, {"SENSITIVITY_NODE", 106},
        {"TR_ENERGY_STIFF_MEASURE", 174}, {"TR_DISP_X", 179}, {"TR_DISP_Y", 180},
        {"TR_DISP_Z", 181}, {"SIG_MISES", 143},
    {"NODE", 2}, {"ELEMENT", 0}, {"ELEM", 0},
    {"LIST", 76}, {"MERGE", 77}, {"SUBTRACT", 83}, {"INTERSECT", 73}, {"XOR", 88},
    {"MMA", 83}, {"CSA", 84}, {"CSA_DEV", 68}, {"OC_DEV", 79}, {"STEEPEST", 67}, {"GENERIC", 69},
    {"DENSITY", 68}, {"NODAL", 78}, {"NODAL_VECTOR", 86}, {"FILTER", 73}, {"SCALING_CURVE", 71},
        {"LSF_INIT", 66}, {"LSF_SCALING", 78}, {"LEVELSET", 86}, {"FROZEN", 90},
        {"SURF_PLANE_SYM", 80}, {"LINK_FROM_FILE", 70},
    {"ONF", 79}, {"CSV", 67}, {"VTFX_PLOT", 80}, {"VTK", 86}, {"VTM", 68},
    {"TOPO_DATA", 84}, {"SHAPE_DATA", 72}, {"SENSITIVITY_DATA", 71}, {"LEVELSET_DATA", 76},
        {"OBJ_FUNC_DATA", 79}, {"CONSTRAINT_DATA", 67}, {"MODEL", 77},
    {"HISTOGRAM", 73}, {"HEAVYSIDE", 72}, {"HEAVISIDE", 72}, {"LINEAR", 73}, {"SIGMUND", 69},
        {"DIST_TO_BORDER", 100}, {"SIGMUND_TOPO", 84}, {"SENSITIVITY_FILTER", 82},
        {"DENSITY_FILTER", 81}, {"SIGMUND_TOPO_VOL", 85}, {"SENSITIVITY_FILTER_VOL", 86},
        {"DENSITY_FILTER_VOL", 87},
    {"SEQUENTIAL", 0}, {"SEQ", 0}, {"SIMULTANEOUS", 1}, {"SIMUL", 1},
    {"WEIGHTED_SUM", 87}, {"COMBINE", 87}, {"P_MEAN_NORM", 77}, {"P_MEAN_NORM_C", 109},
        {"P_NORM", 80}, {"P_NORM_C", 112}, {"SMOOTH_MAX", 83}, {"MAX_ABS", 120},
    {"DISTRIBUTION", 0}, {"DISTRIBUTION_TABLE", 0}, {"INPUT", 1}, {"INPUT_FILE", 1},
    {"ABS", 65}, {"REL", 82}, {"REL_VALUE", 86}, {"REL_V", 86},
    {"NONE", 78}, {"CONSTRAINED_LAPLACIAN", 76}, {"LAPLACE_MOTION", 77}, {"LOCAL_GRADIENT", 71},
    {"ORIGINAL", 79}, {"NORMAL", 79}, {"CONSERVATIVE", 67}, {"CUSTOM", 83},
    {"MAT_LINEAR", 73}, {"MIMP", 77}, {"CLASSIC", 67}, {"PID", 80},
    {"GO_MAX", 1}, {"GO_AVG", 2}, {"GO_MIN", 3}, {"GO_SUM", 4}, {"SUM", 4}, {"GO_ABSSUM", 5},
        {"GO_COUNT", 6}, {"GO_DEVIATION", 7}, {"GO_RANGE", 8},
};
// clang-format on

// Alternative spellings that must stay interchangeable.
const std::vector<std::pair<std::string, std::string>> kAliases = {
    {"TOPO_SENS", "TOPO_SENSITIVITY"},
    {"SHAPE_SENS", "SHAPE_SENSITIVITY"},
    {"ELEM", "ELEMENT"},
    {"HEAVISIDE", "HEAVYSIDE"},
    {"SEQ", "SEQUENTIAL"},
    {"SIMUL", "SIMULTANEOUS"},
    {"COMBINE", "WEIGHTED_SUM"},
    {"DISTRIBUTION_TABLE", "DISTRIBUTION"},
    {"INPUT_FILE", "INPUT"},
    {"REL_V", "REL_VALUE"},
    {"SUM", "GO_SUM"},
};

TEST(CommandVocabulary, KindsHaveTheirValuesAndTableNames) {
    const auto& names = ZentuCmdDefs::CMD_NAMES;
    ASSERT_EQ(names.size(), kCommandKinds.size());
    for (std::size_t i = 0; i < kCommandKinds.size(); ++i) {
        const auto& [kind, name] = kCommandKinds[i];
        EXPECT_EQ(ToInt(kind), static_cast<std::int64_t>(i)) << name;
        EXPECT_EQ(names[i], name) << "entry " << i;
    }
}

TEST(CommandVocabulary, DefaultNamesAreTheTableItself) {
    // Hosts keep the reference for the life of the library, so it must not be a copy.
    EXPECT_EQ(&ZentuCmdDefs::get_default_cmd_names(), &ZentuCmdDefs::CMD_NAMES);
    EXPECT_EQ(&ZentuCmdDefs::get_default_cmd_names(), &ZentuCmdDefs::get_default_cmd_names());
}

TEST(ItemVocabulary, KindsHaveTheirValuesAndTableNames) {
    const auto& names = ZentuCmdItemDefs::CMD_ITEM_NAMES;
    ASSERT_EQ(names.size(), kItemKinds.size());
    for (std::size_t i = 0; i < kItemKinds.size(); ++i) {
        const auto& [kind, name] = kItemKinds[i];
        EXPECT_EQ(ToInt(kind), static_cast<std::int64_t>(i)) << name;
        EXPECT_EQ(names[i], name) << "entry " << i;
    }
}

TEST(ItemVocabulary, ModifyAndAllAreConstantsButNoItemKinds) {
    EXPECT_EQ(ZentuCmdItemDefs::MODIFY_NAME, "MODIFY");
    EXPECT_EQ(ZentuCmdItemDefs::ALL_NAME, "ALL");
    const auto& names = ZentuCmdItemDefs::CMD_ITEM_NAMES;
    for (const std::string& word : {std::string("MODIFY"), std::string("ALL")}) {
        EXPECT_EQ(std::find(names.begin(), names.end(), word), names.end()) << word;
    }
}

TEST(ItemVocabulary, DataTypesAreDenseFromZero) {
    const std::vector<DataType> types = {
        DataType::INTEGER,    DataType::REAL,     DataType::VECTOR3D,   DataType::STRING,
        DataType::RAW_STRING, DataType::RESERVED, DataType::BRELT_LIST, DataType::LIST,
        DataType::REFERENCE,  DataType::ENUM,     DataType::AUTO,
    };
    for (std::size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(ToInt(types[i]), static_cast<std::int64_t>(i));
    }
}

TEST(ItemVocabulary, ValueTypeNamesKeepTheHostOrder) {
    const std::vector<std::string> expected = {
        "vtmInteger", "vtmDouble",      "vtmEnum",        "vtmString",
        "vtmIdName",  "vtmReference",   "vtmIntegerList", "vtmDoubleList",
        "vtmSelect",  "vtmComplexType", "vtmModelId",     "vtmUnknown",
    };
    const auto& names = ZentuCmdItemDefs::VALUE_TYPE_NAMES;
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.end()), expected);
}

TEST(PlaceholderCommand, IsNamedPlaceholderOfTheLastKindWithoutItems) {
    const ZentuCmd& placeholder = ZentuCmdContainer::s_DefaultCmd;
    // Its name deliberately differs from its kind's table name "CMD_PLACEHOLDER".
    EXPECT_EQ(placeholder.GetName(), "PLACEHOLDER");
    EXPECT_EQ(ToInt(placeholder.GetType()), ToInt(Cmd::CMD_PLACEHOLDER));
    for (const auto& [kind, name] : kItemKinds) {
        EXPECT_FALSE(placeholder.HasItem(kind, 0)) << name;
    }
}

TEST(KeywordMap, HoldsExactlyTheKeywordsWithTheirValues) {
    const ZentuCmdItemDefs::KeywordMap map = ZentuCmdItemDefs::create_enum_map();
    ASSERT_EQ(kKeywords.size(), 139U);
    EXPECT_EQ(map.size(), kKeywords.size());
    for (const auto& [keyword, value] : kKeywords) {
        const auto found = map.find(keyword);
        ASSERT_NE(found, map.end()) << keyword;
        EXPECT_EQ(ToInt(found->second), value) << keyword;
    }
}

TEST(KeywordMap, AgreesWithTheEnumerators) {
    // Host code names values by enumerator and compares them with what the map produced.
#define ZENTU_TEST_ENUMERATOR(word, value) {#word, EnumValue::word},
    const std::vector<std::pair<std::string, EnumValue>> enumerators = {
        ZENTU_CMD_ITEM_KEYWORDS(ZENTU_TEST_ENUMERATOR)};
#undef ZENTU_TEST_ENUMERATOR
    const ZentuCmdItemDefs::KeywordMap map = ZentuCmdItemDefs::create_enum_map();
    EXPECT_EQ(enumerators.size(), map.size());
    for (const auto& [keyword, value] : enumerators) {
        const auto found = map.find(keyword);
        ASSERT_NE(found, map.end()) << keyword;
        EXPECT_EQ(ToInt(found->second), ToInt(value)) << keyword;
    }
    EXPECT_EQ(ToInt(EnumValue::COMBINE), ToInt(EnumValue::WEIGHTED_SUM));
    EXPECT_EQ(ToInt(ZentuCmdItemDefs::NO_ENUM_VALUE), -1);
}

TEST(KeywordMap, AlternativeSpellingsShareTheirValue) {
    const ZentuCmdItemDefs::KeywordMap map = ZentuCmdItemDefs::create_enum_map();
    for (const auto& [alias, keyword] : kAliases) {
        ASSERT_EQ(map.count(alias), 1U) << alias;
        ASSERT_EQ(map.count(keyword), 1U) << keyword;
        EXPECT_EQ(ToInt(map.at(alias)), ToInt(map.at(keyword))) << alias << " / " << keyword;
    }
}

TEST(KeywordMap, MatchesOnlyTheExactUpperCaseText) {
    const ZentuCmdItemDefs::KeywordMap map = ZentuCmdItemDefs::create_enum_map();
    const std::vector<std::string> nearMisses = {
        "yes", "Yes", "yEs", " YES", "YES ", "\tYES", "YES\n", std::string("YES\0", 4), "YE", "",
    };
    for (const std::string& text : nearMisses) {
        EXPECT_EQ(map.count(text), 0U) << '"' << text << '"';
    }
}

TEST(KeywordMap, EveryCallBuildsAnIndependentMap) {
    ZentuCmdItemDefs::KeywordMap first = ZentuCmdItemDefs::create_enum_map();
    const ZentuCmdItemDefs::KeywordMap second = ZentuCmdItemDefs::create_enum_map();
    EXPECT_EQ(first, second);

    first.erase("YES");
    first["NO"] = EnumValue::MAX;
    first["EXTRA"] = EnumValue::MIN;

    EXPECT_EQ(second.size(), 139U);
    EXPECT_EQ(ToInt(second.at("YES")), 89);
    EXPECT_EQ(ToInt(second.at("NO")), 78);
    EXPECT_EQ(second.count("EXTRA"), 0U);
    EXPECT_EQ(ZentuCmdItemDefs::create_enum_map(), second);
}

}  // namespace
