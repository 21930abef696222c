#include "ZentuCmdAutoItem.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "ZentuFormatUtil.h"
#include "ZentuStringUtil.h"
#include "items/ZentuIntegerText.h"

using ZentuCmdItemDefs::DataType;

namespace {

static_assert(ZentuCmdItemDefs::DATA_TYPE_COUNT <= 16, "one bit per data type");

// The length that the number tests look at: up to the first NUL, as for a C string.
std::size_t c_length(const std::string& text) {
    return std::strlen(text.c_str());
}

bool is_quoted(const std::string& text) {
    return ZentuStringUtil::is_quoted_str(text, '"') || ZentuStringUtil::is_quoted_str(text, '\'');
}

std::string upper_trimmed(const std::string& text) {
    std::string result = ZentuStringUtil::to_upper(text);
    ZentuStringUtil::Trim(result);
    return result;
}

// The number of comma-separated parts, as ZentuStringUtil::Split counts them.
std::size_t part_count(const std::string& text) {
    return text.empty() ? 0
                        : static_cast<std::size_t>(std::count(text.begin(), text.end(), ',')) + 1;
}

// The comma-separated parts of a text, exactly as split.
std::vector<std::string> parts_of(const std::string& text) {
    std::vector<std::string> parts;
    ZentuStringUtil::Split(text, ",", parts);
    return parts;
}

// A vector component read from one part; a part that is no number gives nothing.
std::optional<double> component_of(const std::string& part) {
    if (ZentuFormatUtil::is_int(part.c_str())) {
        return ZentuIntegerText::to_wrapping_int(part);
    }
    if (ZentuFormatUtil::is_double(part.c_str(), c_length(part))) {
        return ZentuFormatUtil::str_to_double(part.c_str(), nullptr);
    }
    return std::nullopt;
}

}  // namespace

ZentuCmdAutoItem::ZentuCmdAutoItem(const std::string& name, const std::string& text,
                                   const ZentuCmdItemDefs::KeywordMap& keywordMap)
    : ZentuCmdItem(name), text_(upper_trimmed(text)) {
    Set(DataType::STRING);
    ReadNumbers();
    if (HasVectorShape()) {
        const std::vector<std::string> parts = parts_of(text_);
        if (std::all_of(parts.begin(), parts.end(),
                        [](const std::string& part) { return component_of(part).has_value(); })) {
            Set(DataType::VECTOR3D);
        }
    }
    ReadKeyword(keywordMap);
    if (part_count(text_) > 0) {
        Set(DataType::LIST);
    }
    if (!is_quoted(text_) && is_brelt_list(text_)) {
        Set(DataType::BRELT_LIST);
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
    return HasInteger() ? ZentuIntegerText::to_wrapping_int(text_) : 0;
}

bool ZentuCmdAutoItem::HasReal() const {
    return Has(DataType::REAL);
}

// An integer text reads as the same double through strtod, so one conversion serves both.
double ZentuCmdAutoItem::GetReal() const {
    return HasReal() ? ZentuFormatUtil::str_to_double(text_.c_str(), nullptr) : 0.0;
}

bool ZentuCmdAutoItem::HasVector3d() const {
    return Has(DataType::VECTOR3D);
}

ZentuMatrix<3, 1, double> ZentuCmdAutoItem::GetVector3d() const {
    ZentuMatrix<3, 1, double> vector;
    if (HasVectorShape()) {
        const std::vector<std::string> parts = parts_of(text_);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            vector(i, 0) = component_of(parts[i]).value_or(0.0);
        }
    }
    return vector;
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
    std::vector<std::string> parts = parts_of(text_);
    for (std::string& part : parts) {
        ZentuStringUtil::Trim(part);
    }
    return parts;
}

bool ZentuCmdAutoItem::HasBreltList() const {
    return Has(DataType::BRELT_LIST);
}

BreltList<int> ZentuCmdAutoItem::GetBreltList() const {
    return HasBreltList() ? values_of_brelt_list(text_) : BreltList<int>();
}

bool ZentuCmdAutoItem::HasReference() const {
    return Has(DataType::REFERENCE) && reference_ != nullptr;
}

const ZentuCmd* ZentuCmdAutoItem::GetReference() const {
    return reference_;
}

bool ZentuCmdAutoItem::HasType(DataType type) const {
    const auto index = static_cast<std::size_t>(type);
    return index < ZentuCmdItemDefs::DATA_TYPE_COUNT && Has(type);
}

void ZentuCmdAutoItem::AddReference(const ZentuCmd& target) {
    reference_ = &target;
    Set(DataType::REFERENCE);
}

std::unique_ptr<ZentuCmdItem> ZentuCmdAutoItem::Clone() const {
    return std::make_unique<ZentuCmdAutoItem>(*this);
}

bool ZentuCmdAutoItem::Has(DataType type) const {
    return (readings_ >> static_cast<unsigned>(type) & 1U) != 0;
}

void ZentuCmdAutoItem::Set(DataType type) {
    readings_ = static_cast<std::uint16_t>(readings_ | 1U << static_cast<unsigned>(type));
}

void ZentuCmdAutoItem::ReadNumbers() {
    if (ZentuFormatUtil::is_int(text_.c_str())) {
        Set(DataType::INTEGER);
        Set(DataType::REAL);
    }
    if (ZentuFormatUtil::is_double(text_.c_str(), c_length(text_))) {
        Set(DataType::REAL);
    }
}

void ZentuCmdAutoItem::ReadKeyword(const ZentuCmdItemDefs::KeywordMap& keywordMap) {
    const auto keyword = keywordMap.find(text_);
    if (keyword != keywordMap.end()) {
        enum_value_ = keyword->second;
        Set(DataType::ENUM);
    }
}

// Three parts of a text that is not quoted make a vector, whether or not they are numbers.
bool ZentuCmdAutoItem::HasVectorShape() const {
    return part_count(text_) == 3 && !is_quoted(text_);
}
