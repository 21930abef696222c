#include "ZentuStringUtil.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "ZentuFormatUtil.h"

namespace {

// The text after Trim.
std::string Trimmed(std::string text) {
    ZentuStringUtil::Trim(text);
    return text;
}

TEST(StringUtilTest, TrimCutsTheSixBlankCharactersAtBothEnds) {
    for (const char* text : {"a b", " a b", "a b\t", " \t\r\n\v\fa b\f\v\n\r\t "}) {
        EXPECT_EQ(Trimmed(text), "a b") << "\"" << text << "\"";
    }
    for (const char* text : {"x", "a \t b", "\xA0x\xA0", "\x1Fx\x1F", "\x85x"}) {
        EXPECT_EQ(Trimmed(text), text) << "\"" << text << "\"";
    }
    EXPECT_EQ(Trimmed(""), "");
    EXPECT_EQ(Trimmed(" \t\r\n\v\f"), "");
}

TEST(StringUtilTest, SplitAppendsThePartsBetweenSeparators) {
    const struct {
        const char* text;
        const char* separator;
        std::vector<std::string> parts;
    } cases[] = {{"", ",", {}},
                 {"", nullptr, {}},
                 {"a", ",", {"a"}},
                 {"a,b", ",", {"a", "b"}},
                 {",", ",", {"", ""}},
                 {"a,,b,", ",", {"a", "", "b", ""}},
                 {" a , b ", ",", {" a ", " b "}},
                 {"a::b:c", "::", {"a", "b:c"}},
                 {":::", "::", {"", ":"}},
                 {"aaaa", "aa", {"", "", ""}},
                 {"aaa", "aa", {"", "a"}},
                 {"a,b", "", {"a,b"}},
                 {"a,b", nullptr, {"a,b"}},
                 {"a;b", ",", {"a;b"}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "\"" << c.text << "\" by \""
                                        << (c.separator ? c.separator : "(null)") << "\"");
        std::vector<std::string> parts = {"kept"};
        EXPECT_EQ(ZentuStringUtil::Split(c.text, c.separator, parts), c.parts.size());
        std::vector<std::string> expected = {"kept"};
        expected.insert(expected.end(), c.parts.begin(), c.parts.end());
        EXPECT_EQ(parts, expected);
    }
}

TEST(StringUtilTest, QuotedStringsBeginAndEndWithTheQuote) {
    const struct {
        const char* text;
        char quote;
        bool quoted;
    } cases[] = {{"", '"', false},       {"\"", '"', false},    {"\"\"", '"', true},
                 {"\"a b\"", '"', true}, {"'a'", '"', false},   {"'a'", '\'', true},
                 {"\"a'", '"', false},   {"a\"", '"', false},   {"\"a", '"', false},
                 {"''", '\'', true},     {"'a\"", '\'', false}, {"x\"a\"", '"', false}};
    for (const auto& c : cases) {
        EXPECT_EQ(ZentuStringUtil::is_quoted_str(c.text, c.quote), c.quoted)
            << c.text << " with " << c.quote;
    }
}

TEST(StringUtilTest, StringGivesTheShortestExactDecimalText) {
    std::string texts;
    for (int value : {0, -7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        texts += ZentuStringUtil::String(value) + " ";
    }
    EXPECT_EQ(texts, "0 -7 2147483647 -2147483648 ");
    texts.clear();
    for (double value : {2.0, -2.5, 0.1, -0.0, 1.0 / 3.0, 123456.789, 0.001, 1.5e-7, 1e16, 1e21,
                         123456789012345680.0, DBL_MAX, std::numeric_limits<double>::denorm_min(),
                         HUGE_VAL, -HUGE_VAL}) {
        texts += ZentuStringUtil::String(value) + " ";
    }
    EXPECT_EQ(texts,
              "2 -2.5 0.1 -0 0.3333333333333333 123456.789 0.001 1.5e-07 1e+16 1e+21 "
              "123456789012345680 1.7976931348623157e+308 5e-324 inf -inf ");
}

TEST(StringUtilTest, StringOfDoubleReadsBackToTheSameBits) {
    // Half the samples are arbitrary bit patterns, half values of everyday magnitude.
    std::mt19937_64 generator(20240611);
    std::uniform_real_distribution<double> everyday(-1e4, 1e4);
    for (int sample = 0; sample < 20000; ++sample) {
        const std::uint64_t bits = generator();
        double value = everyday(generator);
        if (sample % 2 == 1) {
            std::memcpy(&value, &bits, sizeof value);
        }
        if (std::isnan(value)) {
            continue;
        }
        const std::string text = ZentuStringUtil::String(value);
        const char* end = nullptr;
        const double back = ZentuFormatUtil::str_to_double(text.c_str(), &end);
        ASSERT_EQ(std::memcmp(&back, &value, sizeof value), 0) << text;
        ASSERT_EQ(end, text.c_str() + text.size()) << text;
    }
}

}  // namespace
