#include "BreltList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "zentu_test_cases.h"

namespace {

using namespace std::string_literals;
using LogLine = std::pair<int, std::string>;
using Log = std::vector<LogLine>;
using Values = std::vector<int>;

const std::string TAG = "|%P|LIBUTIL|BreltList";
const std::string SO_FAR = ". Successfully read values are: ";
const std::string FAILED = "Reading BreltList failed" + SO_FAR;
const std::string TOO_LONG = "BreltList exceeds the limit of 5 values" + SO_FAR;

// The blank-separated values of a case field.
Values ValuesOf(const std::string& text) {
    std::istringstream in(text);
    return Values(std::istream_iterator<int>(in), std::istream_iterator<int>());
}

// Records log lines at a verbosity and restores both after; a line under another tag shows it.
class LogRecorder {
  public:
    explicit LogRecorder(int verbosity = KPL_LogMacros::LOG_TRACE)
        : verbosity_(KPL_LogMacros::SetLogVerbosity(verbosity)),
          handler_(KPL_LogMacros::SetLogHandler(
              [this](int type, const char*, int, const char* tag, const std::string& text) {
                  lines_.emplace_back(type, tag == TAG ? text : tag + text);
              })) {}

    ~LogRecorder() {
        KPL_LogMacros::SetLogHandler(handler_);
        KPL_LogMacros::SetLogVerbosity(verbosity_);
    }

    Log Take() { return std::exchange(lines_, {}); }

  private:
    int verbosity_;
    KPL_LogMacros::LogHandler handler_;
    Log lines_;
};

// Sets the bound on list lengths and restores the previous one after.
class MaxSizeScope {
  public:
    explicit MaxSizeScope(std::size_t maxSize) : previous_(SetBreltListMaxSize(maxSize)) {}
    ~MaxSizeScope() { SetBreltListMaxSize(previous_); }
    const std::size_t previous_;
};

struct Reading {
    bool succeeded = true;
    Values values;
    std::string message;
    Log log;
    bool streamFailed = false;
};

// Reads the text by stream, by text and on trial, expects them to agree and returns the first.
Reading ReadEverywhere(const std::string& text, const BreltList<int>& list = BreltList<int>()) {
    SCOPED_TRACE(testing::PrintToString(text));
    Reading readings[3];
    for (int path = 0; path < 3; ++path) {
        Reading& reading = readings[path];
        BreltList<int> read = list;
        LogRecorder recorder;
        try {
            if (path == 0) {
                std::istringstream in(text);
                EXPECT_EQ(&(in >> read), &in);
                EXPECT_TRUE(in.eof());
                reading.streamFailed = in.fail();
            } else if (path == 1) {
                read_brelt_list(text, read);
            } else {
                reading.succeeded = try_read_brelt_list(text, read);
            }
        } catch (const KPL_Failure& failure) {
            reading = {false, {}, failure.GetMessage(), {}};
            EXPECT_EQ(failure.GetTag(), TAG);
            EXPECT_NE(path, 2) << "a trial reading threw";
        }
        reading.values.assign(read.begin(), read.end());
        reading.log = recorder.Take();
        EXPECT_EQ(std::tie(reading.succeeded, reading.values, reading.log),
                  std::tie(readings[0].succeeded, readings[0].values, readings[0].log));
    }
    EXPECT_EQ(readings[1].message, readings[0].message);
    if (list == BreltList<int>()) {
        // The validating reader answers and logs as the trial does, with trace lines and without.
        for (const int verbosity : {KPL_LogMacros::LOG_TRACE, KPL_LogMacros::LOG_WARNING}) {
            LogRecorder recorder(verbosity);
            EXPECT_EQ(is_brelt_list(text), readings[0].succeeded);
            Log passed;
            std::copy_if(readings[0].log.begin(), readings[0].log.end(), std::back_inserter(passed),
                         [verbosity](const LogLine& line) { return line.first <= verbosity; });
            EXPECT_EQ(recorder.Take(), passed) << verbosity;
        }
        // Visiting the values without holding them gives those of a reading without bound, which
        // are those read unless the bound stopped the reading.
        if (readings[0].message.rfind("BreltList exceeds", 0) != 0) {
            Values visited;
            visit_brelt_list_values(text, [&visited](int value) { visited.push_back(value); });
            const BreltList<int> unbounded = values_of_brelt_list(text);
            EXPECT_EQ(visited, Values(unbounded.begin(), unbounded.end()));
            EXPECT_EQ(visited, readings[0].values);
        }
    }
    return readings[0];
}

// The stream, text, trial and validating readers are separate code paths that must agree on every
// text, ranges, steps and int limits included; a bad list fails with the reason and values so far.
TEST(BreltListRead, TextsGiveTheirValuesOrTheReasonThroughEveryEntryPoint) {
    auto cases = zentu_test::DataCases("utilities/cases/brelt_reads.txt", 3);
    // Very long blank runs and a very long number cut off by the end.
    cases.push_back(
        {"long blanks", {std::string(100000, ' ') + "3" + std::string(100000, '\t'), "3", "0"}});
    cases.push_back({"long number", {"1," + std::string(100000, '9'), "1", "1"}});
    for (const auto& c : cases) {
        SCOPED_TRACE(c.where);
        const Reading reading = ReadEverywhere(zentu_test::Bytes(c.fields[0]));
        EXPECT_TRUE(reading.succeeded) << reading.message;
        EXPECT_EQ(reading.values, ValuesOf(c.fields[1]));
        EXPECT_EQ(reading.streamFailed, c.fields[2] == "1");
    }
    for (const auto& c : zentu_test::DataCases("utilities/cases/brelt_failures.txt", 2)) {
        SCOPED_TRACE(c.where);
        const Reading reading = ReadEverywhere(zentu_test::Bytes(c.fields[0]));
        EXPECT_FALSE(reading.succeeded);
        EXPECT_EQ(reading.message, zentu_test::Bytes(c.fields[1]));
    }
    EXPECT_EQ(ReadEverywhere(std::string(100000, '9') + ",1").message, FAILED);
    // A message too long for a failure is cut as printf cuts it; squares form no runs.
    std::string squares;
    for (int i = 0; i < 3000; ++i) {
        squares += std::to_string(i * i) + ",";
    }
    EXPECT_EQ(ReadEverywhere(squares + "x").message,
              (FAILED + squares).substr(0, KPL_Failure::MAX_MESSAGE_LENGTH));
}

// Hosts read into lists they keep, so clear_on_read and default_step must act as documented.
TEST(BreltListRead, FlagsDecideClearingAndTheStepOfRangesWithoutOne) {
    BreltList<int> kept(1);
    kept.clear_on_read = false;
    EXPECT_EQ(ReadEverywhere("2,5", kept).values, (Values{1, 2, 5}));
    kept.clear_on_read = true;
    EXPECT_EQ(ReadEverywhere("2,5", kept).values, (Values{2, 5}));
    BreltList<int> stepped;
    stepped.default_step = 2;
    EXPECT_EQ(ReadEverywhere("1-9", stepped).values, (Values{1, 3, 5, 7, 9}));
    EXPECT_EQ(ReadEverywhere("1-9,x", stepped).message, FAILED + "1-9");
    stepped.default_step = 0;
    EXPECT_EQ(ReadEverywhere("1-9", stepped).values, (Values{1}));
}

// A zero step is a user mistake worth a warning; every other step of the reading is a trace line.
TEST(BreltListRead, LogsEachStepAsTraceAndAStillStepAsWarning) {
    const LogLine stillStep = {
        2, "Invalid stepsize 0 given in BreltList. Adding the step resulted in the same element"};
    for (const auto& c : zentu_test::DataCases("utilities/cases/brelt_logs.txt", 2)) {
        std::string lines;
        for (const auto& [type, text] : ReadEverywhere(c.fields[0]).log) {
            lines += std::to_string(type) + " " + text + "\n";
        }
        EXPECT_EQ(lines, c.fields[1]) << c.where;
    }
    // At the default verbosity only the warning passes; a range that moves gives none.
    LogRecorder recorder(KPL_LogMacros::LOG_WARNING);
    BreltList<int> list;
    read_brelt_list("1-9:2,5-9:0", list);
    EXPECT_EQ(recorder.Take(), (Log{stillStep}));
    // A failure's message shows the values as the writer writes them, so it logs what writing does.
    for (const auto& c : zentu_test::DataCases("utilities/cases/brelt_failure_logs.txt", 3)) {
        SCOPED_TRACE(c.where);
        const Reading reading = ReadEverywhere(c.fields[0]);
        const LogLine written = {7, c.fields[2]};
        ASSERT_GE(reading.log.size(), 2U);
        EXPECT_EQ(Log(reading.log.end() - 2, reading.log.end()), (Log{{7, c.fields[1]}, written}));
        BreltList<int> soFar;
        soFar.elements.insert(reading.values.begin(), reading.values.end());
        LogRecorder writing;
        write_brelt_list(soFar);
        EXPECT_EQ(writing.Take(), Log{written});
    }
}

// A bound keeps a huge range from exhausting memory, refusing it before it adds anything.
TEST(BreltListRead, ABoundStopsListsThatWouldGrowBeyondIt) {
    MaxSizeScope scope(5);
    EXPECT_EQ(scope.previous_, 10000000U);
    for (const auto& c : zentu_test::DataCases("utilities/cases/brelt_bounds.txt", 3)) {
        const Reading reading = ReadEverywhere(c.fields[0]);
        EXPECT_EQ(reading.message, c.fields[1]) << c.where;
        EXPECT_EQ(reading.values.size(), std::stoul(c.fields[2])) << c.where;
    }
    BreltList<int> full;
    read_brelt_list("10-14", full);
    full.clear_on_read = false;
    EXPECT_TRUE(ReadEverywhere("12,14", full).succeeded);
    EXPECT_EQ(ReadEverywhere("1", full).message, TOO_LONG + "10-14");
    SetBreltListMaxSize(0);
    EXPECT_TRUE(ReadEverywhere("").succeeded);
    EXPECT_EQ(ReadEverywhere("1").message, "BreltList exceeds the limit of 0 values" + SO_FAR);
}

// Any bytes in odd rounds; else numbers and separators by turns, with a stray piece now and then.
std::string RandomText(std::mt19937& random, int round) {
    static const std::vector<std::string> pieces[] = {
        {"0", "1", "2", "3", "5", "7", "10", " 12", "-1", "-4", "+6", "2147483647", "-2147483648",
         "2147483648", "-99999999999"},
        {",", ",", ",", " , ", "-", "-", " -", ":", ":\t", "\n", " "},
        {"", "-", "x", ";", ".", "\0"s, "\xff"}};
    const auto below = [&random](std::size_t bound) { return random() % bound; };
    std::string text;
    for (std::size_t k = 0, length = below(13); k < length; ++k) {
        const std::vector<std::string>& from = pieces[below(16) == 0 ? 2 : k % 2];
        text += round % 2 == 1 ? std::string(1, static_cast<char>(below(256)))
                               : from[below(from.size())];
    }
    return text;
}

// Random texts, well-formed or not, never crash and read alike through every entry point.
TEST(BreltListRead, RandomTextsNeverCrashAndEveryEntryPointAgrees) {
    MaxSizeScope scope(100);
    std::mt19937 random(20240521U);
    for (int round = 0; round < 4000 && !HasFailure(); ++round) {
        ReadEverywhere(RandomText(random, round));
    }
}

// Counts the flushes of the written text.
struct FlushCounter : std::stringbuf {
    int sync() override {
        ++flushes;
        return std::stringbuf::sync();
    }
    int flushes = 0;
};

// The writer forms runs greedily, leaves out the default step and breaks lines after nine pieces,
// and what it writes reads back to the same values.
TEST(BreltListWrite, RunsAreFormedGreedilyAndLinesBroken) {
    for (const auto& c : zentu_test::DataCases("utilities/cases/brelt_writes.txt", 3)) {
        SCOPED_TRACE(c.where);
        const Values values = ValuesOf(c.fields[0]);
        const std::string& text = c.fields[2];
        BreltList<int> list;
        list.default_step = std::stoi(c.fields[1]);
        list.elements.insert(values.begin(), values.end());
        LogRecorder recorder;
        std::ostringstream out;
        out << list;
        const Log streamLog = recorder.Take();
        EXPECT_EQ(out.str(), text);
        EXPECT_EQ(write_brelt_list(list), text);
        EXPECT_EQ(recorder.Take(), streamLog);
        EXPECT_EQ(ReadEverywhere(text, list).values, values);
    }
    // Each line ends flushed; numbers follow the stream's format.
    BreltList<int> squares;
    for (int i = 0; i < 30; ++i) {
        squares.Insert(i * i);
    }
    FlushCounter buffer;
    std::ostream out(&buffer);
    out << squares;
    EXPECT_EQ(buffer.flushes, 3);
    squares.SetBreakLines(false);
    EXPECT_EQ(write_brelt_list(squares).find('\n'), std::string::npos);
    BreltList<int> ranges;
    read_brelt_list("1-3,5-7,9-11,13-15,17-19,21,40-60:10", ranges);
    std::ostringstream hex;
    hex << std::hex << ranges;
    EXPECT_EQ(hex.str(), "1-3,5-7,9-b,d-f,11-13,\n15,28-3c:a");
}

}  // namespace
