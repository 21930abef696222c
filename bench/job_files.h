// The generated job files of a benchmark run, written once per size into a directory of their own
// and removed with it when the program ends.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

class JobFiles {
  public:
    // The files of this run.
    static JobFiles& Instance();

    // The file of the job of commandCount commands, written the first time that it is asked for.
    std::filesystem::path Job(std::size_t commandCount);

    // The file of the job of commandCount commands in the built-in schema's words, so that
    // readers with that schema type every item instead of passing most lists by as undescribed;
    // written the first time that it is asked for.
    std::filesystem::path BuiltinJob(std::size_t commandCount);

    // A file of this run's directory that benchmarks may write, named name.
    std::filesystem::path Scratch(const std::string& name) const;

    JobFiles(const JobFiles&) = delete;
    JobFiles& operator=(const JobFiles&) = delete;

  private:
    JobFiles();
    ~JobFiles();

    const std::filesystem::path directory_;
    std::map<std::size_t, std::filesystem::path> jobs_;
    std::map<std::size_t, std::filesystem::path> builtinJobs_;
};
