#include "ZentuCmdItem.h"

using ZentuCmdItemDefs::DataType;

ZentuCmdItem::ZentuCmdItem(const std::string& name) : name_(name) {}

ZentuCmdItem::ZentuCmdItem(const ZentuCmdItem& other) = default;

ZentuCmdItem& ZentuCmdItem::operator=(const ZentuCmdItem& other) = default;

ZentuCmdItem::~ZentuCmdItem() = default;

bool ZentuCmdItem::HasString() const {
    return false;
}

const std::string ZentuCmdItem::GetString() const {
    return {};
}

bool ZentuCmdItem::HasInteger() const {
    return false;
}

int ZentuCmdItem::GetInteger() const {
    return 0;
}

bool ZentuCmdItem::HasReal() const {
    return false;
}

double ZentuCmdItem::GetReal() const {
    return 0.0;
}

bool ZentuCmdItem::HasVector3d() const {
    return false;
}

ZentuMatrix<3, 1, double> ZentuCmdItem::GetVector3d() const {
    return {};
}

bool ZentuCmdItem::HasEnum() const {
    return false;
}

ZentuCmdItemDefs::EnumValue ZentuCmdItem::GetEnum() const {
    return ZentuCmdItemDefs::NO_ENUM_VALUE;
}

bool ZentuCmdItem::HasList() const {
    return false;
}

std::vector<std::string> ZentuCmdItem::GetList() const {
    return {};
}

bool ZentuCmdItem::HasBreltList() const {
    return false;
}

BreltList<int> ZentuCmdItem::GetBreltList() const {
    return BreltList<int>(0);
}

bool ZentuCmdItem::HasReference() const {
    return false;
}

const ZentuCmd* ZentuCmdItem::GetReference() const {
    return nullptr;
}

bool ZentuCmdItem::HasType(DataType type) const {
    switch (type) {
        case DataType::INTEGER:
            return HasInteger();
        case DataType::REAL:
            return HasReal();
        case DataType::VECTOR3D:
            return HasVector3d();
        case DataType::STRING:
            return HasString();
        case DataType::BRELT_LIST:
            return HasBreltList();
        case DataType::LIST:
            return HasList();
        case DataType::REFERENCE:
            return HasReference();
        case DataType::ENUM:
            return HasEnum();
        case DataType::RAW_STRING:
        case DataType::RESERVED:
        case DataType::AUTO:
            return false;
    }
    return false;
}

void ZentuCmdItem::AddReference(const ZentuCmd& /*target*/) {}
