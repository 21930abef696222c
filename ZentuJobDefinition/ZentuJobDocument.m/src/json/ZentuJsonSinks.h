#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
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
    void Key(std::string_view key) { key_ = key; }
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

// Writes the value's text as dump() writes it to a stream, through a buffer of PIECE_SIZE bytes,
// so that neither a big job nor a big command stands whole in memory as text. The pieces of a
// line are copied into the buffer in place: a job's text is mostly short keys, numbers and
// blanks, for which a call per piece would cost more than the copy.
class Text {
  public:
    explicit Text(std::ostream& stream) : stream_(stream), buffer_(PIECE_SIZE) {}

    // Writes what is not yet written; the value is whole once its last End() is given.
    void Flush() {
        stream_.write(buffer_.data(), static_cast<std::streamsize>(used_));
        used_ = 0;
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
        Put(closers_.back());
        closers_.pop_back();
    }
    // Keys are the shape's own names, which need no escapes.
    void Key(std::string_view key) {
        Separate();
        Put('"');
        Put(key);
        Put(KEY_END);
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
        MakeRoom(MAX_DIGITS);
        char* const begin = buffer_.data() + used_;
        used_ +=
            static_cast<std::size_t>(std::to_chars(begin, begin + MAX_DIGITS, number).ptr - begin);
    }
    void Append(const std::string& text) {
        const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
            return c >= ' ' && c <= '~' && c != '"' && c != '\\';
        });
        if (!plain) {
            Put(scalar_text(text));
            return;
        }
        Put('"');
        Put(text);
        Put('"');
    }
    void Append(const ZentuJson& scalar) {
        if (scalar.is_number_unsigned()) {
            Append(scalar.get<std::size_t>());
        } else if (scalar.is_string()) {
            Append(scalar.get_ref<const std::string&>());
        } else {
            Put(scalar_text(scalar));
        }
    }
    void Append(double number) { Put(scalar_text(number)); }

    void Open(char opener) {
        Separate();
        Put(opener);
        closers_.push_back(opener == '{' ? '}' : ']');
        filled_.push_back(false);
    }

    // What goes before a value: nothing after its key, else a line of its own in its container.
    void Separate() {
        if (std::exchange(keyed_, false) || filled_.empty()) {
            return;
        }
        if (filled_.back()) {
            Put(',');
        }
        filled_.back() = true;
        NewLine();
    }

    // A line feed and the blanks that indent the next line.
    void NewLine() {
        Put('\n');
        std::size_t width = filled_.size() * static_cast<std::size_t>(INDENT);
        for (; width > BLANKS.size(); width -= BLANKS.size()) {
            Put(BLANKS);
        }
        PutBlanks(width);
    }

    // Puts up to BLANKS.size() blanks. Copying all of BLANKS and keeping only width of them is
    // one copy of a known size, where copying width blanks would call memcpy for every line.
    void PutBlanks(std::size_t width) {
        MakeRoom(BLANKS.size());
        std::memcpy(buffer_.data() + used_, BLANKS.data(), BLANKS.size());
        used_ += width;
    }

    // Writes out the buffer unless count more bytes fit in it.
    void MakeRoom(std::size_t count) {
        if (count > buffer_.size() - used_) {
            Flush();
        }
    }
    void Put(char c) {
        MakeRoom(1);
        buffer_[used_++] = c;
    }
    // Bytes that fill more than the buffer go to the stream at once.
    void Put(std::string_view bytes) {
        MakeRoom(bytes.size());
        if (bytes.size() > buffer_.size()) {
            stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            return;
        }
        std::memcpy(buffer_.data() + used_, bytes.data(), bytes.size());
        used_ += bytes.size();
    }

    static constexpr std::size_t PIECE_SIZE = std::size_t{1} << 16;
    // The most characters that a number of up to 64 bits takes, with its sign.
    static constexpr std::size_t MAX_DIGITS = 24;
    static constexpr std::string_view KEY_END = "\": ";
    // Blanks to indent with, copied at once rather than one by one.
    static constexpr std::string_view BLANKS = "                                ";

    std::ostream& stream_;
    std::vector<char> buffer_;
    std::size_t used_ = 0;
    std::string closers_;
    std::vector<bool> filled_;
    bool keyed_ = false;
};

}  // namespace ZentuJsonSinks
