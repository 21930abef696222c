#include "SchemaCommand.h"

#include <iostream>

#include "ZentuRuleCatalog.h"

namespace zentu_cmd {

namespace {

void print_known_rules(std::ostream& out) {
    out << "\nRules a schema may name (parameters ending in ? are optional):\n";
    for (const ZentuRuleCatalog::RuleInfo& rule : ZentuRuleCatalog::known_rules()) {
        out << "  " << rule.name << " (";
        for (std::size_t i = 0; i < rule.parameters.size(); ++i) {
            out << (i == 0 ? "" : ", ") << rule.parameters[i];
        }
        out << "): " << rule.summary << "\n";
    }
}

}  // namespace

SchemaCommand::SchemaCommand(CLI::App& app)
    : Subcommand(app.add_subcommand("schema", "Print the schema in use")) {
    command_->add_flag("--json", json_, "Print it as JSON, the format that --schema reads");
}

int SchemaCommand::Run(const RunContext& context) {
    if (json_) {
        std::cout << context.schemas.Default().ToJson().dump(2) << "\n";
    } else {
        context.schemas.Default().PrintTable(std::cout);
        print_known_rules(std::cout);
    }
    return 0;
}

}  // namespace zentu_cmd
