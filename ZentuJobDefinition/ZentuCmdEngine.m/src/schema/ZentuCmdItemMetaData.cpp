#include "ZentuCmdItemMetaData.h"

using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace {

// Keywords of a description may use the blank, the printable characters and code 127.
constexpr int FIRST_KEYWORD_CHARACTER = 32;
constexpr int LAST_KEYWORD_CHARACTER = 127;

}  // namespace

ZentuCmdItemMetaData::ZentuCmdItemMetaData()
    : ZentuCmdItemMetaData(CmdItem::PLACEHOLDER, DataType::STRING, "", "", 1) {}

ZentuCmdItemMetaData::ZentuCmdItemMetaData(CmdItem key)
    : ZentuCmdItemMetaData(key, DataType::AUTO, "", "", 1) {}

ZentuCmdItemMetaData::ZentuCmdItemMetaData(CmdItem key, DataType type,
                                           const std::string& defaultValue,
                                           const std::string& extraText, int extraValue)
    : key(key),
      extra_text(extraText),
      type(type),
      default_value(defaultValue),
      has_default(!defaultValue.empty()),
      extra_flag(1),
      extra_value(extraValue) {
    PrepareKeywords();
}

ZentuCmdItemMetaData::ZentuCmdItemMetaData(CmdItem key, int defaultValue,
                                           const std::string& extraText, int extraValue)
    : ZentuCmdItemMetaData(key, DataType::INTEGER, "", extraText, extraValue) {
    default_int = defaultValue;
    has_default = true;
}

ZentuCmdItemMetaData::ZentuCmdItemMetaData(CmdItem key, double defaultValue,
                                           const std::string& extraText, int extraValue)
    : ZentuCmdItemMetaData(key, DataType::REAL, "", extraText, extraValue) {
    default_real = defaultValue;
    has_default = true;
}

ZentuCmdItemMetaData::ZentuCmdItemMetaData(CmdItem key, const std::string& defaultValue,
                                           const std::string& extraText, int extraValue)
    : key(key),
      extra_text(extraText),
      type(DataType::STRING),
      default_value(defaultValue),
      has_default(true),
      extra_flag(0),
      extra_value(extraValue) {}

ZentuCmdItemMetaData::ZentuCmdItemMetaData(
    CmdItem key, const std::initializer_list<std::pair<const char*, int>>& keywords,
    const std::string& defaultValue)
    : ZentuCmdItemMetaData(key, DataType::ENUM, defaultValue, "", 1) {
    for (const auto& [keyword, value] : keywords) {
        this->keywords.Insert(keyword, value);
    }
}

ZentuCmdItemMetaData::ZentuCmdItemMetaData(CmdItem key, ZentuCmdDefs::Cmd referencedKind,
                                           const std::string& defaultValue)
    : key(key),
      type(DataType::REFERENCE),
      default_value(defaultValue),
      has_default(false),
      referenced_kinds{{referencedKind, referencedKind}},
      extra_flag(0),
      extra_value(1) {}

ZentuCmdItemMetaData::ZentuCmdItemMetaData(const ZentuCmdItemMetaData& other) = default;

ZentuCmdItemMetaData::ZentuCmdItemMetaData(ZentuCmdItemMetaData&& other) noexcept = default;

ZentuCmdItemMetaData& ZentuCmdItemMetaData::operator=(const ZentuCmdItemMetaData& other) = default;

ZentuCmdItemMetaData& ZentuCmdItemMetaData::operator=(ZentuCmdItemMetaData&& other) noexcept =
    default;

ZentuCmdItemMetaData::~ZentuCmdItemMetaData() = default;

void ZentuCmdItemMetaData::PrepareKeywords() {
    keywords.Reset(-1);
    for (int c = FIRST_KEYWORD_CHARACTER; c <= LAST_KEYWORD_CHARACTER; ++c) {
        keywords.AllowCharacter(static_cast<char>(c));
    }
    keywords.BuildAlphabet();
}
