#include "Graph.h"

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "Check.h"
#include "Inputs.h"
#include "ToolError.h"
#include "ZentuReferenceGraph.h"

namespace fs = std::filesystem;

namespace zentu_cmd {

namespace {

// The Graphviz program that lays graphs out and renders them.
constexpr const char* DOT_PROGRAM = "dot";

// Renders DOT text into a file through Graphviz, in the format its extension names.
void render(const std::string& dot, const fs::path& output) {
    const std::string format = output.extension().string().substr(1);
    const std::string command =
        std::string(DOT_PROGRAM) + " -T" + format + " -o '" + output.string() + "' 2>/dev/null";
    std::FILE* pipe = popen(command.c_str(), "w");
    if (pipe == nullptr) {
        throw ToolError("cannot start Graphviz's " + std::string(DOT_PROGRAM));
    }
    std::fwrite(dot.data(), 1, dot.size(), pipe);
    const int status = pclose(pipe);
    if (!WIFEXITED(status) || WEXITSTATUS(status) == 127) {
        throw ToolError(output.string() +
                        ": rendering needs Graphviz's dot, which is not installed (Debian: "
                        "apt-get install graphviz); write DOT with -o FILE.dot or to standard "
                        "output instead");
    }
    if (WEXITSTATUS(status) != 0) {
        throw ToolError(output.string() + ": Graphviz's dot could not render the graph");
    }
}

}  // namespace

GraphCommand::GraphCommand(CLI::App& app)
    : Subcommand(app.add_subcommand(
          "graph", "Print the job's reference graph as Graphviz DOT, or render it to SVG or PNG")) {
    command_->add_option("FILE", input_, "The job file to read (- for standard input)")->required();
    command_
        ->add_option("-o,--output", output_,
                     "Write to OUT.dot, or render to OUT.svg or OUT.png (needs Graphviz's dot)")
        ->check([](const std::string& path) {
            const std::string extension = fs::path(path).extension().string();
            return extension == ".dot" || extension == ".svg" || extension == ".png"
                       ? std::string()
                       : std::string("OUT must end in .dot, .svg or .png");
        });
}

int GraphCommand::Run(const RunContext& context) {
    const InputJob read = read_input(input_, context.schemas, ZentuCompletion::FULL);
    const ZentuTypedJob& job = read.job;
    if (job.HasErrors()) {
        for (const ZentuFinding& finding : job.Findings()) {
            print_finding_text(input_name(input_), finding, std::cerr);
        }
        return FAILED;
    }
    const std::string dot = ZentuReferenceGraph(job, read.schema).ToDot();
    if (output_.empty()) {
        std::cout << dot;
    } else if (fs::path(output_).extension() == ".dot") {
        std::ofstream(output_, std::ios::binary) << dot;
    } else {
        render(dot, output_);
    }
    return 0;
}

}  // namespace zentu_cmd
