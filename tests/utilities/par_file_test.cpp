#include "ZentuParFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuFileUtil.h"
#include "zentu_test_cases.h"

namespace {

// The tag of every failure of the reader.
constexpr const char* TAG = "|%P|LIBUTIL|ZentuParFile";

// A whole parse on one line, so that a table can state it: "line:KEYWORD[id name]" per command,
// "{line:name=value}" per item, '|' for the line feeds of a value.
std::string Render(const ZentuParFile& file) {
    std::string text;
    for (const ZentuParCommand& command : file) {
        text += (text.empty() ? "" : " ") + std::to_string(command.GetLine()) + ":" +
                command.GetKeyword() + "[" + command.GetIdName() + "]";
        for (const ZentuParSubCommand& item : command) {
            text += "{" + std::to_string(item.GetLine()) + ":" + item.GetName() + "=" +
                    item.retrieveValue() + "}";
        }
    }
    std::replace(text.begin(), text.end(), '\n', '|');
    return text;
}

// Each test reads files under one name outside ASCII in the temporary folder, removed at the end.
class ParFileTest : public testing::Test {
  protected:
    void TearDown() override { std::remove(ShownPath().c_str()); }

    // The path as messages show it.
    std::string ShownPath() const { return ZentuFileUtil::to_utf8(path_); }

    // Replaces the file's content by the bytes.
    void Write(const std::string& bytes) const {
        std::ofstream(ShownPath(), std::ios::binary) << bytes;
    }

    // The message of the failure that reading the path ends in.
    static std::string FailureOf(const std::wstring& path) {
        try {
            ZentuParFile file(path);
            ADD_FAILURE() << "read " << Render(file);
        } catch (const KPL_Failure& failure) {
            EXPECT_EQ(failure.GetTag(), TAG);
            return failure.GetMessage();
        }
        return {};
    }

    std::wstring path_ = ZentuFileUtil::from_utf8(testing::TempDir()) + L"zentu_par_\u00E9_" +
                         std::to_wstring(std::random_device()()) + L".par";
};

// Commands and items come back in file order with their lines and id names, layout left out, and
// a name alone gathers the value lines after it. An unreadable file is refused with the system's
// reason, a malformed one at its first bad line, naming file, line and a printable excerpt.
TEST_F(ParFileTest, SplitsCommandsAndItemsInFileOrderOrRefusesTheFile) {
    const std::string folder = testing::TempDir();
    const std::pair<std::wstring, std::string> unreadable[] = {
        {path_, ShownPath() + ": cannot be opened: No such file or directory"},
        {ZentuFileUtil::from_utf8(folder), folder + ": is a directory"},
        {std::wstring(L"job\0.par", 8), "job\\x00.par: cannot be opened: Invalid argument"},
#if defined(__linux__)
        {L"/proc/self/mem", "/proc/self/mem: cannot be read: Input/output error"},
#endif
    };
    for (const auto& [path, message] : unreadable) {
        EXPECT_EQ(FailureOf(path), message);
    }
    for (const auto& c : zentu_test::DataCases("utilities/cases/par_renderings.txt", 2)) {
        Write(zentu_test::Bytes(c.fields[0]));
        EXPECT_EQ(Render(ZentuParFile(path_)), zentu_test::Bytes(c.fields[1])) << c.where;
    }
    for (const auto& c : zentu_test::DataCases("utilities/cases/par_failures.txt", 2)) {
        Write(zentu_test::Bytes(c.fields[0]));
        EXPECT_EQ(FailureOf(path_), ShownPath() + c.fields[1]) << c.where;
    }
}

// A reader that builds as it reads gets each command, with its id name, once its END_ is read,
// and those before a malformed line before the failure that ZentuParFile ends in.
TEST_F(ParFileTest, HandsCommandsOverOneByOneUpToTheFirstBadLine) {
    Write("A\n  x = 1\n  id_name = a1\n  ID_NAME = a2\nEND_\nB\nEND_\nC\n  y = 2\nEND_\nEND_\n");
    std::vector<std::string> handed;
    try {
        ZentuParFileCommands::read(path_, [&handed](const ZentuParFileCommands::Command& command) {
            handed.push_back(std::to_string(command.line) + ":" + std::string(command.keyword) +
                             "[" + std::string(command.idName) + "]" +
                             std::to_string(command.items.size()));
        });
        ADD_FAILURE() << "read a stray END_";
    } catch (const KPL_Failure& failure) {
        EXPECT_EQ(failure.GetMessage(), FailureOf(path_));
    }
    EXPECT_EQ(handed, (std::vector<std::string>{"1:A[a1]3", "6:B[]0", "8:C[]1"}));
}

// Lines are read in chunks, so lines of any length and lines across chunk ends read whole.
TEST_F(ParFileTest, ReadsLinesOfAnyLengthAcrossReadBoundaries) {
    const std::string big(100u << 20, 'v');
    std::string bytes = "DV\r\n  BIG = " + big + "\r\n";
    for (std::size_t index = 0; index < 20000; ++index) {
        bytes += "I = " + std::string(index % 97, 'x') + "\n";
    }
    Write(bytes + "ID_NAME = D1\nEND_");
    const ZentuParFile file(path_);
    const ZentuParCommand& command = *file.begin();
    ASSERT_EQ(std::distance(command.begin(), command.end()), 20002);
    EXPECT_TRUE(command.begin()->retrieveValue() == big);
    EXPECT_EQ(command.GetIdName(), "D1");
    for (std::size_t index = 0; index < 20000; ++index) {
        const ZentuParSubCommand& item = command.begin()[static_cast<std::ptrdiff_t>(index) + 1];
        EXPECT_EQ(item.GetLine(), index + 3);
        EXPECT_EQ(item.retrieveValue(), std::string(index % 97, 'x'));
    }
}

// Whatever the bytes, reading either succeeds or fails with a message naming the file and
// holding no control character.
TEST_F(ParFileTest, ReadsBinaryGarbageOrFailsWithAPrintableMessage) {
    const char bytesOfInterest[] = "DV\nEND_\n= #\r\0\xC3\xA9";
    const std::string alphabet(bytesOfInterest, sizeof bytesOfInterest - 1);
    std::mt19937 random(20240607);
    for (int round = 0; round < 300; ++round) {
        std::string bytes(1 + random() % 2000, '\0');
        for (char& byte : bytes) {
            byte = random() % 2 == 0 ? alphabet[random() % alphabet.size()]
                                     : static_cast<char>(random());
        }
        Write(bytes);
        try {
            ZentuParFile file(path_);
        } catch (const KPL_Failure& failure) {
            const std::string& message = failure.GetMessage();
            EXPECT_EQ(message.rfind(ShownPath() + ":", 0), 0u) << message;
            EXPECT_TRUE(std::none_of(message.begin(), message.end(), [](char c) {
                return static_cast<unsigned char>(c) < 0x20;
            })) << message;
        }
    }
}

}  // namespace
