#include "ZentuPyCommand.h"

#include <pybind11/stl.h>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuJobJson.h"
#include "ZentuPyErrors.h"
#include "ZentuPyJson.h"

namespace py = pybind11;
using ZentuCmdItemDefs::CmdItem;

ZentuPyCommand::ZentuPyCommand(std::shared_ptr<ZentuJobState> state, const ZentuCmd& command)
    : state_(std::move(state)),
      reading_(state_->Reading()),
      command_(&command),
      written_(ZentuJobEdits::written_command(*reading_, command)),
      removals_(state_->Removals()) {}

void ZentuPyCommand::Follow() {
    if (reading_ == state_->Reading() || !written_) {
        return;
    }
    written_ = state_->Follow(*written_, removals_);
    removals_ = state_->Removals();
    if (!written_) {
        return;
    }
    if (const ZentuCmd* found = ZentuJobEdits::command_written_at(*state_->Reading(), *written_)) {
        reading_ = state_->Reading();
        command_ = found;
    }
}

const ZentuCmd& ZentuPyCommand::Command() {
    Follow();
    return *command_;
}

const ZentuReading& ZentuPyCommand::Reading() {
    Follow();
    return reading_;
}

std::vector<ZentuPyItem> ZentuPyCommand::Items() {
    const ZentuCmd& command = Command();
    std::vector<ZentuPyItem> items;
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        for (const auto& item : command.GetItemRange(static_cast<CmdItem>(kind))) {
            items.emplace_back(reading_, command, static_cast<CmdItem>(kind), *item);
        }
    }
    return items;
}

std::size_t ZentuPyCommand::WrittenIndex() {
    Follow();
    if (!written_) {
        throw ZentuScriptError(command_->GetName() +
                               " is not written in the file (a default command, one that a rule "
                               "generated, or one removed); add it with Job.add_command()");
    }
    if (reading_ != state_->Reading()) {
        throw ZentuScriptError(command_->GetName() + " no longer reads as a command of the job");
    }
    return *written_;
}

void ZentuPyCommand::Set(const std::string& name, const std::string& text) {
    const std::size_t index = WrittenIndex();
    state_->Apply(ZentuJobEdits::set_item(reading_->Document(), index, name, text));
}

void ZentuPyCommand::Remove(const std::string& name) {
    const std::size_t index = WrittenIndex();
    const std::optional<ZentuTextSplice> edit =
        ZentuJobEdits::remove_item(reading_->Document(), index, name);
    if (!edit) {
        throw ZentuScriptError(command_->GetName() + " has no item " + name + " in the file");
    }
    state_->Apply(*edit);
}

void bind_command(py::module_& module) {
    py::class_<ZentuPyCommand>(module, "Command",
                               "One command of a job; it follows the job's edits.")
        .def_property_readonly(
            "kind",
            [](ZentuPyCommand& self) {
                return ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(self.Command().GetType())];
            },
            "The command's kind, such as 'DV' or 'DRESP'.")
        .def_property_readonly(
            "keyword", [](ZentuPyCommand& self) { return self.Command().GetName(); },
            "The keyword that opens the command, as the schema spells it.")
        .def_property_readonly(
            "identifier",
            [](ZentuPyCommand& self) {
                return to_python(ZentuJobJson::identifier(self.Command()));
            },
            "The value of its ID_NAME item, or None.")
        .def_property_readonly(
            "line",
            [](ZentuPyCommand& self) {
                return to_python(ZentuJobJson::line(*self.Reading(), self.Command()));
            },
            "The line of its keyword, or of what generated it; None for a default command.")
        .def_property_readonly("items", &ZentuPyCommand::Items,
                               "Its items in the order of their kinds, as to_dict() lists them.")
        .def("set", &ZentuPyCommand::Set, py::arg("name"), py::arg("text"),
             "Gives the first item of that name the text, in its place, or adds the item before "
             "END_; the rest of the file stays as written. Raises zentu.Error, leaving the job "
             "unchanged, when the schema refuses the text.")
        .def("remove", &ZentuPyCommand::Remove, py::arg("name"),
             "Removes the first item of that name from the file; raises zentu.Error when the "
             "file gives the command none.")
        .def(
            "to_dict",
            [](ZentuPyCommand& self) {
                return to_python(ZentuJobJson::command(*self.Reading(), self.Command()));
            },
            "The command as Job.to_dict() gives it.")
        .def("__repr__", [](ZentuPyCommand& self) {
            return py::str("<zentu.Command {} {!r}>")
                .format(self.Command().GetName(),
                        to_python(ZentuJobJson::identifier(self.Command())));
        });
}
