#include "ZentuCmdScalarItem.h"

#include <cstring>

#include "KPL_Failure.h"
#include "ZentuCmdMessages.h"
#include "ZentuFormatUtil.h"
#include "ZentuStringUtil.h"

namespace {

double validated_real(const std::string& name, const std::string& text) {
    const char* c = text.c_str();
    const double value = ZentuFormatUtil::str_to_double(c, nullptr);
    if (!ZentuFormatUtil::is_double(c, std::strlen(c)) && !ZentuFormatUtil::is_int(c)) {
        throw KPL_Failure(
            KPL_Failure::Format(ZentuCmdMessages::SCALAR_ITEM_INVALID, name.c_str(), c),
            ZentuCmdMessages::SCALAR_ITEM_TAG);
    }
    return value;
}

}  // namespace

ZentuCmdScalarItem::ZentuCmdScalarItem(const std::string& name, const std::string& text)
    : ZentuCmdItem(name), value_(validated_real(name, text)) {}

ZentuCmdScalarItem::ZentuCmdScalarItem(const std::string& name, double value)
    : ZentuCmdItem(name), value_(value) {}

ZentuCmdScalarItem::ZentuCmdScalarItem(const ZentuCmdScalarItem& other) = default;

ZentuCmdScalarItem& ZentuCmdScalarItem::operator=(const ZentuCmdScalarItem& other) = default;

ZentuCmdScalarItem::~ZentuCmdScalarItem() = default;

const std::string ZentuCmdScalarItem::GetString() const {
    return ZentuStringUtil::String(value_);
}

bool ZentuCmdScalarItem::HasReal() const {
    return true;
}

double ZentuCmdScalarItem::GetReal() const {
    return value_;
}

std::unique_ptr<ZentuCmdItem> ZentuCmdScalarItem::Clone() const {
    return std::make_unique<ZentuCmdScalarItem>(*this);
}
