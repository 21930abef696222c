#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ZentuUtilitiesExport.h"

namespace KPL_Backtrace {

// A captured call stack: raw return addresses, turned into texts only when they are read.
class ZENTU_UTILITIES_API Frames {
public:
    // An empty call stack.
    Frames() = default;

    // A call stack made of the given return addresses, innermost first.
    explicit Frames(std::vector<void*> addresses);

    // The frames as texts, innermost first; names are looked up on the first call and kept.
    const std::vector<std::string>& Texts() const;

    // The number of frames.
    std::size_t size() const { return addresses_.size(); }

private:
    std::vector<void*> addresses_;
    mutable std::vector<std::string> texts_;
    mutable bool resolved_ = false;
};

// Captures the caller's call stack without looking up any name; skip drops that many more
// frames above the caller (for helpers that capture on behalf of their own caller).
ZENTU_UTILITIES_API Frames CaptureFrames(std::size_t skip = 0);

// The caller's call stack as texts, innermost first.
ZENTU_UTILITIES_API std::vector<std::string> GetBacktrace();

}  // namespace KPL_Backtrace
