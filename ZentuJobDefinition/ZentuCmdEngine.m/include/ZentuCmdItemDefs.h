#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "ZentuCmdEngineExport.h"

namespace ZentuCmdItemDefs {

// The kind of an item; the values are binding and index a command's item storage.
enum class CmdItem : std::int32_t {
    ID_NAME = 0,
    TYPE = 1,
    FILE = 2,
    ADD_FILE = 3,
    GROUP = 4,
    ELEMENT_GROUP = 5,
    NODE_GROUP = 6,
    FACE_GROUP = 7,
    DRESP = 8,
    TARGET = 9,
    VALUE = 10,
    MIN = 11,
    MAX = 12,
    LIST_BEGIN = 13,
    DV = 14,
    OBJ_FUNC = 15,
    CONSTRAINT = 16,
    DV_CONSTRAINT = 17,
    STRATEGY = 18,
    STOP = 19,
    MESH_SMOOTH = 20,
    ITER_MAX = 21,
    OPT_PARAM = 22,
    DV_UPDATE_PARAM = 23,
    REFERENCE = 24,
    COEFFICIENT = 25,
    SOLVER_RUN_MODE = 26,
    SENS_CALC_MODE = 27,
    UPDATE_TYPE = 28,
    UPDATE_ID = 29,
    FORMAT = 30,
    DESCRIPTION = 31,
    DIRECTION = 32,
    LOADCASE = 33,
    MAGNITUDE = 34,
    LOWER = 35,
    UPPER = 36,
    CS = 37,
    FILTER = 38,
    PLACEHOLDER = 39
};

// The number of item kinds.
inline constexpr std::size_t CMD_ITEM_KIND_COUNT = 40;

// How an item's value text is typed; decides the class that the item factory makes.
enum class DataType : std::int32_t {
    INTEGER = 0,
    REAL = 1,
    VECTOR3D = 2,
    STRING = 3,
    RAW_STRING = 4,
    RESERVED = 5,
    BRELT_LIST = 6,
    LIST = 7,
    REFERENCE = 8,
    ENUM = 9,
    AUTO = 10
};

// The number of data types.
inline constexpr std::size_t DATA_TYPE_COUNT = 11;

// Every keyword with its value, in the order in which create_enum_map inserts them. Values are
// shared: alternative spellings, and unrelated keywords of different choices, map to one value.
// clang-format off
#define ZENTU_CMD_ITEM_KEYWORDS(KEYWORD) \
    KEYWORD(YES, 89) \
    KEYWORD(NO, 78) \
    KEYWORD(CALCULATED, 67) \
    KEYWORD(RECEIVED, 82) \
    KEYWORD(MIN, 77) \
    KEYWORD(MAX, 88) \
    KEYWORD(LESS_EQUAL, 76) \
    KEYWORD(GREATER_EQUAL, 71) \
    KEYWORD(TOPO_SENSITIVITY, 84) \
    KEYWORD(TOPO_SENS, 84) \
    KEYWORD(SHAPE_SENSITIVITY, 83) \
    KEYWORD(SHAPE_SENS, 83) \
    KEYWORD(SYSTEM, 83) \
    KEYWORD(OPER, 79) \
    KEYWORD(VOLUME, 146) \
    KEYWORD(ROT_ABS, 9) \
    KEYWORD(ROT_X, 11) \
    KEYWORD(ROT_Y, 13) \
    KEYWORD(ROT_Z, 15) \
    KEYWORD(DISP_ABS, 8) \
    KEYWORD(DISP_X, 17) \
    KEYWORD(DISP_Y, 19) \
    KEYWORD(DISP_Z, 21) \
    KEYWORD(DYN_FREQ, 26) \
    KEYWORD(ENERGY_STIFF_MEASURE, 29) \
    KEYWORD(INTERNAL_FORCE_ABS, 60) \
    KEYWORD(INTERNAL_FORCE_X, 62) \
    KEYWORD(INTERNAL_FORCE_Y, 64) \
    KEYWORD(INTERNAL_FORCE_Z, 66) \
    KEYWORD(INTERNAL_MOMENT_ABS, 68) \
    KEYWORD(INTERNAL_MOMENT_X, 70) \
    KEYWORD(INTERNAL_MOMENT_Y, 72) \
    KEYWORD(INTERNAL_MOMENT_Z, 74) \
    KEYWORD(REACTION_FORCE_ABS, 87) \
    KEYWORD(REACTION_FORCE_X, 89) \
    KEYWORD(REACTION_FORCE_Y, 91) \
    KEYWORD(REACTION_FORCE_Z, 93) \
    KEYWORD(REACTION_MOMENT_ABS, 95) \
    KEYWORD(REACTION_MOMENT_X, 97) \
    KEYWORD(REACTION_MOMENT_Y, 99) \
    KEYWORD(REACTION_MOMENT_Z, 101) \
    KEYWORD(SENSITIVITY_ONF, 106) \
    KEYWORD(SENSITIVITY_ELEMENT, 106) \
    KEYWORD(SENSITIVITY_NODE, 106) \
    KEYWORD(TR_ENERGY_STIFF_MEASURE, 174) \
    KEYWORD(TR_DISP_X, 179) \
    KEYWORD(TR_DISP_Y, 180) \
    KEYWORD(TR_DISP_Z, 181) \
    KEYWORD(SIG_MISES, 143) \
    KEYWORD(NODE, 2) \
    KEYWORD(ELEMENT, 0) \
    KEYWORD(ELEM, 0) \
    KEYWORD(LIST, 76) \
    KEYWORD(MERGE, 77) \
    KEYWORD(SUBTRACT, 83) \
    KEYWORD(INTERSECT, 73) \
    KEYWORD(XOR, 88) \
    KEYWORD(MMA, 83) \
    KEYWORD(CSA, 84) \
    KEYWORD(CSA_DEV, 68) \
    KEYWORD(OC_DEV, 79) \
    KEYWORD(STEEPEST, 67) \
    KEYWORD(GENERIC, 69) \
    KEYWORD(DENSITY, 68) \
    KEYWORD(NODAL, 78) \
    KEYWORD(NODAL_VECTOR, 86) \
    KEYWORD(FILTER, 73) \
    KEYWORD(SCALING_CURVE, 71) \
    KEYWORD(LSF_INIT, 66) \
    KEYWORD(LSF_SCALING, 78) \
    KEYWORD(LEVELSET, 86) \
    KEYWORD(FROZEN, 90) \
    KEYWORD(SURF_PLANE_SYM, 80) \
    KEYWORD(LINK_FROM_FILE, 70) \
    KEYWORD(ONF, 79) \
    KEYWORD(CSV, 67) \
    KEYWORD(VTFX_PLOT, 80) \
    KEYWORD(VTK, 86) \
    KEYWORD(VTM, 68) \
    KEYWORD(TOPO_DATA, 84) \
    KEYWORD(SHAPE_DATA, 72) \
    KEYWORD(SENSITIVITY_DATA, 71) \
    KEYWORD(LEVELSET_DATA, 76) \
    KEYWORD(OBJ_FUNC_DATA, 79) \
    KEYWORD(CONSTRAINT_DATA, 67) \
    KEYWORD(MODEL, 77) \
    KEYWORD(HISTOGRAM, 73) \
    KEYWORD(HEAVYSIDE, 72) \
    KEYWORD(HEAVISIDE, 72) \
    KEYWORD(LINEAR, 73) \
    KEYWORD(SIGMUND, 69) \
    KEYWORD(DIST_TO_BORDER, 100) \
    KEYWORD(SIGMUND_TOPO, 84) \
    KEYWORD(SENSITIVITY_FILTER, 82) \
    KEYWORD(DENSITY_FILTER, 81) \
    KEYWORD(SIGMUND_TOPO_VOL, 85) \
    KEYWORD(SENSITIVITY_FILTER_VOL, 86) \
    KEYWORD(DENSITY_FILTER_VOL, 87) \
    KEYWORD(SEQUENTIAL, 0) \
    KEYWORD(SEQ, 0) \
    KEYWORD(SIMULTANEOUS, 1) \
    KEYWORD(SIMUL, 1) \
    KEYWORD(WEIGHTED_SUM, 87) \
    KEYWORD(COMBINE, 87) \
    KEYWORD(P_MEAN_NORM, 77) \
    KEYWORD(P_MEAN_NORM_C, 109) \
    KEYWORD(P_NORM, 80) \
    KEYWORD(P_NORM_C, 112) \
    KEYWORD(SMOOTH_MAX, 83) \
    KEYWORD(MAX_ABS, 120) \
    KEYWORD(DISTRIBUTION, 0) \
    KEYWORD(DISTRIBUTION_TABLE, 0) \
    KEYWORD(INPUT, 1) \
    KEYWORD(INPUT_FILE, 1) \
    KEYWORD(ABS, 65) \
    KEYWORD(REL, 82) \
    KEYWORD(REL_VALUE, 86) \
    KEYWORD(REL_V, 86) \
    KEYWORD(NONE, 78) \
    KEYWORD(CONSTRAINED_LAPLACIAN, 76) \
    KEYWORD(LAPLACE_MOTION, 77) \
    KEYWORD(LOCAL_GRADIENT, 71) \
    KEYWORD(ORIGINAL, 79) \
    KEYWORD(NORMAL, 79) \
    KEYWORD(CONSERVATIVE, 67) \
    KEYWORD(CUSTOM, 83) \
    KEYWORD(MAT_LINEAR, 73) \
    KEYWORD(MIMP, 77) \
    KEYWORD(CLASSIC, 67) \
    KEYWORD(PID, 80) \
    KEYWORD(GO_MAX, 1) \
    KEYWORD(GO_AVG, 2) \
    KEYWORD(GO_MIN, 3) \
    KEYWORD(GO_SUM, 4) \
    KEYWORD(SUM, 4) \
    KEYWORD(GO_ABSSUM, 5) \
    KEYWORD(GO_COUNT, 6) \
    KEYWORD(GO_DEVIATION, 7) \
    KEYWORD(GO_RANGE, 8)
// clang-format on

// The value of a keyword; several keywords may share one value.
enum class EnumValue : std::int32_t {
#define ZENTU_CMD_ITEM_KEYWORD_ENUMERATOR(word, value) word = (value),
    ZENTU_CMD_ITEM_KEYWORDS(ZENTU_CMD_ITEM_KEYWORD_ENUMERATOR)
#undef ZENTU_CMD_ITEM_KEYWORD_ENUMERATOR
};

// The value that stands for "no keyword".
inline constexpr EnumValue NO_ENUM_VALUE = static_cast<EnumValue>(-1);

// Keyword text to keyword value; a text matches only when it is exactly a key.
using KeywordMap = std::unordered_map<std::string, EnumValue>;

// The name of every item kind, indexed by its value.
ZENTU_CMD_ENGINE_API extern const std::array<std::string, CMD_ITEM_KIND_COUNT> CMD_ITEM_NAMES;

// "MODIFY"; kept beside the item names for hosts, not an item kind.
ZENTU_CMD_ENGINE_API extern const std::string MODIFY_NAME;

// "ALL"; kept beside the item names for hosts, not an item kind.
ZENTU_CMD_ENGINE_API extern const std::string ALL_NAME;

// The name of every data type, indexed by its value, as schemas and messages write it.
ZENTU_CMD_ENGINE_API extern const std::array<std::string, DATA_TYPE_COUNT> DATA_TYPE_NAMES;

// The value-type names of the host's own vocabulary; not indexed by DataType.
ZENTU_CMD_ENGINE_API extern const std::array<std::string, 12> VALUE_TYPE_NAMES;

// A new keyword map holding every keyword of ZENTU_CMD_ITEM_KEYWORDS with its value.
ZENTU_CMD_ENGINE_API KeywordMap create_enum_map();

}  // namespace ZentuCmdItemDefs
