#include "Expand.h"

#include <algorithm>

#include "Inputs.h"

namespace zentu_cmd {

ExpandCommand::ExpandCommand(CLI::App& app)
    : RewriteCommand(app, "expand",
                     "Rewrite a file completed by the schema's defaults, references and rules") {}

int ExpandCommand::Run(const RunContext& context) {
    int status = 0;
    const int readStatus =
        use_each_job(Inputs(), context.schemas,
                     [&](const std::string& input, const std::string&, const InputJob& read) {
                         status = std::max(status, DeliverCanonical(input, read.job, read.schema));
                     });
    return std::max(status, readStatus);
}

}  // namespace zentu_cmd
