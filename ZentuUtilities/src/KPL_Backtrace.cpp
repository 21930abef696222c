#include "KPL_Backtrace.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

#include "ZentuUtilitiesInternal.h"

// The GNU C library captures and names frames; another platform supplies its own pair of
// CaptureRawFrames and DescribeAddress below.
#if __has_include(<execinfo.h>) && __has_include(<dlfcn.h>) && __has_include(<cxxabi.h>)
#define ZENTU_BACKTRACE_DLADDR 1
#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>

#include <cstdlib>
#include <memory>
#else
#define ZENTU_BACKTRACE_DLADDR 0
#endif

// The return address of the current function: the point in its caller.
#if defined(__GNUC__) || defined(__clang__)
#define ZENTU_RETURN_ADDRESS() __builtin_return_address(0)
#else
#define ZENTU_RETURN_ADDRESS() nullptr
#endif

namespace KPL_Backtrace {
namespace {

// The most frames that a captured call stack keeps.
constexpr std::size_t MAX_FRAMES = 64;

// Room for the frames kept plus a few dropped above them, so that skipping rarely costs depth.
constexpr std::size_t RAW_FRAME_CAPACITY = 2 * MAX_FRAMES;

// The hexadecimal digits of a value, without prefix.
std::string Hex(std::uintptr_t value) {
    char digits[2 * sizeof value];
    const auto result = std::to_chars(digits, digits + sizeof digits, value, 16);
    return std::string(digits, result.ptr);
}

#if ZENTU_BACKTRACE_DLADDR

// The last component of a file path.
std::string_view BaseName(const char* path) {
    if (path == nullptr || *path == '\0') {
        return ZentuUtilitiesTexts::UNKNOWN_MODULE;
    }
    const std::string_view text(path);
    const std::size_t slash = text.find_last_of('/');
    return slash == std::string_view::npos ? text : text.substr(slash + 1);
}

// Fills buffer with return addresses, innermost first, and returns how many it wrote.
std::size_t CaptureRawFrames(void** buffer, std::size_t capacity) {
    const int captured = backtrace(buffer, static_cast<int>(capacity));
    return captured > 0 ? static_cast<std::size_t>(captured) : 0;
}

// The readable form of a linker symbol, or the symbol itself when it is not a C++ name.
std::string Demangle(const char* symbol) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(symbol, nullptr, nullptr, &status), &std::free);
    return status == 0 && demangled ? std::string(demangled.get()) : std::string(symbol);
}

// "symbol+0xOFFSET (module)" when the loader knows a symbol, else "module+0xOFFSET" relative to
// the module's base, which addr2line turns into a source line.
std::string DescribeAddress(std::uintptr_t address) {
    Dl_info info{};
    // A return address may lie just past the end of the calling function when the call is its
    // last instruction, so the byte before it names the caller.
    // dladdr takes as a pointer what the frames give as a number.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    if (dladdr(reinterpret_cast<void*>(address - 1), &info) == 0) {
        return std::string(ZentuUtilitiesTexts::UNKNOWN_MODULE);
    }
    const std::string_view module = BaseName(info.dli_fname);
    if (info.dli_sname != nullptr && info.dli_saddr != nullptr) {
        const auto symbolAddress = reinterpret_cast<std::uintptr_t>(info.dli_saddr);
        return Demangle(info.dli_sname) + "+0x" + Hex(address - symbolAddress) + " (" +
               std::string(module) + ")";
    }
    const auto moduleBase = reinterpret_cast<std::uintptr_t>(info.dli_fbase);
    return std::string(module) + "+0x" + Hex(address - moduleBase);
}

#else

// Without a way to walk the stack the call stack stays empty.
std::size_t CaptureRawFrames(void**, std::size_t) {
    return 0;
}

// Without a loader to ask, a frame is known by its address alone.
std::string DescribeAddress(std::uintptr_t) {
    return std::string(ZentuUtilitiesTexts::UNKNOWN_MODULE);
}

#endif

// The index of the caller's frame among the raw frames. Searching for the return address rather
// than counting frames copes with helpers that the compiler did or did not inline and with tools
// that wrap backtrace() in a frame of their own.
std::size_t FindCallerFrame(void* const* raw, std::size_t captured, const void* returnAddress) {
    const std::size_t ownFrames = 1;
    const auto found = std::find(raw, raw + captured, returnAddress);
    return found != raw + captured ? static_cast<std::size_t>(found - raw)
                                   : std::min(captured, ownFrames);
}

// "#index description [0xADDRESS]": one line of a back trace.
std::string DescribeFrame(std::size_t index, const void* address) {
    const auto value = reinterpret_cast<std::uintptr_t>(address);
    return "#" + std::to_string(index) + " " + DescribeAddress(value) + " [0x" + Hex(value) + "]";
}

}  // namespace

Frames::Frames(std::vector<void*> addresses) : addresses_(std::move(addresses)) {}

const std::vector<std::string>& Frames::Texts() const {
    if (!resolved_) {
        std::vector<std::string> texts;
        texts.reserve(addresses_.size());
        for (std::size_t index = 0; index < addresses_.size(); ++index) {
            texts.push_back(DescribeFrame(index, addresses_[index]));
        }
        texts_ = std::move(texts);
        resolved_ = true;
    }
    return texts_;
}

ZENTU_NOINLINE Frames CaptureFrames(std::size_t skip) {
    void* raw[RAW_FRAME_CAPACITY];
    const std::size_t captured = CaptureRawFrames(raw, RAW_FRAME_CAPACITY);
    const std::size_t callerFrame = FindCallerFrame(raw, captured, ZENTU_RETURN_ADDRESS());
    const std::size_t first = std::min(captured, callerFrame + std::min(skip, captured));
    const std::size_t last = std::min(captured, first + MAX_FRAMES);
    return Frames(std::vector<void*>(raw + first, raw + last));
}

ZENTU_NOINLINE std::vector<std::string> GetBacktrace() {
    const std::size_t ownFrames = 1;
    return CaptureFrames(ownFrames).Texts();
}

}  // namespace KPL_Backtrace
