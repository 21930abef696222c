#include "ZentuStringUtil.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "ZentuFormatUtil.h"
#include "zentu_test_cases.h"

namespace {

using namespace std::string_literals;

// Only the six ASCII blanks are cut, and only at the ends; other control or high bytes stay.
TEST(StringUtilTest, TrimCutsTheSixBlankCharactersAtBothEnds) {
    for (const auto& c : zentu_test::DataCases("utilities/cases/trim.txt", 2)) {
        std::string text = zentu_test::Bytes(c.fields[0]);
        ZentuStringUtil::Trim(text);
        EXPECT_EQ(text, zentu_test::Bytes(c.fields[1])) << c.where;
    }
}

// Only 'a' to 'z' before the first NUL are raised, in short and long texts alike, and
// to_upper_into keeps nothing of what its result held.
TEST(StringUtilTest, UpperCaseRaisesTheLettersBeforeTheFirstNul) {
    std::string reused = "a text that is longer than every text that the cases below hold";
    for (const auto& c : zentu_test::DataCases("utilities/cases/upper.txt", 2)) {
        const std::string text = zentu_test::Bytes(c.fields[0]);
        EXPECT_EQ(ZentuStringUtil::to_upper(text), zentu_test::Bytes(c.fields[1])) << c.where;
        ZentuStringUtil::to_upper_into(text, reused);
        EXPECT_EQ(reused, zentu_test::Bytes(c.fields[1])) << c.where;
    }
}

// Split appends to what the caller holds, counts what it added, and steps past each separator.
TEST(StringUtilTest, SplitAppendsThePartsBetweenSeparators) {
    for (const auto& c : zentu_test::DataCases("utilities/cases/split.txt", 4)) {
        std::vector<std::string> parts = {"kept"};
        const char* separator = c.fields[1] == "-" ? nullptr : c.fields[1].c_str();
        EXPECT_EQ(ZentuStringUtil::Split(c.fields[0], separator, parts), std::stoul(c.fields[2]))
            << c.where;
        std::string joined;
        for (std::size_t i = 1; i < parts.size(); ++i) {
            joined += (i > 1 ? "/" : "") + parts[i];
        }
        EXPECT_EQ(std::make_pair(parts.front(), joined), std::make_pair("kept"s, c.fields[3]))
            << c.where;
    }
}

// A quoted string needs the quote at both ends and at least two characters.
TEST(StringUtilTest, QuotedStringsBeginAndEndWithTheQuote) {
    for (const auto& c : zentu_test::DataCases("utilities/cases/quoted.txt", 3)) {
        EXPECT_EQ(ZentuStringUtil::is_quoted_str(c.fields[0], c.fields[1][0]), c.fields[2] == "1")
            << c.where;
    }
}

// Written numbers are the shortest text that reads back exactly, in printf's exponent style, and
// values written to a job read back to the same bits, whatever their magnitude.
TEST(StringUtilTest, StringGivesTheShortestDecimalTextThatReadsBackToTheSameBits) {
    std::string texts;
    for (int value : {0, -7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        texts += ZentuStringUtil::String(value) + " ";
    }
    EXPECT_EQ(texts, "0 -7 2147483647 -2147483648 ");
    for (const auto& c : zentu_test::DataCases("utilities/cases/written_numbers.txt", 2)) {
        EXPECT_EQ(ZentuStringUtil::String(std::strtod(c.fields[0].c_str(), nullptr)), c.fields[1])
            << c.where;
    }
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
