#include "ZentuCmdIntItem.h"

#include "KPL_Failure.h"
#include "ZentuCmdMessages.h"
#include "ZentuFormatUtil.h"
#include "ZentuStringUtil.h"
#include "items/ZentuIntegerText.h"

namespace {

int validated_int(const std::string& name, const std::string& text) {
    const int value = ZentuIntegerText::to_wrapping_int(text);
    if (!ZentuFormatUtil::is_int(text.c_str())) {
        throw KPL_Failure(
            KPL_Failure::Format(ZentuCmdMessages::INT_ITEM_INVALID, name.c_str(), text.c_str()),
            ZentuCmdMessages::INT_ITEM_TAG);
    }
    return value;
}

}  // namespace

ZentuCmdIntItem::ZentuCmdIntItem(const std::string& name, const std::string& text)
    : ZentuCmdItem(name), value_(validated_int(name, text)) {}

ZentuCmdIntItem::ZentuCmdIntItem(const std::string& name, int value)
    : ZentuCmdItem(name), value_(value) {}

ZentuCmdIntItem::ZentuCmdIntItem(const ZentuCmdIntItem& other) = default;

ZentuCmdIntItem& ZentuCmdIntItem::operator=(const ZentuCmdIntItem& other) = default;

ZentuCmdIntItem::~ZentuCmdIntItem() = default;

const std::string ZentuCmdIntItem::GetString() const {
    return ZentuStringUtil::String(value_);
}

bool ZentuCmdIntItem::HasInteger() const {
    return true;
}

int ZentuCmdIntItem::GetInteger() const {
    return value_;
}

std::unique_ptr<ZentuCmdItem> ZentuCmdIntItem::Clone() const {
    return std::make_unique<ZentuCmdIntItem>(*this);
}
