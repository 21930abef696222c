#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ZentuFinding.h"
#include "ZentuJobNavigator.h"
#include "ZentuJobSchema.h"
#include "ZentuTypedJob.h"

namespace zentu_cmd::lsp {

// A job file open in the editor, read anew with its schema at every change: what every request
// about it is answered from.
struct LspDocument {
    std::string uri;
    // Where discovery looks for the schema; empty for a document without file.
    std::string path;
    const ZentuJobSchema* schema = nullptr;
    std::unique_ptr<ZentuTypedJob> job;
    // Navigates job with schema; both outlive it.
    std::unique_ptr<ZentuJobNavigator> navigator;
    // The findings to publish: the job's, and the failure to load its own schema.
    std::vector<ZentuFinding> findings;

    const ZentuJobDocument& Document() const { return job->Document(); }
};

}  // namespace zentu_cmd::lsp
