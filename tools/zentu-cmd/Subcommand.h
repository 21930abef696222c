#pragma once

#include <CLI/CLI.hpp>

#include <optional>
#include <string>

#include "ZentuSchemaCache.h"

namespace zentu_cmd {

// Exit status of a run that could not do its work: a file with errors, or one that cannot be
// read or written.
inline constexpr int FAILED = 2;

// What every subcommand receives besides its own options.
struct RunContext {
    // The schemas of job files: the one that --schema names for every file, else each file's own.
    ZentuSchemaCache& schemas;
    // The path that --schema gives, if any.
    std::optional<std::string> schemaPath;
    // Only findings and failures are printed.
    bool quiet = false;
};

// One subcommand of zentu-cmd: it registers its options on construction and does its work when
// the user chose it.
class Subcommand {
  public:
    virtual ~Subcommand() = default;
    Subcommand(const Subcommand&) = delete;
    Subcommand& operator=(const Subcommand&) = delete;

    // Whether the command line chose this subcommand.
    bool Chosen() const { return command_->parsed(); }
    // Does the work; returns the exit status.
    virtual int Run(const RunContext& context) = 0;

  protected:
    explicit Subcommand(CLI::App* command) : command_(command) {}

    CLI::App* command_;
};

}  // namespace zentu_cmd
