#include "Lsp.h"

#include <iostream>

#include "lsp/LspServer.h"

namespace zentu_cmd {

LspCommand::LspCommand(CLI::App& app)
    : Subcommand(app.add_subcommand(
          "lsp",
          "Serve job files to an editor as a language server on standard input and output")) {}

int LspCommand::Run(const RunContext& context) {
    lsp::LspServer server(context.schemaPath);
    return server.Run(std::cin, std::cout);
}

}  // namespace zentu_cmd
