#include "ZentuCmdIo.h"

#include "ZentuCmdIoConfig.h"

namespace ZentuCmdIo {

void prepare_cmd_settings_with_defaults(ZentuCmdIoConfig& config) {
    config.enum_map = ZentuCmdItemDefs::create_enum_map();
}

}  // namespace ZentuCmdIo
