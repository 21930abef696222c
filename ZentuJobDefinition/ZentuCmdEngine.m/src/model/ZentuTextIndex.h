#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// Texts mapped to values in one flat table that keeps the first value given for a text. Each slot
// of the table holds its entry whole: part of the hash, the value and, for a short text, the text
// itself, so that looking up an identifier reads one cache line rather than a slot, an entry and a
// key in three places. Longer texts are copied into one buffer, so an index of a million
// identifiers costs a few allocations rather than one per entry. With IgnoreCase the ASCII letters
// of keys and queries compare without case.
template <typename Value, bool IgnoreCase = false>
class ZentuTextIndex {
    // NOLINTBEGIN(bugprone-sizeof-expression): the size of the value type, a pointer or not.
    static_assert(std::is_trivially_copyable<Value>::value &&
                      sizeof(Value) <= sizeof(std::uint64_t),
                  "a value is kept in its slot beside the key");
    // NOLINTEND(bugprone-sizeof-expression)

  public:
    // An empty index with room for count texts before it grows.
    explicit ZentuTextIndex(std::size_t count = 0) : slots_(SlotCountFor(count)) {}

    // Maps text to value unless text is mapped already.
    void Add(std::string_view text, Value value) { Add(text, Hash(text), value); }

    // Maps text, whose Hash() is hash, to value unless text is mapped already.
    void Add(std::string_view text, std::uint64_t hash, Value value) {
        Slot& slot = slots_[PositionOf(text, hash)];
        if (slot.size != FREE) {
            return;
        }
        Fill(slot, text, hash, value);
        ++count_;
        if (IsCrowded(count_, slots_.size())) {
            Grow();
        }
    }

    // The value of text, or null when text is not mapped.
    const Value* Find(std::string_view text) const { return Find(text, Hash(text)); }

    // The value of text, whose Hash() is hash, or null when text is not mapped.
    const Value* Find(std::string_view text, std::uint64_t hash) const {
        const Slot& slot = slots_[PositionOf(text, hash)];
        return slot.size == FREE ? nullptr : &slot.value;
    }

    // Asks the processor to fetch the slot where looking up a text of this hash starts, so that
    // lookups prepared together wait for memory together.
    void Prefetch(std::uint64_t hash) const {
#if defined(__GNUC__)
        __builtin_prefetch(&slots_[HomeOf(hash, slots_.size())]);
#else
        static_cast<void>(hash);
#endif
    }

    // Whether no text is mapped.
    bool Empty() const {
        return count_ == 0;
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
    // Texts up to this length are kept in their slots.
    static constexpr std::size_t INLINE_LENGTH = 16;
    // The size of a free slot; the size of a text kept in a slot is capped below it.
    static constexpr std::uint32_t FREE = UINT32_MAX;

    // Where a longer text stands in the buffer, kept where a short text's bytes would be.
    struct Stored {
        std::size_t offset;
        std::size_t length;
    };

    // An entry, in one cache line: the high half of its hash, its text's size (FREE when there
    // is no entry), its value, and its text or where its text is stored.
    struct alignas(32) Slot {
        std::uint32_t hashHigh = 0;
        std::uint32_t size = FREE;
        Value value{};
        char text[INLINE_LENGTH] = {};
    };
    static_assert(sizeof(Stored) <= INLINE_LENGTH, "a stored text's place fits in a slot");

    // Room for count texts with the slots at most two thirds full. Any number of slots will do,
    // not only a power of two, so that a large index takes no more memory than it needs.
    static std::size_t SlotCountFor(std::size_t count) {
        return std::max<std::size_t>(16, count / 2 * 3 + 3);
    }

    // The slot where looking up a text of this hash starts: the low half of the hash scaled to
    // the number of slots, which stays below 2^32.
    static std::size_t HomeOf(std::uint64_t hash, std::size_t slots) {
        return static_cast<std::size_t>((hash & UINT32_MAX) * slots >> 32);
    }

    // The slot after position, the first one after the last.
    static std::size_t NextOf(std::size_t position, std::size_t slots) {
        return position + 1 == slots ? 0 : position + 1;
    }

    // Whether count texts fill more than two thirds of the slots, past which probes grow long.
    static bool IsCrowded(std::size_t count, std::size_t slots) {
        return count * 3 > slots * 2;
    }

    // The size recorded for a text: its length, capped below FREE.
    static std::uint32_t SizeOf(std::string_view text) {
        return text.size() < FREE ? static_cast<std::uint32_t>(text.size()) : FREE - 1;
    }

    // The high half of a hash, which a slot keeps to pass over most other texts unread.
    static std::uint32_t HighOf(std::uint64_t hash) {
        return static_cast<std::uint32_t>(hash >> 32);
    }

    // The byte as keys compare it.
    static char Fold(char c) {
        return IgnoreCase && c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    }

    // Whether two texts of the same length are equal as keys compare them.
    static bool SameBytes(const char* key, std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (Fold(key[i]) != Fold(text[i])) {
                return false;
            }
        }
        return true;
    }

    // Where a longer text of the slot stands in the buffer.
    static Stored StoredOf(const Slot& slot) {
        Stored stored{};
        std::memcpy(&stored, slot.text, sizeof(stored));
        return stored;
    }

    // The slot's text.
    std::string_view TextOf(const Slot& slot) const {
        if (slot.size <= INLINE_LENGTH) {
            return std::string_view(slot.text, slot.size);
        }
        const Stored stored = StoredOf(slot);
        return std::string_view(keys_).substr(stored.offset, stored.length);
    }

    // Whether the slot holds text, whose hash is hash.
    bool Holds(const Slot& slot, std::string_view text, std::uint64_t hash) const {
        if (slot.hashHigh != HighOf(hash) || slot.size != SizeOf(text)) {
            return false;
        }
        if (text.size() <= INLINE_LENGTH) {
            return SameBytes(slot.text, text);
        }
        const Stored stored = StoredOf(slot);
        return stored.length == text.size() && SameBytes(keys_.data() + stored.offset, text);
    }

    // Makes a free slot the entry of text.
    void Fill(Slot& slot, std::string_view text, std::uint64_t hash, Value value) {
        slot.hashHigh = HighOf(hash);
        slot.size = SizeOf(text);
        slot.value = value;
        if (text.size() <= INLINE_LENGTH) {
            std::memcpy(slot.text, text.data(), text.size());
            return;
        }
        const Stored stored{keys_.size(), text.size()};
        keys_.append(text);
        std::memcpy(slot.text, &stored, sizeof(stored));
    }

    // The position of the slot that holds text, or of the free slot where it would go.
    std::size_t PositionOf(std::string_view text, std::uint64_t hash) const {
        const std::size_t slots = slots_.size();
        for (std::size_t position = HomeOf(hash, slots);; position = NextOf(position, slots)) {
            const Slot& slot = slots_[position];
            if (slot.size == FREE || Holds(slot, text, hash)) {
                return position;
            }
        }
    }

    // Doubles the slots and places every entry again, in the order of the old slots; a text's
    // hash is worked out again from the text, since a slot keeps only half of it.
    void Grow() {
        std::vector<Slot> old(slots_.size() * 2);
        old.swap(slots_);
        const std::size_t slots = slots_.size();
        for (const Slot& entry : old) {
            if (entry.size == FREE) {
                continue;
            }
            std::size_t position = HomeOf(Hash(TextOf(entry)), slots);
            while (slots_[position].size != FREE) {
                position = NextOf(position, slots);
            }
            slots_[position] = entry;
        }
    }

    std::vector<Slot> slots_;
    std::string keys_;
    std::size_t count_ = 0;
};
