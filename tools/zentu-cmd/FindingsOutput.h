#pragma once

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "ZentuFinding.h"
#include "ZentuTypedJob.h"

namespace zentu_cmd {

// The forms in which findings are reported: lines for people, one JSON document, one SARIF 2.1.0
// log for code-scanning tools, or GitHub Actions workflow commands.
enum class FindingsFormat { TEXT, JSON, SARIF, GITHUB };

// The formats under the names that --format takes.
const std::map<std::string, FindingsFormat>& findings_formats();

// Prints a finding as "name:line: severity[code]: message" (an io finding without line).
void print_finding_text(const std::string& name, const ZentuFinding& finding, std::ostream& out);

// Prints every finding of a file in text form.
void print_findings_text(const std::string& name, const std::vector<ZentuFinding>& findings,
                         std::ostream& out);

// Prints a JSON document indented, with a replacement character for every byte that is not
// UTF-8, since the texts of a job file may be in any encoding.
void print_json(const nlohmann::ordered_json& document, std::ostream& out);

// Reports what reading files found in one format, file after file.
class FindingsReport {
  public:
    virtual ~FindingsReport() = default;
    // Adds the findings of one file; name is how the file is shown.
    virtual void Add(const std::string& name, const ZentuTypedJob& job) = 0;
    // Completes the report once every file is in: the formats that are one document print it.
    virtual void Finish() {}
};

// A report in the format to out; summaries adds, in text, a line about each file's contents.
std::unique_ptr<FindingsReport> make_findings_report(FindingsFormat format, std::ostream& out,
                                                     bool summaries);

}  // namespace zentu_cmd
