#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

// The first value given to each text, in one flat table with open addressing: the checks index
// every identifier of a job, and a node per entry would cost an allocation each and a cache miss
// at every look. The texts stay the caller's and must outlive the table.
template <class Value>
class ZentuTextTable {
  public:
    // An empty table with room for count texts without growing.
    explicit ZentuTextTable(std::size_t count = 0) {
        std::size_t capacity = MIN_SLOTS;
        while (capacity < count * 2) {
            capacity *= 2;
        }
        slots_.resize(capacity);
    }

    // Gives text the value unless it has one already; returns the value that text has now and
    // whether it was given here.
    std::pair<const Value*, bool> Insert(std::string_view text, const Value& value) {
        if ((size_ + 1) * 2 > slots_.size()) {
            Rehash(slots_.size() * 2);
        }
        const std::size_t hash = std::hash<std::string_view>{}(text);
        Slot& slot = slots_[SlotOf(text, hash)];
        if (slot.used) {
            return {&slot.value, false};
        }
        slot = Slot{hash, text, value, true};
        ++size_;
        return {&slot.value, true};
    }

    // The value of text, or null when it has none.
    const Value* Find(std::string_view text) const {
        const Slot& slot = slots_[SlotOf(text, std::hash<std::string_view>{}(text))];
        return slot.used ? &slot.value : nullptr;
    }

  private:
    struct Slot {
        std::size_t hash = 0;
        std::string_view text;
        Value value{};
        bool used = false;
    };

    // The fewest slots, a power of two.
    static constexpr std::size_t MIN_SLOTS = 16;

    // The slot that holds text, or the free slot where it belongs.
    std::size_t SlotOf(std::string_view text, std::size_t hash) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t slot = hash & mask;
        while (slots_[slot].used && (slots_[slot].hash != hash || slots_[slot].text != text)) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    // Spreads the entries over capacity slots, a power of two, keeping each entry's value.
    void Rehash(std::size_t capacity) {
        std::vector<Slot> entries(capacity);
        entries.swap(slots_);
        for (const Slot& entry : entries) {
            if (entry.used) {
                slots_[SlotOf(entry.text, entry.hash)] = entry;
            }
        }
    }

    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};
