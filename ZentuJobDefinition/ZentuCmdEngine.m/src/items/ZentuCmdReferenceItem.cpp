#include "ZentuCmdReferenceItem.h"

#include "ZentuCmd.h"
#include "model/ZentuCmdIdentifierIndex.h"

ZentuCmdReferenceItem::ZentuCmdReferenceItem(const std::string& name, const ZentuCmd& target)
    : ZentuCmdItem(name), reference_(&target) {}

ZentuCmdReferenceItem::ZentuCmdReferenceItem(const ZentuCmdReferenceItem& other) = default;

ZentuCmdReferenceItem& ZentuCmdReferenceItem::operator=(const ZentuCmdReferenceItem& other) =
    default;

ZentuCmdReferenceItem::~ZentuCmdReferenceItem() = default;

bool ZentuCmdReferenceItem::HasString() const {
    return true;
}

const std::string ZentuCmdReferenceItem::GetString() const {
    return reference_ != nullptr ? ZentuCmdIdentifier::text_of(*reference_) : std::string();
}

bool ZentuCmdReferenceItem::HasReference() const {
    return reference_ != nullptr;
}

const ZentuCmd* ZentuCmdReferenceItem::GetReference() const {
    return reference_;
}

void ZentuCmdReferenceItem::AddReference(const ZentuCmd& target) {
    reference_ = &target;
}

std::unique_ptr<ZentuCmdItem> ZentuCmdReferenceItem::Clone() const {
    return std::make_unique<ZentuCmdReferenceItem>(*this);
}
