#include "KPL_Backtrace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KPL_LogMacros.h"

namespace {

using testing::HasSubstr;

// Written after each recursive call so that the compiler cannot turn the call into a jump.
volatile int g_depthReached = 0;

// Captures with the given skip from one fixed call site, so that captures differ only by skip.
[[gnu::noinline]] KPL_Backtrace::Frames CaptureInHelper(std::size_t skip) {
    return KPL_Backtrace::CaptureFrames(skip);
}

// Captures below depth nested calls of itself.
[[gnu::noinline]] KPL_Backtrace::Frames CaptureAtDepth(int depth) {
    if (depth == 0) {
        return KPL_Backtrace::CaptureFrames();
    }
    KPL_Backtrace::Frames frames = CaptureAtDepth(depth - 1);
    g_depthReached = depth;
    return frames;
}

// Frames are numbered from the caller outwards, each with its address, after exactly the skipped
// ones; a capture keeps at most 64 frames and resolves their texts once.
TEST(BacktraceTest, NumbersAtMost64FramesFromTheCallerOutwardsAfterTheSkippedOnes) {
    const std::vector<std::string> frames = KPL_Backtrace::GetBacktrace();
    ASSERT_FALSE(frames.empty());
    EXPECT_THAT(frames.front(), HasSubstr("ZentuUtilitiesTests"));
    for (std::size_t index = 0; index < frames.size(); ++index) {
        EXPECT_THAT(frames[index], testing::StartsWith("#" + std::to_string(index) + " "));
        EXPECT_THAT(frames[index], testing::MatchesRegex(".* \\[0x[0-9a-f]+\\]"));
    }
    const KPL_Backtrace::Frames deep = CaptureAtDepth(100);
    EXPECT_EQ(deep.size(), 64u);
    EXPECT_EQ(&deep.Texts(), &deep.Texts());
    EXPECT_EQ(deep.Texts().size(), 64u);
    EXPECT_TRUE(KPL_Backtrace::Frames().Texts().empty());
    std::vector<KPL_Backtrace::Frames> captures;
    for (std::size_t skip = 0; skip < 3; ++skip) {
        captures.push_back(CaptureInHelper(skip));
    }
    const std::vector<std::string>& all = captures[0].Texts();
    for (std::size_t skip = 1; skip < 3; ++skip) {
        const std::vector<std::string>& skipped = captures[skip].Texts();
        ASSERT_EQ(skipped.size() + skip, all.size());
        for (std::size_t index = 0; index < skipped.size(); ++index) {
            EXPECT_EQ(skipped[index].substr(skipped[index].find(' ')),
                      all[index + skip].substr(all[index + skip].find(' ')));
        }
    }
}

// Library frames name the function demangled with its parameters and the library it lives in.
TEST(BacktraceTest, NamesExportedFunctionsDemangledWithTheirLibrary) {
    std::vector<std::string> frames;
    const KPL_LogMacros::LogHandler previous = KPL_LogMacros::SetLogHandler(
        [&frames](int, const char*, int, const char*, const std::string&) {
            frames = KPL_Backtrace::GetBacktrace();
        });
    KPL_LogMacros::log_msg(KPL_LogMacros::LOG_ERROR, __FILE__, __LINE__, "tag", "message");
    KPL_LogMacros::SetLogHandler(previous);
    EXPECT_THAT(frames, testing::Contains(HasSubstr(
                            " KPL_LogMacros::log_msg(KPL_LogMacros::LogMsgType, char const*, int, "
                            "char const*, char const*, ...)+0x")));
    EXPECT_THAT(frames, testing::Contains(HasSubstr("(libZentuUtilities.so")));
}

}  // namespace
