#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

// Values by the address of the object they belong to, in one flat table with open addressing: a
// big job looks addresses up millions of times, and a node per entry would cost an allocation each
// and a cache miss at every look.
template <class Value>
class ZentuPointerTable {
  public:
    // Room for count entries without growing.
    void Reserve(std::size_t count) {
        std::size_t capacity = MIN_SLOTS;
        while (capacity < count * 2) {
            capacity *= 2;
        }
        if (capacity > slots_.size()) {
            Rehash(capacity);
        }
    }

    // Gives key a value unless it has one already; returns whether it did.
    bool Insert(const void* key, const Value& value) {
        if ((size_ + 1) * 2 > slots_.size()) {
            Rehash(std::max(MIN_SLOTS, slots_.size() * 2));
        }
        Slot& slot = slots_[SlotOf(key)];
        if (slot.key == key) {
            return false;
        }
        slot = Slot{key, value};
        ++size_;
        return true;
    }

    // The value of key, or null when it has none.
    const Value* Find(const void* key) const {
        if (slots_.empty()) {
            return nullptr;
        }
        const Slot& slot = slots_[SlotOf(key)];
        return slot.key == key ? &slot.value : nullptr;
    }

    // How many keys have a value.
    std::size_t Size() const { return size_; }

  private:
    struct Slot {
        const void* key = nullptr;
        Value value{};
    };

    // The fewest slots, a power of two.
    static constexpr std::size_t MIN_SLOTS = 16;

    // The slot of an address before probing. The keys are commands, a few hundred bytes each with
    // their items allocated after them, so the lowest eight bits say little; the next ones keep
    // commands allocated one after the other in neighbouring slots, so that walking a job touches
    // the table in order instead of a new cache line and page at every look; the high bits folded
    // in keep objects far apart from landing on one slot.
    static std::size_t Spread(const void* key) {
        const std::uintptr_t bits = reinterpret_cast<std::uintptr_t>(key);
        return static_cast<std::size_t>((bits >> 8) ^ (bits >> 24));
    }

    // Spreads the entries over capacity slots, a power of two.
    void Rehash(std::size_t capacity) {
        std::vector<Slot> entries = std::exchange(slots_, std::vector<Slot>(capacity));
        size_ = 0;
        for (const Slot& entry : entries) {
            if (entry.key != nullptr) {
                Insert(entry.key, entry.value);
            }
        }
    }

    // The slot that holds key, or the empty slot where it belongs.
    std::size_t SlotOf(const void* key) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t slot = Spread(key) & mask;
        while (slots_[slot].key != nullptr && slots_[slot].key != key) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};
