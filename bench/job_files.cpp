#include "job_files.h"

#include <random>
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

std::filesystem::path JobFiles::Scratch(const std::string& name) const {
    return directory_ / name;
}

JobFiles::JobFiles() : directory_(create_private_directory()) {}

JobFiles::~JobFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}
