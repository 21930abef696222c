#pragma once

#include <pybind11/pybind11.h>

// Declares zentu.Finding, whose fields are those of `zentu-cmd check --format json`.
void bind_finding(pybind11::module_& module);
