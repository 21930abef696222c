#include "Check.h"

#include <iostream>
#include <map>
#include <ostream>

#include "Inputs.h"
#include "ZentuCmd.h"
#include "ZentuTypedJob.h"

using ZentuCmdDefs::Cmd;

namespace zentu_cmd {

namespace {

// What checking one file found, counted.
struct FileCounts {
    std::size_t errors = 0;
    std::size_t warnings = 0;
};

FileCounts count(const std::vector<ZentuFinding>& findings) {
    FileCounts counts;
    for (const ZentuFinding& finding : findings) {
        counts.errors += finding.severity == ZentuSeverity::ERROR ? 1 : 0;
        counts.warnings += finding.severity == ZentuSeverity::WARNING ? 1 : 0;
    }
    return counts;
}

void print_summary(const std::string& name, const ZentuTypedJob& job, const FileCounts& counts,
                   std::ostream& out) {
    std::map<Cmd, std::size_t> perKind;
    for (const ZentuCmd& command : job.Container()) {
        ++perKind[command.GetType()];
    }
    std::size_t total = 0;
    std::string kinds;
    for (const auto& [kind, number] : perKind) {
        total += number;
        kinds += (kinds.empty() ? "" : ", ") +
                 ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)] + " " +
                 std::to_string(number);
    }
    out << name << ": " << total << (total == 1 ? " command" : " commands");
    if (!kinds.empty()) {
        out << " (" << kinds << ")";
    }
    out << "; references: " << job.ResolvedReferences() << " resolved, "
        << job.UnresolvedReferences() << " unresolved; " << counts.errors
        << (counts.errors == 1 ? " error, " : " errors, ") << counts.warnings
        << (counts.warnings == 1 ? " warning" : " warnings") << "\n";
}

}  // namespace

void print_finding_text(const std::string& name, const ZentuFinding& finding, std::ostream& out) {
    out << name;
    if (finding.code != ZentuFindingCodes::IO) {
        out << ":" << finding.range.line;
    }
    out << ": " << zentu_severity_name(finding.severity) << "[" << finding.code
        << "]: " << finding.message << "\n";
}

CheckCommand::CheckCommand(CLI::App& app)
    : Subcommand(app.add_subcommand(
          "check", "Read each file with the schema and its rules and report every problem")) {
    command_
        ->add_option("FILE", files_,
                     "The job files to check (directories: every *.par below "
                     "them; - for standard input)")
        ->required();
    command_->add_flag("--strict", strict_, "Exit with status 1 when there are warnings");
}

int CheckCommand::Run(const RunContext& context) {
    std::ostream& out = std::cout;
    int status = CHECK_CLEAN;
    for (const std::string& input : expand_inputs(files_)) {
        const ZentuTypedJob job = read_input(input, context.schema, ZentuCompletion::FULL);
        const std::string name = input_name(input);
        for (const ZentuFinding& finding : job.Findings()) {
            print_finding_text(name, finding, out);
        }
        const FileCounts counts = count(job.Findings());
        if (!context.quiet) {
            print_summary(name, job, counts, out);
        }
        if (counts.errors > 0) {
            status = CHECK_ERRORS;
        } else if (counts.warnings > 0 && strict_ && status == CHECK_CLEAN) {
            status = CHECK_WARNINGS;
        }
    }
    return status;
}

}  // namespace zentu_cmd
