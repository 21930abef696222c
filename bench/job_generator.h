// Job definitions of any size, the same for the same seed on every platform, for measuring the
// library on big inputs and for trying it out on them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

#include "ZentuCmdIoConfig.h"

namespace ZentuJobGenerator {

// The seed of the jobs that the benchmarks read, fixed so that every run reads the same files.
inline constexpr std::uint32_t DEFAULT_SEED = 20261122;

// The fewest commands a job can have: one of each kind that it holds.
inline constexpr std::size_t MIN_COMMAND_COUNT = 7;

// Whether a configuration expands the operators' expressions after reading.
enum class ExpressionRule { NOT_REGISTERED, REGISTERED };

// The text of a parameter file of commandCount commands: groups with integer lists (the long ones
// on several lines), design variables and responses on the groups, operators whose expressions
// combine responses, constraints on responses and operators, one OPTIMIZE and one STOP command.
// Throws std::invalid_argument below MIN_COMMAND_COUNT.
std::string job_text(std::size_t commandCount, std::uint32_t seed = DEFAULT_SEED);

// Writes job_text to path, replacing the file; throws std::runtime_error when it cannot.
void write_job_file(const std::filesystem::path& path, std::size_t commandCount,
                    std::uint32_t seed = DEFAULT_SEED);

// The schema of generated jobs, with the library's keyword map and, if asked, the expression rule.
ZentuCmdIoConfig job_config(ExpressionRule rule);

// The identifier of the response at index (from 0) in generated jobs.
std::string response_identifier(std::size_t index);

// The identifier of the operator at index (from 0) in generated jobs.
std::string operator_identifier(std::size_t index);

// A weighted sum of termCount references to responses drawn from the first responseCount, such
// as %R12% + 2 * %R7% - %R30%. Draws from random without its distributions, whose results the
// standard leaves to each library, so that a seed gives the same text everywhere.
std::string response_expression(std::mt19937& random, std::size_t responseCount,
                                std::size_t termCount);

}  // namespace ZentuJobGenerator
