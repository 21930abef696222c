#include "lsp/LspWorkspace.h"

#include "KPL_Failure.h"
#include "lsp/LspPositions.h"

namespace zentu_cmd::lsp {

namespace {

// The protocol's severities of diagnostics.
constexpr int ERROR_SEVERITY = 1;
constexpr int WARNING_SEVERITY = 2;
constexpr int INFORMATION_SEVERITY = 3;
// The source that diagnostics name.
constexpr const char* SOURCE = "zentu-cmd";

int severity_of(ZentuSeverity severity) {
    switch (severity) {
        case ZentuSeverity::ERROR:
            return ERROR_SEVERITY;
        case ZentuSeverity::WARNING:
            return WARNING_SEVERITY;
        case ZentuSeverity::NOTE:
            break;
    }
    return INFORMATION_SEVERITY;
}

}  // namespace

void LspWorkspace::UseSchema(std::optional<std::string> path) {
    schemaPath_ = std::move(path);
    ForgetSchemas();
}

void LspWorkspace::ForgetSchemas() {
    schemas_ = ZentuSchemaCache(schemaPath_);
}

const LspDocument& LspWorkspace::Update(const std::string& uri, std::string text) {
    LspDocument& document = documents_[uri];
    document.uri = uri;
    document.path = path_of_uri(uri);
    document.findings.clear();
    document.navigator.reset();
    document.schema = &SchemaOf(document, text);
    document.job = std::make_unique<ZentuTypedJob>(ZentuTypedJob::ReadText(
        std::move(text), document.path, *document.schema, ZentuCompletion::FULL));
    document.navigator = std::make_unique<ZentuJobNavigator>(*document.job, *document.schema);
    const auto& findings = document.job->Findings();
    document.findings.insert(document.findings.end(), findings.begin(), findings.end());
    return document;
}

const ZentuJobSchema& LspWorkspace::SchemaOf(LspDocument& document, const std::string& text) {
    try {
        return schemas_.For(document.path, text);
    } catch (const KPL_Exception& failure) {
        document.findings.push_back(
            zentu_finding(ZentuFindingCodes::IO, failure.GetMessage(), ZentuTextRange{}));
        return builtin_;
    }
}

void LspWorkspace::Close(const std::string& uri) {
    documents_.erase(uri);
}

const LspDocument& LspWorkspace::Find(const std::string& uri) const {
    return documents_.at(uri);
}

nlohmann::json diagnostics_notification(const LspDocument& document) {
    nlohmann::json diagnostics = nlohmann::json::array();
    for (const ZentuFinding& finding : document.findings) {
        diagnostics.push_back({{"range", range_of(document.Document(), finding.range)},
                               {"severity", severity_of(finding.severity)},
                               {"code", finding.code},
                               {"source", SOURCE},
                               {"message", finding.message}});
    }
    return {{"jsonrpc", "2.0"},
            {"method", "textDocument/publishDiagnostics"},
            {"params", {{"uri", document.uri}, {"diagnostics", std::move(diagnostics)}}}};
}

}  // namespace zentu_cmd::lsp
