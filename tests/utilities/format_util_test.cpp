#include "ZentuFormatUtil.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "ZentuStringUtil.h"
#include "zentu_test_cases.h"

namespace {

// Integer items accept one signed 32-bit decimal integer and real items one finite decimal
// number, between blanks; what underflows is fine, what overflows is not.
TEST(FormatUtilTest, IsIntAndIsDoubleAcceptOneDecimalNumberBetweenBlanksInTheGivenLength) {
    for (const auto& c : zentu_test::DataCases("utilities/cases/number_texts.txt", 3)) {
        const std::string text = zentu_test::Bytes(c.fields[0]);
        if (c.fields[1] != "-") {
            EXPECT_EQ(ZentuFormatUtil::is_int(text.c_str()), c.fields[1] == "1") << c.where;
        }
        if (c.fields[2] != "-") {
            EXPECT_EQ(ZentuFormatUtil::is_double(text.c_str(), text.size()), c.fields[2] == "1")
                << c.where;
        }
    }
    // No text, and digit runs too long for a case file.
    EXPECT_FALSE(ZentuFormatUtil::is_int(nullptr));
    EXPECT_FALSE(ZentuFormatUtil::is_double(nullptr, 3));
    EXPECT_FALSE(ZentuFormatUtil::is_int(std::string(100000, '9').c_str()));
    EXPECT_TRUE(ZentuFormatUtil::is_int((std::string(100000, '0') + "9").c_str()));
    // Callers hand unterminated slices, so only the given length counts, and a NUL ends it earlier.
    const char unterminated[] = {'4', '.', '5'};
    const char withNul[] = {'7', '\0', 'x', 'y'};
    EXPECT_TRUE(ZentuFormatUtil::is_double(unterminated, sizeof unterminated));
    EXPECT_FALSE(ZentuFormatUtil::is_double(unterminated, 0));
    EXPECT_TRUE(ZentuFormatUtil::is_double(withNul, sizeof withNul));
    EXPECT_TRUE(ZentuFormatUtil::is_double("12.5abc", 4));
    EXPECT_FALSE(ZentuFormatUtil::is_double("12.5abc", 5));
    EXPECT_FALSE(ZentuFormatUtil::is_double("1e5", 2));
    EXPECT_TRUE(ZentuFormatUtil::is_double("3", 1000));
}

// The reader replaces strtod without its locale, so value, sign and end must match it everywhere.
TEST(FormatUtilTest, StrToDoubleReadsLikeStrtodInTheCLocale) {
    // The empty text, which a case file cannot hold, and very long digit strings.
    std::vector<std::string> texts = {"",
                                      std::string(100000, '9'),
                                      "0." + std::string(100000, '0') + "1",
                                      "0." + std::string(1000, '0') + "1e+700",
                                      std::string(1000, '1') + "e-1300",
                                      "0x" + std::string(1000, 'f') + "p-5000",
                                      "1." + std::string(5000, '5') + "e-3",
                                      std::string(500, '0') + "1e-400"};
    for (const auto& c : zentu_test::DataCases("utilities/cases/strtod_texts.txt", 1)) {
        texts.push_back(zentu_test::Bytes(c.fields[0]));
    }
    for (const std::string& text : texts) {
        SCOPED_TRACE("\"" + text.substr(0, 40) + "\"");
        char* expectedEnd = nullptr;
        const double expected = std::strtod(text.c_str(), &expectedEnd);
        const char* end = nullptr;
        const double value = ZentuFormatUtil::str_to_double(text.c_str(), &end);
        EXPECT_EQ(end - text.c_str(), expectedEnd - text.c_str());
        EXPECT_EQ(std::signbit(value), std::signbit(expected));
        EXPECT_TRUE(std::isnan(expected) ? std::isnan(value) : value == expected) << value;
    }
    // Null arguments are tolerated: no end wanted, or no text (then the end is null too).
    EXPECT_EQ(ZentuFormatUtil::str_to_double("2.5", nullptr), 2.5);
    const char* end = "unchanged";
    EXPECT_EQ(ZentuFormatUtil::str_to_double(nullptr, &end), 0.0);
    EXPECT_EQ(end, nullptr);
}

// A host may run under a decimal-comma locale; job files always use a decimal point.
TEST(FormatUtilTest, NumbersIgnoreADecimalCommaLocale) {
    const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
    bool switched = false;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR"}) {
        switched = switched || std::setlocale(LC_NUMERIC, name) != nullptr;
    }
    if (!switched) {
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    const char* end = nullptr;
    const double value = ZentuFormatUtil::str_to_double("1.5e1,25", &end);
    const std::string rest = end;
    const bool pointOk = ZentuFormatUtil::is_double("-2.75", 5);
    const bool commaOk = ZentuFormatUtil::is_double("2,75", 4);
    const std::string written = ZentuStringUtil::String(-2.75);
    const std::string decimalPoint = std::localeconv()->decimal_point;
    std::setlocale(LC_NUMERIC, previous.c_str());
    EXPECT_EQ(decimalPoint, ",");
    EXPECT_EQ(value, 15.0);
    EXPECT_EQ(rest, ",25");
    EXPECT_TRUE(pointOk);
    EXPECT_FALSE(commaOk);
    EXPECT_EQ(written, "-2.75");
}

}  // namespace
