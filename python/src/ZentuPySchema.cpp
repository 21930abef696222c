#include "ZentuPySchema.h"

#include <filesystem>

#include <pybind11/stl/filesystem.h>

namespace py = pybind11;

ZentuSchemaHandle schema_or_builtin(const ZentuSchemaHandle& schema) {
    static const ZentuSchemaHandle builtin =
        std::make_shared<ZentuJobSchema>(ZentuJobSchema::Builtin());
    return schema ? schema : builtin;
}

void bind_schema(py::module_& module) {
    py::class_<ZentuJobSchema, ZentuSchemaHandle>(
        module, "Schema",
        "The commands a job may hold, their items, and the rules that complete a job: the "
        "built-in schema or a JSON schema file, as zentu-cmd uses them.")
        .def_static(
            "builtin", []() { return schema_or_builtin(nullptr); },
            "The schema compiled into the library (what `zentu-cmd schema --json` prints).")
        .def_static(
            "load",
            [](const std::filesystem::path& path) -> ZentuSchemaHandle {
                return std::make_shared<ZentuJobSchema>(ZentuJobSchema::Load(path.string()));
            },
            py::arg("path"),
            "Reads a JSON schema file, as `zentu-cmd --schema` does; raises zentu.Error naming "
            "the entry at fault.")
        .def_property_readonly(
            "description", [](const ZentuJobSchema& schema) { return schema.description; },
            "What the schema is for, as its file says.")
        .def_property_readonly(
            "keywords",
            [](const ZentuJobSchema& schema) {
                py::list keywords;
                for (const ZentuCommandSchema& command : schema.commands) {
                    keywords.append(command.keyword);
                }
                return keywords;
            },
            "The command keywords that the schema describes, in the order of its file.");
}
