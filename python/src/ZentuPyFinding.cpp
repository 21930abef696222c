#include "ZentuPyFinding.h"

#include "ZentuFinding.h"
#include "ZentuJobJson.h"
#include "ZentuPyJson.h"

namespace py = pybind11;

namespace {

// A property of the finding that reads one key of its JSON report.
void def_field(py::class_<ZentuFinding>& finding, const char* key, const char* doc) {
    finding.def_property_readonly(
        key,
        [key](const ZentuFinding& self) { return to_python(ZentuJobJson::finding(self)[key]); },
        doc);
}

}  // namespace

void bind_finding(py::module_& module) {
    py::class_<ZentuFinding> finding(module, "Finding",
                                     "One problem found in a job file, as `zentu-cmd check` "
                                     "reports it.");
    def_field(finding, "severity", "'error', 'warning' or 'note'.");
    def_field(finding, "code", "A stable code such as 'dangling-reference'.");
    def_field(finding, "message", "One line of text for a person.");
    def_field(finding, "line", "The first line, from 1; None for a file that cannot be read.");
    def_field(finding, "column", "The first column in characters, from 1; None without place.");
    def_field(finding, "end_line", "The last line; None without place.");
    def_field(finding, "end_column", "The column after the end; None without place.");
    def_field(finding, "suggestion", "The text probably meant, or None.");
    finding.def(
        "to_dict", [](const ZentuFinding& self) { return to_python(ZentuJobJson::finding(self)); },
        "The finding as `zentu-cmd check --format json` writes it.");
    finding.def("__repr__", [](const ZentuFinding& self) {
        return py::str("<zentu.Finding {}[{}] line {}: {}>")
            .format(zentu_severity_name(self.severity), self.code, self.range.line, self.message);
    });
}
