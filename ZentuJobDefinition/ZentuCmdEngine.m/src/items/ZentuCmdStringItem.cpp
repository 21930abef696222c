#include "ZentuCmdStringItem.h"

#include "ZentuStringUtil.h"

ZentuCmdStringItem::ZentuCmdStringItem(const std::string& name, const std::string& text)
    : ZentuCmdRawStringItem(name, ZentuStringUtil::to_upper(text)) {}

ZentuCmdStringItem::ZentuCmdStringItem(const ZentuCmdStringItem& other) = default;

ZentuCmdStringItem& ZentuCmdStringItem::operator=(const ZentuCmdStringItem& other) = default;

ZentuCmdStringItem::~ZentuCmdStringItem() = default;

std::unique_ptr<ZentuCmdItem> ZentuCmdStringItem::Clone() const {
    return std::make_unique<ZentuCmdStringItem>(*this);
}
