#include "ZentuCmd.h"

#include <cassert>
#include <utility>

#include "ZentuCmdAutoItem.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdStringItem.h"
#include "model/ZentuReadOnlyView.h"

using ZentuCmdItemDefs::CmdItem;

namespace {

const std::string& item_kind_name(CmdItem item) {
    return ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(item)];
}

}  // namespace

ZentuCmd::ZentuCmd(ZentuCmdDefs::Cmd type)
    : ZentuCmd(type, ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(type)]) {}

ZentuCmd::ZentuCmd(ZentuCmdDefs::Cmd type, const std::string& name) : type_(type), name_(name) {}

ZentuCmd::ZentuCmd(ZentuCmd&& other) noexcept
    : items_(std::move(other.items_)), type_(other.type_), name_(std::move(other.name_)) {
    other.name_.clear();
}

ZentuCmd& ZentuCmd::operator=(ZentuCmd&& other) noexcept {
    if (this != &other) {
        items_ = std::move(other.items_);
        type_ = other.type_;
        name_ = std::move(other.name_);
        other.name_.clear();
    }
    return *this;
}

ZentuCmd::~ZentuCmd() = default;

void ZentuCmd::AddStringItem(CmdItem item, const std::string& name, const std::string& value) {
    AddItem(item, std::make_unique<ZentuCmdStringItem>(name, value));
}

void ZentuCmd::AddStringItem(CmdItem item, const std::string& value) {
    AddStringItem(item, item_kind_name(item), value);
}

void ZentuCmd::AddItem(CmdItem item, const std::string& name, const ZentuCmd& target) {
    AddItem(item, std::make_unique<ZentuCmdReferenceItem>(name, target));
}

void ZentuCmd::AddItem(CmdItem item, const ZentuCmd& target) {
    AddItem(item, item_kind_name(item), target);
}

void ZentuCmd::AddItem(CmdItem item, std::unique_ptr<ZentuCmdItem> newItem) {
    if (newItem) {
        Sequence(item).push_back(std::move(newItem));
    }
}

void ZentuCmd::AddAutoItem(CmdItem item, const std::string& name, const std::string& value,
                           const ZentuCmdItemDefs::KeywordMap& keywords) {
    AddItem(item, std::make_unique<ZentuCmdAutoItem>(name, value, keywords));
}

void ZentuCmd::AddAutoItem(CmdItem item, const std::string& value,
                           const ZentuCmdItemDefs::KeywordMap& keywords) {
    AddAutoItem(item, item_kind_name(item), value, keywords);
}

void ZentuCmd::ReplaceItem(CmdItem item, std::unique_ptr<ZentuCmdItem> newItem, std::size_t index) {
    ItemSequence& sequence = Sequence(item);
    if (newItem && index < sequence.size()) {
        sequence[index] = std::move(newItem);
    }
}

void ZentuCmd::ReplaceItem(const ZentuCmdItemMetaData& metadata, const std::string& name,
                           const std::string& value, const ZentuCmdItemDefs::KeywordMap& keywords,
                           std::size_t index) {
    if (HasItem(metadata.key, index)) {
        ReplaceItem(metadata.key, ZentuCmdItemFactory::create(name, value, metadata, keywords),
                    index);
    }
}

void ZentuCmd::ReplaceItem(CmdItem item, const std::string& name, const std::string& value,
                           const ZentuCmdItemDefs::KeywordMap& keywords, std::size_t index,
                           ZentuCmdItemDefs::DataType type) {
    ReplaceItem(ZentuCmdItemMetaData(item, type, "", "", 1), name, value, keywords, index);
}

void ZentuCmd::ReplaceItem(CmdItem item, const std::string& value,
                           const ZentuCmdItemDefs::KeywordMap& keywords, std::size_t index,
                           ZentuCmdItemDefs::DataType type) {
    if (HasItem(item, index)) {
        const std::string name = Item(item, index).GetName();
        ReplaceItem(item, name, value, keywords, index, type);
    }
}

void ZentuCmd::Erase(CmdItem item, const_iterator first, const_iterator last) {
    Sequence(item).erase(first, last);
}

void ZentuCmd::Erase(CmdItem item, const_iterator position) {
    Sequence(item).erase(position);
}

void ZentuCmd::EraseAll(CmdItem item) {
    Sequence(item).clear();
}

void ZentuCmd::CopyItemsFrom(const ZentuCmd& other) {
    if (this == &other) {
        return;
    }
    for (std::size_t kind = 0; kind < items_.size(); ++kind) {
        ItemSequence copies;
        copies.reserve(other.items_[kind].size());
        for (const std::unique_ptr<ZentuCmdItem>& source : other.items_[kind]) {
            if (source) {
                copies.push_back(source->Clone());
            }
        }
        items_[kind] = std::move(copies);
    }
}

ZentuCmdItem& ZentuCmd::Item(CmdItem item, std::size_t index) {
    assert(HasItem(item, index));
    return *Sequence(item)[index];
}

const ZentuCmdItem& ZentuCmd::Item(CmdItem item, std::size_t index) const {
    assert(HasItem(item, index));
    return *Sequence(item)[index];
}

bool ZentuCmd::HasItem(CmdItem item, std::size_t index) const {
    return index < Sequence(item).size();
}

const ZentuCmd::ConstItemSequence& ZentuCmd::Items(CmdItem item) const {
    return ZentuReadOnlyView::of(Sequence(item));
}

ZentuCmd::iterator ZentuCmd::begin(CmdItem item) {
    return Sequence(item).begin();
}

ZentuCmd::iterator ZentuCmd::end(CmdItem item) {
    return Sequence(item).end();
}

ZentuCmd::const_iterator ZentuCmd::begin(CmdItem item) const {
    return Sequence(item).begin();
}

ZentuCmd::const_iterator ZentuCmd::end(CmdItem item) const {
    return Sequence(item).end();
}

ZentuIteratorRange<ZentuCmd::iterator> ZentuCmd::GetItemRange(CmdItem item) {
    return {begin(item), end(item)};
}

ZentuIteratorRange<ZentuCmd::const_iterator> ZentuCmd::GetItemRange(CmdItem item) const {
    return {begin(item), end(item)};
}

void ZentuCmd::SetName(const std::string& name) {
    name_ = name;
}

ZentuCmd::ItemSequence& ZentuCmd::Sequence(CmdItem item) {
    assert(static_cast<std::size_t>(item) < items_.size());
    return items_[static_cast<std::size_t>(item)];
}

const ZentuCmd::ItemSequence& ZentuCmd::Sequence(CmdItem item) const {
    assert(static_cast<std::size_t>(item) < items_.size());
    return items_[static_cast<std::size_t>(item)];
}
