#include "ZentuParFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "ZentuFileUtil.h"

namespace {

// The tag of every failure of the reader.
constexpr const char* TAG = "|%P|LIBUTIL|ZentuParFile";

// A file's bytes and what reading it must give: its rendering or the failure's message after
// the path.
struct Case {
    std::string bytes;
    std::string expected;
};

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
    void SetUp() override {
        path_ = ZentuFileUtil::from_utf8(testing::TempDir()) + L"zentu_par_\u00E9_" +
                std::to_wstring(std::random_device()()) + L".par";
    }

    void TearDown() override { std::remove(ShownPath().c_str()); }

    // The path as messages show it.
    std::string ShownPath() const { return ZentuFileUtil::to_utf8(path_); }

    // Replaces the file's content by the bytes.
    void Write(const std::string& bytes) const {
        std::FILE* file = std::fopen(ShownPath().c_str(), "wb");
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
        std::fclose(file);
    }

    // The rendering of the bytes read back.
    std::string Parse(const std::string& bytes) const {
        Write(bytes);
        return Render(ZentuParFile(path_));
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

    // Checks that every case reads to its rendering.
    void ExpectRenderings(const std::vector<Case>& cases) const {
        for (const auto& [bytes, rendering] : cases) {
            EXPECT_EQ(Parse(bytes), rendering) << bytes;
        }
    }

    std::wstring path_;
};

// Commands and items come back in file order with their lines; blanks around names and values,
// comments, blank lines and the case of END_ are layout, everything else is kept as written.
TEST_F(ParFileTest, SplitsCommandsAndItemsInFileOrder) {
    ExpectRenderings({
        {"", ""},
        // A byte-order mark is skipped before the first line only.
        {"\xEF\xBB\xBF DV\nEND_\n", "1:DV[]"},
        {"\xEF\xBB\xBF\n\xEF\xBB\xBF\nEND_\n", "2:\xEF\xBB\xBF[]"},
        {"\n \t\n# comment\n   # indented comment\r\n\r\n", ""},
        {"  dv  \n  eNd_ \t\n", "1:dv[]"},
        {"END_X\nEND_", "1:END_X[]"},
        {"DV\n A = 1 \n\tb\t=\t2\t\n= 5\n =\nEnd_", "1:DV[]{2:A=1}{3:b=2}{4:=5}{5:=}"},
        {"DV\r\nA = 1\r\n\r\n\v\f\r\nEND_\r\n", "1:DV[]{2:A=1}"},
        {"DV\nA = b = c\nB==\nEND_ = 3\nLong Name = x\nA = 1 # kept\n  # A = 2\nEND_\n",
         "1:DV[]{2:A=b = c}{3:B==}{4:END_=3}{5:Long Name=x}{6:A=1 # kept}"},
        {"\n# c\nDV\n\nA = 1\nEND_\n\n\nMODEL_INPUT\nEND_\nDV\nEND_\n",
         "3:DV[]{5:A=1} 9:MODEL_INPUT[] 11:DV[]"},
        {std::string("DV\nA = x\0y\nEND_\n", 16), std::string("1:DV[]{2:A=x\0y}", 15)},
    });
}

// A name alone gathers the lines after it, blank ones included and comments skipped, until an
// item, END_, or a single name after a value line that does not end with ','.
TEST_F(ParFileTest, GathersTheLinesAfterANameAloneIntoOneValue) {
    ExpectRenderings({
        {"DV\n\n  LIST\n  1-10, \n  12\n  B = 2\n  FLAG\nend_\n",
         "1:DV[]{3:LIST=1-10,|12}{6:B=2}{7:FLAG=}"},
        {"DV\n  LIST\n  OTHER\n  END_X\nEND_\n", "1:DV[]{2:LIST=OTHER}{4:END_X=}"},
        {"DV\n  L\n  A,\n  # c\n  B,\n  C\n  D_1\nEND_\n", "1:DV[]{2:L=A,|B,|C}{7:D_1=}"},
        {"DV\n  L\n  1\n\n  N\n  2\nEND_\n", "1:DV[]{2:L=1|}{5:N=2}"},
        {"DV\n  L\n  1\n  X Y\n  2x\n  _a\n  x=1\nEND_\n", "1:DV[]{2:L=1|X Y|2x|_a}{7:x=1}"},
        {"DV\n  LIST\n\n  1\n \t\n\nEND_\n", "1:DV[]{2:LIST=|1||}"},
    });
}

// Hosts identify a command by the value of its first item named ID_NAME exactly, in any case.
TEST_F(ParFileTest, TakesTheIdNameFromTheFirstItemNamedIdNameInAnyCase) {
    ExpectRenderings({
        {"DV\nid_name = a\nId_Name = b\nEND_\n", "1:DV[a]{2:id_name=a}{3:Id_Name=b}"},
        {"DV\nID_NAMES = x\nID_NAM = y\n ID_NAME  =\nID_NAME = z\nEND_\n",
         "1:DV[]{2:ID_NAMES=x}{3:ID_NAM=y}{4:ID_NAME=}{5:ID_NAME=z}"},
        {"DV\nID_NAME\nD\n1\nEND_\nDV\nEND_\n", "1:DV[D|1]{2:ID_NAME=D|1} 6:DV[]"},
    });
}

// The first line that breaks the structure refuses the file, naming the file, the line and a
// printable excerpt.
TEST_F(ParFileTest, RefusesMalformedFilesNamingFileAndLine) {
    const std::vector<Case> cases = {
        {"\n# x\n  end_ \r\n", ":3: END_ outside a command"},
        {"DV\nEND_\nEND_\n", ":3: END_ outside a command"},
        {"DV\nEND_\n\n  = \n", ":4: item line outside a command: '='"},
        {"DV\tTOPO\r\n", ":1: a command line must hold one word: 'DV\\x09TOPO'"},
        {"\nDV\n  A = 1", ":3: the file ends inside command DV opened on line 2"},
        {"DV\n  LIST\n  1\n\n", ":4: the file ends inside command DV opened on line 1"},
        {"DV\r\nA = 1\r\n# END_\r\n", ":3: the file ends inside command DV opened on line 1"},
        {"X\nEND_\nDV\nEND\n", ":4: the file ends inside command DV opened on line 3"},
        // A keyword is written back as a line; a NUL in it would not survive that.
        {std::string("D\0V\x7F", 4),
         ":1: a command keyword must not hold control characters: 'D\\x00V\\x7F'"},
        // Quotations stop after 80 bytes, before a character that would not fit whole.
        {"A = " + std::string(100, 'x'),
         ":1: item line outside a command: 'A = " + std::string(76, 'x') + "...'"},
        {std::string(79, 'k') + "\xC3\xA9 X\n",
         ":1: a command line must hold one word: '" + std::string(79, 'k') + "...'"},
    };
    for (const auto& [bytes, message] : cases) {
        Write(bytes);
        EXPECT_EQ(FailureOf(path_), ShownPath() + message) << bytes;
    }
}

// A file that cannot be opened or read is refused with the system's reason.
TEST_F(ParFileTest, RefusesPathsItCannotRead) {
    const std::string folder = testing::TempDir();
    const std::pair<std::wstring, std::string> cases[] = {
        {path_, ShownPath() + ": cannot be opened: No such file or directory"},
        {ZentuFileUtil::from_utf8(folder), folder + ": is a directory"},
        {std::wstring(L"job\0.par", 8), "job\\x00.par: cannot be opened: Invalid argument"},
#if defined(__linux__)
        {L"/proc/self/mem", "/proc/self/mem: cannot be read: Input/output error"},
#endif
    };
    for (const auto& [path, message] : cases) {
        EXPECT_EQ(FailureOf(path), message);
    }
}

// The writer puts a value on the lines after its name exactly as it is, so each comes back whole,
// empty lines at either end included.
TEST_F(ParFileTest, GivesBackEveryValueAsTheWriterLaysItOut) {
    for (const std::string value : {"", "\n", "1-10,\n12", "1\n\n2", "a\n", "\n1"}) {
        Write("\nDV\n  LIST\n  " + value + "\n  TYPE = X\n  TAIL\n  " + value + "\nEND_\n\n");
        const ZentuParFile file(path_);
        std::vector<std::string> values;
        for (const ZentuParSubCommand& item : *file.begin()) {
            values.push_back(item.retrieveValue());
        }
        EXPECT_EQ(values, (std::vector<std::string>{value, "X", value}));
    }
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
