#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

// The first value given to each text, in one flat table with open addressing: the checks index
// every identifier of a job, and a node per entry would cost an allocation each. A slot holds
// part of its text's hash and where its entry is, eight bytes, so that the slots of a big job
// stay in the cache where looks at them land at random; the entries lie in the order given. The
// texts stay the caller's and must outlive the table.
template <class Value>
class ZentuTextTable {
  public:
    // An empty table with room for count texts without growing.
    explicit ZentuTextTable(std::size_t count = 0) {
        entries_.reserve(count);
        slots_.resize(SlotCountFor(count));
    }

    // Gives text the value unless it has one already; returns the value that text has now and
    // whether it was given here.
    std::pair<const Value*, bool> Insert(std::string_view text, const Value& value) {
        if ((entries_.size() + 1) * 2 > slots_.size()) {
            Rehash(slots_.size() * 2);
        }
        const std::size_t hash = std::hash<std::string_view>{}(text);
        Slot& slot = slots_[SlotOf(text, hash)];
        if (slot.entry != FREE) {
            return {&entries_[slot.entry].value, false};
        }
        slot = Slot{Short(hash), static_cast<std::uint32_t>(entries_.size())};
        entries_.push_back(Entry{text, value, hash});
        return {&entries_.back().value, true};
    }

    // The value of text, or null when it has none.
    const Value* Find(std::string_view text) const {
        const Slot& slot = slots_[SlotOf(text, std::hash<std::string_view>{}(text))];
        return slot.entry == FREE ? nullptr : &entries_[slot.entry].value;
    }

  private:
    struct Entry {
        std::string_view text;
        Value value;
        std::size_t hash;
    };

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t entry = FREE;
    };

    // The entry of a free slot.
    static constexpr std::uint32_t FREE = UINT32_MAX;
    // The fewest slots, a power of two.
    static constexpr std::size_t MIN_SLOTS = 16;

    // At least twice as many slots as texts, a power of two.
    static std::size_t SlotCountFor(std::size_t count) {
        std::size_t capacity = MIN_SLOTS;
        while (capacity < count * 2) {
            capacity *= 2;
        }
        return capacity;
    }

    // The part of a hash that a slot keeps: the high bits, which the slot's place does not give.
    static std::uint32_t Short(std::size_t hash) {
        return static_cast<std::uint32_t>(static_cast<std::uint64_t>(hash) >> 32);
    }

    // The slot that holds text, or the free slot where it belongs.
    std::size_t SlotOf(std::string_view text, std::size_t hash) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t slot = hash & mask;
        while (slots_[slot].entry != FREE &&
               (slots_[slot].hash != Short(hash) || entries_[slots_[slot].entry].text != text)) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    // Spreads the entries over capacity slots, a power of two.
    void Rehash(std::size_t capacity) {
        slots_.assign(capacity, Slot{});
        for (std::size_t e = 0; e < entries_.size(); ++e) {
            slots_[SlotOf(entries_[e].text, entries_[e].hash)] =
                Slot{Short(entries_[e].hash), static_cast<std::uint32_t>(e)};
        }
    }

    std::vector<Entry> entries_;
    std::vector<Slot> slots_;
};
