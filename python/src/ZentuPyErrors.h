#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>

#include "ZentuFinding.h"

// A failure that a script sees as zentu.Error: a message with the file and line it is about,
// where it is about one.
class ZentuScriptError : public std::runtime_error {
  public:
    ZentuScriptError(std::string message, std::optional<std::string> path = std::nullopt,
                     std::optional<std::size_t> line = std::nullopt);

    std::string message;
    std::optional<std::string> path;
    std::optional<std::size_t> line;
};

// Throws the first error among the findings of the file at path as a ZentuScriptError; returns
// when there is none.
void throw_first_error(const std::string& path, const std::vector<ZentuFinding>& findings);

// Declares zentu.Error in the module and turns ZentuScriptError and every library failure into it.
void bind_errors(pybind11::module_& module);
