#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZentuJobSchema.h"

// Receivers of a JSON value given piece by piece, in the order that dump() writes it: one
// description of a shape serves both the value that scripts get and the text that a big job is
// written as, without the whole value ever standing in memory.
namespace ZentuJsonSinks {

// How a JSON text is written: two blanks per level, invalid UTF-8 replaced.
constexpr int INDENT = 2;

// A scalar's JSON text as dump() writes it.
inline std::string scalar_text(const ZentuJson& scalar) {
    return scalar.dump(INDENT, ' ', false, ZentuJson::error_handler_t::replace);
}

// Builds the value as a tree.
class Tree {
  public:
    void BeginObject() { open_.emplace_back(std::move(key_), ZentuJson::object()); }
    void BeginArray() { open_.emplace_back(std::move(key_), ZentuJson::array()); }
    void End() {
        auto [key, value] = std::move(open_.back());
        open_.pop_back();
        key_ = std::move(key);
        Put(std::move(value));
    }
    void Key(std::string key) { key_ = std::move(key); }
    template <class Scalar>
    void Value(Scalar&& scalar) {
        Put(ZentuJson(std::forward<Scalar>(scalar)));
    }

    // The value given, once every object and array is ended.
    ZentuJson Take() { return std::move(done_); }

  private:
    void Put(ZentuJson value) {
        if (open_.empty()) {
            done_ = std::move(value);
        } else if (open_.back().second.is_object()) {
            open_.back().second[key_] = std::move(value);
        } else {
            open_.back().second.push_back(std::move(value));
        }
    }

    std::vector<std::pair<std::string, ZentuJson>> open_;
    std::string key_;
    ZentuJson done_;
};

// Appends the value's text as dump() writes it, from a given depth of indentation on.
class Text {
  public:
    Text(std::string& out, std::size_t depth) : out_(out), depth_(depth) {}

    void BeginObject() { Open('{'); }
    void BeginArray() { Open('['); }
    void End() {
        const bool empty = !filled_.back();
        filled_.pop_back();
        if (!empty) {
            NewLine();
        }
        out_ += closers_.back();
        closers_.pop_back();
    }
    // Keys are the shape's own names, which need no escapes.
    void Key(const std::string& key) {
        Separate();
        out_ += '"';
        out_ += key;
        out_ += "\": ";
        keyed_ = true;
    }
    template <class Scalar>
    void Value(const Scalar& scalar) {
        Separate();
        Append(scalar);
    }

  private:
    // Most scalars of a job are numbers and plain texts, written here at once; any other goes
    // through dump(), which sets up a serializer for each.
    template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
    void Append(Number number) {
        char digits[24];
        out_.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    }
    void Append(const std::string& text) {
        const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
            return c >= ' ' && c <= '~' && c != '"' && c != '\\';
        });
        if (!plain) {
            out_ += scalar_text(text);
            return;
        }
        out_ += '"';
        out_ += text;
        out_ += '"';
    }
    void Append(const ZentuJson& scalar) {
        if (scalar.is_number_unsigned()) {
            Append(scalar.get<std::size_t>());
        } else if (scalar.is_string()) {
            Append(scalar.get_ref<const std::string&>());
        } else {
            out_ += scalar_text(scalar);
        }
    }
    void Append(double number) { out_ += scalar_text(number); }

    void Open(char opener) {
        Separate();
        out_ += opener;
        closers_.push_back(opener == '{' ? '}' : ']');
        filled_.push_back(false);
    }

    // What goes before a value: nothing after its key, else a line of its own in its container.
    void Separate() {
        if (std::exchange(keyed_, false) || filled_.empty()) {
            return;
        }
        if (filled_.back()) {
            out_ += ',';
        }
        filled_.back() = true;
        NewLine();
    }

    void NewLine() {
        out_ += '\n';
        out_.append((depth_ + filled_.size()) * static_cast<std::size_t>(INDENT), ' ');
    }

    std::string& out_;
    std::size_t depth_;
    std::string closers_;
    std::vector<bool> filled_;
    bool keyed_ = false;
};

}  // namespace ZentuJsonSinks
