#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Texts mapped to values in one flat table that keeps the first value given for a text. The keys
// are copied into one buffer, so an index of a million identifiers costs a few allocations rather
// than one per entry. A slot holds part of its entry's hash besides the entry's number, so that a
// lookup reads an entry and its key only when that part matches. With IgnoreCase the ASCII letters
// of keys and queries compare without case.
template <typename Value, bool IgnoreCase = false>
class ZentuTextIndex {
  public:
    // An empty index with room for count texts before it grows.
    explicit ZentuTextIndex(std::size_t count = 0) : slots_(SlotCountFor(count), EMPTY) {
        entries_.reserve(count);
    }

    // Maps text to value unless text is mapped already.
    void Add(std::string_view text, Value value) { Add(text, Hash(text), value); }

    // Maps text, whose Hash() is hash, to value unless text is mapped already.
    void Add(std::string_view text, std::uint64_t hash, Value value) {
        std::uint64_t& slot = slots_[PositionOf(text, hash)];
        if (slot != EMPTY) {
            return;
        }
        slot = SlotFor(hash, entries_.size());
        entries_.push_back(Entry{hash, keys_.size(), text.size(), value});
        keys_.append(text);
        if (entries_.size() * 2 > slots_.size()) {
            Grow();
        }
    }

    // The value of text, or null when text is not mapped.
    const Value* Find(std::string_view text) const { return Find(text, Hash(text)); }

    // The value of text, whose Hash() is hash, or null when text is not mapped.
    const Value* Find(std::string_view text, std::uint64_t hash) const {
        const std::uint64_t slot = slots_[PositionOf(text, hash)];
        return slot == EMPTY ? nullptr : &entries_[EntryOf(slot)].value;
    }

    // Asks the processor to fetch the slot where looking up a text of this hash starts, so that
    // lookups prepared together wait for memory together.
    void Prefetch(std::uint64_t hash) const {
#if defined(__GNUC__)
        __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
#else
        static_cast<void>(hash);
#endif
    }

    // Whether no text is mapped.
    bool Empty() const {
        return entries_.empty();
    }

    // FNV-1a over the folded bytes, then mixed as MurmurHash3 finishes: FNV alone leaves the low
    // bits, which pick the slot, depending on the low bits of the bytes only.
    static std::uint64_t Hash(std::string_view text) {
        std::uint64_t hash = 14695981039346656037ULL;
        for (const char c : text) {
            hash = (hash ^ static_cast<unsigned char>(Fold(c))) * 1099511628211ULL;
        }
        hash = (hash ^ (hash >> 33)) * 0xff51afd7ed558ccdULL;
        hash = (hash ^ (hash >> 33)) * 0xc4ceb9fe1a85ec53ULL;
        return hash ^ (hash >> 33);
    }

  private:
    // A mapped text: its hash, where its key stands in the buffer, and its value.
    struct Entry {
        std::uint64_t hash;
        std::size_t offset;
        std::size_t length;
        Value value;
    };

    static constexpr std::uint64_t EMPTY = UINT64_MAX;

    // The slot of entry number index: the high half of its hash, then its number.
    static std::uint64_t SlotFor(std::uint64_t hash, std::size_t index) {
        return (hash & 0xFFFFFFFF00000000ULL) | static_cast<std::uint32_t>(index);
    }

    // The number of the entry that a slot holds.
    static std::size_t EntryOf(std::uint64_t slot) {
        return static_cast<std::uint32_t>(slot);
    }

    // A power of two at least twice count, so that half the slots stay free.
    static std::size_t SlotCountFor(std::size_t count) {
        std::size_t slots = 16;
        while (slots < count * 2) {
            slots *= 2;
        }
        return slots;
    }

    // The byte as keys compare it.
    static char Fold(char c) {
        return IgnoreCase && c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    }

    // Whether the entry's key is text.
    bool KeyEquals(const Entry& entry, std::string_view text) const {
        if (entry.length != text.size()) {
            return false;
        }
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (Fold(keys_[entry.offset + i]) != Fold(text[i])) {
                return false;
            }
        }
        return true;
    }

    // The position of the slot that holds text, or of the free slot where it would go.
    std::size_t PositionOf(std::string_view text, std::uint64_t hash) const {
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t position = hash & mask;; position = (position + 1) & mask) {
            const std::uint64_t slot = slots_[position];
            if (slot == EMPTY ||
                ((slot ^ hash) >> 32 == 0 && entries_[EntryOf(slot)].hash == hash &&
                 KeyEquals(entries_[EntryOf(slot)], text))) {
                return position;
            }
        }
    }

    // Doubles the slots and places every entry again.
    void Grow() {
        slots_.assign(slots_.size() * 2, EMPTY);
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t index = 0; index < entries_.size(); ++index) {
            std::size_t position = entries_[index].hash & mask;
            while (slots_[position] != EMPTY) {
                position = (position + 1) & mask;
            }
            slots_[position] = SlotFor(entries_[index].hash, index);
        }
    }

    std::vector<std::uint64_t> slots_;
    std::vector<Entry> entries_;
    std::string keys_;
};
