#pragma once

#include <array>
#include <cstddef>

// A fixed-size matrix of R rows and C columns, stored row by row and zero on construction.
template <std::size_t R, std::size_t C, typename T>
class ZentuMatrix {
public:
    // A matrix of zeros.
    ZentuMatrix() : values_{} {}

    // The element at the given row and column.
    T& operator()(std::size_t row, std::size_t col) { return values_[row * C + col]; }

    // The element at the given row and column.
    const T& operator()(std::size_t row, std::size_t col) const { return values_[row * C + col]; }

    // Element-wise equality.
    bool operator==(const ZentuMatrix& other) const { return values_ == other.values_; }

    // Element-wise inequality.
    bool operator!=(const ZentuMatrix& other) const { return !(*this == other); }

private:
    std::array<T, R * C> values_;
};
