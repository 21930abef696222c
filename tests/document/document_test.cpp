// The lossless document: what it makes of every kind of line, where it places names, values and
// findings, how it recovers from each structural problem, and that it keeps every byte.
#include "ZentuJobDocument.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ZentuJobSchema.h"
#include "ZentuTypedJob.h"
#include "document_test_support.h"
#include "zentu_test_cases.h"

namespace {

using zentu_test::At;
using zentu_test::FindingLines;

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

// The lines are worked out once, whichever of several threads asks first, copies share them, and
// each lies where LineText says.
void ExpectLinesWorkedOutOnceForEveryThreadAndCopy(const ZentuJobDocument& document,
                                                   const std::string& text) {
    std::vector<const std::vector<ZentuDocumentLine>*> seen(4);
    std::vector<std::thread> askers;
    for (auto& lines : seen) {
        askers.emplace_back([&document, &lines] { lines = &document.Lines(); });
    }
    for (std::thread& asker : askers) {
        asker.join();
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), seen.front()), 4);
    const ZentuJobDocument copy = document;
    EXPECT_EQ(&copy.Lines(), seen.front());
    ASSERT_EQ(seen.front()->size(), document.LineCount());
    for (std::size_t number = 1; number <= document.LineCount(); ++number) {
        const ZentuDocumentLine& line = (*seen.front())[number - 1];
        EXPECT_EQ(text.substr(line.begin, line.end - line.begin), document.LineText(number));
    }
}

// Editors place names, values and findings by these ranges and owners, and save the text as is.
TEST(JobDocument, ReadsEveryCaseIntoItsOutlineAndFindingsKeepingTheText) {
    const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    for (const auto& c : zentu_test::DataCases("document/cases/document_outlines.txt", 4)) {
        SCOPED_TRACE(c.where);
        const std::string text = zentu_test::Bytes(c.fields[1]);
        const ZentuJobDocument document =
            ZentuJobDocument::FromText(text, "job.par", ZentuTypedJob::KeywordTestOf(schema));
        EXPECT_EQ(document.Text(), text);
        ExpectLinesWorkedOutOnceForEveryThreadAndCopy(document, text);
        EXPECT_EQ(Outline(document), zentu_test::Lines(zentu_test::Bytes(c.fields[2])));
        EXPECT_EQ(FindingLines(document.Findings()), zentu_test::Lines(c.fields[3]));
        EXPECT_EQ(document.HasErrors(), !c.fields[3].empty());
    }
}

// A file reads as its text would; one that cannot be read gives an io finding, not a failure.
TEST(JobDocument, ReadsAFileAsItsTextAndAnUnreadableOneAsAnIoFinding) {
    const auto cases = zentu_test::DataCases("document/cases/document_outlines.txt", 4);
    const std::string text = cases[1].fields[1];
    const std::string path = ::testing::TempDir() + "zentu_document_test.par";
    std::ofstream(path, std::ios::binary) << text;
    const ZentuJobDocument read = ZentuJobDocument::FromFile(path);
    std::remove(path.c_str());
    EXPECT_EQ(read.Path(), path);
    EXPECT_EQ(read.Text(), text);
    EXPECT_EQ(Outline(read), zentu_test::Lines(cases[1].fields[2]));

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
