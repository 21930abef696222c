#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "BreltList.h"
#include "KPL_Failure.h"
#include "KPL_LogMacros.h"

namespace zentu_fuzz {

// Integer lists stay small, so a legitimate range such as 1-2000000000 ends as the defined
// failure quickly instead of filling the fuzzer's memory limit.
inline constexpr std::size_t kListBound = 100000;

// The input as one text; the library must take any byte, embedded NULs included.
inline std::string TextOf(const std::uint8_t* data, std::size_t size) {
    return std::string(reinterpret_cast<const char*>(data), size);
}

// Every log line is still formatted, so format faults surface, but none is printed: printing
// would bury libFuzzer's report and cost more than the code under test.
inline void PrepareLibrary() {
    SetBreltListMaxSize(kListBound);
    KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_TRACE);
    KPL_LogMacros::SetLogHandler([](int, const char*, int, const char*, const std::string&) {});
}

// Sanitizers cannot see a broken promise between two functions, so it aborts with its name and
// libFuzzer keeps the input like any other crash.
inline void Require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

// A KPL_Failure is the library's defined answer to bad input; any other exception escapes on
// purpose, so that libFuzzer reports it as the crash it would be in a host.
template <typename Action>
bool Completes(Action&& action) {
    try {
        action();
        return true;
    } catch (const KPL_Failure&) {
        return false;
    }
}

}  // namespace zentu_fuzz
