#include "FindingsOutput.h"

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>

#include "ZentuCmd.h"
#include "ZentuJobJson.h"

using json = nlohmann::ordered_json;
using ZentuCmdDefs::Cmd;

namespace zentu_cmd {

namespace {

// The SARIF version written and the schema that describes it.
constexpr const char* SARIF_VERSION = "2.1.0";
constexpr const char* SARIF_SCHEMA = "https://json.schemastore.org/sarif-2.1.0.json";
// The name under which code-scanning tools show where the findings come from.
constexpr const char* TOOL_NAME = "zentu-cmd";

// The number of errors and warnings among findings.
struct Tally {
    std::size_t errors = 0;
    std::size_t warnings = 0;

    void Count(const std::vector<ZentuFinding>& findings) {
        for (const ZentuFinding& finding : findings) {
            errors += finding.severity == ZentuSeverity::ERROR ? 1 : 0;
            warnings += finding.severity == ZentuSeverity::WARNING ? 1 : 0;
        }
    }
};

// "1 error", "2 errors".
std::string counted(std::size_t number, const char* singular, const char* plural) {
    return std::to_string(number) + " " + (number == 1 ? singular : plural);
}

// "name: N commands (KIND n, ...); references: r resolved, u unresolved; e errors, w warnings".
void print_summary(const std::string& name, const ZentuTypedJob& job, const Tally& tally,
                   std::ostream& out) {
    std::map<Cmd, std::size_t> perKind;
    for (const ZentuCmd& command : job.Container()) {
        ++perKind[command.GetType()];
    }
    std::size_t total = 0;
    std::string kinds;
    for (const auto& [kind, number] : perKind) {
        total += number;
        kinds += (kinds.empty() ? "" : ", ") +
                 ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)] + " " +
                 std::to_string(number);
    }
    out << name << ": " << counted(total, "command", "commands");
    if (!kinds.empty()) {
        out << " (" << kinds << ")";
    }
    out << "; references: " << job.ResolvedReferences() << " resolved, "
        << job.UnresolvedReferences() << " unresolved; " << counted(tally.errors, "error", "errors")
        << ", " << counted(tally.warnings, "warning", "warnings") << "\n";
}

// "name:line: severity[code]: message" per finding, and a summary line per file when asked.
class TextReport : public FindingsReport {
  public:
    TextReport(std::ostream& out, bool summaries) : out_(out), summaries_(summaries) {}

    void Add(const std::string& name, const ZentuTypedJob& job) override {
        print_findings_text(name, job.Findings(), out_);
        if (summaries_) {
            Tally tally;
            tally.Count(job.Findings());
            print_summary(name, job, tally, out_);
        }
    }

  private:
    std::ostream& out_;
    bool summaries_;
};

// {"files": [{"path", "diagnostics"}], "errors", "warnings"}; every key always present, null
// where a finding has no place or no suggestion.
class JsonReport : public FindingsReport {
  public:
    explicit JsonReport(std::ostream& out) : out_(out) {}

    void Add(const std::string& name, const ZentuTypedJob& job) override {
        json diagnostics = json::array();
        for (const ZentuFinding& finding : job.Findings()) {
            diagnostics.push_back(ZentuJobJson::finding(finding));
        }
        tally_.Count(job.Findings());
        files_.push_back({{"path", name}, {"diagnostics", std::move(diagnostics)}});
    }

    void Finish() override {
        print_json({{"files", files_}, {"errors", tally_.errors}, {"warnings", tally_.warnings}},
                   out_);
    }

  private:
    std::ostream& out_;
    json files_ = json::array();
    Tally tally_;
};

// Whether a byte may stand as it is in a URI path (strchr would also find the terminating NUL).
bool unreserved_in_uri(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           (c != '\0' && std::strchr("-._~/", c) != nullptr);
}

// The path as a URI reference: a relative path stays relative, an absolute one becomes a file
// URI, and every other byte than the unreserved ones and "/" is percent-encoded.
std::string uri_of(const std::string& path) {
    static constexpr const char* HEX = "0123456789ABCDEF";
    std::string uri = !path.empty() && path.front() == '/' ? "file://" : "";
    for (const unsigned char c : path) {
        if (unreserved_in_uri(c)) {
            uri += static_cast<char>(c);
        } else {
            uri += {'%', HEX[c >> 4], HEX[c & 0xF]};
        }
    }
    return uri;
}

// A range as a SARIF region; its columns count characters, as the run declares.
json sarif_region(const ZentuTextRange& range) {
    return {{"startLine", range.line},
            {"startColumn", range.column},
            {"endLine", range.end_line},
            {"endColumn", range.end_column}};
}

// Where a finding is: its file, and its region when it has a place.
json sarif_location(const std::string& uri, const ZentuFinding& finding) {
    json physical = {{"artifactLocation", {{"uri", uri}}}};
    if (zentu_has_place(finding)) {
        physical["region"] = sarif_region(finding.range);
    }
    return {{"physicalLocation", std::move(physical)}};
}

// The suggestion as a fix: the text probably meant in place of the finding's range.
json sarif_fix(const std::string& uri, const ZentuFinding& finding) {
    const json replacement = {{"deletedRegion", sarif_region(finding.range)},
                              {"insertedContent", {{"text", *finding.suggestion}}}};
    const json change = {{"artifactLocation", {{"uri", uri}}},
                         {"replacements", json::array({replacement})}};
    return {{"artifactChanges", json::array({change})}};
}

// Every code as a rule, at the index that results name it by.
json sarif_rules(const std::vector<std::string>& codes) {
    json rules = json::array();
    for (const std::string& code : codes) {
        rules.push_back({{"id", code},
                         {"defaultConfiguration",
                          {{"level", zentu_severity_name(ZentuFindingCodes::severity_of(code))}}}});
    }
    return rules;
}

// One SARIF 2.1.0 log with one run; columns count characters as the findings do.
class SarifReport : public FindingsReport {
  public:
    explicit SarifReport(std::ostream& out) : out_(out), codes_(ZentuFindingCodes::all()) {}

    void Add(const std::string& name, const ZentuTypedJob& job) override {
        const std::string uri = uri_of(name);
        for (const ZentuFinding& finding : job.Findings()) {
            results_.push_back(ResultOf(uri, finding));
        }
    }

    void Finish() override {
        const json run = {
            {"tool", {{"driver", {{"name", TOOL_NAME}, {"rules", sarif_rules(codes_)}}}}},
            {"columnKind", "unicodeCodePoints"},
            {"results", results_}};
        print_json({{"$schema", SARIF_SCHEMA}, {"version", SARIF_VERSION}, {"runs", {run}}}, out_);
    }

  private:
    // A finding as a SARIF result, its rule named by code and by index.
    json ResultOf(const std::string& uri, const ZentuFinding& finding) const {
        json result = {{"ruleId", finding.code}};
        const auto rule = std::find(codes_.begin(), codes_.end(), finding.code);
        if (rule != codes_.end()) {
            result["ruleIndex"] = rule - codes_.begin();
        }
        result["level"] = zentu_severity_name(finding.severity);
        result["message"] = {{"text", finding.message}};
        result["locations"] = json::array({sarif_location(uri, finding)});
        if (finding.suggestion && zentu_has_place(finding)) {
            result["fixes"] = json::array({sarif_fix(uri, finding)});
        }
        return result;
    }

    std::ostream& out_;
    const std::vector<std::string> codes_;
    json results_ = json::array();
};

// A workflow command ends at its line feed, and its properties are separated by "," and ":", so
// those are percent-encoded where they would end a part early.
std::string github_escaped(const std::string& text, bool property) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '%':
                escaped += "%25";
                break;
            case '\r':
                escaped += "%0D";
                break;
            case '\n':
                escaped += "%0A";
                break;
            case ':':
                escaped += property ? "%3A" : ":";
                break;
            case ',':
                escaped += property ? "%2C" : ",";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

// GitHub's command for a severity: a note is a notice there.
const char* github_command(ZentuSeverity severity) {
    return severity == ZentuSeverity::NOTE ? "notice" : zentu_severity_name(severity);
}

// "::warning file=job.par,line=8,col=11,endLine=8,endColumn=23,title=code::message" per finding.
class GithubReport : public FindingsReport {
  public:
    explicit GithubReport(std::ostream& out) : out_(out) {}

    void Add(const std::string& name, const ZentuTypedJob& job) override {
        const std::string file = github_escaped(name, true);
        for (const ZentuFinding& finding : job.Findings()) {
            out_ << "::" << github_command(finding.severity) << " file=" << file;
            if (zentu_has_place(finding)) {
                const ZentuTextRange& range = finding.range;
                out_ << ",line=" << range.line << ",col=" << range.column
                     << ",endLine=" << range.end_line << ",endColumn=" << range.end_column;
            }
            out_ << ",title=" << github_escaped(finding.code, true)
                 << "::" << github_escaped(finding.message, false) << "\n";
        }
    }

  private:
    std::ostream& out_;
};

}  // namespace

const std::map<std::string, FindingsFormat>& findings_formats() {
    static const std::map<std::string, FindingsFormat> formats = {
        {"text", FindingsFormat::TEXT},
        {"json", FindingsFormat::JSON},
        {"sarif", FindingsFormat::SARIF},
        {"github", FindingsFormat::GITHUB}};
    return formats;
}

namespace {

// A finding in text form, line end included.
std::string finding_text(const std::string& name, const ZentuFinding& finding) {
    std::string text = name;
    if (zentu_has_place(finding)) {
        text += ":" + std::to_string(finding.range.line);
    }
    text += ": ";
    text += zentu_severity_name(finding.severity);
    text += "[" + finding.code + "]: " + finding.message + "\n";
    return text;
}

}  // namespace

void print_finding_text(const std::string& name, const ZentuFinding& finding, std::ostream& out) {
    out << finding_text(name, finding);
}

// The findings are gathered into large pieces before they are printed: standard error has no
// buffer, and a job can have a finding per command.
void print_findings_text(const std::string& name, const std::vector<ZentuFinding>& findings,
                         std::ostream& out) {
    constexpr std::size_t PIECE_SIZE = std::size_t{1} << 16;
    std::string piece;
    for (const ZentuFinding& finding : findings) {
        piece += finding_text(name, finding);
        if (piece.size() >= PIECE_SIZE) {
            out << piece;
            piece.clear();
        }
    }
    out << piece;
}

void print_json(const json& document, std::ostream& out) {
    out << document.dump(2, ' ', false, json::error_handler_t::replace) << "\n";
}

std::unique_ptr<FindingsReport> make_findings_report(FindingsFormat format, std::ostream& out,
                                                     bool summaries) {
    switch (format) {
        case FindingsFormat::JSON:
            return std::make_unique<JsonReport>(out);
        case FindingsFormat::SARIF:
            return std::make_unique<SarifReport>(out);
        case FindingsFormat::GITHUB:
            return std::make_unique<GithubReport>(out);
        case FindingsFormat::TEXT:
            break;
    }
    return std::make_unique<TextReport>(out, summaries);
}

}  // namespace zentu_cmd
