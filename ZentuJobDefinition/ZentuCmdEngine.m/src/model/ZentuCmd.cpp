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
    : inline_sequences_(std::move(other.inline_sequences_)),
      blocks_(std::move(other.blocks_)),
      positions_(other.positions_),
      created_(other.created_),
      kinds_with_sequences_(other.kinds_with_sequences_),
      type_(other.type_),
      name_(std::move(other.name_)) {
    other.positions_.fill(0);
    other.created_ = 0;
    other.kinds_with_sequences_ = 0;
    other.name_.clear();
}

ZentuCmd& ZentuCmd::operator=(ZentuCmd&& other) noexcept {
    if (this != &other) {
        inline_sequences_ = std::move(other.inline_sequences_);
        blocks_ = std::move(other.blocks_);
        positions_ = other.positions_;
        created_ = other.created_;
        kinds_with_sequences_ = other.kinds_with_sequences_;
        other.positions_.fill(0);
        other.created_ = 0;
        other.kinds_with_sequences_ = 0;
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
    if (newItem && HasItem(item, index)) {
        (*Find(item))[index] = std::move(newItem);
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
    if (first != last) {
        Find(item)->erase(first, last);
    }
}

void ZentuCmd::Erase(CmdItem item, const_iterator position) {
    Find(item)->erase(position);
}

void ZentuCmd::EraseAll(CmdItem item) {
    if (ItemSequence* sequence = Find(item)) {
        sequence->clear();
    }
}

void ZentuCmd::CopyItemsFrom(const ZentuCmd& other) {
    if (this == &other) {
        return;
    }
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        const auto itemKind = static_cast<CmdItem>(kind);
        ItemSequence copies;
        if (const ItemSequence* sources = other.Find(itemKind)) {
            copies.reserve(sources->size());
            for (const std::unique_ptr<ZentuCmdItem>& source : *sources) {
                if (source) {
                    copies.push_back(source->Clone());
                }
            }
        }
        if (!copies.empty() || Find(itemKind) != nullptr) {
            Sequence(itemKind) = std::move(copies);
        }
    }
}

const ZentuCmd::ConstItemSequence& ZentuCmd::Items(CmdItem item) const {
    return ZentuReadOnlyView::of(Sequence(item));
}

void ZentuCmd::SetName(const std::string& name) {
    name_ = name;
}

ZentuCmd::ItemSequence& ZentuCmd::Sequence(CmdItem item) const {
    if (ItemSequence* sequence = Find(item)) {
        return *sequence;
    }
    ItemSequence& created = SequenceAt(created_);
    positions_[static_cast<std::size_t>(item)] = ++created_;
    kinds_with_sequences_ |= std::uint64_t{1} << static_cast<std::size_t>(item);
    return created;
}

// Block b holds the positions from INLINE_KINDS * 2^b on, as many as there are before it; it is
// allocated when its first position is handed out.
ZentuCmd::ItemSequence& ZentuCmd::BlockSequence(std::size_t position) const {
    std::size_t block = 0;
    while (position >= INLINE_KINDS << (block + 1)) {
        ++block;
    }
    const std::size_t first = INLINE_KINDS << block;
    if (!blocks_[block]) {
        blocks_[block] = std::make_unique<ItemSequence[]>(first);
    }
    return blocks_[block][position - first];
}
