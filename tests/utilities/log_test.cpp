#include "KPL_LogMacros.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "zentu_test_cases.h"

namespace {

using KPL_LogMacros::log_msg;
using KPL_LogMacros::LogHandler;
using KPL_LogMacros::LogMsgType;

// One message as a handler received it: type, file, line, tag and text.
using Record = std::tuple<int, std::string, int, std::string, std::string>;

// Installs a recording handler at the default verbosity and restores the global state after.
class LogTest : public testing::Test {
  protected:
    void SetUp() override {
        savedVerbosity_ = KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_WARNING);
        savedHandler_ =
            KPL_LogMacros::SetLogHandler([this](int type, const char* file, int line,
                                                const char* tag, const std::string& message) {
                records_.emplace_back(type, file, line, tag, message);
                if (message == "outer") {
                    log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "inner");
                }
            });
    }

    void TearDown() override {
        KPL_LogMacros::SetLogHandler(savedHandler_);
        KPL_LogMacros::SetLogVerbosity(savedVerbosity_);
    }

    int savedVerbosity_ = 0;
    LogHandler savedHandler_;
    std::vector<Record> records_;
};

// Hosts route messages by source and tag, so they get those and the whole formatted text (no
// length cut), and a handler may log in turn.
TEST_F(LogTest, HandlerReceivesTheWholeFormattedMessageWithItsSource) {
    log_msg(KPL_LogMacros::LOG_WARNING, "src/io/Reader.cpp", 42, "|%P|ZentuCmdEngine|Reader",
            "item %s of %s has %d values", "THICK", "DVAR_1", 3);
    const std::string longText(5000, 'z');
    log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "%s", longText.c_str());
    log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "outer");
    EXPECT_EQ(records_,
              (std::vector<Record>{{2, "src/io/Reader.cpp", 42, "|%P|ZentuCmdEngine|Reader",
                                    "item THICK of DVAR_1 has 3 values"},
                                   {1, "f", 1, "t", longText},
                                   {1, "f", 1, "t", "outer"},
                                   {1, "f", 1, "t", "inner"}}));
}

// Trace lines are frequent, so messages above the verbosity must not even be formatted.
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

// Hosts chain and restore handlers, so SetLogHandler hands back the previous one, and an empty
// handler stands for the default, which writes one line per message to standard error.
TEST_F(LogTest, SetLogHandlerReturnsThePreviousOneAndEmptyStandsForTheDefault) {
    LogHandler recorder = KPL_LogMacros::SetLogHandler(LogHandler());
    ASSERT_TRUE(recorder);
    EXPECT_FALSE(KPL_LogMacros::SetLogHandler(LogHandler()));
    KPL_LogMacros::SetLogVerbosity(9);
    for (const auto& c : zentu_test::DataCases("utilities/cases/default_log_lines.txt", 2)) {
        const int type = std::stoi(c.fields[0]);
        testing::internal::CaptureStderr();
        log_msg(static_cast<LogMsgType>(type), "f", 1, "t", "text %d", type);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.fields[1]) << c.where;
    }
    EXPECT_TRUE(records_.empty());
    KPL_LogMacros::SetLogHandler(recorder);
    log_msg(KPL_LogMacros::LOG_ERROR, "f", 1, "t", "back");
    EXPECT_EQ(records_.size(), 1u);
}

// Work whose outcome is not known yet holds its messages: a kept hold logs them in order, with
// their sources, into the hold around it if any; a dropped one logs nothing; messages of other
// threads pass.
TEST_F(LogTest, HeldMessagesAreLoggedInOrderWhenDeliveredAndDroppedOtherwise) {
    const auto logged = [](const char* text) {
        log_msg(KPL_LogMacros::LOG_WARNING, "f", 2, "t", "%s", text);
    };
    {
        KPL_LogMacros::HeldMessages outer;
        logged("a");
        {
            KPL_LogMacros::HeldMessages dropped;
            logged("lost");
        }
        {
            KPL_LogMacros::HeldMessages kept;
            logged("b");
            std::thread([&logged] { logged("other thread"); }).join();
            kept.Deliver();
            logged("c");
        }
        EXPECT_EQ(records_, (std::vector<Record>{{2, "f", 2, "t", "other thread"}}));
        outer.Deliver();
    }
    logged("d");
    std::vector<std::string> texts;
    for (const Record& record : records_) {
        texts.push_back(std::get<4>(record));
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"other thread", "a", "b", "c", "d"}));
}

}  // namespace
