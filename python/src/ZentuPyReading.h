#pragma once

#include <pybind11/pybind11.h>

// Declares zentu.read, zentu.check and zentu.format: one file or text in, read as zentu-cmd reads
// it.
void bind_reading(pybind11::module_& module);
