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

namespace {

using namespace std::string_literals;

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

struct FormatCase {
    const char* what;
    std::string text;
    std::string formatted;
};

const std::vector<FormatCase> kFormatCases = {
    {"described names raised, undescribed ones and values as written, one blank around '='",
     "dv\n  id_name=d1\n  lower   =  0.0005\n  Foo=Bar = x\nEND_\nnoted\n  Some = thing\nend_\n",
     "DV\n  ID_NAME = d1\n  LOWER = 0.0005\n  Foo = Bar = x\nEND_\n\nnoted\n  Some = "
     "thing\nEND_\n"},
    {"comments stay in place, runs of empty lines become one, none leads, trails or opens",
     "\n\n  # head\n\n\n# before DV\nDV\n\n# first\n  ID_NAME = d1\n\n\n  LOWER = 1\n"
     "   # end of DV  \n\nEND_\n# before STOP\nSTOP\nEND_\n\n# tail\n\n",
     "# head\n\n# before DV\nDV\n  # first\n  ID_NAME = d1\n\n  LOWER = 1\n  # end of DV\nEND_\n"
     "\n# before STOP\nSTOP\nEND_\n\n# tail\n"},
    {"value lines indented anew; the empty lines and comments among them stay",
     "GROUP_DEF\n  element_group\n      1-5,\n\n\t# skip\n   7-9\n\n  ID_NAME = g\nEND_\n",
     "GROUP_DEF\n  ELEMENT_GROUP\n  1-5,\n\n  # skip\n  7-9\n\n  ID_NAME = g\nEND_\n"},
    {"a value line that looks like a name stays as written; two lists stay two",
     "GROUP_DEF\n  NODE_GROUP\n  element_group\n  1\n  node_group\n  2\nEND_\n",
     "GROUP_DEF\n  NODE_GROUP\n  element_group\n  1\n  NODE_GROUP\n  2\nEND_\n"},
    {"CR LF, a byte-order mark, tabs and trailing blanks go",
     "\xEF\xBB\xBFSTOP \r\n\tITER_MAX\t=\t5 \r\n\r\nEND_\r\n", "STOP\n  ITER_MAX = 5\nEND_\n"},
    {"items without name or value; a last line without line feed", "STOP\n=5\n VALUE=\n =\nEND_",
     "STOP\n  = 5\n  VALUE =\n  =\nEND_\n"},
    {"nothing but empty lines", " \n\n\t\n", ""},
};

TEST(FormatterTest, ChangesLayoutOnly) {
    for (const FormatCase& test : kFormatCases) {
        const ZentuJobDocument document = Read(test.text);
        const std::optional<std::string> formatted =
            ZentuJobFormatter::format_document(document, Schema());
        ASSERT_TRUE(formatted.has_value()) << test.what;
        EXPECT_EQ(*formatted, test.formatted) << test.what;
        EXPECT_EQ(Reading(Read(*formatted)), Reading(document)) << test.what;
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

TEST(FormatterTest, LeavesBrokenStructureAlone) {
    for (const char* text : {"STOP\n  ITER_MAX = 5\n", "END_\n", "STOP\nDV\nEND_\n", "A B\n"}) {
        EXPECT_FALSE(ZentuJobFormatter::can_format(Read(text))) << text;
        EXPECT_FALSE(ZentuJobFormatter::format_document(Read(text), Schema())) << text;
    }
    EXPECT_FALSE(ZentuJobFormatter::can_format(ZentuJobDocument::FromFile("no/such/job.par")));
}

struct LossCase {
    const char* what;
    ZentuCompletion completion;
    std::string text;
    std::string described;
};

const std::vector<LossCase> kLossCases = {
    {"letter case, trailing empty value lines and layout are no loss", ZentuCompletion::NONE,
     "stop\n  id_name = s\n  VALUE=0.5\nEND_\nGROUP_DEF\n  ELEMENT_GROUP\n    1-5\n\nEND_\n", ""},
    {"comments and numbers written anew", ZentuCompletion::NONE,
     "# a\nSTOP\n  # b\n  ITER_MAX = 007\n  VALUE = 1.0\nEND_\n",
     "drop 2 comment lines and rewrite 2 number texts (line 4: 007 -> 7, line 5: 1.0 -> 1)"},
    {"an undescribed command with items; one without loses nothing", ZentuCompletion::NONE,
     "OPTIMISE\n  ID_NAME = t\nEND_\nEMPTY\nEND_\nSTOP\n  iter = 5\n  = 3\nEND_\n",
     "drop 1 undescribed command (line 1) and 2 undescribed items (lines 7, 8)"},
    {"places beyond three cut short, in file order", ZentuCompletion::NONE,
     "STOP\n  VALUE = 1.0\n  a = 1\n  b = 1\n  c = 1\n  d = 1\n  VALUE = 2.0\n  VALUE = 3.0\n"
     "  ITER_MAX = +4\nEND_\n",
     "drop 4 undescribed items (lines 3, 4, 5, ...) and rewrite 4 number texts (line 2: 1.0 -> 1, "
     "line 7: 2.0 -> 2, line 8: 3.0 -> 3, ...)"},
    {"a multi-line text that the writer puts on one line, and one that it stops at a NUL",
     ZentuCompletion::NONE,
     "MODEL_INPUT\n  DESCRIPTION\n    two words\n    more words\n  FILE = a\0b\nEND_\n"s,
     "cut 2 values (lines 2, 5)"},
    {"an expression that completion turns into weights", ZentuCompletion::FULL,
     "DRESP\n  ID_NAME = a\n  TYPE = VOLUME\nEND_\nDRESP\n  ID_NAME = b\n  TYPE = VOLUME\nEND_\n"
     "OPERATOR\n  ID_NAME = o\n  ADD_FILE = %A% + %B%\nEND_\n",
     ""},
};

TEST(CanonicalLossesTest, NamesWhatTheWriterWouldDropOrChange) {
    for (const LossCase& test : kLossCases) {
        const ZentuTypedJob job =
            ZentuTypedJob::ReadText(test.text, "job.par", Schema(), test.completion);
        ASSERT_FALSE(job.HasErrors()) << test.what;
        const ZentuCanonicalLosses losses = ZentuCanonicalLosses::Of(job, Schema());
        EXPECT_EQ(losses.Describe(), test.described) << test.what;
        EXPECT_EQ(losses.Empty(), test.described.empty()) << test.what;
    }
}

}  // namespace
