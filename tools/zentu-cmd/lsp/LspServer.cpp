#include "lsp/LspServer.h"

#include <istream>
#include <optional>
#include <ostream>

#include "ZentuCmdEngineVersion.h"
#include "lsp/LspFeatures.h"
#include "lsp/LspFraming.h"

using json = nlohmann::json;

namespace zentu_cmd::lsp {

namespace {

// The error codes of JSON-RPC and the protocol.
constexpr int PARSE_ERROR = -32700;
constexpr int INVALID_REQUEST = -32600;
constexpr int METHOD_NOT_FOUND = -32601;
constexpr int INVALID_PARAMS = -32602;
constexpr int INTERNAL_ERROR = -32603;
constexpr int SERVER_NOT_INITIALIZED = -32002;
constexpr int REQUEST_FAILED = -32803;
// Full text on every change.
constexpr int SYNC_FULL = 1;

// A failure to answer, with its protocol code.
struct Failure {
    int code;
    std::string message;
};

// Writes a message, replacing bytes that are no UTF-8 (a document may hold any).
void send(std::ostream& out, const json& message) {
    write_frame(out, message.dump(-1, ' ', false, json::error_handler_t::replace));
}

void send_error(std::ostream& out, const json& id, int code, const std::string& message) {
    send(out, {{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", code}, {"message", message}}}});
}

// The document of a request's textDocument.uri.
const std::string& uri_of(const json& params) {
    return params.at("textDocument").at("uri").get_ref<const std::string&>();
}

json capabilities() {
    return {{"textDocumentSync",
             {{"openClose", true}, {"change", SYNC_FULL}, {"save", {{"includeText", false}}}}},
            {"completionProvider", {{"triggerCharacters", {"=", "%"}}}},
            {"hoverProvider", true},
            {"definitionProvider", true},
            {"referencesProvider", true},
            {"renameProvider", {{"prepareProvider", true}}},
            {"documentSymbolProvider", true},
            {"foldingRangeProvider", true},
            {"documentFormattingProvider", true},
            {"codeActionProvider", {{"codeActionKinds", {"quickfix"}}}}};
}

// Whether a message is a request or notification as JSON-RPC 2.0 shapes them.
bool well_formed(const json& message) {
    if (!message.is_object() || !message.contains("method") || !message["method"].is_string()) {
        return false;
    }
    const auto id = message.find("id");
    return id == message.end() || id->is_string() || id->is_number_integer();
}

}  // namespace

LspServer::LspServer(std::optional<std::string> schemaPath)
    : schemaPath_(std::move(schemaPath)),
      requests_{{"textDocument/completion", completion},
                {"textDocument/hover", hover},
                {"textDocument/definition", definition},
                {"textDocument/references", references},
                {"textDocument/prepareRename", prepare_rename},
                {"textDocument/rename", rename},
                {"textDocument/documentSymbol", document_symbols},
                {"textDocument/foldingRange", folding_ranges},
                {"textDocument/formatting", formatting},
                {"textDocument/codeAction", code_actions}} {}

int LspServer::Run(std::istream& in, std::ostream& out) {
    for (Frame frame = read_frame(in); frame.status != Frame::Status::END; frame = read_frame(in)) {
        if (frame.status == Frame::Status::MALFORMED) {
            send_error(out, nullptr, PARSE_ERROR, "a message needs a Content-Length header");
        } else if (!Handle(frame.body, out)) {
            return shutDown_ ? 0 : 1;
        }
    }
    return 1;
}

bool LspServer::Handle(const std::string& body, std::ostream& out) {
    const json message = json::parse(body, nullptr, false);
    if (message.is_discarded()) {
        send_error(out, nullptr, PARSE_ERROR, "the message is not JSON");
        return true;
    }
    if (!well_formed(message)) {
        const json id = message.is_object() ? message.value("id", json()) : json();
        send_error(out, id.is_string() || id.is_number_integer() ? id : json(), INVALID_REQUEST,
                   "not a JSON-RPC request or notification");
        return true;
    }
    const std::string& method = message["method"].get_ref<const std::string&>();
    const json params = message.value("params", json::object());
    if (!message.contains("id")) {
        if (method == "exit") {
            return false;
        }
        try {
            Notice(method, params, out);
        } catch (const std::exception&) {
            // A notification has no reply to carry the failure; the server goes on.
        }
        return true;
    }
    const json& id = message["id"];
    try {
        send(out, {{"jsonrpc", "2.0"}, {"id", id}, {"result", Answer(method, params)}});
    } catch (const Failure& failure) {
        send_error(out, id, failure.code, failure.message);
    } catch (const RequestRefused& refusal) {
        send_error(out, id, REQUEST_FAILED, refusal.message);
    } catch (const json::exception& error) {
        send_error(out, id, INVALID_PARAMS, error.what());
    } catch (const std::out_of_range&) {
        send_error(out, id, INVALID_PARAMS, "the document is not open");
    } catch (const std::exception& error) {
        send_error(out, id, INTERNAL_ERROR, error.what());
    }
    return true;
}

json LspServer::Answer(const std::string& method, const json& params) {
    if (shutDown_) {
        throw Failure{INVALID_REQUEST, "the server is shut down"};
    }
    if (method == "initialize") {
        return Initialize(params);
    }
    if (!initialized_) {
        throw Failure{SERVER_NOT_INITIALIZED, "initialize first"};
    }
    if (method == "shutdown") {
        shutDown_ = true;
        return nullptr;
    }
    const auto request = requests_.find(method);
    if (request == requests_.end()) {
        throw Failure{METHOD_NOT_FOUND, "unknown method " + method};
    }
    return request->second(workspace_.Find(uri_of(params)), params);
}

json LspServer::Initialize(const json& params) {
    const json options = params.value("initializationOptions", json::object());
    const auto schema = options.is_object() ? options.find("schema") : options.end();
    workspace_.UseSchema(schema != options.end() && schema->is_string()
                             ? std::optional<std::string>(schema->get<std::string>())
                             : schemaPath_);
    initialized_ = true;
    return {{"capabilities", capabilities()},
            {"serverInfo", {{"name", "zentu-cmd"}, {"version", ZENTU_CMD_ENGINE_VERSION_STRING}}}};
}

void LspServer::Notice(const std::string& method, const json& params, std::ostream& out) {
    if (!initialized_ || shutDown_) {
        return;
    }
    if (method == "textDocument/didOpen") {
        const json& document = params.at("textDocument");
        send(out, diagnostics_notification(
                      workspace_.Update(uri_of(params), document.at("text").get<std::string>())));
    } else if (method == "textDocument/didChange") {
        // With full synchronisation, the last change holds the whole text.
        const json& changes = params.at("contentChanges");
        send(out,
             diagnostics_notification(workspace_.Update(
                 uri_of(params), changes.at(changes.size() - 1).at("text").get<std::string>())));
    } else if (method == "textDocument/didClose") {
        workspace_.Close(uri_of(params));
        send(out, {{"jsonrpc", "2.0"},
                   {"method", "textDocument/publishDiagnostics"},
                   {"params", {{"uri", uri_of(params)}, {"diagnostics", json::array()}}}});
    } else if (method == "textDocument/didSave") {
        // Saving is when schema files change too; the text is the one the server holds.
        std::string text = workspace_.Find(uri_of(params)).Document().Text();
        workspace_.ForgetSchemas();
        send(out, diagnostics_notification(workspace_.Update(uri_of(params), std::move(text))));
    }
}

}  // namespace zentu_cmd::lsp
