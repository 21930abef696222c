#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "BreltList.h"
#include "KPL_LogMacros.h"
#include "fuzz_support.h"

namespace {

// The trial reader promises the same log lines as the throwing one, so both runs are recorded;
// file and line are left out because the two readers log from different places.
class LogRecorder {
  public:
    LogRecorder()
        : previous_(KPL_LogMacros::SetLogHandler(
              [this](int type, const char*, int, const char* tag, const std::string& message) {
                  lines_.push_back(std::to_string(type) + tag + message);
              })) {}

    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

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

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zentu_fuzz::PrepareLibrary();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = zentu_fuzz::TextOf(data, size);
    const Reading tried = TryRead(text);
    const Reading read = Read(text);
    zentu_fuzz::Require(tried.accepted == read.accepted, "the trial and the reader agree");
    zentu_fuzz::Require(is_brelt_list(text) == read.accepted, "the check and the reader agree");
    zentu_fuzz::Require(tried.list.elements == read.list.elements,
                        "the trial and the reader keep the same values");
    zentu_fuzz::Require(tried.log == read.log, "the trial and the reader log the same lines");
    if (read.accepted) {
        RequireRoundTrip(read.list);
    }
    return 0;
}
