#include "Check.h"

#include <algorithm>
#include <iostream>

#include "Inputs.h"

namespace zentu_cmd {

CheckCommand::CheckCommand(CLI::App& app)
    : Subcommand(app.add_subcommand(
          "check", "Read each file with the schema and its rules and report every problem")) {
    command_
        ->add_option("FILE", files_,
                     "The job files to check (directories: every *.par below "
                     "them; - for standard input)")
        ->required();
    command_->add_flag("--strict", strict_, "Exit with status 1 when there are warnings");
    command_
        ->add_option("--format", format_,
                     "How to report: text (default), json, sarif (SARIF 2.1.0) or github "
                     "(workflow commands)")
        ->transform(CLI::CheckedTransformer(findings_formats(), CLI::ignore_case));
}

int CheckCommand::StatusOf(const ZentuTypedJob& job) const {
    if (job.HasErrors()) {
        return CHECK_ERRORS;
    }
    const bool warned = std::any_of(
        job.Findings().begin(), job.Findings().end(),
        [](const ZentuFinding& finding) { return finding.severity == ZentuSeverity::WARNING; });
    return warned && strict_ ? CHECK_WARNINGS : CHECK_CLEAN;
}

int CheckCommand::Run(const RunContext& context) {
    const std::unique_ptr<FindingsReport> report =
        make_findings_report(format_, std::cout, !context.quiet);
    int status = CHECK_CLEAN;
    for (const std::string& input : expand_inputs(files_)) {
        const ZentuTypedJob job = read_input(input, context.schema, ZentuCompletion::FULL);
        report->Add(input_name(input), job);
        status = std::max(status, StatusOf(job));
    }
    report->Finish();
    return status;
}

}  // namespace zentu_cmd
