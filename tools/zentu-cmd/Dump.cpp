#include "Dump.h"

#include <iostream>

#include "Inputs.h"
#include "ZentuJobJson.h"

namespace zentu_cmd {

DumpCommand::DumpCommand(CLI::App& app)
    : Subcommand(app.add_subcommand("dump", "Print each completed job as JSON")) {
    command_
        ->add_option("FILE", inputs_,
                     "The job files to read (directories: every *.par below them; - for "
                     "standard input)")
        ->required();
}

int DumpCommand::Run(const RunContext& context) {
    return use_each_job(expand_inputs(inputs_), context.schemas,
                        [](const std::string&, const std::string& name, const InputJob& read) {
                            ZentuJobJson::write_job(name, read.job, std::cout);
                            std::cout << "\n";
                        });
}

}  // namespace zentu_cmd
