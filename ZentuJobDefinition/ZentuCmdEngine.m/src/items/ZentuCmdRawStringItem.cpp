#include "ZentuCmdRawStringItem.h"

ZentuCmdRawStringItem::ZentuCmdRawStringItem(const std::string& name, const std::string& text)
    : ZentuCmdItem(name), text_(text) {}

ZentuCmdRawStringItem::ZentuCmdRawStringItem(const ZentuCmdRawStringItem& other) = default;

ZentuCmdRawStringItem& ZentuCmdRawStringItem::operator=(const ZentuCmdRawStringItem& other) =
    default;

ZentuCmdRawStringItem::~ZentuCmdRawStringItem() = default;

bool ZentuCmdRawStringItem::HasString() const {
    return true;
}

const std::string ZentuCmdRawStringItem::GetString() const {
    return text_;
}

std::unique_ptr<ZentuCmdItem> ZentuCmdRawStringItem::Clone() const {
    return std::make_unique<ZentuCmdRawStringItem>(*this);
}
