#pragma once

#include "ZentuCmdEngineExport.h"

class ZentuCmdIoConfig;

namespace ZentuCmdIo {

// Gives the configuration the library's own values: replaces its keyword map with a fresh one.
ZENTU_CMD_ENGINE_API void prepare_cmd_settings_with_defaults(ZentuCmdIoConfig& config);

}  // namespace ZentuCmdIo
