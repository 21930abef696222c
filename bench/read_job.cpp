// Prints the peak resident memory, in bytes, of a process that reads and completes one job file as
// a host does:
//   zentu_read_job <job file>
// A process's peak only grows and survives exec, so the reading runs in a child forked from this
// small process, whose peak starts at this process's size rather than at its parent's peak.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <filesystem>

#include "ZentuCmdContainer.h"
#include "ZentuParFileAdapter.h"
#include "job_generator.h"

namespace {

// Reads the job; the exit status of the reading child.
int read_job(const std::filesystem::path& path) {
    try {
        ZentuCmdContainer container;
        ZentuParFileAdapter(path.wstring(), ZentuJobGenerator::job_config(
                                                ZentuJobGenerator::ExpressionRule::REGISTERED))
            .Parse(container);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <job file>\n", argv[0]);
        return 2;
    }
    const pid_t child = fork();
    if (child == 0) {
        _exit(read_job(argv[1]));
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        return 1;
    }
    std::printf("%lld\n", static_cast<long long>(usage.ru_maxrss) * 1024);
    return 0;
}
