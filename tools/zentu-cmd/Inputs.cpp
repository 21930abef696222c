#include "Inputs.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <system_error>

#include "FindingsOutput.h"
#include "Subcommand.h"

namespace fs = std::filesystem;

namespace zentu_cmd {

namespace {

// The extension of job files that a directory argument stands for.
constexpr const char* JOB_EXTENSION = ".par";

std::vector<std::string> job_files_below(const std::string& directory) {
    std::vector<std::string> files;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->is_regular_file(error) && entry->path().extension() == JOB_EXTENSION) {
            files.push_back(entry->path().generic_string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

std::vector<std::string> expand_inputs(const std::vector<std::string>& arguments) {
    std::vector<std::string> inputs;
    for (const std::string& argument : arguments) {
        std::error_code error;
        if (argument != STDIN_ARGUMENT && fs::is_directory(argument, error)) {
            const std::vector<std::string> below = job_files_below(argument);
            inputs.insert(inputs.end(), below.begin(), below.end());
        } else {
            inputs.push_back(argument);
        }
    }
    return inputs;
}

InputJob read_input(const std::string& input, ZentuSchemaCache& schemas,
                    ZentuCompletion completion) {
    if (input != STDIN_ARGUMENT) {
        const ZentuJobSchema& schema = schemas.For(input);
        return {schema, ZentuTypedJob::ReadFile(input, schema, completion)};
    }
    // Standard input has no folder of its own: discovery looks in the working folder.
    std::string text(std::istreambuf_iterator<char>(std::cin), {});
    const ZentuJobSchema& schema = schemas.For(std::string(), text);
    return {schema, ZentuTypedJob::ReadText(std::move(text), STDIN_NAME, schema, completion)};
}

std::string input_name(const std::string& input) {
    return input == STDIN_ARGUMENT ? STDIN_NAME : input;
}

int use_each_job(const std::vector<std::string>& inputs, ZentuSchemaCache& schemas,
                 const JobUse& use) {
    int status = 0;
    for (const std::string& input : inputs) {
        const InputJob read = read_input(input, schemas, ZentuCompletion::FULL);
        const std::string name = input_name(input);
        print_findings_text(name, read.job.Findings(), std::cerr);
        if (read.job.HasErrors()) {
            status = FAILED;
        } else {
            use(input, name, read);
        }
    }
    return status;
}

}  // namespace zentu_cmd
