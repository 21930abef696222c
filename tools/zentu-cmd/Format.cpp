#include "Format.h"

#include <algorithm>
#include <iostream>

#include "FindingsOutput.h"
#include "Inputs.h"
#include "UnifiedDiff.h"
#include "ZentuJobFiles.h"
#include "ZentuJobFormatter.h"

namespace zentu_cmd {

namespace {

// The exit status of --check when a file would change.
constexpr int WOULD_CHANGE = 1;

}  // namespace

FormatCommand::FormatCommand(CLI::App& app)
    : RewriteCommand(app, "format",
                     "Lay a file out anew, keeping its comments, order and texts, without "
                     "completing it") {
    command_->add_flag("--canonical", canonical_,
                       "Write the library writer's layout instead: commands and items in kind "
                       "order, without comments and undescribed content");
    ExcludeWriting(command_->add_flag(
        "--check", check_, "Write nothing; list the files that would change and exit 1 if any"));
    ExcludeWriting(command_->add_flag("--diff", diff_,
                                      "Write nothing; print what would change as a unified diff"));
}

int FormatCommand::Run(const RunContext& context) {
    int status = 0;
    for (const std::string& input : Inputs()) {
        status = std::max(status, FormatOne(input, context));
    }
    return status;
}

int FormatCommand::FormatOne(const std::string& input, const RunContext& context) const {
    const InputJob read = read_input(input, context.schemas, ZentuCompletion::NONE);
    const ZentuTypedJob& job = read.job;
    const std::string name = input_name(input);
    const ZentuJobDocument& document = job.Document();
    if (canonical_) {
        print_findings_text(name, job.Findings(), std::cerr);
        if (job.HasErrors()) {
            return FAILED;
        }
    } else if (!ZentuJobFormatter::can_format(document)) {
        print_findings_text(name, document.Findings(), std::cerr);
        return FAILED;
    }
    if (check_ || diff_) {
        const std::string text =
            canonical_ ? ZentuJobFiles::canonical_text(job.Container())
                       : *ZentuJobFormatter::format_document(document, read.schema);
        return ReportChange(name, document.Text(), text);
    }
    if (canonical_) {
        return DeliverCanonical(input, job, read.schema);
    }
    return Deliver(input, *ZentuJobFormatter::format_document(document, read.schema));
}

int FormatCommand::ReportChange(const std::string& name, const std::string& before,
                                const std::string& after) const {
    if (diff_) {
        print_unified_diff(before, after, name, std::cout);
    }
    if (check_ && before != after) {
        std::cout << name << "\n";
        return WOULD_CHANGE;
    }
    return 0;
}

}  // namespace zentu_cmd
