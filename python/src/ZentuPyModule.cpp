// The extension module zentu._zentu: the job-document library for Python scripts.
#include <pybind11/pybind11.h>

#include "KPL_LogMacros.h"
#include "ZentuPyCommand.h"
#include "ZentuPyErrors.h"
#include "ZentuPyFinding.h"
#include "ZentuPyItem.h"
#include "ZentuPyJob.h"
#include "ZentuPyReading.h"
#include "ZentuPySchema.h"

PYBIND11_MODULE(_zentu, module) {
    module.doc() = "Reads, checks, formats and edits structural-optimisation job files.";
    // Scripts learn of problems through findings and zentu.Error; the library's log lines about
    // the same problems would only repeat them on standard error.
    KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_ERROR);
    bind_errors(module);
    bind_schema(module);
    bind_finding(module);
    bind_item(module);
    bind_command(module);
    bind_job(module);
    bind_reading(module);
}
