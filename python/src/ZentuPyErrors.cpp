#include "ZentuPyErrors.h"

#include <algorithm>
#include <utility>

#include "KPL_Failure.h"
#include "ZentuPyJson.h"

namespace py = pybind11;

namespace {

// The name under which the module holds the exception class.
constexpr const char* ERROR_NAME = "Error";

// "path:line: message", leaving out what is not known, as a script prints it.
std::string located(const std::string& message, const std::optional<std::string>& path,
                    const std::optional<std::size_t>& line) {
    std::string text = path ? *path + ":" : "";
    text += line ? std::to_string(*line) + ":" : "";
    return text.empty() ? message : text + " " + message;
}

// Raises zentu.Error with its attributes set; the class is looked up in the module each time, so
// that no Python object outlives the interpreter in a static.
void raise_error(const ZentuScriptError& error) {
    const py::object type = py::module_::import("zentu._zentu").attr(ERROR_NAME);
    const py::object instance = type(to_python_text(error.what()));
    instance.attr("message") = to_python_text(error.message);
    instance.attr("path") = error.path ? py::object(to_python_text(*error.path)) : py::none();
    instance.attr("line") = error.line ? py::cast(*error.line) : py::none();
    PyErr_SetObject(type.ptr(), instance.ptr());
}

}  // namespace

ZentuScriptError::ZentuScriptError(std::string message, std::optional<std::string> path,
                                   std::optional<std::size_t> line)
    : std::runtime_error(located(message, path, line)),
      message(std::move(message)),
      path(std::move(path)),
      line(line) {}

void throw_first_error(const std::string& path, const std::vector<ZentuFinding>& findings) {
    const auto error = std::find_if(findings.begin(), findings.end(), [](const ZentuFinding& f) {
        return f.severity == ZentuSeverity::ERROR;
    });
    if (error != findings.end()) {
        throw ZentuScriptError(
            error->message, path,
            zentu_has_place(*error) ? std::optional<std::size_t>(error->range.line) : std::nullopt);
    }
}

void bind_errors(py::module_& module) {
    const py::object type = py::reinterpret_steal<py::object>(PyErr_NewExceptionWithDoc(
        "zentu.Error",
        "A job that cannot be read, an edit that is refused, or any other failure of the "
        "library; message, path and line tell what and where (path and line None when unknown).",
        PyExc_Exception, nullptr));
    type.attr("message") = py::none();
    type.attr("path") = py::none();
    type.attr("line") = py::none();
    module.attr(ERROR_NAME) = type;
    py::register_exception_translator([](std::exception_ptr thrown) {
        try {
            std::rethrow_exception(std::move(thrown));
        } catch (const ZentuScriptError& error) {
            raise_error(error);
        } catch (const KPL_Exception& failure) {
            raise_error(ZentuScriptError(failure.GetMessage()));
        }
    });
}
