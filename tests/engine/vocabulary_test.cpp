#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <sstream>
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

// Each enumerator beside its own spelling; position i must hold value i and table name i.
// clang-format off
#define CMD(word) {Cmd::word, #word}
#define ITEM(word) {CmdItem::word, #word}
const std::vector<std::pair<Cmd, std::string>> kCommandKinds = {
    CMD(MODEL_INPUT), CMD(GROUP_DEF), CMD(FILTER), CMD(DV), CMD(DRESP), CMD(OPERATOR),
    CMD(OBJ_FUNC), CMD(CONSTRAINT), CMD(DV_CONSTRAINT), CMD(MESH_SMOOTH), CMD(OPTIMIZE),
    CMD(OPT_PARAM), CMD(STOP), CMD(OUTPUT), CMD(SMOOTH), CMD(OPTIONS), CMD(DV_UPDATE_PARAM),
    CMD(SCALING_CURVE), CMD(CONTOURPLOT), CMD(REPORT), CMD(CMD_PLACEHOLDER)};

const std::vector<std::pair<CmdItem, std::string>> kItemKinds = {
    ITEM(ID_NAME), ITEM(TYPE), ITEM(FILE), ITEM(ADD_FILE), ITEM(GROUP), ITEM(ELEMENT_GROUP),
    ITEM(NODE_GROUP), ITEM(FACE_GROUP), ITEM(DRESP), ITEM(TARGET), ITEM(VALUE), ITEM(MIN),
    ITEM(MAX), ITEM(LIST_BEGIN), ITEM(DV), ITEM(OBJ_FUNC), ITEM(CONSTRAINT), ITEM(DV_CONSTRAINT),
    ITEM(STRATEGY), ITEM(STOP), ITEM(MESH_SMOOTH), ITEM(ITER_MAX), ITEM(OPT_PARAM),
    ITEM(DV_UPDATE_PARAM), ITEM(REFERENCE), ITEM(COEFFICIENT), ITEM(SOLVER_RUN_MODE),
    ITEM(SENS_CALC_MODE), ITEM(UPDATE_TYPE), ITEM(UPDATE_ID), ITEM(FORMAT), ITEM(DESCRIPTION),
    ITEM(DIRECTION), ITEM(LOADCASE), ITEM(MAGNITUDE), ITEM(LOWER), ITEM(UPPER), ITEM(CS),
    ITEM(FILTER), ITEM(PLACEHOLDER)};
// clang-format on
#undef ITEM
#undef CMD

// Every keyword with its value, written out apart from the enumeration so that a slip shows.
const char* const kKeywords =
    "YES=89 NO=78 CALCULATED=67 RECEIVED=82 MIN=77 MAX=88 LESS_EQUAL=76 GREATER_EQUAL=71 "
    "TOPO_SENSITIVITY=84 TOPO_SENS=84 SHAPE_SENSITIVITY=83 SHAPE_SENS=83 SYSTEM=83 OPER=79 "
    "VOLUME=146 ROT_ABS=9 ROT_X=11 ROT_Y=13 ROT_Z=15 DISP_ABS=8 DISP_X=17 DISP_Y=19 DISP_Z=21 "
    "DYN_FREQ=26 ENERGY_STIFF_MEASURE=29 INTERNAL_FORCE_ABS=60 INTERNAL_FORCE_X=62 "
    "INTERNAL_FORCE_Y=64 INTERNAL_FORCE_Z=66 INTERNAL_MOMENT_ABS=68 INTERNAL_MOMENT_X=70 "
    "INTERNAL_MOMENT_Y=72 INTERNAL_MOMENT_Z=74 REACTION_FORCE_ABS=87 REACTION_FORCE_X=89 "
    "REACTION_FORCE_Y=91 REACTION_FORCE_Z=93 REACTION_MOMENT_ABS=95 REACTION_MOMENT_X=97 "
    "REACTION_MOMENT_Y=99 REACTION_MOMENT_Z=101 SENSITIVITY_ONF=106 SENSITIVITY_ELEMENT=106 "
    "SENSITIVITY_NODE=106 TR_ENERGY_STIFF_MEASURE=174 TR_DISP_X=179 TR_DISP_Y=180 TR_DISP_Z=181 "
    "SIG_MISES=143 NODE=2 ELEMENT=0 ELEM=0 LIST=76 MERGE=77 SUBTRACT=83 INTERSECT=73 XOR=88 MMA=83 "
    "CSA=84 CSA_DEV=68 OC_DEV=79 STEEPEST=67 GENERIC=69 DENSITY=68 NODAL=78 NODAL_VECTOR=86 "
    "FILTER=73 SCALING_CURVE=71 LSF_INIT=66 LSF_SCALING=78 LEVELSET=86 FROZEN=90 SURF_PLANE_SYM=80 "
    "LINK_FROM_FILE=70 ONF=79 CSV=67 VTFX_PLOT=80 VTK=86 VTM=68 TOPO_DATA=84 SHAPE_DATA=72 "
    "SENSITIVITY_DATA=71 LEVELSET_DATA=76 OBJ_FUNC_DATA=79 CONSTRAINT_DATA=67 MODEL=77 "
    "HISTOGRAM=73 HEAVYSIDE=72 HEAVISIDE=72 LINEAR=73 SIGMUND=69 DIST_TO_BORDER=100 "
    "SIGMUND_TOPO=84 SENSITIVITY_FILTER=82 DENSITY_FILTER=81 SIGMUND_TOPO_VOL=85 "
    "SENSITIVITY_FILTER_VOL=86 DENSITY_FILTER_VOL=87 SEQUENTIAL=0 SEQ=0 SIMULTANEOUS=1 SIMUL=1 "
    "WEIGHTED_SUM=87 COMBINE=87 P_MEAN_NORM=77 P_MEAN_NORM_C=109 P_NORM=80 P_NORM_C=112 "
    "SMOOTH_MAX=83 MAX_ABS=120 DISTRIBUTION=0 DISTRIBUTION_TABLE=0 INPUT=1 INPUT_FILE=1 ABS=65 "
    "REL=82 REL_VALUE=86 REL_V=86 NONE=78 CONSTRAINED_LAPLACIAN=76 LAPLACE_MOTION=77 "
    "LOCAL_GRADIENT=71 ORIGINAL=79 NORMAL=79 CONSERVATIVE=67 CUSTOM=83 MAT_LINEAR=73 MIMP=77 "
    "CLASSIC=67 PID=80 GO_MAX=1 GO_AVG=2 GO_MIN=3 GO_SUM=4 SUM=4 GO_ABSSUM=5 GO_COUNT=6 "
    "GO_DEVIATION=7 GO_RANGE=8";

template <typename Kind, std::size_t N>
void ExpectValuesAndNames(const std::vector<std::pair<Kind, std::string>>& kinds,
                          const std::array<std::string, N>& names) {
    ASSERT_EQ(names.size(), kinds.size());
    for (std::size_t i = 0; i < N; ++i) {
        EXPECT_EQ(ToInt(kinds[i].first), static_cast<std::int64_t>(i)) << kinds[i].second;
        EXPECT_EQ(names[i], kinds[i].second) << "entry " << i;
    }
}

TEST(Vocabulary, KindsAndTypesHaveTheirValuesAndNamesAndThePlaceholderNone) {
    ExpectValuesAndNames(kCommandKinds, ZentuCmdDefs::CMD_NAMES);
    // Hosts keep the reference for the life of the library, so it must not be a copy.
    EXPECT_EQ(&ZentuCmdDefs::get_default_cmd_names(), &ZentuCmdDefs::CMD_NAMES);
    ExpectValuesAndNames(kItemKinds, ZentuCmdItemDefs::CMD_ITEM_NAMES);
    EXPECT_EQ(ZentuCmdItemDefs::MODIFY_NAME, "MODIFY");
    EXPECT_EQ(ZentuCmdItemDefs::ALL_NAME, "ALL");
    // clang-format off
    const DataType types[] = {DataType::INTEGER, DataType::REAL, DataType::VECTOR3D,
        DataType::STRING, DataType::RAW_STRING, DataType::RESERVED, DataType::BRELT_LIST,
        DataType::LIST, DataType::REFERENCE, DataType::ENUM, DataType::AUTO};
    const std::array<std::string, 12> valueTypes = {"vtmInteger", "vtmDouble", "vtmEnum",
        "vtmString", "vtmIdName", "vtmReference", "vtmIntegerList", "vtmDoubleList", "vtmSelect",
        "vtmComplexType", "vtmModelId", "vtmUnknown"};
    // clang-format on
    for (std::size_t i = 0; i < std::size(types); ++i) {
        EXPECT_EQ(ToInt(types[i]), static_cast<std::int64_t>(i));
    }
    EXPECT_EQ(ZentuCmdItemDefs::VALUE_TYPE_NAMES, valueTypes);
    const ZentuCmd& placeholder = ZentuCmdContainer::s_DefaultCmd;
    // Its name deliberately differs from its kind's table name "CMD_PLACEHOLDER".
    EXPECT_EQ(placeholder.GetName(), "PLACEHOLDER");
    EXPECT_EQ(ToInt(placeholder.GetType()), ToInt(Cmd::CMD_PLACEHOLDER));
    for (const auto& [kind, name] : kItemKinds) {
        EXPECT_FALSE(placeholder.HasItem(kind, 0)) << name;
    }
}

TEST(Vocabulary, KeywordMapHoldsExactlyTheKeywordsWithTheValuesOfTheirEnumerators) {
    std::map<std::string, std::int64_t> expected;
    std::istringstream words(kKeywords);
    for (std::string word; words >> word;) {
        const std::size_t equals = word.find('=');
        expected[word.substr(0, equals)] = std::stoi(word.substr(equals + 1));
    }
    ASSERT_EQ(expected.size(), 139U);
    std::map<std::string, std::int64_t> actual;
    for (const auto& [keyword, value] : ZentuCmdItemDefs::create_enum_map()) {
        actual[keyword] = ToInt(value);
    }
    EXPECT_EQ(actual, expected);
    // Host code names values by enumerator and compares them with what the map produced.
    std::map<std::string, std::int64_t> enumerators;
#define ZENTU_TEST_ENUMERATOR(word, value) \
    enumerators[#word] = ToInt(ZentuCmdItemDefs::EnumValue::word);
    ZENTU_CMD_ITEM_KEYWORDS(ZENTU_TEST_ENUMERATOR)
#undef ZENTU_TEST_ENUMERATOR
    EXPECT_EQ(enumerators, expected);
    EXPECT_EQ(ToInt(ZentuCmdItemDefs::NO_ENUM_VALUE), -1);
}

}  // namespace
