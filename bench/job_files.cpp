#include "job_files.h"

#include <fstream>
#include <random>
#include <string_view>
#include <system_error>

#include "job_generator.h"

namespace {

// A directory of its own under the system's temporary directory, so that parallel runs do not
// share files.
std::filesystem::path create_private_directory() {
    std::random_device entropy;
    const std::filesystem::path base = std::filesystem::temp_directory_path();
    for (;;) {
        const std::filesystem::path candidate = base / ("zentu_bench_" + std::to_string(entropy()));
        if (std::filesystem::create_directory(candidate)) {
            return candidate;
        }
    }
}

// The generator names a group's list ELEMENTS; the built-in schema names it ELEMENT_GROUP.
constexpr std::string_view GENERATED_LIST_NAME = "  ELEMENTS";
constexpr std::string_view BUILTIN_LIST_NAME = "  ELEMENT_GROUP";

}  // namespace

JobFiles& JobFiles::Instance() {
    static JobFiles files;
    return files;
}

std::filesystem::path JobFiles::Job(std::size_t commandCount) {
    auto [entry, added] = jobs_.try_emplace(commandCount);
    if (added) {
        entry->second = directory_ / ("job_" + std::to_string(commandCount) + ".par");
        ZentuJobGenerator::write_job_file(entry->second, commandCount);
    }
    return entry->second;
}

std::filesystem::path JobFiles::BuiltinJob(std::size_t commandCount) {
    auto [entry, added] = builtinJobs_.try_emplace(commandCount);
    if (added) {
        const std::string generated = ZentuJobGenerator::job_text(commandCount);
        std::string text;
        std::size_t copied = 0;
        for (std::size_t at = generated.find(GENERATED_LIST_NAME); at != std::string::npos;
             at = generated.find(GENERATED_LIST_NAME, copied)) {
            text.append(generated, copied, at - copied).append(BUILTIN_LIST_NAME);
            copied = at + GENERATED_LIST_NAME.size();
        }
        text.append(generated, copied);
        entry->second = Scratch("builtin_" + std::to_string(commandCount) + ".par");
        std::ofstream(entry->second, std::ios::binary) << text;
    }
    return entry->second;
}

std::filesystem::path JobFiles::Scratch(const std::string& name) const {
    return directory_ / name;
}

JobFiles::JobFiles() : directory_(create_private_directory()) {}

JobFiles::~JobFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}
