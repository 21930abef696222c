#pragma once

#include <functional>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "lsp/LspWorkspace.h"

namespace zentu_cmd::lsp {

// The language server: reads JSON-RPC messages from a stream, answers requests and publishes
// findings on another, until the client sends exit or the stream ends. Every message is
// answered as the protocol says, malformed ones with an error, and none but exit ends it.
class LspServer {
  public:
    // The schema path, when given, serves every document unless the client names another.
    explicit LspServer(std::optional<std::string> schemaPath = {});

    // Serves until exit or the end of the input; returns the exit status that the protocol asks
    // for: 0 after shutdown, 1 otherwise.
    int Run(std::istream& in, std::ostream& out);
    // Handles one message body, writing every reply and notification to out. Returns false once
    // the client has asked the server to exit.
    bool Handle(const std::string& body, std::ostream& out);

  private:
    // An answer to a request about an open document.
    using DocumentRequest =
        std::function<nlohmann::json(const LspDocument&, const nlohmann::json&)>;

    // Answers a request; returns its result or throws.
    nlohmann::json Answer(const std::string& method, const nlohmann::json& params);
    // Acts on a notification.
    void Notice(const std::string& method, const nlohmann::json& params, std::ostream& out);
    nlohmann::json Initialize(const nlohmann::json& params);

    std::optional<std::string> schemaPath_;
    LspWorkspace workspace_;
    std::map<std::string, DocumentRequest> requests_;
    bool initialized_ = false;
    bool shutDown_ = false;
};

}  // namespace zentu_cmd::lsp
