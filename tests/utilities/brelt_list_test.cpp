#include "BreltList.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "KPL_LogMacros.h"

namespace {

using namespace std::string_literals;

// The tag of every log line and failure of the list.
const std::string TAG = "|%P|LIBUTIL|BreltList";

// A log line as compared; lines from elsewhere carry their source in the message so they show.
struct LogLine {
    int type;
    std::string message;

    bool operator==(const LogLine& other) const {
        return type == other.type && message == other.message;
    }
};

// Shows a log line in failure reports.
void PrintTo(const LogLine& line, std::ostream* out) {
    *out << line.type << " \"" << line.message << '"';
}

// Whether a log line came from the list's source file under its tag.
bool FromBreltList(const std::string& file, int line, const std::string& tag) {
    const std::string source = "BreltList.cpp";
    return tag == TAG && line > 0 && file.size() >= source.size() &&
           file.compare(file.size() - source.size(), source.size(), source) == 0;
}

// Records log lines at a verbosity and restores the handler and the verbosity after.
class LogRecorder {
  public:
    explicit LogRecorder(int verbosity = KPL_LogMacros::LOG_TRACE)
        : savedVerbosity_(KPL_LogMacros::SetLogVerbosity(verbosity)),
          savedHandler_(KPL_LogMacros::SetLogHandler([this](int type, const char* file, int line,
                                                            const char* tag,
                                                            const std::string& message) {
              lines_.push_back({type, FromBreltList(file, line, tag)
                                          ? message
                                          : file + (":" + std::to_string(line)) + tag + message});
          })) {}

    ~LogRecorder() {
        KPL_LogMacros::SetLogHandler(savedHandler_);
        KPL_LogMacros::SetLogVerbosity(savedVerbosity_);
    }

    // The lines recorded so far, which the recorder forgets.
    std::vector<LogLine> Take() { return std::exchange(lines_, {}); }

  private:
    int savedVerbosity_;
    KPL_LogMacros::LogHandler savedHandler_;
    std::vector<LogLine> lines_;
};

// Sets the bound on the length of a list and restores the previous one after.
class MaxSizeScope {
  public:
    explicit MaxSizeScope(std::size_t maxSize) : previous_(SetBreltListMaxSize(maxSize)) {}
    ~MaxSizeScope() { SetBreltListMaxSize(previous_); }
    std::size_t Previous() const { return previous_; }

  private:
    std::size_t previous_;
};

// What a reading left behind.
struct Reading {
    bool succeeded = true;
    std::vector<int> values;
    std::string message;
    std::vector<LogLine> log;
};

// The entry points of the reader.
enum class Path { STREAM, TEXT, TRIAL };

// Reads the text into a copy of list through one entry point, recording its log lines.
Reading Read(Path path, const std::string& text, BreltList<int> list) {
    Reading reading;
    LogRecorder recorder;
    try {
        if (path == Path::STREAM) {
            std::istringstream in(text);
            in >> list;
        } else if (path == Path::TEXT) {
            read_brelt_list(text, list);
        } else {
            reading.succeeded = try_read_brelt_list(text, list);
        }
    } catch (const KPL_Failure& failure) {
        reading.succeeded = false;
        reading.message = failure.GetMessage();
        EXPECT_EQ(failure.GetTag(), TAG);
        EXPECT_NE(path, Path::TRIAL) << "a trial reading threw";
    }
    reading.values.assign(list.begin(), list.end());
    reading.log = recorder.Take();
    return reading;
}

// Reads the text through every entry point, expects them to agree, and returns what the stream
// reader did.
Reading ReadEverywhere(const std::string& text, const BreltList<int>& list = BreltList<int>()) {
    SCOPED_TRACE(testing::PrintToString(text));
    const Reading byStream = Read(Path::STREAM, text, list);
    for (const Path path : {Path::TEXT, Path::TRIAL}) {
        const Reading other = Read(path, text, list);
        EXPECT_EQ(other.succeeded, byStream.succeeded);
        EXPECT_EQ(other.values, byStream.values);
        EXPECT_EQ(other.log, byStream.log);
        if (path == Path::TEXT) {
            EXPECT_EQ(other.message, byStream.message);
        }
    }
    if (list == BreltList<int>()) {
        LogRecorder quiet;
        EXPECT_EQ(is_brelt_list(text), byStream.succeeded);
    }
    return byStream;
}

// Texts that read successfully, with the values they give.
const std::pair<std::string, std::vector<int>> READ_CASES[] = {
    {"", {}},
    {" \t\r\n\v\f", {}},
    {"5", {5}},
    {" +5 ", {5}},
    {"007", {7}},
    {"1,3,5-9", {1, 3, 5, 6, 7, 8, 9}},
    {"1-10:3", {1, 4, 7, 10}},
    {"1-9:3", {1, 4, 7}},
    {"5-1", {5}},
    {"5-1:-1", {1, 2, 3, 4, 5}},
    {"5-9:0", {5}},
    {"5-5:0", {5}},
    {"1--5", {1}},
    {"1--5:-2", {-5, -3, -1, 1}},
    {"-3--1", {-3, -2, -1}},
    {"1 -2", {1, 2}},
    {"1 , 2 - 6 : 2 ,", {1, 2, 4, 6}},
    {"1,2,", {1, 2}},
    {"3,1-10:", {3}},
    {"1-", {}},
    {"2,1-3,2", {1, 2, 3}},
    {"1,-", {1}},
    {"1,+", {1}},
    {"1,99999999999", {1}},
    {"1,-99999999999999999999999", {1}},
    {"2147483647,-2147483648", {INT_MIN, INT_MAX}},
    {"2147483640-2147483647:5", {2147483640, 2147483645}},
    // A step that would leave the int range ends the range; wrapping could land back inside it.
    {"-2147483648-2147483647:-1", {INT_MIN}},
    {"2147483647--2147483648:1073741824", {INT_MAX}},
    {"-2000000000-2000000000:1500000000", {-2000000000, -500000000, 1000000000}},
    {"-2147483648-2147483647:2147483647", {INT_MIN, -1, INT_MAX - 1}},
};

TEST(BreltListRead, TextsGiveTheirValuesThroughEveryEntryPoint) {
    for (const auto& [text, values] : READ_CASES) {
        const Reading reading = ReadEverywhere(text);
        EXPECT_TRUE(reading.succeeded) << text << ": " << reading.message;
        EXPECT_EQ(reading.values, values) << text;
    }
}

// Texts that fail, with their message.
const std::pair<std::string, std::string> FAILURE_CASES[] = {
    {",", "Reading BreltList failed. Successfully read values are: "},
    {"a", "Reading BreltList failed. Successfully read values are: "},
    {"- 1", "Reading BreltList failed. Successfully read values are: "},
    {"1,,2", "Reading BreltList failed. Successfully read values are: 1"},
    {"1,-x", "Reading BreltList failed. Successfully read values are: 1"},
    {"1,99999999999,2", "Reading BreltList failed. Successfully read values are: 1"},
    {"1,2,3,4-6,x", "Reading BreltList failed. Successfully read values are: 1-6"},
    {"1-3,5-9:0,x", "Reading BreltList failed. Successfully read values are: 1-3,5"},
    {"1,\0"s, "Reading BreltList failed. Successfully read values are: 1"},
    {"1 2", "Unexpected separator character 2 in BRELT list. Successfully read values are: "},
    {"1-5-", "Unexpected separator character - in BRELT list. Successfully read values are: "},
    {"1:5", "Unexpected separator character : in BRELT list. Successfully read values are: "},
    {"1-5:2:3", "Unexpected separator character : in BRELT list. Successfully read values are: "},
    {"1,2,3;4",
     "Unexpected separator character ; in BRELT list. Successfully read values are: 1,2"},
    {"2.5", "Unexpected separator character . in BRELT list. Successfully read values are: "},
    {"0x1", "Unexpected separator character x in BRELT list. Successfully read values are: "},
    {"1\xff", "Unexpected separator character \xff in BRELT list. Successfully read values are: "},
    // The message is formatted as printf does, so a NUL separator ends the reason's text.
    {"4,1\0,2"s, "Unexpected separator character . Successfully read values are: 4"},
};

TEST(BreltListRead, BadTextsFailWithTheReasonAndTheValuesReadSoFar) {
    for (const auto& [text, message] : FAILURE_CASES) {
        const Reading reading = ReadEverywhere(text);
        EXPECT_FALSE(reading.succeeded) << text;
        EXPECT_EQ(reading.message, message) << testing::PrintToString(text);
    }
}

TEST(BreltListRead, TheStreamIsLeftAtItsEndAndFailedOnlyWhenTheLastNumberWasCutOff) {
    const struct {
        const char* text;
        bool failed;
    } cases[] = {{"", false},    {"  ", false}, {"1,2", false}, {"1,2 ", false},
                 {"1,2,", true}, {"1-", true},  {"1,-", true},  {"1,99999999999", true}};
    for (const auto& testCase : cases) {
        LogRecorder quiet;
        std::istringstream in(testCase.text);
        BreltList<int> list;
        EXPECT_EQ(&(in >> list), &in);
        EXPECT_TRUE(in.eof()) << testCase.text;
        EXPECT_EQ(in.fail(), testCase.failed) << testCase.text;
    }
}

TEST(BreltListRead, FlagsDecideClearingAndTheStepOfRangesWithoutOne) {
    BreltList<int> kept(1);
    kept.Insert(5);
    kept.clear_on_read = false;
    EXPECT_EQ(ReadEverywhere("2,5", kept).values, (std::vector<int>{1, 2, 5}));
    kept.clear_on_read = true;
    EXPECT_EQ(ReadEverywhere("2,5", kept).values, (std::vector<int>{2, 5}));

    BreltList<int> stepped;
    stepped.default_step = 2;
    EXPECT_EQ(ReadEverywhere("1-9", stepped).values, (std::vector<int>{1, 3, 5, 7, 9}));
    EXPECT_EQ(ReadEverywhere("1-9,x", stepped).message,
              "Reading BreltList failed. Successfully read values are: 1-9");
    stepped.default_step = 0;
    EXPECT_EQ(ReadEverywhere("1-9", stepped).values, (std::vector<int>{1}));

    // The message keeps the values on one line although the list breaks lines.
    EXPECT_EQ(
        ReadEverywhere("0,1,3,6,10,15,21,28,36,45,55,x").message,
        "Reading BreltList failed. Successfully read values are: 0,1,3,6,10,15,21,28,36,45,55");
}

TEST(BreltListRead, LogsEachNumberSeparatorAndAdditionAsTraceAndAStillStepAsWarning) {
    const std::vector<LogLine> expected = {
        {7, "Starting parsing of BreltList from input stream"},
        {7, "Parsed element 1 of BreltList"},
        {7, "Parsed separator - in BRELT list"},
        {7, "Parsed element 3 of BreltList"},
        {7, "Parsed separator : in BRELT list"},
        {7, "Parsed element 2 of BreltList"},
        {7, "Parsed separator , in BRELT list"},
        {7, "Adding multiple list elements 1-3:2"},
        {7, "Parsed element -4 of BreltList"},
        {7, "Parsed separator - in BRELT list"},
        {7, "Parsed element 1 of BreltList"},
        {7, "Parsed separator : in BRELT list"},
        {7, "Parsed element 0 of BreltList"},
        {7, "Parsed separator , in BRELT list"},
        {7, "Adding multiple list elements -4-1:0"},
        {2, "Invalid stepsize 0 given in BreltList. Adding the step resulted in the same element"},
        {7, "Parsed element 7 of BreltList"},
        {7, "Parsed separator , in BRELT list"},
        {7, "Adding single list element 7"},
        {7, "Successfully parsed BreltList"},
    };
    EXPECT_EQ(ReadEverywhere("1-3:2, -4-1:0,7").log, expected);
    EXPECT_EQ(ReadEverywhere(" ").log,
              (std::vector<LogLine>{{7, "Starting parsing of BreltList from input stream"},
                                    {7, "Parsed empty BreltList from input stream"},
                                    {7, "Successfully parsed BreltList"}}));
}

TEST(BreltListRead, AFailureLogsWhatWritingTheValuesReadSoFarLogs) {
    const std::vector<LogLine> tail = ReadEverywhere("1,2,3;4").log;
    ASSERT_GE(tail.size(), 2U);
    EXPECT_EQ(tail[tail.size() - 2], (LogLine{7, "Parsed separator ; in BRELT list"}));
    EXPECT_EQ(tail.back(), (LogLine{7, "Written BreltList with 2 elements"}));
    EXPECT_EQ(ReadEverywhere("x").log.back(), (LogLine{7, "Empty BreltList written"}));
    EXPECT_EQ(ReadEverywhere("4,x").log.back(), (LogLine{7, "BreltList with a size of 1 written"}));
}

TEST(BreltListRead, OnlyTheStepWarningPassesTheDefaultVerbosity) {
    LogRecorder recorder(KPL_LogMacros::LOG_WARNING);
    BreltList<int> list;
    read_brelt_list("5-9:0", list);
    EXPECT_EQ(recorder.Take(),
              (std::vector<LogLine>{{2,
                                     "Invalid stepsize 0 given in BreltList. Adding the step "
                                     "resulted in the same element"}}));
}

TEST(BreltListRead, ABoundStopsListsThatWouldGrowBeyondIt) {
    MaxSizeScope scope(5);
    EXPECT_EQ(scope.Previous(), 10000000U);
    const std::string tooLong =
        "BreltList exceeds the limit of 5 values. Successfully read values are: ";
    // A range that cannot fit is refused whole, before any of its values is added.
    const std::tuple<std::string, std::string, std::size_t> cases[] = {
        {"1-2000000000", tooLong, 0},
        {"1,2,3,4,5,6", tooLong + "1-5", 5},
        {"10-1:-1", tooLong, 0},
        {"-2147483648-2147483647", tooLong, 0},
        {"8,1-9:2", tooLong + "8", 1},
        {"1,2,3,4,5,5,1-5:2", "", 5},
        {"2,4,1-5", "", 5},
        {"9,1-3,9-8:-1", "", 5},
    };
    for (const auto& [text, message, size] : cases) {
        const Reading reading = ReadEverywhere(text);
        EXPECT_EQ(reading.message, message) << text;
        EXPECT_EQ(reading.values.size(), size) << text;
    }

    BreltList<int> full;
    read_brelt_list("10-14", full);
    full.clear_on_read = false;
    EXPECT_TRUE(ReadEverywhere("12,14", full).succeeded);
    EXPECT_EQ(ReadEverywhere("1", full).message, tooLong + "10-14");

    SetBreltListMaxSize(0);
    EXPECT_TRUE(ReadEverywhere("").succeeded);
    EXPECT_EQ(ReadEverywhere("1").message,
              "BreltList exceeds the limit of 0 values. Successfully read values are: ");
}

TEST(BreltListRead, LongTextsReadAndFailWithTheMessageCutAsPrintfCutsIt) {
    EXPECT_EQ(ReadEverywhere("1," + std::string(100000, '9')).values, (std::vector<int>{1}));
    EXPECT_EQ(ReadEverywhere(std::string(100000, '9') + ",1").message,
              "Reading BreltList failed. Successfully read values are: ");
    EXPECT_EQ(ReadEverywhere(std::string(100000, ' ') + "3" + std::string(100000, '\t')).values,
              (std::vector<int>{3}));

    std::string text;
    BreltList<int> squares;
    squares.break_lines = false;
    for (int i = 0; i < 3000; ++i) {
        text += std::to_string(i * i) + ",";
        squares.Insert(i * i);
    }
    const std::string full =
        "Reading BreltList failed. Successfully read values are: " + write_brelt_list(squares);
    EXPECT_EQ(ReadEverywhere(text + "x").message, full.substr(0, KPL_Failure::MAX_MESSAGE_LENGTH));
}

// A random text: pieces of the syntax alternating with a stray piece now and then, or, for odd
// rounds, bytes of any value.
std::string RandomText(std::mt19937& random, int round) {
    static const std::vector<std::string> pieces[] = {
        {"0", "1", "2", "3", "5", "7", "10", " 12", "-1", "-4", "+6", "2147483647", "-2147483648",
         "2147483648", "-99999999999"},
        {",", ",", ",", " , ", "-", "-", " -", ":", ":\t", "\n", " "},
        {"", "-", "x", ";", ".", "\0"s, "\xff"}};
    const auto below = [&random](std::size_t bound) {
        return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
    };
    std::string text;
    for (std::size_t k = 0, length = below(13); k < length; ++k) {
        if (round % 2 == 1) {
            text += static_cast<char>(below(256));
        } else {
            const std::vector<std::string>& from = pieces[below(16) == 0 ? 2 : k % 2];
            text += from[below(from.size())];
        }
    }
    return text;
}

TEST(BreltListRead, RandomTextsNeverCrashAndEveryEntryPointAgrees) {
    MaxSizeScope scope(100);
    std::mt19937 random(20240521U);
    for (int round = 0; round < 4000 && !HasFailure(); ++round) {
        ReadEverywhere(RandomText(random, round));
    }
}

// Values with their default step and the text that the writer makes of them.
const struct {
    std::vector<int> values;
    int defaultStep;
    const char* text;
} WRITE_CASES[] = {
    {{}, 1, ""},
    {{7}, 1, "7"},
    {{1, 3}, 1, "1,3"},
    {{1, 2, 4, 6, 8}, 1, "1,2-8:2"},
    {{1, 2, 3, 10, 11}, 1, "1-3,10,11"},
    {{1, 3, 5, 6, 7, 8, 9}, 1, "1-5:2,6-9"},
    {{1, 2, 4, 5, 7, 8}, 1, "1,2,4,5,7,8"},
    {{2, 4, 6}, 1, "2-6:2"},
    {{2, 3, 4}, 1, "2-4"},
    {{2, 4, 6}, 2, "2-6"},
    {{2, 3, 4}, 2, "2-4:1"},
    {{-3, -2, -1}, 1, "-3--1"},
    {{INT_MIN, INT_MAX}, 1, "-2147483648,2147483647"},
    {{-INT_MAX, 0, INT_MAX}, 1, "-2147483647-2147483647:2147483647"},
};

TEST(BreltListWrite, RunsAreFormedGreedilyAndReadBack) {
    for (const auto& testCase : WRITE_CASES) {
        BreltList<int> list;
        list.default_step = testCase.defaultStep;
        list.elements.insert(testCase.values.begin(), testCase.values.end());
        LogRecorder recorder;
        std::ostringstream out;
        out << list;
        const std::vector<LogLine> streamLog = recorder.Take();
        EXPECT_EQ(out.str(), testCase.text);
        EXPECT_EQ(write_brelt_list(list), testCase.text);
        EXPECT_EQ(recorder.Take(), streamLog);
        BreltList<int> readBack;
        readBack.default_step = testCase.defaultStep;
        read_brelt_list(testCase.text, readBack);
        EXPECT_EQ(readBack, list) << testCase.text;
    }
}

TEST(BreltListWrite, LogsTheSizeOfWhatItWrote) {
    LogRecorder recorder;
    BreltList<int> list;
    write_brelt_list(list);
    list.Insert(4);
    write_brelt_list(list);
    for (const int value : {2, 6, 8, 10}) {
        list.Insert(value);
    }
    write_brelt_list(list);
    EXPECT_EQ(recorder.Take(), (std::vector<LogLine>{{7, "Empty BreltList written"},
                                                     {7, "BreltList with a size of 1 written"},
                                                     {7, "Written BreltList with 5 elements"}}));
}

// Counts how often a stream is flushed.
class FlushCounter : public std::stringbuf {
  public:
    int flushes = 0;

  protected:
    int sync() override {
        ++flushes;
        return std::stringbuf::sync();
    }
};

TEST(BreltListWrite, BreaksAndFlushesTheLineOnceItHoldsNinePieces) {
    BreltList<int> squares;
    for (int i = 0; i < 30; ++i) {
        squares.Insert(i * i);
    }
    FlushCounter buffer;
    std::ostream out(&buffer);
    out << squares;
    EXPECT_EQ(buffer.str(),
              "0,1,4,9,16,25,36,49,64,\n81,100,121,144,169,196,225,256,289,\n"
              "324,361,400,441,484,529,576,625,676,\n729,784,841");
    EXPECT_EQ(buffer.flushes, 3);
    squares.SetBreakLines(false);
    EXPECT_EQ(write_brelt_list(squares),
              "0,1,4,9,16,25,36,49,64,81,100,121,144,169,196,225,256,289,324,361,400,441,484,529,"
              "576,625,676,729,784,841");

    BreltList<int> ranges;
    read_brelt_list("1-3,5-7,9-11,13-15,17-19,21", ranges);
    EXPECT_EQ(write_brelt_list(ranges), "1-3,5-7,9-11,13-15,17-19,\n21");
}

TEST(BreltListWrite, NumbersFollowTheStreamsIntegerFormat) {
    BreltList<int> list;
    read_brelt_list("0-20:10,25", list);
    std::ostringstream out;
    out << std::hex << list;
    EXPECT_EQ(out.str(), "0-14:a,19");
}

}  // namespace
