// Writes a generated job file, for trying the library on inputs of any size:
//   zentu_generate_job <commands> <output file> [seed]
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>

#include "job_generator.h"

namespace {

// The whole text as a decimal number of type T, or nothing, so that "10k" or "-5" are refused
// rather than read in part.
template <typename T>
std::optional<T> parse_number(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

// Says how to call the program; returns the exit status of a wrong call.
int usage(const char* program) {
    std::fprintf(stderr,
                 "usage: %s <commands> <output file> [seed]\n"
                 "  writes a job of at least %zu commands; the same seed gives the same file\n",
                 program, ZentuJobGenerator::MIN_COMMAND_COUNT);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) {
        return usage(argv[0]);
    }
    const std::optional<std::size_t> commands = parse_number<std::size_t>(argv[1]);
    const std::optional<std::uint32_t> seed =
        argc == 4 ? parse_number<std::uint32_t>(argv[3]) : ZentuJobGenerator::DEFAULT_SEED;
    if (!commands || *commands < ZentuJobGenerator::MIN_COMMAND_COUNT || !seed) {
        return usage(argv[0]);
    }
    try {
        ZentuJobGenerator::write_job_file(argv[2], *commands, *seed);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
        return 1;
    }
    return 0;
}
