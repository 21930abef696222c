#include "Expand.h"

#include "JobFiles.h"

namespace zentu_cmd {

ExpandCommand::ExpandCommand(CLI::App& app)
    : RewriteCommand(app, "expand",
                     "Rewrite a file completed by the schema's defaults, references and rules") {}

int ExpandCommand::Run(const RunContext& context) {
    WriteContainer(read_job(input_, context.schema, ZentuCompletion::FULL));
    return 0;
}

}  // namespace zentu_cmd
