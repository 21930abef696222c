#include "KPL_LogMacros.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using KPL_LogMacros::log_msg;
using KPL_LogMacros::LogHandler;
using KPL_LogMacros::LogMsgType;

// One message as a handler received it.
struct Record {
    int type;
    std::string file;
    int line;
    std::string tag;
    std::string message;
};

// Installs a recording handler at the default verbosity and restores the global state after.
class LogTest : public testing::Test {
  protected:
    void SetUp() override {
        savedVerbosity_ = KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_WARNING);
        savedHandler_ = KPL_LogMacros::SetLogHandler(Recorder());
    }

    void TearDown() override {
        KPL_LogMacros::SetLogHandler(savedHandler_);
        KPL_LogMacros::SetLogVerbosity(savedVerbosity_);
    }

    // A handler that appends what it receives to records_.
    LogHandler Recorder() {
        return [this](int type, const char* file, int line, const char* tag,
                      const std::string& message) {
            records_.push_back({type, file, line, tag, message});
        };
    }

    int savedVerbosity_ = 0;
    LogHandler savedHandler_;
    std::vector<Record> records_;
};

TEST_F(LogTest, HandlerReceivesTheWholeFormattedMessageWithItsSource) {
    log_msg(KPL_LogMacros::LOG_WARNING, "src/io/Reader.cpp", 42, "|%P|ZentuCmdEngine|Reader",
            "item %s of %s has %d values", "THICK", "DVAR_1", 3);
    const std::string longText(5000, 'z');
    log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "%s", longText.c_str());

    ASSERT_EQ(records_.size(), 2u);
    EXPECT_EQ(records_[0].type, 2);
    EXPECT_EQ(records_[0].file, "src/io/Reader.cpp");
    EXPECT_EQ(records_[0].line, 42);
    EXPECT_EQ(records_[0].tag, "|%P|ZentuCmdEngine|Reader");
    EXPECT_EQ(records_[0].message, "item THICK of DVAR_1 has 3 values");
    EXPECT_EQ(records_[1].message, longText);
}

TEST_F(LogTest, MessagesAboveTheVerbosityAreDroppedUnformatted) {
    EXPECT_EQ(savedVerbosity_, KPL_LogMacros::LOG_WARNING);
    for (int verbosity : {0, 1, 2, 3, 6, 7}) {
        KPL_LogMacros::SetLogVerbosity(verbosity);
        for (int type : {1, 2, 3, 7}) {
            SCOPED_TRACE(testing::Message() << "verbosity " << verbosity << " type " << type);
            records_.clear();
            int formatted = -1;
            log_msg(static_cast<LogMsgType>(type), "f", 1, "t", "abc%n", &formatted);
            EXPECT_EQ(records_.size(), type <= verbosity ? 1u : 0u);
            EXPECT_EQ(formatted, type <= verbosity ? 3 : -1);
            EXPECT_EQ(KPL_LogMacros::IsLogEnabled(static_cast<LogMsgType>(type)),
                      type <= verbosity);
        }
    }
    EXPECT_EQ(KPL_LogMacros::SetLogVerbosity(2), 7);
}

TEST_F(LogTest, SetLogHandlerReturnsThePreviousOneAndEmptyStandsForTheDefault) {
    int otherCalls = 0;
    LogHandler recorder = KPL_LogMacros::SetLogHandler(
        [&otherCalls](int, const char*, int, const char*, const std::string&) { ++otherCalls; });
    ASSERT_TRUE(recorder);
    log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "to other");
    LogHandler other = KPL_LogMacros::SetLogHandler(recorder);
    log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "back");
    other(1, "f", 1, "t", "m");

    EXPECT_EQ(otherCalls, 2);
    ASSERT_EQ(records_.size(), 1u);
    EXPECT_EQ(records_[0].message, "back");
    KPL_LogMacros::SetLogHandler(LogHandler());
    EXPECT_FALSE(KPL_LogMacros::SetLogHandler(LogHandler()));
}

TEST_F(LogTest, DefaultHandlerWritesOneLineToStandardError) {
    KPL_LogMacros::SetLogHandler(LogHandler());
    KPL_LogMacros::SetLogVerbosity(9);
    const std::pair<int, const char*> cases[] = {{1, "error: text 1\n"}, {2, "warning: text 2\n"},
                                                 {3, "info: text 3\n"},  {6, "info: text 6\n"},
                                                 {7, "trace: text 7\n"}, {9, "trace: text 9\n"}};
    for (const auto& [type, line] : cases) {
        testing::internal::CaptureStderr();
        log_msg(static_cast<LogMsgType>(type), "f", 1, "t", "text %d", type);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
    }
    EXPECT_TRUE(records_.empty());
}

TEST_F(LogTest, HandlerMayLogItself) {
    KPL_LogMacros::SetLogHandler(
        [this](int, const char*, int, const char*, const std::string& message) {
            records_.push_back({0, "", 0, "", message});
            if (message == "outer") {
                log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "inner");
            }
        });
    log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "outer");
    ASSERT_EQ(records_.size(), 2u);
    EXPECT_EQ(records_[1].message, "inner");
}

}  // namespace
