#pragma once

#include <memory>
#include <string>

#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"

namespace ZentuParFileAdapter_Util {

// Builds one item read from a file through the item factory; a refusal is passed on as a
// KPL_Failure that names the command and the item and carries the refusal as its cause.
ZENTU_CMD_ENGINE_API std::unique_ptr<ZentuCmdItem> create_cmd_item(
    const ZentuCmdItemMetaData& metadata, const std::string& itemName, const std::string& value,
    const ZentuCmdItemDefs::KeywordMap& keywords, const std::string& commandKeyword,
    const std::string& idName);

}  // namespace ZentuParFileAdapter_Util
