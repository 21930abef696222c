// The lossless document: what it makes of every kind of line, where it places names, values and
// findings, how it recovers from each structural problem, and that it keeps every byte.
#include "ZentuJobDocument.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "ZentuJobSchema.h"
#include "ZentuTypedJob.h"
#include "document_test_support.h"

namespace {

using zentu_test::At;

std::string Index(std::size_t index) {
    return index == ZentuDocumentLine::NONE ? "-" : std::to_string(index);
}

// Commands, items and the owner of each line as text, so that a whole document compares at once:
// "KEYWORD at lines first-END_", "NAME at = value at lines a-b" (':' for a name alone, '|' for a
// line feed), and "lines c.i c.i ..." with '-' for none.
std::vector<std::string> Outline(const ZentuJobDocument& document) {
    std::vector<std::string> outline;
    for (const ZentuDocumentCommand& command : document.Commands()) {
        outline.push_back(command.keyword + " " + At(command.keyword_range) + " lines " +
                          std::to_string(command.line) + "-" + std::to_string(command.end_line));
        for (const ZentuDocumentItem& item : command.items) {
            std::string value = item.value;
            std::replace(value.begin(), value.end(), '\n', '|');
            outline.push_back("  " + item.name + " " + At(item.name_range) +
                              (item.name_alone ? " : " : " = ") + value + " " +
                              At(item.value_range) + " lines " + std::to_string(item.line) + "-" +
                              std::to_string(item.last_line));
        }
    }
    std::string owners = "lines";
    for (const ZentuDocumentLine& line : document.Lines()) {
        owners += " " + Index(line.command) + "." + Index(line.item);
    }
    outline.push_back(owners);
    return outline;
}

std::vector<std::string> FindingLines(const std::vector<ZentuFinding>& findings) {
    std::vector<std::string> lines;
    for (const ZentuFinding& finding : findings) {
        lines.push_back(zentu_test::FindingLine(finding));
    }
    return lines;
}

struct DocumentCase {
    const char* what;
    std::string text;
    std::vector<std::string> outline;
    std::vector<std::string> findings;
};

const std::vector<DocumentCase> kCases = {
    {"empty text", "", {"lines"}, {}},
    {"items, a multi-line value with a comment inside and a comment outside",
     "# job\nDV\n  ID_NAME = d1\n  ELEMENT_GROUP\n    1-5,\n    # kept\n    7\n  LOWER=\nEND_\n",
     {"DV 2:1-2:3 lines 2-9", "  ID_NAME 3:3-3:10 = d1 3:13-3:15 lines 3-3",
      "  ELEMENT_GROUP 4:3-4:16 : 1-5,|7 5:5-7:6 lines 4-7", "  LOWER 8:3-8:8 =  8:9-8:9 lines 8-8",
      "lines -.- 0.- 0.0 0.1 0.1 0.1 0.1 0.2 0.-"},
     {}},
    {"each structural problem outside a command is skipped with a finding at its text",
     "END_\n  A = 1 \nDV  X\nD\x01V\nDV\nend_\n",
     {"DV 5:1-5:3 lines 5-6", "lines -.- -.- -.- -.- 0.- 0.-"},
     {"syntax 1:1-1:5 END_ outside a command",
      "syntax 2:3-2:8 item line outside a command: 'A = 1'",
      "syntax 3:1-3:6 a command line must hold one word: 'DV  X'",
      "syntax 4:1-4:4 a command keyword must not hold control characters: 'D\\x01V'"}},
    {"a keyword of the schema closes the command left open",
     "GROUP_DEF\n  ID_NAME = g\nDV\n  ID_NAME = d\nEND_\n",
     {"GROUP_DEF 1:1-1:10 lines 1-0", "  ID_NAME 2:3-2:10 = g 2:13-2:14 lines 2-2",
      "DV 3:1-3:3 lines 3-5", "  ID_NAME 4:3-4:10 = d 4:13-4:14 lines 4-4",
      "lines 0.- 0.0 1.- 1.0 1.-"},
     {"syntax 1:1-1:10 command GROUP_DEF opened on line 1 has no END_ before the next "
      "command DV"}},
    {"a keyword that names an item of the open command stays an item; a name ends a list",
     "OPTIMIZE\n  dv\n    d1\n  X\n    1\nEND_\n",
     {"OPTIMIZE 1:1-1:9 lines 1-6", "  dv 2:3-2:5 : d1 3:5-3:7 lines 2-3",
      "  X 4:3-4:4 : 1 5:5-5:6 lines 4-5", "lines 0.- 0.0 0.0 0.1 0.1 0.-"},
     {}},
    {"a file that ends inside a command keeps the command",
     "DV\n  ID_NAME = d  ",
     {"DV 1:1-1:3 lines 1-0", "  ID_NAME 2:3-2:10 = d 2:13-2:14 lines 2-2", "lines 0.- 0.0"},
     {"syntax 2:16-2:16 the file ends inside command DV opened on line 1"}},
    {"CR LF line ends stay out of every range",
     "DV\r\n  ID_NAME = d\r\n  NOTE\r\n\r\n    1-5\r\n",
     {"DV 1:1-1:3 lines 1-0", "  ID_NAME 2:3-2:10 = d 2:13-2:14 lines 2-2",
      "  NOTE 3:3-3:7 : |1-5 4:1-5:8 lines 3-5", "lines 0.- 0.0 0.1 0.1 0.1"},
     {"syntax 5:8-5:8 the file ends inside command DV opened on line 1"}},
    {"columns count characters, not bytes, and a byte-order mark is none",
     "\xEF\xBB\xBF"
     "DV\n\xC3\x84\xC3\x96 = \xC3\xA9"
     "1\n\t\xE2\x82\xAC\nEND_",
     {"DV 1:1-1:3 lines 1-4",
      "  \xC3\x84\xC3\x96 2:1-2:3 = \xC3\xA9"
      "1 2:6-2:8 lines 2-2",
      "  \xE2\x82\xAC 3:2-3:3 :  3:3-3:3 lines 3-3", "lines 0.- 0.0 0.1 0.-"},
     {}},
};

// Editors place names, values and findings by these ranges and owners, and save the text as is.
TEST(JobDocument, ReadsEveryCaseIntoItsOutlineAndFindingsKeepingTheText) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    for (const DocumentCase& c : kCases) {
        SCOPED_TRACE(c.what);
        const ZentuJobDocument document =
            ZentuJobDocument::FromText(c.text, "job.par", ZentuTypedJob::KeywordTestOf(schema));
        EXPECT_EQ(document.Text(), c.text);
        EXPECT_EQ(Outline(document), c.outline);
        EXPECT_EQ(FindingLines(document.Findings()), c.findings);
        EXPECT_EQ(document.HasErrors(), !c.findings.empty());
    }
}

// A file reads as its text would; one that cannot be read gives an io finding, not a failure.
TEST(JobDocument, ReadsAFileAsItsTextAndAnUnreadableOneAsAnIoFinding) {
    const std::string text = kCases[1].text;
    const std::string path = ::testing::TempDir() + "zentu_document_test.par";
    FILE* file = std::fopen(path.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
    const ZentuJobDocument read = ZentuJobDocument::FromFile(path);
    std::remove(path.c_str());
    EXPECT_EQ(read.Path(), path);
    EXPECT_EQ(read.Text(), text);
    EXPECT_EQ(Outline(read), kCases[1].outline);

    const std::pair<std::string, std::string> unreadable[] = {
        {path, "io 1:1-1:1 cannot be opened: No such file or directory"},
        {::testing::TempDir(), "io 1:1-1:1 is a directory"}};
    for (const auto& [missing, finding] : unreadable) {
        const ZentuJobDocument document = ZentuJobDocument::FromFile(missing);
        EXPECT_EQ(document.Text(), "");
        EXPECT_EQ(FindingLines(document.Findings()), std::vector<std::string>{finding});
    }
}

}  // namespace
