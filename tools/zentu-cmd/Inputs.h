#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ZentuSchemaCache.h"
#include "ZentuTypedJob.h"

namespace zentu_cmd {

// The argument that stands for standard input, and the name findings give it.
inline constexpr const char* STDIN_ARGUMENT = "-";
inline constexpr const char* STDIN_NAME = "<stdin>";

// The job files that command-line arguments name: a file as given, a directory as every *.par
// file below it (sorted), "-" as standard input.
std::vector<std::string> expand_inputs(const std::vector<std::string>& arguments);

// A job read from an input, with the schema it was read with.
struct InputJob {
    const ZentuJobSchema& schema;
    ZentuTypedJob job;
};

// Reads one input ("-" for standard input) with its schema, completed as asked.
InputJob read_input(const std::string& input, ZentuSchemaCache& schemas,
                    ZentuCompletion completion);

// The name of an input in findings: the path as given, or "<stdin>".
std::string input_name(const std::string& input);

// What a subcommand does with one input that reads without errors: the input as given, its name
// and the completed job with its schema.
using JobUse =
    std::function<void(const std::string& input, const std::string& name, const InputJob& read)>;

// Reads each input completed by its schema, prints its findings to standard error as check's text
// does, and passes each input without errors to use; an input with errors is left alone. Returns
// FAILED when an input had errors, else 0.
int use_each_job(const std::vector<std::string>& inputs, ZentuSchemaCache& schemas,
                 const JobUse& use);

}  // namespace zentu_cmd
