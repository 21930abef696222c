#include "Format.h"

#include "JobFiles.h"

namespace zentu_cmd {

FormatCommand::FormatCommand(CLI::App& app)
    : RewriteCommand(app, "format",
                     "Rewrite a file in the canonical layout, without completing it") {}

int FormatCommand::Run(const RunContext& context) {
    WriteContainer(read_job(input_, context.schema, ZentuCompletion::NONE));
    return 0;
}

}  // namespace zentu_cmd
