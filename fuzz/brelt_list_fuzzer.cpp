#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "BreltList.h"
#include "KPL_LogMacros.h"
#include "fuzz_support.h"

namespace {

// The trial reader promises the same log lines as the throwing one, so both runs are recorded;
// file and line are left out because the two readers log from different places.
class LogRecorder {
  public:
    // Records from here on, keeping the handler it replaces.
    LogRecorder()
        : previous_(KPL_LogMacros::SetLogHandler(
              [this](int type, const char*, int, const char* tag, const std::string& message) {
                  lines_.push_back(std::to_string(type) + tag + message);
              })) {}

    // A copy would put the previous handler back a second time.
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    // Later runs must not append to lines that nobody reads any more.
    ~LogRecorder() { KPL_LogMacros::SetLogHandler(previous_); }

    // The lines recorded so far, in the order they were logged.
    const std::vector<std::string>& Lines() const { return lines_; }

  private:
    KPL_LogMacros::LogHandler previous_;
    std::vector<std::string> lines_;
};

// What one reader made of a text, in the terms in which the readers must agree.
struct Reading {
    bool accepted;
    BreltList<int> list;
    std::vector<std::string> log;
};

// The reader that raises nothing, as automatically typed items use it.
Reading TryRead(const std::string& text) {
    const LogRecorder recorder;
    BreltList<int> list;
    const bool accepted = try_read_brelt_list(text, list);
    return {accepted, list, recorder.Lines()};
}

// The reader that hosts call, whose refusal is a KPL_Failure.
Reading Read(const std::string& text) {
    const LogRecorder recorder;
    BreltList<int> list;
    const bool accepted = zentu_fuzz::Completes([&] { read_brelt_list(text, list); });
    return {accepted, list, recorder.Lines()};
}

// Whatever the writer makes of a list must read back to the same values, in either line layout.
void RequireRoundTrip(BreltList<int> list) {
    for (const bool breakLines : {true, false}) {
        list.SetBreakLines(breakLines);
        const std::string written = write_brelt_list(list);
        BreltList<int> back;
        zentu_fuzz::Require(try_read_brelt_list(written, back), "a written list reads back");
        zentu_fuzz::Require(back.elements == list.elements, "a written list keeps its values");
    }
}

// An ascending range with a positive step, whose values exact arithmetic gives without asking the
// reader: random texts seldom spell a range near the ends of int, where 32-bit sums wrap.
struct Range {
    std::int32_t low;
    std::int32_t high;
    std::int32_t step;
};

// The first twelve bytes as low, high and step, ordered and made positive; none when the input is
// shorter or the step cannot be made positive.
std::optional<Range> RangeOf(const std::uint8_t* data, std::size_t size) {
    std::array<std::int32_t, 3> numbers{};
    if (size < sizeof numbers) {
        return std::nullopt;
    }
    std::memcpy(numbers.data(), data, sizeof numbers);
    auto [low, high, step] = numbers;
    if (step == 0 || step == std::numeric_limits<std::int32_t>::min()) {
        return std::nullopt;
    }
    if (low > high) {
        std::swap(low, high);
    }
    return Range{low, high, step < 0 ? -step : step};
}

// The range as a text holds low, low + step, ... up to high, computed without wrapping; one that
// would pass the bound must be refused instead.
void RequireExactRange(const Range& range) {
    const std::string text = std::to_string(range.low) + "-" + std::to_string(range.high) + ":" +
                             std::to_string(range.step);
    BreltList<int> list;
    const bool accepted = zentu_fuzz::Completes([&] { read_brelt_list(text, list); });
    const std::int64_t count = (std::int64_t{range.high} - range.low) / range.step + 1;
    if (count > static_cast<std::int64_t>(zentu_fuzz::kListBound)) {
        zentu_fuzz::Require(!accepted, "a range beyond the bound is refused");
        return;
    }
    std::set<int> expected;
    for (std::int64_t value = range.low; value <= range.high; value += range.step) {
        expected.insert(static_cast<int>(value));
    }
    zentu_fuzz::Require(accepted, "a range within the bound is read");
    zentu_fuzz::Require(list.elements == expected, "a range holds exactly its steps");
}

}  // namespace

// Runs once before the first input, so that every input meets the same library setup.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zentu_fuzz::PrepareLibrary();
    return 0;
}

// libFuzzer's entry point: any abort, sanitizer report or escaping exception is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = zentu_fuzz::TextOf(data, size);
    const Reading tried = TryRead(text);
    const Reading read = Read(text);
    zentu_fuzz::Require(tried.accepted == read.accepted, "the trial and the reader agree");
    zentu_fuzz::Require(is_brelt_list(text) == read.accepted, "the check and the reader agree");
    // Without trace lines the check counts instead of keeping the ranges.
    KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_WARNING);
    const bool quietly = is_brelt_list(text);
    KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_TRACE);
    zentu_fuzz::Require(quietly == read.accepted, "the quiet check and the reader agree");
    zentu_fuzz::Require(tried.list.elements == read.list.elements,
                        "the trial and the reader keep the same values");
    zentu_fuzz::Require(tried.log == read.log, "the trial and the reader log the same lines");
    if (read.accepted) {
        RequireRoundTrip(read.list);
        std::vector<int> visited;
        visit_brelt_list_values(text, [&visited](int value) { visited.push_back(value); });
        zentu_fuzz::Require(std::equal(visited.begin(), visited.end(), read.list.elements.begin(),
                                       read.list.elements.end()),
                            "visiting gives the values read, in order");
    }
    if (const std::optional<Range> range = RangeOf(data, size)) {
        RequireExactRange(*range);
    }
    return 0;
}
