#include "ZentuPyReading.h"

#include <filesystem>
#include <optional>

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include "ZentuJobFiles.h"
#include "ZentuJobFormatter.h"
#include "ZentuPyErrors.h"
#include "ZentuPyJob.h"

namespace py = pybind11;

namespace {

// The name that findings and errors give a text passed to format().
constexpr const char* TEXT_NAME = "<text>";

ZentuPyJob read_job(const std::filesystem::path& path, const ZentuSchemaHandle& schema,
                    bool complete) {
    return ZentuPyJob(
        ZentuJobState::Read(path.string(), schema_or_builtin(schema),
                            complete ? ZentuCompletion::FULL : ZentuCompletion::NONE));
}

std::vector<ZentuFinding> check_job(const std::filesystem::path& path,
                                    const ZentuSchemaHandle& schema) {
    const ZentuSchemaHandle used = schema_or_builtin(schema);
    const py::gil_scoped_release released;
    return ZentuTypedJob::ReadFile(path.string(), *used, ZentuCompletion::FULL).Findings();
}

// As `zentu-cmd format` writes a text: the canonical layout needs a job without errors, the
// house layout a file whose structure holds.
std::string format_text(std::string text, const ZentuSchemaHandle& schema, bool canonical) {
    const ZentuSchemaHandle used = schema_or_builtin(schema);
    std::optional<ZentuTypedJob> job;
    {
        const py::gil_scoped_release released;
        job.emplace(
            ZentuTypedJob::ReadText(std::move(text), TEXT_NAME, *used, ZentuCompletion::NONE));
    }
    if (canonical) {
        throw_first_error(TEXT_NAME, job->Findings());
        return ZentuJobFiles::canonical_text(job->Container());
    }
    if (!ZentuJobFormatter::can_format(job->Document())) {
        throw_first_error(TEXT_NAME, job->Document().Findings());
    }
    return *ZentuJobFormatter::format_document(job->Document(), *used);
}

}  // namespace

void bind_reading(py::module_& module) {
    module.def("read", &read_job, py::arg("path"), py::arg("schema") = py::none(),
               py::arg("complete") = true,
               "Reads a job file with the schema (the built-in one when None) and, unless "
               "complete=False, completes it by the schema's rules. Raises zentu.Error at the "
               "first error of a file with errors.");
    module.def("check", &check_job, py::arg("path"), py::arg("schema") = py::none(),
               "The findings of `zentu-cmd check` for the file, in file order; a file that "
               "cannot be read gives an 'io' finding.");
    module.def("format", &format_text, py::arg("text"), py::arg("schema") = py::none(),
               py::arg("canonical") = false,
               "What `zentu-cmd format` writes for the text: the house layout, which keeps "
               "comments, order and texts; with canonical=True, the library writer's layout. "
               "Raises zentu.Error for a text that cannot be formatted.");
}
