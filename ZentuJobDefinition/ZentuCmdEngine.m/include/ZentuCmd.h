#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuIteratorRange.h"

class ZentuCmdItemMetaData;

// One command of a job definition: a kind, a name, and the items that it owns, grouped by item
// kind in the order in which they were added.
class ZENTU_CMD_ENGINE_API ZentuCmd {
  public:
    // The items of one item kind.
    using ItemSequence = std::vector<std::unique_ptr<ZentuCmdItem>>;
    // The items of one item kind, seen as read-only items.
    using ConstItemSequence = std::vector<std::unique_ptr<const ZentuCmdItem>>;
    using iterator = ItemSequence::iterator;
    using const_iterator = ItemSequence::const_iterator;

    // A command of the given kind named after it, without items.
    explicit ZentuCmd(ZentuCmdDefs::Cmd type);
    // A command of the given kind and name, without items.
    ZentuCmd(ZentuCmdDefs::Cmd type, const std::string& name);
    // Takes over the items, kind and name; other is left without items and with an empty name.
    ZentuCmd(ZentuCmd&& other) noexcept;
    // Replaces this command's items, kind and name with other's.
    ZentuCmd& operator=(ZentuCmd&& other) noexcept;
    ZentuCmd(const ZentuCmd&) = delete;
    ZentuCmd& operator=(const ZentuCmd&) = delete;
    virtual ~ZentuCmd();

    // Appends a string item (stored in upper case) of the given name.
    void AddStringItem(ZentuCmdItemDefs::CmdItem item, const std::string& name,
                       const std::string& value);
    // Appends a string item named after its item kind.
    void AddStringItem(ZentuCmdItemDefs::CmdItem item, const std::string& value);
    // Appends a reference item of the given name that refers to target.
    void AddItem(ZentuCmdItemDefs::CmdItem item, const std::string& name, const ZentuCmd& target);
    // Appends a reference item named after its item kind that refers to target.
    void AddItem(ZentuCmdItemDefs::CmdItem item, const ZentuCmd& target);
    // Appends a prepared item and takes ownership of it; a null pointer adds nothing.
    void AddItem(ZentuCmdItemDefs::CmdItem item, std::unique_ptr<ZentuCmdItem> newItem);

    // Appends an automatically typed item of the given name, typed by its text.
    void AddAutoItem(ZentuCmdItemDefs::CmdItem item, const std::string& name,
                     const std::string& value, const ZentuCmdItemDefs::KeywordMap& keywords);
    // Appends an automatically typed item named after its item kind.
    void AddAutoItem(ZentuCmdItemDefs::CmdItem item, const std::string& value,
                     const ZentuCmdItemDefs::KeywordMap& keywords);

    // Puts newItem in the place of the item at index and deletes the old one; when there is no
    // item at index, newItem is deleted and the command stays as it was.
    void ReplaceItem(ZentuCmdItemDefs::CmdItem item, std::unique_ptr<ZentuCmdItem> newItem,
                     std::size_t index);
    // Replaces the item at index of the description's item kind with one that the item factory
    // builds from value; when the factory refuses the text, the old item stays.
    void ReplaceItem(const ZentuCmdItemMetaData& metadata, const std::string& name,
                     const std::string& value, const ZentuCmdItemDefs::KeywordMap& keywords,
                     std::size_t index);
    // Replaces the item at index with one built from value as the data type calls for.
    void ReplaceItem(ZentuCmdItemDefs::CmdItem item, const std::string& name,
                     const std::string& value, const ZentuCmdItemDefs::KeywordMap& keywords,
                     std::size_t index, ZentuCmdItemDefs::DataType type);
    // Replaces the item at index with one built from value, keeping the old item's name.
    void ReplaceItem(ZentuCmdItemDefs::CmdItem item, const std::string& value,
                     const ZentuCmdItemDefs::KeywordMap& keywords, std::size_t index,
                     ZentuCmdItemDefs::DataType type);

    // Deletes the items from first up to but not including last; the rest keep their order.
    void Erase(ZentuCmdItemDefs::CmdItem item, const_iterator first, const_iterator last);
    // Deletes the item at position.
    void Erase(ZentuCmdItemDefs::CmdItem item, const_iterator position);
    // Deletes every item of the kind.
    void EraseAll(ZentuCmdItemDefs::CmdItem item);

    // Replaces every item of this command with a copy of other's items; name and kind stay.
    void CopyItemsFrom(const ZentuCmd& other);

    // The item at index; index must be below the number of items of the kind.
    ZentuCmdItem& Item(ZentuCmdItemDefs::CmdItem item, std::size_t index) {
        assert(HasItem(item, index));
        return *(*Find(item))[index];
    }
    // The item at index; index must be below the number of items of the kind.
    const ZentuCmdItem& Item(ZentuCmdItemDefs::CmdItem item, std::size_t index) const {
        assert(HasItem(item, index));
        return *(*Find(item))[index];
    }
    // Whether the command holds an item of the kind at index.
    bool HasItem(ZentuCmdItemDefs::CmdItem item, std::size_t index) const {
        const ItemSequence* sequence = Find(item);
        return sequence != nullptr && index < sequence->size();
    }
    // The items of the kind themselves (not a copy), seen as read-only items.
    const ConstItemSequence& Items(ZentuCmdItemDefs::CmdItem item) const;

    // The first item of the kind.
    iterator begin(ZentuCmdItemDefs::CmdItem item) {
        ItemSequence* sequence = Find(item);
        return sequence != nullptr ? sequence->begin() : iterator();
    }
    // The position past the last item of the kind.
    iterator end(ZentuCmdItemDefs::CmdItem item) {
        ItemSequence* sequence = Find(item);
        return sequence != nullptr ? sequence->end() : iterator();
    }
    // The first item of the kind.
    const_iterator begin(ZentuCmdItemDefs::CmdItem item) const {
        const ItemSequence* sequence = Find(item);
        return sequence != nullptr ? sequence->cbegin() : const_iterator();
    }
    // The position past the last item of the kind.
    const_iterator end(ZentuCmdItemDefs::CmdItem item) const {
        const ItemSequence* sequence = Find(item);
        return sequence != nullptr ? sequence->cend() : const_iterator();
    }
    // The items of the kind as a range for a range-based for loop.
    ZentuIteratorRange<iterator> GetItemRange(ZentuCmdItemDefs::CmdItem item) {
        return {begin(item), end(item)};
    }
    // The items of the kind as a range for a range-based for loop.
    ZentuIteratorRange<const_iterator> GetItemRange(ZentuCmdItemDefs::CmdItem item) const {
        return {begin(item), end(item)};
    }
    // Bit k is set for each item kind k that may hold items, so that a loop over a command's items
    // visits its few kinds, not all of them; every kind that holds an item is among them.
    std::uint64_t KindsWithSequences() const { return kinds_with_sequences_; }

    // The command's name: the keyword it was read under, or its kind's name.
    const std::string& GetName() const { return name_; }
    // Renames the command.
    void SetName(const std::string& name);
    // The command's kind.
    ZentuCmdDefs::Cmd GetType() const { return type_; }
    // Changes the kind field only; ZentuCmdContainer::MoveCmd also moves and renames.
    void SetType(ZentuCmdDefs::Cmd type) { type_ = type; }

  private:
    // How many item kinds keep their sequences inside the command: most commands hold no more
    // kinds, and the sequences of further kinds live in blocks of 5, 10 and 20 that never move.
    static constexpr std::size_t INLINE_KINDS = 5;
    static constexpr std::size_t BLOCK_COUNT = 3;
    static_assert((INLINE_KINDS << BLOCK_COUNT) == ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT,
                  "the blocks hold the sequences of every further kind");

    // The sequence of the kind, created empty the first time that it is needed.
    ItemSequence& Sequence(ZentuCmdItemDefs::CmdItem item) const;
    // The sequence of the kind, or null when the kind has never been needed.
    ItemSequence* Find(ZentuCmdItemDefs::CmdItem item) const {
        assert(static_cast<std::size_t>(item) < positions_.size());
        const std::size_t position = positions_[static_cast<std::size_t>(item)];
        return position == 0 ? nullptr : &SequenceAt(position - 1);
    }
    // The sequence at the position among those created.
    ItemSequence& SequenceAt(std::size_t position) const {
        return position < INLINE_KINDS ? inline_sequences_[position] : BlockSequence(position);
    }
    // The sequence at a position past the inline ones, its block allocated when first needed.
    ItemSequence& BlockSequence(std::size_t position) const;

    // Sequences are created when a kind is first needed, also through the read-only Items(), so
    // that a view taken before the first item is added sees it; hence mutable.
    mutable std::array<ItemSequence, INLINE_KINDS> inline_sequences_;
    mutable std::array<std::unique_ptr<ItemSequence[]>, BLOCK_COUNT> blocks_;
    // For each item kind, 0 when it has no sequence, else its position among those created + 1.
    mutable std::array<std::uint8_t, ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT> positions_{};
    mutable std::uint8_t created_ = 0;
    // Bit k is set when the sequence of kind k exists.
    mutable std::uint64_t kinds_with_sequences_ = 0;
    static_assert(ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT <= 64, "one bit per item kind");
    ZentuCmdDefs::Cmd type_;
    std::string name_;
};
