#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../tests/engine/engine_test_support.h"
#include "ZentuJobDocument.h"
#include "ZentuJobFormatter.h"
#include "ZentuJobJson.h"
#include "ZentuJobSchema.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"
#include "document_ranges.h"
#include "fuzz_support.h"

namespace {

// Built once, as a front end does; the document's keyword test refers to it.
const ZentuJobSchema& Schema() {
    static const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    return schema;
}

// Every place that the document gives for its commands and items lies inside the text.
void RequireLocated(const ZentuJobDocument& document) {
    for (const ZentuDocumentCommand& command : document.Commands()) {
        zentu_fuzz::RequireInside(document, command.keyword_range,
                                  "a keyword lies inside the text");
        for (const ZentuDocumentItem& item : command.items) {
            zentu_fuzz::RequireInside(document, item.name_range,
                                      "an item's name lies inside the text");
            zentu_fuzz::RequireInside(document, item.value_range,
                                      "an item's value lies inside the text");
        }
    }
}

ZentuJobDocument Read(const std::string& text) {
    return ZentuJobDocument::FromText(text, "fuzz.par", ZentuTypedJob::KeywordTestOf(Schema()));
}

// The commands and items that a text reads to, typed but not completed (completing runs rules
// that look keywords up as written, which formatting may raise), command names in upper case.
std::vector<std::string> Contents(const std::string& text) {
    const ZentuTypedJob job(Read(text), Schema(), ZentuCompletion::NONE);
    std::vector<std::string> lines;
    for (const ZentuCmd& command : job.Container()) {
        const std::string line = zentu_test::CmdLine(command);
        lines.push_back(ZentuStringUtil::to_upper(command.GetName()) +
                        line.substr(command.GetName().size()));
    }
    return lines;
}

// Formatting changes layout only: the formatted text reads without structural problems to the
// same commands and items, and formats to itself.
void RequireFormatKeepsTheJob(const ZentuJobDocument& document, const std::string& text) {
    const std::optional<std::string> formatted =
        ZentuJobFormatter::format_document(document, Schema());
    zentu_fuzz::Require(formatted.has_value() == ZentuJobFormatter::can_format(document),
                        "a document formats exactly when it can be formatted");
    if (!formatted) {
        return;
    }
    const ZentuJobDocument again = Read(*formatted);
    zentu_fuzz::Require(!again.HasErrors(), "a formatted text reads without structural errors");
    zentu_fuzz::Require(ZentuJobFormatter::format_document(again, Schema()) == formatted,
                        "a formatted text formats to itself");
    zentu_fuzz::Require(Contents(*formatted) == Contents(text),
                        "a formatted text reads to the same commands and items");
}

// The JSON that dump writes piece by piece is the text of the job's JSON value.
void RequireDumpWrittenAsTheValue(const ZentuTypedJob& job) {
    std::ostringstream written;
    ZentuJobJson::write_job("fuzz.par", job, written);
    zentu_fuzz::Require(
        written.str() == ZentuJobJson::job("fuzz.par", job)
                             .dump(2, ' ', false, ZentuJson::error_handler_t::replace),
        "dump writes the text of the job's JSON value");
}

}  // namespace

// Runs once before the first input, so that every input meets the same library setup.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zentu_fuzz::PrepareLibrary();
    static_cast<void>(Schema());
    return 0;
}

// libFuzzer's entry point: any abort, sanitizer report or escaping exception is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = zentu_fuzz::TextOf(data, size);
    ZentuJobDocument document = Read(text);
    zentu_fuzz::Require(document.Text() == text, "the document keeps the text byte for byte");
    RequireLocated(document);
    RequireFormatKeepsTheJob(document, text);
    const ZentuTypedJob job(std::move(document), Schema(), ZentuCompletion::FULL);
    for (const ZentuFinding& finding : job.Findings()) {
        zentu_fuzz::RequireInside(job.Document(), finding.range, "a finding lies inside the text");
    }
    RequireDumpWrittenAsTheValue(job);
    return 0;
}
