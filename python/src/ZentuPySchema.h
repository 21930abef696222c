#pragma once

#include <memory>

#include <pybind11/pybind11.h>

#include "ZentuJobSchema.h"

// A schema as scripts hold it: shared by every job read with it, which it must outlive.
using ZentuSchemaHandle = std::shared_ptr<ZentuJobSchema>;

// The schema that a script passed, or the built-in one for None; the built-in one is parsed once.
ZentuSchemaHandle schema_or_builtin(const ZentuSchemaHandle& schema);

// Declares zentu.Schema.
void bind_schema(pybind11::module_& module);
