#include "ZentuCmdMetaData.h"

ZentuCmdMetaData::ZentuCmdMetaData()
    : ZentuCmdMetaData(ZentuCmdDefs::Cmd::CMD_PLACEHOLDER, false) {}

ZentuCmdMetaData::ZentuCmdMetaData(ZentuCmdDefs::Cmd key, bool createDefault)
    : key_(key), create_default_(createDefault) {}

ZentuCmdMetaData::ZentuCmdMetaData(ZentuCmdDefs::Cmd key, ItemMap&& items, bool createDefault)
    : key_(key), create_default_(createDefault), items_(std::move(items)) {
    items.clear();
}

ZentuCmdMetaData::ZentuCmdMetaData(const ZentuCmdMetaData& other) = default;

ZentuCmdMetaData::ZentuCmdMetaData(ZentuCmdMetaData&& other) noexcept
    : key_(other.key_), create_default_(other.create_default_), items_(std::move(other.items_)) {
    other.items_.clear();
}

ZentuCmdMetaData& ZentuCmdMetaData::operator=(const ZentuCmdMetaData& other) = default;

ZentuCmdMetaData& ZentuCmdMetaData::operator=(ZentuCmdMetaData&& other) noexcept {
    if (this != &other) {
        key_ = other.key_;
        create_default_ = other.create_default_;
        items_ = std::move(other.items_);
        other.items_.clear();
    }
    return *this;
}

ZentuCmdMetaData::~ZentuCmdMetaData() = default;

ZentuCmdMetaData& ZentuCmdMetaData::AddItem(std::string&& name, ZentuCmdItemMetaData&& item) {
    if (items_.find(name) == items_.end()) {
        items_.emplace(std::move(name), std::move(item));
    }
    return *this;
}

ZentuCmdMetaData& ZentuCmdMetaData::AddItem(
    const std::pair<const std::string, ZentuCmdItemMetaData>& entry) {
    items_.insert(entry);
    return *this;
}
