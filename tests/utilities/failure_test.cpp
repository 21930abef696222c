#include "KPL_Failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace {

using testing::HasSubstr;

constexpr const char* TAG = "|%P|ZentuCmdEngine|ZentuCmdIntItem";

// A failure and its causes as "id/message/tag" joined by " <- ".
std::string Chain(const KPL_Exception& failure) {
    std::string chain;
    for (const KPL_Exception* link = &failure; link != nullptr; link = link->GetCause()) {
        chain += (chain.empty() ? "" : " <- ") + link->GetId() + "/" + link->GetMessage() + "/" +
                 link->GetTag();
    }
    return chain;
}

// Every failure keeps at most 1023 characters, however it was built, so messages fit a buffer.
TEST(FailureTest, MessagesAreCutAt1023CharactersWhicheverWayTheyAreBuilt) {
    const std::size_t cases[][2] = {{1022, 1022}, {1023, 1023}, {1024, 1023}};
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

// Hosts tell failures apart by error code (-1 with an identifier, -14 without), id and type name.
// A failure owns deep copies of its causes, so they outlive the originals; copies, assignments,
// moves and clones carry the whole chain, and only a clone takes a back trace of its own.
TEST(FailureTest, AnswersItsFieldsAndCopiesClonesAndCausesAreDeep) {
    const KPL_Failure plain("plain message", TAG);
    const KPL_Failure identified("MSG_RULE_7", "identified message", TAG);
    const KPL_Failure caused(identified, "caused message", "tag-c");
    EXPECT_EQ(
        std::make_tuple(plain.GetErrorCode(), identified.GetErrorCode(), caused.GetErrorCode()),
        std::make_tuple(-14, -1, -14));
    EXPECT_EQ(plain.GetTypeName(), "KPL_Failure");
    EXPECT_STREQ(identified.what(), "identified message");
    EXPECT_EQ(Chain(plain), "/plain message/" + std::string(TAG));
    EXPECT_EQ(Chain(caused),
              "/caused message/tag-c <- MSG_RULE_7/identified message/" + std::string(TAG));
    auto inner = std::make_unique<KPL_Failure>("ID_INNER", "inner", "tag-inner");
    auto middle = std::make_unique<KPL_Failure>(*inner, "middle", "tag-middle");
    inner.reset();
    auto outer = std::make_unique<KPL_Failure>(*middle, "outer", TAG);
    EXPECT_NE(outer->GetCause(), middle.get());
    middle.reset();
    const std::string chain =
        "/outer/" + std::string(TAG) + " <- /middle/tag-middle <- ID_INNER/inner/tag-inner";
    const std::vector<std::string> backtrace = outer->GetBacktrace();
    KPL_Failure copy(*outer);
    KPL_Failure assigned("other", "other-tag");
    assigned = *outer;
    const std::unique_ptr<KPL_Exception> clone = outer->Clone();
    outer.reset();
    for (const KPL_Failure* failure : {&copy, &assigned}) {
        EXPECT_EQ(Chain(*failure), chain);
        EXPECT_EQ(failure->GetBacktrace(), backtrace);
    }
    EXPECT_NE(copy.GetCause(), assigned.GetCause());
    EXPECT_EQ(Chain(KPL_Failure(std::move(copy))), chain);
    ASSERT_NE(dynamic_cast<KPL_Failure*>(clone.get()), nullptr);
    EXPECT_EQ(Chain(*clone), chain);
    EXPECT_EQ(Chain(*identified.Clone()), "MSG_RULE_7/identified message/" + std::string(TAG));
    ASSERT_FALSE(clone->GetBacktrace().empty());
    EXPECT_THAT(clone->GetBacktrace().front(), HasSubstr(" KPL_Failure::Clone() const+0x"));
}

// The back trace starts at the code that threw, not inside the failure's constructors.
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
