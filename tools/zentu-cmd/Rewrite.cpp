#include "Rewrite.h"

#include <iostream>

#include "JobFiles.h"

namespace zentu_cmd {

RewriteCommand::RewriteCommand(CLI::App& app, const char* name, const char* description)
    : Subcommand(app.add_subcommand(name, description)) {
    command_->add_option("FILE", input_, "The job file to read")->required();
    CLI::Option* output =
        command_->add_option("-o,--output", output_, "Write to OUT instead of standard output");
    CLI::Option* inPlace =
        command_->add_flag("--in-place", inPlace_, "Replace FILE with the result");
    output->excludes(inPlace);
}

void RewriteCommand::WriteContainer(const ZentuCmdContainer& container) const {
    if (inPlace_) {
        write_job_file(container, input_);
    } else if (!output_.empty()) {
        write_job_file(container, output_);
    } else {
        write_job(container, std::cout);
    }
}

}  // namespace zentu_cmd
