// The lossless formatter and what the library writer's layout would lose: the layout of every
// kind of line, that a formatted file reads to what the file read to and formats to itself, and
// how losses are found and named.
#include "ZentuJobFormatter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "ZentuCanonicalLosses.h"
#include "ZentuJobDocument.h"
#include "ZentuJobSchema.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"
#include "document_test_support.h"
#include "zentu_test_cases.h"

namespace {

const ZentuJobSchema& Schema() {
    static const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    return schema;
}

ZentuJobDocument Read(std::string text) {
    return ZentuJobDocument::FromText(std::move(text), "job.par",
                                      ZentuTypedJob::KeywordTestOf(Schema()));
}

// What a document reads to, names in upper case: keywords, items (':' for a name alone) with
// their values, and the comments.
std::vector<std::string> Reading(const ZentuJobDocument& document) {
    std::vector<std::string> reading;
    for (const ZentuDocumentCommand& command : document.Commands()) {
        reading.push_back(ZentuStringUtil::to_upper(command.keyword));
        for (const ZentuDocumentItem& item : command.items) {
            reading.push_back(ZentuStringUtil::to_upper(item.name) + (item.name_alone ? ":" : "=") +
                              item.value);
        }
    }
    for (std::size_t number = 1; number <= document.Lines().size(); ++number) {
        const ZentuParLine& scanned = document.Lines()[number - 1].scanned;
        if (scanned.kind == ZentuParLine::Kind::COMMENT) {
            reading.push_back(std::string(scanned.Name(document.LineText(number))));
        }
    }
    return reading;
}

// Formatting changes the layout only, and as each case shows.
TEST(FormatterTest, ChangesLayoutOnly) {
    for (const auto& c : zentu_test::DataCases("document/cases/formats.txt", 3)) {
        SCOPED_TRACE(c.where);
        const ZentuJobDocument document = Read(zentu_test::Bytes(c.fields[1]));
        const std::optional<std::string> formatted =
            ZentuJobFormatter::format_document(document, Schema());
        ASSERT_TRUE(formatted.has_value());
        EXPECT_EQ(*formatted, c.fields[2]);
        EXPECT_EQ(Reading(Read(*formatted)), Reading(document));
    }
}

// Every example reads the same after formatting, each comment line included, and formats to
// itself.
TEST(FormatterTest, KeepsEveryExampleAndFormatsItToItself) {
    for (const auto& entry : std::filesystem::directory_iterator(ZENTU_EXAMPLES_DIR)) {
        if (entry.path().extension() != ".par") {
            continue;
        }
        const ZentuJobDocument document = ZentuJobDocument::FromFile(entry.path().string());
        const std::string formatted = *ZentuJobFormatter::format_document(document, Schema());
        EXPECT_EQ(Reading(Read(formatted)), Reading(document)) << entry.path();
        EXPECT_EQ(ZentuJobFormatter::format_document(Read(formatted), Schema()), formatted)
            << entry.path();
    }
}

// A file whose structure is broken is not formatted at all.
TEST(FormatterTest, LeavesBrokenStructureAlone) {
    for (const char* text : {"STOP\n  ITER_MAX = 5\n", "END_\n", "STOP\nDV\nEND_\n", "A B\n"}) {
        EXPECT_FALSE(ZentuJobFormatter::can_format(Read(text))) << text;
        EXPECT_FALSE(ZentuJobFormatter::format_document(Read(text), Schema())) << text;
    }
    EXPECT_FALSE(ZentuJobFormatter::can_format(ZentuJobDocument::FromFile("no/such/job.par")));
}

// The losses name what the writer would drop or change, and nothing else.
TEST(CanonicalLossesTest, NamesWhatTheWriterWouldDropOrChange) {
    for (const auto& c : zentu_test::DataCases("document/cases/losses.txt", 4)) {
        SCOPED_TRACE(c.where);
        const ZentuTypedJob job = ZentuTypedJob::ReadText(
            zentu_test::Bytes(c.fields[2]), "job.par", Schema(),
            c.fields[1] == "FULL" ? ZentuCompletion::FULL : ZentuCompletion::NONE);
        ASSERT_FALSE(job.HasErrors());
        const ZentuCanonicalLosses losses = ZentuCanonicalLosses::Of(job, Schema());
        EXPECT_EQ(losses.Describe(), c.fields[3]);
        EXPECT_EQ(losses.Empty(), c.fields[3].empty());
    }
}

}  // namespace
