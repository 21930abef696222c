#pragma once

#include <string>

#include <pybind11/pybind11.h>

#include "ZentuJobSchema.h"

// The Python value of a JSON value: dict, list, str, int, float, bool or None, as json.loads
// gives for the text that `zentu-cmd` prints.
pybind11::object to_python(const ZentuJson& value);

// A text of the library as a Python str; bytes that are not UTF-8 become U+FFFD, as in the JSON
// that `zentu-cmd` prints.
pybind11::str to_python_text(const std::string& text);
