#include "ZentuCmdAutoItem.h"

#include <cstring>
#include <utility>

#include "ZentuFormatUtil.h"
#include "ZentuStringUtil.h"
#include "items/ZentuIntegerText.h"
#include "items/ZentuUpperCase.h"

using ZentuCmdItemDefs::DataType;

namespace {

// The length that the number tests look at: up to the first NUL, as for a C string.
std::size_t c_length(const std::string& text) {
    return std::strlen(text.c_str());
}

bool is_quoted(const std::string& text) {
    return ZentuStringUtil::is_quoted_str(text, '"') || ZentuStringUtil::is_quoted_str(text, '\'');
}

std::string upper_trimmed(const std::string& text) {
    std::string result = ZentuUpperCase::to_upper(text);
    ZentuStringUtil::Trim(result);
    return result;
}

}  // namespace

ZentuCmdAutoItem::ZentuCmdAutoItem(const std::string& name, const std::string& text,
                                   const ZentuCmdItemDefs::KeywordMap& keywordMap)
    : ZentuCmdItem(name), text_(upper_trimmed(text)) {
    Set(DataType::STRING);
    ReadNumbers();
    const bool quoted = is_quoted(text_);
    std::vector<std::string> parts;
    ZentuStringUtil::Split(text_, ",", parts);
    if (!quoted && parts.size() == 3) {
        ReadVector(parts);
    }
    ReadKeyword(keywordMap);
    if (!parts.empty()) {
        ReadList(std::move(parts));
    }
    if (!quoted) {
        ReadIntegerList();
    }
}

ZentuCmdAutoItem::ZentuCmdAutoItem(const ZentuCmdAutoItem& other) = default;

ZentuCmdAutoItem& ZentuCmdAutoItem::operator=(const ZentuCmdAutoItem& other) = default;

ZentuCmdAutoItem::~ZentuCmdAutoItem() = default;

bool ZentuCmdAutoItem::HasString() const {
    return Has(DataType::STRING);
}

const std::string ZentuCmdAutoItem::GetString() const {
    return text_;
}

bool ZentuCmdAutoItem::HasInteger() const {
    return Has(DataType::INTEGER);
}

int ZentuCmdAutoItem::GetInteger() const {
    return integer_value_;
}

bool ZentuCmdAutoItem::HasReal() const {
    return Has(DataType::REAL);
}

double ZentuCmdAutoItem::GetReal() const {
    return real_value_;
}

bool ZentuCmdAutoItem::HasVector3d() const {
    return Has(DataType::VECTOR3D);
}

ZentuMatrix<3, 1, double> ZentuCmdAutoItem::GetVector3d() const {
    return vector_value_;
}

bool ZentuCmdAutoItem::HasEnum() const {
    return Has(DataType::ENUM);
}

ZentuCmdItemDefs::EnumValue ZentuCmdAutoItem::GetEnum() const {
    return enum_value_;
}

bool ZentuCmdAutoItem::HasList() const {
    return Has(DataType::LIST);
}

std::vector<std::string> ZentuCmdAutoItem::GetList() const {
    return list_value_;
}

bool ZentuCmdAutoItem::HasBreltList() const {
    return Has(DataType::BRELT_LIST);
}

BreltList<int> ZentuCmdAutoItem::GetBreltList() const {
    return brelt_list_;
}

bool ZentuCmdAutoItem::HasReference() const {
    return Has(DataType::REFERENCE) && reference_ != nullptr;
}

const ZentuCmd* ZentuCmdAutoItem::GetReference() const {
    return reference_;
}

bool ZentuCmdAutoItem::HasType(DataType type) const {
    const auto index = static_cast<std::size_t>(type);
    return index < has_type_.size() && has_type_[index];
}

void ZentuCmdAutoItem::AddReference(const ZentuCmd& target) {
    reference_ = &target;
    Set(DataType::REFERENCE);
}

std::unique_ptr<ZentuCmdItem> ZentuCmdAutoItem::Clone() const {
    return std::make_unique<ZentuCmdAutoItem>(*this);
}

bool ZentuCmdAutoItem::Has(DataType type) const {
    return has_type_[static_cast<std::size_t>(type)];
}

void ZentuCmdAutoItem::Set(DataType type) {
    has_type_[static_cast<std::size_t>(type)] = true;
}

void ZentuCmdAutoItem::ReadNumbers() {
    if (ZentuFormatUtil::is_int(text_.c_str())) {
        integer_value_ = ZentuIntegerText::to_wrapping_int(text_);
        real_value_ = integer_value_;
        Set(DataType::INTEGER);
        Set(DataType::REAL);
    }
    if (ZentuFormatUtil::is_double(text_.c_str(), c_length(text_))) {
        real_value_ = ZentuFormatUtil::str_to_double(text_.c_str(), nullptr);
        Set(DataType::REAL);
    }
}

void ZentuCmdAutoItem::ReadVector(const std::vector<std::string>& parts) {
    bool allNumbers = true;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string& part = parts[i];
        if (ZentuFormatUtil::is_int(part.c_str())) {
            vector_value_(i, 0) = ZentuIntegerText::to_wrapping_int(part);
        } else if (ZentuFormatUtil::is_double(part.c_str(), c_length(part))) {
            vector_value_(i, 0) = ZentuFormatUtil::str_to_double(part.c_str(), nullptr);
        } else {
            vector_value_(i, 0) = 0.0;
            allNumbers = false;
        }
    }
    if (allNumbers) {
        Set(DataType::VECTOR3D);
    }
}

void ZentuCmdAutoItem::ReadKeyword(const ZentuCmdItemDefs::KeywordMap& keywordMap) {
    const auto keyword = keywordMap.find(text_);
    if (keyword != keywordMap.end()) {
        enum_value_ = keyword->second;
        Set(DataType::ENUM);
    }
}

void ZentuCmdAutoItem::ReadList(std::vector<std::string> parts) {
    for (std::string& part : parts) {
        ZentuStringUtil::Trim(part);
    }
    list_value_ = std::move(parts);
    Set(DataType::LIST);
}

void ZentuCmdAutoItem::ReadIntegerList() {
    BreltList<int> list;
    if (try_read_brelt_list(text_, list)) {
        brelt_list_ = std::move(list);
        Set(DataType::BRELT_LIST);
    }
}
