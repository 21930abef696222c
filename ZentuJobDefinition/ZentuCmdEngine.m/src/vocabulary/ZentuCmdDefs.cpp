#include "ZentuCmdDefs.h"

namespace ZentuCmdDefs {

// NOLINTNEXTLINE(cert-err58-cpp): the interface declares its names as std::string objects.
const std::array<std::string, CMD_KIND_COUNT> CMD_NAMES = {
    "MODEL_INPUT", "GROUP_DEF",       "FILTER",
    "DV",          "DRESP",           "OPERATOR",
    "OBJ_FUNC",    "CONSTRAINT",      "DV_CONSTRAINT",
    "MESH_SMOOTH", "OPTIMIZE",        "OPT_PARAM",
    "STOP",        "OUTPUT",          "SMOOTH",
    "OPTIONS",     "DV_UPDATE_PARAM", "SCALING_CURVE",
    "CONTOURPLOT", "REPORT",          "CMD_PLACEHOLDER"};

const std::array<std::string, CMD_KIND_COUNT>& get_default_cmd_names() {
    return CMD_NAMES;
}

}  // namespace ZentuCmdDefs
