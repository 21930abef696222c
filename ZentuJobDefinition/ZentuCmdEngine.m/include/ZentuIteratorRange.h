#pragma once

// A pair of iterators that a range-based for loop can walk.
template <typename Iterator>
class ZentuIteratorRange {
  public:
    // The range from first up to but not including last.
    ZentuIteratorRange(Iterator first, Iterator last) : first_(first), last_(last) {}

    // The first position of the range.
    Iterator begin() const { return first_; }

    // The position past the last element of the range.
    Iterator end() const { return last_; }

    // Whether the range holds no element.
    bool empty() const { return first_ == last_; }

  private:
    Iterator first_;
    Iterator last_;
};
