#include "KPL_Failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace {

using testing::HasSubstr;

constexpr const char* TAG = "|%P|ZentuCmdEngine|ZentuCmdIntItem";

TEST(FailureTest, MessagesAreCutAt1023CharactersWhicheverWayTheyAreBuilt) {
    const std::size_t cases[][2] = {{0, 0},       {1, 1},       {1022, 1022},
                                    {1023, 1023}, {1024, 1023}, {5000, 1023}};
    for (const auto& [length, kept] : cases) {
        const std::string text(length, 'x');
        EXPECT_EQ(KPL_Failure::Format("%s", text.c_str()), std::string(kept, 'x')) << length;
        const KPL_Failure failure(text, TAG);
        EXPECT_EQ(failure.GetMessage(), std::string(kept, 'x')) << length;
        EXPECT_EQ(std::strlen(failure.what()), kept) << length;
    }
    EXPECT_EQ(KPL_Failure::Format("%d:%s", 42, std::string(2000, 'y').c_str()),
              "42:" + std::string(1020, 'y'));
    EXPECT_EQ(KPL_Failure::Format("%s:%d: '%5.2f' %-3s|%x|100%%", "job.par", 12, 3.14159, "T", 255),
              "job.par:12: ' 3.14' T  |ff|100%");
}

TEST(FailureTest, AnswersItsFields) {
    const KPL_Failure plain("plain message", TAG);
    const KPL_Failure identified("MSG_RULE_7", "identified message", TAG);
    const KPL_Failure caused(plain, "caused message", "|%P|LIBUTIL|ZentuParFile");

    EXPECT_EQ(plain.GetErrorCode(), -14);
    EXPECT_EQ(identified.GetErrorCode(), -1);
    EXPECT_EQ(caused.GetErrorCode(), -14);
    EXPECT_EQ(plain.GetId(), "");
    EXPECT_EQ(identified.GetId(), "MSG_RULE_7");
    EXPECT_EQ(plain.GetTypeName(), "KPL_Failure");
    EXPECT_STREQ(identified.what(), "identified message");
    EXPECT_EQ(identified.GetMessage(), "identified message");
    EXPECT_EQ(identified.GetTag(), TAG);
    EXPECT_EQ(caused.GetTag(), "|%P|LIBUTIL|ZentuParFile");
    EXPECT_EQ(plain.GetCause(), nullptr);
    EXPECT_EQ(identified.GetCause(), nullptr);
}

TEST(FailureTest, OwnsACopyOfItsCauseAndOfTheCauseBehindIt) {
    auto inner = std::make_unique<KPL_Failure>("ID_INNER", "inner", "tag-inner");
    auto middle = std::make_unique<KPL_Failure>(*inner, "middle", "tag-middle");
    inner.reset();
    const KPL_Failure outer(*middle, "outer", "tag-outer");
    const KPL_Exception* middleCopy = outer.GetCause();
    ASSERT_NE(middleCopy, nullptr);
    EXPECT_NE(middleCopy, middle.get());
    middle.reset();

    EXPECT_EQ(middleCopy->GetMessage(), "middle");
    EXPECT_EQ(middleCopy->GetTag(), "tag-middle");
    const KPL_Exception* innerCopy = middleCopy->GetCause();
    ASSERT_NE(innerCopy, nullptr);
    EXPECT_EQ(innerCopy->GetId(), "ID_INNER");
    EXPECT_EQ(innerCopy->GetMessage(), "inner");
    EXPECT_EQ(innerCopy->GetCause(), nullptr);
}

TEST(FailureTest, CopiesAreDeepAndKeepTheBacktrace) {
    auto original =
        std::make_unique<KPL_Failure>(KPL_Failure("ID_C", "cause", "tag-c"), "message", TAG);
    const std::vector<std::string> backtrace = original->GetBacktrace();
    KPL_Failure copy(*original);
    KPL_Failure assigned("other", "other-tag");
    assigned = *original;
    original.reset();

    for (const KPL_Failure* failure : {&copy, &assigned}) {
        EXPECT_EQ(failure->GetMessage(), "message");
        EXPECT_EQ(failure->GetTag(), TAG);
        EXPECT_EQ(failure->GetBacktrace(), backtrace);
        ASSERT_NE(failure->GetCause(), nullptr);
        EXPECT_EQ(failure->GetCause()->GetId(), "ID_C");
    }
    EXPECT_NE(copy.GetCause(), assigned.GetCause());
    const KPL_Failure moved(std::move(copy));
    EXPECT_EQ(moved.GetCause()->GetMessage(), "cause");
}

TEST(FailureTest, CloneIsIndependentAndTakesItsOwnBacktrace) {
    auto original = std::make_unique<KPL_Failure>("ID_X", "message", TAG);
    std::unique_ptr<KPL_Exception> clone = original->Clone();
    std::unique_ptr<KPL_Exception> wrapped = KPL_Failure(*original, "wrapped", "tag-w").Clone();
    original.reset();

    ASSERT_NE(dynamic_cast<KPL_Failure*>(clone.get()), nullptr);
    EXPECT_EQ(clone->GetId(), "ID_X");
    EXPECT_EQ(clone->GetMessage(), "message");
    EXPECT_EQ(clone->GetTag(), TAG);
    ASSERT_FALSE(clone->GetBacktrace().empty());
    EXPECT_THAT(clone->GetBacktrace().front(), HasSubstr(" KPL_Failure::Clone() const+0x"));
    EXPECT_EQ(wrapped->GetMessage(), "wrapped");
    ASSERT_NE(wrapped->GetCause(), nullptr);
    EXPECT_EQ(wrapped->GetCause()->GetId(), "ID_X");
}

TEST(FailureTest, BacktraceStartsAtTheThrower) {
    try {
        throw KPL_Failure("thrown", TAG);
    } catch (const KPL_Exception& failure) {
        ASSERT_FALSE(failure.GetBacktrace().empty());
        EXPECT_THAT(failure.GetBacktrace().front(),
                    testing::AllOf(testing::StartsWith("#0 "), HasSubstr("ZentuUtilitiesTests")));
    }
}

}  // namespace
