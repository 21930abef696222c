#include "ZentuCmdEnumItem.h"

#include <map>

#include "KPL_Failure.h"
#include "ZentuCmdMessages.h"
#include "ZentuStringUtil.h"

namespace {

// The keywords that a user may write, in byte order and joined by ", ". Keywords ending in '*'
// are still accepted but kept out of the list.
std::string listed_keywords(const KeywordsDictionary<int>& keywords) {
    std::map<std::string, int> collected;
    keywords.CollectKeywords(collected);
    std::string list;
    for (const auto& entry : collected) {
        const std::string& keyword = entry.first;
        if (!keyword.empty() && keyword.back() == '*') {
            continue;
        }
        if (!list.empty()) {
            list += ", ";
        }
        list += keyword;
    }
    return list;
}

}  // namespace

ZentuCmdEnumItem::ZentuCmdEnumItem(const std::string& name, const std::string& text,
                                   const KeywordsDictionary<int>& keywords)
    : ZentuCmdItem(name), value_(0), text_(ZentuStringUtil::to_upper(text)) {
    if (!keywords.Find(text_.c_str(), value_)) {
        print_error_msg(name, text, keywords);
    }
}

ZentuCmdEnumItem::ZentuCmdEnumItem(const ZentuCmdEnumItem& other) = default;

ZentuCmdEnumItem& ZentuCmdEnumItem::operator=(const ZentuCmdEnumItem& other) = default;

ZentuCmdEnumItem::~ZentuCmdEnumItem() = default;

bool ZentuCmdEnumItem::HasString() const {
    return true;
}

const std::string ZentuCmdEnumItem::GetString() const {
    return text_;
}

bool ZentuCmdEnumItem::HasInteger() const {
    return true;
}

int ZentuCmdEnumItem::GetInteger() const {
    return value_;
}

bool ZentuCmdEnumItem::HasEnum() const {
    return true;
}

ZentuCmdItemDefs::EnumValue ZentuCmdEnumItem::GetEnum() const {
    return static_cast<ZentuCmdItemDefs::EnumValue>(value_);
}

std::unique_ptr<ZentuCmdItem> ZentuCmdEnumItem::Clone() const {
    return std::make_unique<ZentuCmdEnumItem>(*this);
}

void ZentuCmdEnumItem::print_error_msg(const std::string& name, const std::string& text,
                                       const KeywordsDictionary<int>& keywords) {
    throw KPL_Failure(KPL_Failure::Format(ZentuCmdMessages::ENUM_ITEM_INVALID, text.c_str(),
                                          name.c_str(), listed_keywords(keywords).c_str()),
                      ZentuCmdMessages::ENUM_ITEM_TAG);
}
