#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "lsp/LspServer.h"
#include "zentu_test_cases.h"

using json = nlohmann::json;

namespace {

const char* const URI = "untitled:job.par";

// A response named by an expression term that follows a character beyond the basic plane, so
// that UTF-16 columns differ from character and byte columns; and a misspelt reference.
const char* const JOB =
    "DRESP\n  ID_NAME = c1\n  TYPE = VOLUME\nEND_\n\n"
    "OPERATOR\n  ID_NAME = op\n  ADD_FILE = %\xF0\x9F\x98\x80% + %C1%\nEND_\n\n"
    "OBJ_FUNC\n  ID_NAME = goal\n  DRESP = cc1\nEND_\n";

std::string frame(const std::string& body) {
    return "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

json request(int id, const std::string& method, json params) {
    return {{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", std::move(params)}};
}

json range(int line, int start, int endLine, int end) {
    return {{"start", {{"line", line}, {"character", start}}},
            {"end", {{"line", endLine}, {"character", end}}}};
}

const std::string INITIALIZE = frame(request(0, "initialize", json::object()).dump());
const std::string OPEN =
    frame(json{{"jsonrpc", "2.0"},
               {"method", "textDocument/didOpen"},
               {"params", {{"textDocument", {{"uri", URI}, {"version", 1}, {"text", JOB}}}}}}
              .dump());

struct Session {
    int status = 0;
    std::vector<json> messages;

    // The message that answers the request id.
    const json& Reply(int id) const {
        for (const json& message : messages) {
            if (message.value("id", json()) == id) {
                return message;
            }
        }
        throw std::runtime_error("no reply to " + std::to_string(id));
    }
};

Session serve(const std::string& input) {
    std::istringstream in(input);
    std::ostringstream out;
    Session session;
    session.status = zentu_cmd::lsp::LspServer().Run(in, out);
    std::istringstream replies(out.str());
    std::string header;
    while (std::getline(replies, header)) {
        std::string blank;
        std::getline(replies, blank);
        std::string body(std::stoul(header.substr(header.find(':') + 1)), '\0');
        replies.read(&body[0], static_cast<std::streamsize>(body.size()));
        session.messages.push_back(json::parse(body));
    }
    return session;
}

TEST(LanguageServer, PublishesFindingsInUtf16Columns) {
    const Session session = serve(INITIALIZE + OPEN);
    const json& published = session.messages.at(1);
    ASSERT_EQ(published["method"], "textDocument/publishDiagnostics");
    std::vector<std::pair<std::string, json>> found;
    for (const json& diagnostic : published["params"]["diagnostics"]) {
        found.emplace_back(diagnostic["code"], diagnostic["range"]);
    }
    EXPECT_EQ(found, (std::vector<std::pair<std::string, json>>{
                         {"unused-command", range(0, 0, 0, 5)},
                         {"unused-command", range(5, 0, 5, 8)},
                         {"expression-syntax", range(7, 13, 7, 17)},
                         {"dangling-reference", range(12, 10, 12, 13)}}));
}

TEST(LanguageServer, ReadsEachDocumentWithTheSchemaThatItNames) {
    // A percent escape in the file's URI ("%61" for 'a') must lead to the examples' folder.
    const std::string examples = ZENTU_EXAMPLES_DIR;
    const std::string uri =
        "file://" + examples.substr(0, examples.rfind('/')) + "/ex%61mples/j.par";
    const std::string text = "# zentu-cmd: schema=custom_schema.json\nPANEL\n  ID_NAME = p\nEND_\n";
    const json open = {{"jsonrpc", "2.0"},
                       {"method", "textDocument/didOpen"},
                       {"params", {{"textDocument", {{"uri", uri}, {"text", text}}}}}};
    const Session session = serve(INITIALIZE + frame(open.dump()));
    EXPECT_EQ(session.messages.at(1)["params"]["diagnostics"], json::array());
}

// Each request about the document, sent in turn, gets what its case expects at the case's JSON
// pointer into the reply ("missing" where the reply has nothing there).
TEST(LanguageServer, AnswersRequestsAboutTheDocument) {
    const auto cases = zentu_test::DataCases("lsp/cases/requests.txt", 5);
    std::string input = INITIALIZE + OPEN;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const json params = json::parse(cases[i].fields[2]);
        input += frame(request(static_cast<int>(i + 1), cases[i].fields[1], params).dump());
    }
    const Session session = serve(input);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(cases[i].where + ": " + cases[i].fields[0]);
        const json& reply = session.Reply(static_cast<int>(i + 1));
        EXPECT_EQ(reply.value(json::json_pointer(cases[i].fields[3]), json("missing")),
                  json::parse(cases[i].fields[4]));
    }
}

TEST(LanguageServer, AnswersWhatItCannotServeAndGoesOn) {
    const std::string shutdown = frame(request(9, "shutdown", nullptr).dump());
    const std::string exitNotice = frame(R"({"jsonrpc":"2.0","method":"exit"})");
    const json position = {{"textDocument", {{"uri", URI}}},
                           {"position", {{"line", 0}, {"character", 0}}}};
    const std::string hover = frame(request(7, "textDocument/hover", position).dump());
    const struct {
        std::string input;
        std::vector<json> errors;
        int status;
    } cases[] = {
        {frame("{not json") + INITIALIZE + exitNotice, {-32700}, 1},
        {"X-Other: 1\r\n\r\n" + INITIALIZE + shutdown + exitNotice, {-32700}, 0},
        {frame("[]") + frame(R"({"jsonrpc":"2.0","id":3})") + INITIALIZE + exitNotice,
         {-32600, -32600},
         1},
        {hover + INITIALIZE + shutdown + hover + exitNotice, {-32002, -32600}, 0},
        {INITIALIZE + frame(R"({"jsonrpc":"2.0","method":"textDocument/didChange","params":{}})") +
             frame(R"({"jsonrpc":"2.0","method":"$/unknown"})"),
         {},
         1},
        {INITIALIZE + "Content-Length: 99\r\n\r\n{", {}, 1},
    };
    for (const auto& test : cases) {
        const Session session = serve(test.input);
        std::vector<json> errors;
        for (const json& message : session.messages) {
            if (message.contains("error")) {
                errors.push_back(message["error"]["code"]);
            }
        }
        EXPECT_EQ(errors, test.errors) << test.input;
        EXPECT_EQ(session.status, test.status) << test.input;
    }
}

}  // namespace
