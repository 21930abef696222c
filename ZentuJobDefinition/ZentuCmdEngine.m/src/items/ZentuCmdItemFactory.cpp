#include "ZentuCmdItemFactory.h"

#include "ZentuCmdAutoItem.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuCmdStringItem.h"

using ZentuCmdItemDefs::DataType;

namespace ZentuCmdItemFactory {

std::unique_ptr<ZentuCmdItem> create(const std::string& name, const std::string& text,
                                     const ZentuCmdItemMetaData& description,
                                     const ZentuCmdItemDefs::KeywordMap& keywordMap) {
    switch (description.type) {
        case DataType::INTEGER:
            return std::make_unique<ZentuCmdIntItem>(name, text);
        case DataType::REAL:
            return std::make_unique<ZentuCmdScalarItem>(name, text);
        case DataType::STRING:
            return std::make_unique<ZentuCmdStringItem>(name, text);
        case DataType::RAW_STRING:
            return std::make_unique<ZentuCmdRawStringItem>(name, text);
        case DataType::ENUM:
            return std::make_unique<ZentuCmdEnumItem>(name, text, description.keywords);
        default:
            return std::make_unique<ZentuCmdAutoItem>(name, text, keywordMap);
    }
}

std::unique_ptr<ZentuCmdItem> create(DataType type, const std::string& name,
                                     const std::string& text,
                                     const ZentuCmdItemDefs::KeywordMap& keywordMap) {
    const ZentuCmdItemMetaData description(ZentuCmdItemDefs::CmdItem::PLACEHOLDER, type, "", "", 1);
    return create(name, text, description, keywordMap);
}

std::unique_ptr<ZentuCmdItem> create_default_value_item(
    const std::string& name, const ZentuCmdItemMetaData& description,
    const ZentuCmdItemDefs::KeywordMap& keywordMap) {
    switch (description.type) {
        case DataType::INTEGER:
            return std::make_unique<ZentuCmdIntItem>(name, description.default_int);
        case DataType::REAL:
            return std::make_unique<ZentuCmdScalarItem>(name, description.default_real);
        default:
            return create(name, description.default_value, description, keywordMap);
    }
}

}  // namespace ZentuCmdItemFactory
