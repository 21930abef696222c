#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "ZentuCmdEngineExport.h"

namespace ZentuCmdDefs {

// The kind of a command; the values are binding and index every per-kind array.
enum class Cmd : std::int32_t {
    MODEL_INPUT = 0,
    GROUP_DEF = 1,
    FILTER = 2,
    DV = 3,
    DRESP = 4,
    OPERATOR = 5,
    OBJ_FUNC = 6,
    CONSTRAINT = 7,
    DV_CONSTRAINT = 8,
    MESH_SMOOTH = 9,
    OPTIMIZE = 10,
    OPT_PARAM = 11,
    STOP = 12,
    OUTPUT = 13,
    SMOOTH = 14,
    OPTIONS = 15,
    DV_UPDATE_PARAM = 16,
    SCALING_CURVE = 17,
    CONTOURPLOT = 18,
    REPORT = 19,
    CMD_PLACEHOLDER = 20
};

// The number of command kinds.
inline constexpr std::size_t CMD_KIND_COUNT = 21;

// The name of every command kind, indexed by its value.
ZENTU_CMD_ENGINE_API extern const std::array<std::string, CMD_KIND_COUNT> CMD_NAMES;

// The command-name table; the reference stays valid while the library is loaded.
ZENTU_CMD_ENGINE_API const std::array<std::string, CMD_KIND_COUNT>& get_default_cmd_names();

}  // namespace ZentuCmdDefs
