// zentu-cmd: checks, completes, rewrites and exports structural-optimisation job files.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Check.h"
#include "Dump.h"
#include "Expand.h"
#include "Format.h"
#include "Graph.h"
#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "Lsp.h"
#include "SchemaCommand.h"
#include "ToolError.h"
#include "ZentuCmdEngineVersion.h"
#include "ZentuSchemaCache.h"

namespace {

using namespace zentu_cmd;

// The message of a library failure with the failures that caused it.
std::string failure_text(const KPL_Exception& failure) {
    std::string text = failure.GetMessage();
    for (const KPL_Exception* cause = failure.GetCause(); cause != nullptr;
         cause = cause->GetCause()) {
        text += "\n  because: " + cause->GetMessage();
    }
    return text;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{
        "zentu-cmd checks, completes, rewrites and exports structural-optimisation job "
        "files (parameter files) against a schema.",
        "zentu-cmd"};
    app.set_version_flag("--version", std::string("zentu-cmd ") + ZENTU_CMD_ENGINE_VERSION_STRING);
    app.require_subcommand(1);
    // Global options may also follow the subcommand, as in `zentu-cmd check --quiet job.par`.
    app.fallthrough();

    std::string schemaPath;
    bool quiet = false;
    bool verbose = false;
    app.add_option("--schema", schemaPath,
                   "Use the schema in FILE.json for every job instead of the one each job names "
                   "(see `schema --json`)");
    app.add_flag("-q,--quiet", quiet, "Print only findings and failures");
    app.add_flag("-v,--verbose", verbose, "Also print the library's trace lines");

    std::vector<std::unique_ptr<Subcommand>> subcommands;
    subcommands.push_back(std::make_unique<CheckCommand>(app));
    subcommands.push_back(std::make_unique<FormatCommand>(app));
    subcommands.push_back(std::make_unique<ExpandCommand>(app));
    subcommands.push_back(std::make_unique<DumpCommand>(app));
    subcommands.push_back(std::make_unique<SchemaCommand>(app));
    subcommands.push_back(std::make_unique<GraphCommand>(app));
    subcommands.push_back(std::make_unique<LspCommand>(app));

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : FAILED;
    }
    KPL_LogMacros::SetLogVerbosity(verbose ? KPL_LogMacros::LOG_TRACE
                                   : quiet ? KPL_LogMacros::LOG_ERROR
                                           : KPL_LogMacros::LOG_WARNING);

    try {
        const std::optional<std::string> schemaOverride =
            schemaPath.empty() ? std::nullopt : std::optional<std::string>(schemaPath);
        ZentuSchemaCache schemas(schemaOverride);
        const RunContext context{schemas, schemaOverride, quiet};
        for (const auto& subcommand : subcommands) {
            if (subcommand->Chosen()) {
                return subcommand->Run(context);
            }
        }
    } catch (const ToolError& error) {
        std::cerr << "zentu-cmd: " << error.what() << "\n";
    } catch (const KPL_Exception& failure) {
        std::cerr << "zentu-cmd: " << failure_text(failure) << "\n";
    }
    return FAILED;
}
