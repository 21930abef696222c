#include "ZentuPyJob.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include "ZentuCmd.h"
#include "ZentuJobFiles.h"
#include "ZentuJobJson.h"
#include "ZentuPyErrors.h"
#include "ZentuPyJson.h"
#include "ZentuStringUtil.h"

namespace py = pybind11;

namespace {

// The command kind that a script names; ValueError for a name that is none.
ZentuCmdDefs::Cmd kind_named(const std::string& name) {
    const auto& names = ZentuCmdDefs::CMD_NAMES;
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
        throw py::value_error("no command kind is named '" + name + "'");
    }
    return static_cast<ZentuCmdDefs::Cmd>(found - names.begin());
}

}  // namespace

std::vector<ZentuPyCommand> ZentuPyJob::Commands(const std::optional<std::string>& kind) const {
    const std::optional<ZentuCmdDefs::Cmd> wanted =
        kind ? std::optional<ZentuCmdDefs::Cmd>(kind_named(*kind)) : std::nullopt;
    std::vector<ZentuPyCommand> commands;
    for (const ZentuCmd& command : state_->Reading()->Container()) {
        if (!wanted || command.GetType() == *wanted) {
            commands.emplace_back(state_, command);
        }
    }
    return commands;
}

std::optional<ZentuPyCommand> ZentuPyJob::Find(const std::string& identifier) const {
    const std::string upper = ZentuStringUtil::to_upper(identifier);
    for (const ZentuCmd& command : state_->Reading()->Container()) {
        const ZentuJson id = ZentuJobJson::identifier(command);
        if (id.is_string() &&
            ZentuStringUtil::equals_ignoring_case(id.get_ref<const std::string&>(), upper)) {
            return ZentuPyCommand(state_, command);
        }
    }
    return std::nullopt;
}

ZentuPyCommand ZentuPyJob::AddCommand(const std::string& keyword,
                                      const std::optional<std::string>& identifier) {
    const std::size_t index = state_->Reading()->Document().Commands().size();
    state_->Apply(ZentuJobEdits::add_command(state_->Reading()->Document(), keyword,
                                             identifier.value_or("")));
    const ZentuCmd* added = ZentuJobEdits::command_written_at(*state_->Reading(), index);
    if (added == nullptr) {
        throw ZentuScriptError("the schema gives no command for the keyword " + keyword,
                               state_->Reading()->Document().Path());
    }
    return ZentuPyCommand(state_, *added);
}

void ZentuPyJob::Remove(ZentuPyCommand& command) {
    if (!command.BelongsTo(*state_)) {
        throw py::value_error("the command belongs to another job");
    }
    state_->RemoveCommand(command.WrittenIndex());
}

std::string ZentuPyJob::Text(bool canonical) const {
    const ZentuTypedJob& reading = *state_->Reading();
    return canonical ? ZentuJobFiles::canonical_text(reading.Container())
                     : reading.Document().Text();
}

void bind_job(py::module_& module) {
    py::class_<ZentuPyJob>(module, "Job",
                           "A job file read with a schema: its commands in container order, "
                           "completed unless read with complete=False. Edits go through the "
                           "file's text, so that everything they do not touch stays as written.")
        .def("__iter__",
             [](const ZentuPyJob& self) { return py::iter(py::cast(self.Commands({}))); })
        .def("__len__",
             [](const ZentuPyJob& self) {
                 const ZentuCmdContainer& container = self.State().Reading()->Container();
                 return std::distance(container.begin(), container.end());
             })
        .def_property_readonly(
            "path",
            [](const ZentuPyJob& self) { return self.State().Reading()->Document().Path(); },
            "The path that the job was read from.")
        .def_property_readonly(
            "findings", [](const ZentuPyJob& self) { return self.State().Reading()->Findings(); },
            "The findings of the job as it is now (warnings, notes), as check() gives them.")
        .def("commands", &ZentuPyJob::Commands, py::arg("kind") = py::none(),
             "Its commands in container order; only those of one kind (such as 'DV') when given.")
        .def("find", &ZentuPyJob::Find, py::arg("identifier"),
             "The command of that identifier (ID_NAME), in any case, or None.")
        .def(
            "to_dict",
            [](const ZentuPyJob& self) {
                const ZentuTypedJob& reading = *self.State().Reading();
                return to_python(ZentuJobJson::job(reading.Document().Path(), reading));
            },
            "The job as `zentu-cmd dump` prints it for the same file.")
        .def("add_command", &ZentuPyJob::AddCommand, py::arg("keyword"),
             py::arg("identifier") = py::none(),
             "Appends a command of the keyword to the file, with ID_NAME = identifier when "
             "given, and returns it.")
        .def("remove", &ZentuPyJob::Remove, py::arg("command"),
             "Removes a command of this job from the file.")
        .def(
            "complete", [](ZentuPyJob& self) { self.State().Complete(); },
            "Completes the job by the schema's rules from now on, as read() does unless given "
            "complete=False; raises zentu.Error when that brings errors.")
        .def(
            "text",
            [](const ZentuPyJob& self, bool canonical) {
                return to_python_text(self.Text(canonical));
            },
            py::arg("canonical") = false,
            "The file as written with the edits made, comments and layout kept; with "
            "canonical=True the library writer's text of the job instead.")
        .def(
            "write",
            [](const ZentuPyJob& self, const std::filesystem::path& path, bool canonical) {
                ZentuJobFiles::write_text_file(self.Text(canonical), path.string());
            },
            py::arg("path"), py::arg("canonical") = false,
            "Writes text(canonical) to the file at path, replacing it only once the text is "
            "complete.")
        .def("__repr__", [](const ZentuPyJob& self) {
            return py::str("<zentu.Job {!r}>").format(self.State().Reading()->Document().Path());
        });
}
