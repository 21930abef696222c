// zentu-cmd: checks, completes, rewrites and exports structural-optimisation job files.
#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Check.h"
#include "Dump.h"
#include "JobFiles.h"
#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "ToolError.h"
#include "ZentuJobSchema.h"
#include "ZentuRuleCatalog.h"

namespace {

using namespace zentu_cmd;

// Exit status of a run that could not do its work: a file cannot be read or written.
constexpr int FAILED = 2;

// Where a rewritten job goes: standard output, another file, or back into its own file.
struct Destination {
    std::string output;
    bool inPlace = false;
};

void write_destination(const ZentuCmdContainer& container, const std::string& input,
                       const Destination& destination) {
    if (destination.inPlace) {
        write_job_file(container, input);
    } else if (!destination.output.empty()) {
        write_job_file(container, destination.output);
    } else {
        write_job(container, std::cout);
    }
}

void print_known_rules(std::ostream& out) {
    out << "\nRules a schema may name (parameters ending in ? are optional):\n";
    for (const ZentuRuleCatalog::RuleInfo& rule : ZentuRuleCatalog::known_rules()) {
        out << "  " << rule.name << " (";
        for (std::size_t i = 0; i < rule.parameters.size(); ++i) {
            out << (i == 0 ? "" : ", ") << rule.parameters[i];
        }
        out << "): " << rule.summary << "\n";
    }
}

// The message of a library failure with the failures that caused it.
std::string failure_text(const KPL_Exception& failure) {
    std::string text = failure.GetMessage();
    for (const KPL_Exception* cause = failure.GetCause(); cause != nullptr;
         cause = cause->GetCause()) {
        text += "\n  because: " + cause->GetMessage();
    }
    return text;
}

// Adds FILE and the choice of -o OUT or --in-place to a subcommand that rewrites a job.
void add_rewrite_options(CLI::App& command, std::string& input, Destination& destination) {
    command.add_option("FILE", input, "The job file to read")->required();
    CLI::Option* output = command.add_option("-o,--output", destination.output,
                                             "Write to OUT instead of standard output");
    CLI::Option* inPlace =
        command.add_flag("--in-place", destination.inPlace, "Replace FILE with the result");
    output->excludes(inPlace);
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{
        "zentu-cmd checks, completes, rewrites and exports structural-optimisation job "
        "files (parameter files) against a schema.",
        "zentu-cmd"};
    app.set_version_flag("--version", std::string("zentu-cmd ") + ZENTU_CMD_VERSION);
    app.require_subcommand(1);
    // Global options may also follow the subcommand, as in `zentu-cmd check --quiet job.par`.
    app.fallthrough();

    std::string schemaPath;
    bool quiet = false;
    bool verbose = false;
    app.add_option("--schema", schemaPath,
                   "Use the schema in FILE.json instead of the built-in one (see `schema --json`)");
    app.add_flag("-q,--quiet", quiet, "Print only findings and failures");
    app.add_flag("-v,--verbose", verbose, "Also print the library's trace lines");

    std::vector<std::string> checkFiles;
    CheckOptions checkOptions;
    CLI::App* check = app.add_subcommand(
        "check", "Read each file with the schema and its rules and report every problem");
    check->add_option("FILE", checkFiles, "The job files to check")->required();
    check->add_flag("--strict", checkOptions.strict, "Exit with status 1 when there are warnings");

    std::string input;
    Destination destination;
    CLI::App* format = app.add_subcommand(
        "format", "Rewrite a file in the canonical layout, without completing it");
    add_rewrite_options(*format, input, destination);
    CLI::App* expand = app.add_subcommand(
        "expand", "Rewrite a file completed by the schema's defaults, references and rules");
    add_rewrite_options(*expand, input, destination);

    CLI::App* dump = app.add_subcommand("dump", "Print the completed job as JSON");
    dump->add_option("FILE", input, "The job file to read")->required();

    bool schemaJson = false;
    CLI::App* schemaCommand = app.add_subcommand("schema", "Print the schema in use");
    schemaCommand->add_flag("--json", schemaJson,
                            "Print it as JSON, the format that --schema reads");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : FAILED;
    }
    checkOptions.quiet = quiet;
    KPL_LogMacros::SetLogVerbosity(verbose ? KPL_LogMacros::LOG_TRACE
                                   : quiet ? KPL_LogMacros::LOG_ERROR
                                           : KPL_LogMacros::LOG_WARNING);

    try {
        const ZentuJobSchema schema =
            schemaPath.empty() ? ZentuJobSchema::Builtin() : ZentuJobSchema::Load(schemaPath);
        if (check->parsed()) {
            return run_check(checkFiles, schema, checkOptions, std::cout);
        }
        if (format->parsed() || expand->parsed()) {
            const ZentuCompletion completion =
                expand->parsed() ? ZentuCompletion::FULL : ZentuCompletion::NONE;
            write_destination(read_job(input, schema, completion), input, destination);
        } else if (dump->parsed()) {
            std::cout << dump_container(read_job(input, schema, ZentuCompletion::FULL)).dump(2)
                      << "\n";
        } else if (schemaJson) {
            std::cout << schema.ToJson().dump(2) << "\n";
        } else {
            schema.PrintTable(std::cout);
            print_known_rules(std::cout);
        }
        return 0;
    } catch (const ToolError& error) {
        std::cerr << "zentu-cmd: " << error.what() << "\n";
    } catch (const KPL_Exception& failure) {
        std::cerr << "zentu-cmd: " << failure_text(failure) << "\n";
    }
    return FAILED;
}
