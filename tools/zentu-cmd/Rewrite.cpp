#include "Rewrite.h"

#include <iostream>

#include "Inputs.h"
#include "KPL_Failure.h"
#include "ToolError.h"
#include "ZentuCanonicalLosses.h"
#include "ZentuJobFiles.h"

namespace zentu_cmd {

namespace {

// Says on standard error why an input failed, and gives the status of that.
int failed(const std::string& message) {
    std::cerr << "zentu-cmd: " << message << "\n";
    return FAILED;
}

}  // namespace

RewriteCommand::RewriteCommand(CLI::App& app, const char* name, const char* description)
    : Subcommand(app.add_subcommand(name, description)) {
    command_
        ->add_option("FILE", files_,
                     "The job files to read (directories: every *.par below them; - for "
                     "standard input)")
        ->required();
    outputOption_ =
        command_->add_option("-o,--output", output_, "Write to OUT instead of standard output");
    inPlaceOption_ =
        command_->add_flag("--in-place", inPlace_, "Replace each FILE with its result");
    command_
        ->add_flag("--force", force_,
                   "With --in-place, also replace a file whose comments, undescribed content "
                   "or number texts the result drops or rewrites")
        ->needs(inPlaceOption_);
    outputOption_->excludes(inPlaceOption_);
}

std::vector<std::string> RewriteCommand::Inputs() const {
    std::vector<std::string> inputs = expand_inputs(files_);
    if (!output_.empty() && inputs.size() != 1) {
        throw ToolError("-o writes the result of one job file, and " +
                        std::to_string(inputs.size()) + " are given");
    }
    return inputs;
}

int RewriteCommand::Deliver(const std::string& input, const std::string& text) const {
    try {
        if (inPlace_ && input != STDIN_ARGUMENT) {
            ZentuJobFiles::write_text_file(text, input);
        } else if (!output_.empty()) {
            ZentuJobFiles::write_text_file(text, output_);
        } else {
            std::cout << text;
        }
    } catch (const KPL_Exception& error) {
        return failed(error.GetMessage());
    }
    return 0;
}

int RewriteCommand::DeliverCanonical(const std::string& input, const ZentuTypedJob& job,
                                     const ZentuJobSchema& schema) const {
    if (inPlace_ && !force_ && input != STDIN_ARGUMENT) {
        const ZentuCanonicalLosses losses = ZentuCanonicalLosses::Of(job, schema);
        if (!losses.Empty()) {
            return failed(input + ": --in-place would " + losses.Describe() +
                          "; give --force to write anyway");
        }
    }
    try {
        return Deliver(input, ZentuJobFiles::canonical_text(job.Container()));
    } catch (const KPL_Exception& error) {
        return failed(input_name(input) + ": " + error.GetMessage());
    }
}

void RewriteCommand::ExcludeWriting(CLI::Option* option) const {
    option->excludes(outputOption_)->excludes(inPlaceOption_);
}

}  // namespace zentu_cmd
