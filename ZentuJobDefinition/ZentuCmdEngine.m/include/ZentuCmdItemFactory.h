#pragma once

#include <memory>
#include <string>

#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"

namespace ZentuCmdItemFactory {

// A new item of the class that the description's data type calls for, built from text; the
// item's constructor validates the text and may throw KPL_Failure.
ZENTU_CMD_ENGINE_API std::unique_ptr<ZentuCmdItem> create(
    const std::string& name, const std::string& text, const ZentuCmdItemMetaData& description,
    const ZentuCmdItemDefs::KeywordMap& keywordMap);

// A new item of the class that the data type calls for, built from text; a keyword item then
// accepts no keyword but the empty text.
ZENTU_CMD_ENGINE_API std::unique_ptr<ZentuCmdItem> create(
    ZentuCmdItemDefs::DataType type, const std::string& name, const std::string& text,
    const ZentuCmdItemDefs::KeywordMap& keywordMap);

// A new item holding the description's default value, whether or not has_default is set.
ZENTU_CMD_ENGINE_API std::unique_ptr<ZentuCmdItem> create_default_value_item(
    const std::string& name, const ZentuCmdItemMetaData& description,
    const ZentuCmdItemDefs::KeywordMap& keywordMap);

}  // namespace ZentuCmdItemFactory
