#pragma once

#include <memory>
#include <vector>

namespace ZentuReadOnlyView {

// The sequence itself, seen as a sequence of read-only objects. A unique_ptr<T> and a
// unique_ptr<const T> have one representation, so callers get the live storage, not a copy.
template <typename T>
const std::vector<std::unique_ptr<const T>>& of(const std::vector<std::unique_ptr<T>>& sequence) {
    static_assert(sizeof(std::unique_ptr<T>) == sizeof(std::unique_ptr<const T>));
    static_assert(sizeof(std::vector<std::unique_ptr<T>>) ==
                  sizeof(std::vector<std::unique_ptr<const T>>));
    return reinterpret_cast<const std::vector<std::unique_ptr<const T>>&>(sequence);
}

}  // namespace ZentuReadOnlyView
