#include "ZentuPyJson.h"

namespace py = pybind11;

py::str to_python_text(const std::string& text) {
    return py::reinterpret_steal<py::str>(
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace"));
}

py::object to_python(const ZentuJson& value) {
    switch (value.type()) {
        case ZentuJson::value_t::object: {
            py::dict object;
            for (const auto& [key, member] : value.items()) {
                object[to_python_text(key)] = to_python(member);
            }
            return std::move(object);
        }
        case ZentuJson::value_t::array: {
            py::list array;
            for (const ZentuJson& element : value) {
                array.append(to_python(element));
            }
            return std::move(array);
        }
        case ZentuJson::value_t::string:
            return to_python_text(value.get_ref<const std::string&>());
        case ZentuJson::value_t::boolean:
            return py::bool_(value.get<bool>());
        case ZentuJson::value_t::number_integer:
            return py::int_(value.get<std::int64_t>());
        case ZentuJson::value_t::number_unsigned:
            return py::int_(value.get<std::uint64_t>());
        case ZentuJson::value_t::number_float:
            return py::float_(value.get<double>());
        default:
            return py::none();
    }
}
