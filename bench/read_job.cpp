// Prints the peak resident memory, in bytes, of a process that reads one job file as a host does:
//   zentu_read_job <job file> [parse|read|dump]
// parse: ZentuParFileAdapter::Parse with the generated jobs' configuration (the default);
// read: the document and typed job with the built-in schema, as the command-line tool reads;
// dump: that reading, then its JSON written to nowhere, as `zentu-cmd dump` does.
// A process's peak only grows and survives exec, so the reading runs in a child forked from this
// small process, whose peak starts at this process's size rather than at its parent's peak.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "ZentuCmdContainer.h"
#include "ZentuJobJson.h"
#include "ZentuJobSchema.h"
#include "ZentuParFileAdapter.h"
#include "ZentuTypedJob.h"
#include "job_generator.h"

namespace {

void parse(const std::filesystem::path& path) {
    ZentuCmdContainer container;
    ZentuParFileAdapter(path.wstring(), ZentuJobGenerator::job_config(
                                            ZentuJobGenerator::ExpressionRule::REGISTERED))
        .Parse(container);
}

void read_and_dump(const std::filesystem::path& path, bool dump) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    const ZentuTypedJob job = ZentuTypedJob::ReadFile(path.string(), schema, ZentuCompletion::FULL);
    if (dump) {
        std::ofstream nowhere("/dev/null");
        ZentuJobJson::write_job(path.string(), job, nowhere);
    }
}

// Reads the job the way asked; the exit status of the reading child.
int read_job(const std::filesystem::path& path, const char* way) {
    try {
        if (std::strcmp(way, "parse") == 0) {
            parse(path);
        } else if (std::strcmp(way, "read") == 0 || std::strcmp(way, "dump") == 0) {
            read_and_dump(path, std::strcmp(way, "dump") == 0);
        } else {
            std::fprintf(stderr, "unknown way of reading: %s\n", way);
            return 2;
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "usage: %s <job file> [parse|read|dump]\n", argv[0]);
        return 2;
    }
    const char* way = argc == 3 ? argv[2] : "parse";
    const pid_t child = fork();
    if (child == 0) {
        _exit(read_job(argv[1], way));
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
