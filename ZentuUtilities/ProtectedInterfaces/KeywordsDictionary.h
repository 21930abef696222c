#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// A set of keywords over a fixed alphabet, each mapped to a value, that also accepts any prefix
// which one keyword alone continues, so that users may abbreviate keywords.
//
// Set up with Reset, AllowCharacter for each character of the alphabet and BuildAlphabet, then
// fill with Insert. A default-constructed dictionary is in the state that Reset leaves: it has no
// alphabet and accepts nothing; its not-found value is -1 for signed arithmetic T and T{}
// otherwise. Keywords and texts are compared byte for byte; a null pointer is read as the empty
// text. Copies are deep.
//
// Every character of a keyword opens one node with a child array as wide as the alphabet, so
// keywords are meant to be short: copying and destroying the tree recurse once per character of
// the longest keyword (Insert, Find and CollectKeywords do not recurse).
template <typename T>
class KeywordsDictionary {
  public:
    // One node of the character tree; the path from the root spells its prefix.
    struct Node {
        // Empty while the node is not in use; otherwise one node per alphabet slot.
        std::vector<Node> children;
        // How many of the children are in use.
        int used_children = 0;
        // How many keywords pass through this node and continue beyond it.
        int keywords_below = 0;
        // Slot of the child that came into use first; abbreviations are completed through it.
        int first_child = -1;
        // Whether a keyword ends here.
        bool is_keyword = false;
        // The keyword's value, or the dictionary's not-found value.
        T value{};
    };

    // A dictionary with no alphabet, which accepts nothing.
    KeywordsDictionary() { Reset(DefaultNotFoundValue()); }

    // Forgets the alphabet and every keyword; nodes that end no keyword carry notFoundValue.
    void Reset(T notFoundValue) {
        not_found_value_ = std::move(notFoundValue);
        root_ = FreshNode();
        char_index_.fill(kOutside);
        alphabet_size_ = 0;
    }

    // Adds c to the alphabet; ignored once the alphabet has been built.
    void AllowCharacter(char c) {
        if (alphabet_size_ == 0) {
            char_index_[Code(c)] = kMarked;
        }
    }

    // Gives the allowed characters consecutive slots in ascending order of their codes and opens
    // the root. Later calls change nothing until the next Reset, so keywords are never dropped.
    void BuildAlphabet() {
        if (alphabet_size_ != 0) {
            return;
        }
        int slot = 0;
        for (int& index : char_index_) {
            if (index != kOutside) {
                index = slot++;
            }
        }
        alphabet_size_ = slot;
        Open(root_);
    }

    // Adds keyword with value. Returns 0 when it was added, 1 when it holds a character outside
    // the alphabet (nothing is added), 2 when it is present already (its first value stays).
    int Insert(const char* keyword, const T& value) {
        const char* text = keyword != nullptr ? keyword : "";
        Node* node = &root_;
        for (std::size_t length = 0; text[length] != '\0'; ++length) {
            const int slot = SlotOf(text[length]);
            if (slot == kOutside) {
                Uncount(text, length);
                return 1;
            }
            Node& child = node->children[static_cast<std::size_t>(slot)];
            if (child.children.empty()) {
                Open(child);
                if (++node->used_children == 1) {
                    node->first_child = slot;
                }
            }
            ++node->keywords_below;
            node = &child;
        }
        if (node->is_keyword) {
            Uncount(text, std::strlen(text));
            return 2;
        }
        node->is_keyword = true;
        node->value = value;
        return 0;
    }

    // Looks text up as a whole keyword or as a prefix that one keyword alone continues; on
    // success value receives that keyword's value. The text ends at its first NUL.
    bool Find(const char* text, T& value) const {
        const Node* node = Descend(text != nullptr ? text : "");
        if (node == nullptr) {
            return false;
        }
        if (node->is_keyword) {
            value = node->value;
            return true;
        }
        if (node->keywords_below >= 2) {
            return false;
        }
        while (node->used_children > 0) {
            node = &node->children[static_cast<std::size_t>(node->first_child)];
        }
        value = node->value;
        return true;
    }

    // Stores every keyword with its value in out, replacing what out held under the same text.
    // The empty keyword is never reported.
    void CollectKeywords(std::map<std::string, T>& out) const {
        const std::array<char, kCodes> characters = CharacterOfSlot();
        std::vector<Visit> pending;
        PushChildren(root_, 0, characters, pending);
        std::string text;
        while (!pending.empty()) {
            const Visit visit = pending.back();
            pending.pop_back();
            text.resize(visit.depth - 1);
            text.push_back(visit.character);
            if (visit.node->is_keyword) {
                out.insert_or_assign(text, visit.node->value);
            }
            PushChildren(*visit.node, visit.depth, characters, pending);
        }
    }

  private:
    // Number of distinct byte values, hence of entries in the character table.
    static constexpr std::size_t kCodes = 256;
    // Table entry of a character outside the alphabet.
    static constexpr int kOutside = -1;
    // Table entry of an allowed character until BuildAlphabet gives it its slot.
    static constexpr int kMarked = 0;

    // A node still to be reported by CollectKeywords, with the character and length of its text.
    struct Visit {
        const Node* node;
        char character;
        std::size_t depth;
    };

    // -1 suits the usual signed values, for which no keyword value is negative.
    static T DefaultNotFoundValue() {
        if constexpr (std::is_arithmetic_v<T> && std::is_signed_v<T>) {
            return static_cast<T>(-1);
        } else {
            return T{};
        }
    }

    // The table index of c; plain char may be signed, and bytes of 128 and above must not index
    // below the table.
    static std::size_t Code(char c) { return static_cast<unsigned char>(c); }

    // A node that is not in use and ends no keyword.
    Node FreshNode() const {
        Node node;
        node.value = not_found_value_;
        return node;
    }

    // Puts node in use by giving it one fresh child per alphabet slot.
    void Open(Node& node) const {
        node.children.assign(static_cast<std::size_t>(alphabet_size_), FreshNode());
    }

    // The slot of c, or kOutside. A character marked but not yet numbered is outside: there is no
    // child array to index until BuildAlphabet.
    int SlotOf(char c) const {
        const int slot = char_index_[Code(c)];
        return slot < alphabet_size_ ? slot : kOutside;
    }

    // Takes back the keywords_below counts that Insert raised along the first length characters
    // of text; the children it opened stay in use.
    void Uncount(const char* text, std::size_t length) {
        Node* node = &root_;
        for (std::size_t i = 0; i < length; ++i) {
            --node->keywords_below;
            node = &node->children[static_cast<std::size_t>(SlotOf(text[i]))];
        }
    }

    // The node that text leads to, or null when a character is outside the alphabet or the path
    // leaves the nodes in use.
    const Node* Descend(const char* text) const {
        const Node* node = &root_;
        for (const char* c = text; *c != '\0'; ++c) {
            const int slot = SlotOf(*c);
            if (slot == kOutside || node->children.empty()) {
                return nullptr;
            }
            node = &node->children[static_cast<std::size_t>(slot)];
        }
        return node->children.empty() ? nullptr : node;
    }

    // The character that each slot stands for, the inverse of the character table.
    std::array<char, kCodes> CharacterOfSlot() const {
        std::array<char, kCodes> characters{};
        for (std::size_t code = 0; code < kCodes; ++code) {
            const int slot = SlotOf(static_cast<char>(code));
            if (slot != kOutside) {
                characters[static_cast<std::size_t>(slot)] = static_cast<char>(code);
            }
        }
        return characters;
    }

    // Queues the children of node that are in use, the last slot first so that slots are
    // visited in ascending order.
    static void PushChildren(const Node& node, std::size_t depth,
                             const std::array<char, kCodes>& characters,
                             std::vector<Visit>& pending) {
        for (std::size_t slot = node.children.size(); slot-- > 0;) {
            const Node& child = node.children[slot];
            if (!child.children.empty()) {
                pending.push_back(Visit{&child, characters[slot], depth + 1});
            }
        }
    }

    T not_found_value_{};
    Node root_;
    std::array<int, kCodes> char_index_{};
    int alphabet_size_ = 0;
};
