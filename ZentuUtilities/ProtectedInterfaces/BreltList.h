#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <set>
#include <string>

#include "ZentuUtilitiesExport.h"

// An ordered set of distinct values that texts write compactly as values and stepped ranges,
// such as 1,4,10-20,30-50:5.
template <typename T>
struct BreltList {
    // The values, ascending, each once.
    std::set<T> elements;
    // The step of a range written without one; the writer leaves out a step equal to it.
    T default_step = 1;
    // Whether the writer starts a new line after every nine pieces.
    bool break_lines = true;
    // Whether the reader empties the list before it reads.
    bool clear_on_read = true;

    // An empty list.
    BreltList() = default;

    // A list holding one value.
    explicit BreltList(const T& value) : elements{value} {}

    // Removes every value; the step and the flags stay.
    void Clear() { elements.clear(); }

    // Chooses whether the writer breaks long lists into lines.
    void SetBreakLines(bool breakLines) { break_lines = breakLines; }

    // Adds a value; a value already present is not added again.
    void Insert(const T& value) { elements.insert(value); }

    // The number of values.
    std::size_t size() const { return elements.size(); }

    // The first value in ascending order.
    typename std::set<T>::const_iterator begin() const { return elements.begin(); }

    // The end of the values.
    typename std::set<T>::const_iterator end() const { return elements.end(); }

    // Two lists are equal when they hold the same values with the same step and flags.
    bool operator==(const BreltList& other) const {
        return elements == other.elements && default_step == other.default_step &&
               break_lines == other.break_lines && clear_on_read == other.clear_on_read;
    }

    // The negation of operator==.
    bool operator!=(const BreltList& other) const { return !(*this == other); }
};

// Reads a list such as 1,4,10-20,30-50:5 from the rest of the stream; throws KPL_Failure on a
// syntax error or when the list would exceed the bound, leaving the values read so far.
ZENTU_UTILITIES_API std::istream& operator>>(std::istream& in, BreltList<int>& list);

// Writes the list compactly as values and stepped ranges, nine pieces to a line if it breaks lines.
ZENTU_UTILITIES_API std::ostream& operator<<(std::ostream& out, const BreltList<int>& list);

// Reads the whole text into the list as operator>> reads a stream holding it.
ZENTU_UTILITIES_API void read_brelt_list(const std::string& text, BreltList<int>& list);

// Reads as read_brelt_list does, with the same values and log lines, but answers false instead
// of throwing; the list then holds the values read so far.
ZENTU_UTILITIES_API bool try_read_brelt_list(const std::string& text, BreltList<int>& list);

// Whether the text reads as a list without failure, with the log lines of try_read_brelt_list;
// neither throws, nor builds a message, nor holds the values, so that its memory follows the text.
ZENTU_UTILITIES_API bool is_brelt_list(const std::string& text);

// The values of a text that is_brelt_list accepted, read again without log lines and without the
// bound, which a host may have lowered since; of any other text, the values before its error.
ZENTU_UTILITIES_API BreltList<int> values_of_brelt_list(const std::string& text);

// Hands visit the values of values_of_brelt_list(text) in ascending order without holding them,
// so that memory follows the text: a range of millions of values takes none.
ZENTU_UTILITIES_API void visit_brelt_list_values(const std::string& text,
                                                 const std::function<void(int)>& visit);

// The text that operator<< writes for the list.
ZENTU_UTILITIES_API std::string write_brelt_list(const BreltList<int>& list);

// Sets how many values a list may reach while it is read (10,000,000 unless a host changes it)
// and returns the previous bound; reading fails once a list would hold more.
ZENTU_UTILITIES_API std::size_t SetBreltListMaxSize(std::size_t maxElements);
