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
    // One code per option, so that the files after it stay files.
    const auto codes = CLI::IsMember(ZentuFindingCodes::all());
    const std::pair<const char*, std::vector<std::string>*> overrides[] = {
        {"--error", &errors_}, {"--warn", &warnings_}, {"--ignore", &ignored_}};
    const char* const helps[] = {"Report the findings of CODE as errors",
                                 "Report the findings of CODE as warnings",
                                 "Leave the findings of CODE out"};
    for (std::size_t i = 0; i < 3; ++i) {
        command_->add_option(overrides[i].first, *overrides[i].second, helps[i])
            ->check(codes)
            ->expected(1)
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }
}

std::vector<ZentuJobChecks::SeverityOverride> CheckCommand::Overrides() const {
    std::vector<ZentuJobChecks::SeverityOverride> overrides;
    for (const std::string& code : errors_) {
        overrides.push_back({code, ZentuSeverity::ERROR});
    }
    for (const std::string& code : warnings_) {
        overrides.push_back({code, ZentuSeverity::WARNING});
    }
    for (const std::string& code : ignored_) {
        overrides.push_back({code, std::nullopt});
    }
    return overrides;
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
    const std::vector<ZentuJobChecks::SeverityOverride> overrides = Overrides();
    for (const std::string& input : expand_inputs(files_)) {
        InputJob read = read_input(input, context.schemas, ZentuCompletion::FULL);
        read.job.OverrideSeverities(overrides);
        report->Add(input_name(input), read.job);
        status = std::max(status, StatusOf(read.job));
    }
    report->Finish();
    return status;
}

}  // namespace zentu_cmd
