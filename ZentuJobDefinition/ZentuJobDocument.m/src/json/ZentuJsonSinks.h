#pragma once

#include <algorithm>
#include <charconv>
#include <optional>
#include <cstddef>
#include <ostream>
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
    // Opens an object, whose members follow as keys and values until End().
    void BeginObject() { open_.emplace_back(std::move(key_), ZentuJson::object()); }
    // Opens an array, whose elements follow until End().
    void BeginArray() { open_.emplace_back(std::move(key_), ZentuJson::array()); }
    // Closes the object or array opened last.
    void End() {
        auto [key, value] = std::move(open_.back());
        open_.pop_back();
        key_ = std::move(key);
        Put(std::move(value));
    }
    // Names the member of an object whose value comes next.
    void Key(std::string key) { key_ = std::move(key); }
    // A number, text, null or other value that holds no value of its own to open.
    template <class Scalar>
    void Value(Scalar&& scalar) {
        Put(ZentuJson(std::forward<Scalar>(scalar)));
    }

    // The value given, once every object and array is ended.
    ZentuJson Take() { return std::move(done_).value_or(ZentuJson()); }

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
    // Empty until the value is given, so that making a sink throws nothing.
    std::optional<ZentuJson> done_;
};

// Writes the value's text as dump() writes it to a stream, in pieces of about PIECE_SIZE bytes,
// so that neither a big job nor a big command stands whole in memory as text.
class Text {
  public:
    explicit Text(std::ostream& stream) : stream_(stream) {}

    // Writes what is not yet written; the value is whole once its last End() is given.
    void Flush() {
        stream_ << out_;
        out_.clear();
    }

    // Opens an object, whose members follow as keys and values until End().
    void BeginObject() { Open('{'); }
    // Opens an array, whose elements follow until End().
    void BeginArray() { Open('['); }
    // Closes the object or array opened last.
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
    // A number, text, null or other value that holds no value of its own to open.
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

    // Every value starts on a new line or after its key, so pieces go out there.
    void NewLine() {
        if (out_.size() >= PIECE_SIZE) {
            stream_ << out_;
            out_.clear();
        }
        out_ += '\n';
        out_.append(filled_.size() * static_cast<std::size_t>(INDENT), ' ');
    }

    static constexpr std::size_t PIECE_SIZE = std::size_t{1} << 16;

    std::ostream& stream_;
    std::string out_;
    std::string closers_;
    std::vector<bool> filled_;
    bool keyed_ = false;
};

}  // namespace ZentuJsonSinks
