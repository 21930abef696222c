#include "ZentuCmdItemDefs.h"

namespace ZentuCmdItemDefs {

// NOLINTNEXTLINE(cert-err58-cpp): the interface declares its names as std::string objects.
const std::array<std::string, CMD_ITEM_KIND_COUNT> CMD_ITEM_NAMES = {"ID_NAME",
                                                                     "TYPE",
                                                                     "FILE",
                                                                     "ADD_FILE",
                                                                     "GROUP",
                                                                     "ELEMENT_GROUP",
                                                                     "NODE_GROUP",
                                                                     "FACE_GROUP",
                                                                     "DRESP",
                                                                     "TARGET",
                                                                     "VALUE",
                                                                     "MIN",
                                                                     "MAX",
                                                                     "LIST_BEGIN",
                                                                     "DV",
                                                                     "OBJ_FUNC",
                                                                     "CONSTRAINT",
                                                                     "DV_CONSTRAINT",
                                                                     "STRATEGY",
                                                                     "STOP",
                                                                     "MESH_SMOOTH",
                                                                     "ITER_MAX",
                                                                     "OPT_PARAM",
                                                                     "DV_UPDATE_PARAM",
                                                                     "REFERENCE",
                                                                     "COEFFICIENT",
                                                                     "SOLVER_RUN_MODE",
                                                                     "SENS_CALC_MODE",
                                                                     "UPDATE_TYPE",
                                                                     "UPDATE_ID",
                                                                     "FORMAT",
                                                                     "DESCRIPTION",
                                                                     "DIRECTION",
                                                                     "LOADCASE",
                                                                     "MAGNITUDE",
                                                                     "LOWER",
                                                                     "UPPER",
                                                                     "CS",
                                                                     "FILTER",
                                                                     "PLACEHOLDER"};

// NOLINTNEXTLINE(cert-err58-cpp): the interface declares its names as std::string objects.
const std::string MODIFY_NAME = "MODIFY";
// NOLINTNEXTLINE(cert-err58-cpp): the interface declares its names as std::string objects.
const std::string ALL_NAME = "ALL";

// NOLINTNEXTLINE(cert-err58-cpp): the interface declares its names as std::string objects.
const std::array<std::string, DATA_TYPE_COUNT> DATA_TYPE_NAMES = {
    "INTEGER",    "REAL", "VECTOR3D",  "STRING", "RAW_STRING", "RESERVED",
    "BRELT_LIST", "LIST", "REFERENCE", "ENUM",   "AUTO"};

// NOLINTNEXTLINE(cert-err58-cpp): the interface declares its names as std::string objects.
const std::array<std::string, 12> VALUE_TYPE_NAMES = {
    "vtmInteger",     "vtmDouble",     "vtmEnum",   "vtmString",      "vtmIdName",  "vtmReference",
    "vtmIntegerList", "vtmDoubleList", "vtmSelect", "vtmComplexType", "vtmModelId", "vtmUnknown"};

KeywordMap create_enum_map() {
    KeywordMap keywords;
#define ZENTU_CMD_ITEM_KEYWORD_ENTRY(word, value) keywords.emplace(#word, EnumValue::word);
    ZENTU_CMD_ITEM_KEYWORDS(ZENTU_CMD_ITEM_KEYWORD_ENTRY)
#undef ZENTU_CMD_ITEM_KEYWORD_ENTRY
    return keywords;
}

}  // namespace ZentuCmdItemDefs
