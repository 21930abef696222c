#pragma once

#include <nlohmann/json.hpp>

#include "lsp/LspDocument.h"

namespace zentu_cmd::lsp {

// The answers to the requests about one document, each a function of the document and the
// request's parameters, returning the protocol's result. They throw nlohmann::json::exception for
// parameters that lack what the request needs, and RequestRefused for a request that cannot be
// done as asked.

// A request that is well formed but cannot be done, such as a rename to a text that is no
// identifier.
struct RequestRefused {
    std::string message;
};

nlohmann::json completion(const LspDocument& document, const nlohmann::json& params);
nlohmann::json hover(const LspDocument& document, const nlohmann::json& params);
nlohmann::json definition(const LspDocument& document, const nlohmann::json& params);
nlohmann::json references(const LspDocument& document, const nlohmann::json& params);
nlohmann::json prepare_rename(const LspDocument& document, const nlohmann::json& params);
nlohmann::json rename(const LspDocument& document, const nlohmann::json& params);
nlohmann::json document_symbols(const LspDocument& document, const nlohmann::json& params);
nlohmann::json folding_ranges(const LspDocument& document, const nlohmann::json& params);
nlohmann::json formatting(const LspDocument& document, const nlohmann::json& params);
nlohmann::json code_actions(const LspDocument& document, const nlohmann::json& params);

}  // namespace zentu_cmd::lsp
