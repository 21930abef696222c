#include "ZentuFormatUtil.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "ZentuStringUtil.h"

namespace {

// Integer items accept only what fits a signed 32-bit int, so both ends and wrapping are pinned.
TEST(FormatUtilTest, IsIntAcceptsOneSigned32BitDecimalIntegerBetweenBlanks) {
    // clang-format off
    for (const char* text : {"1", " -12 ", "+7", "\v\f7\r", "2147483647", "-2147483648",
                             "00000000000000000000000000042"}) {
        EXPECT_TRUE(ZentuFormatUtil::is_int(text)) << "\"" << text << "\"";
    }
    for (const char* text : {"", " ", "+", "1 2", "12abc", "+-1", "- 1", "0x10", "1.0", "\xB9",
                             "1\xA0", "2147483648", "-2147483649", "4294967296",
                             "99999999999999999999999"}) {
        EXPECT_FALSE(ZentuFormatUtil::is_int(text)) << "\"" << text << "\"";
    }
    // clang-format on
    EXPECT_FALSE(ZentuFormatUtil::is_int(nullptr));
    EXPECT_FALSE(ZentuFormatUtil::is_int(std::string(100000, '9').c_str()));
    EXPECT_TRUE(ZentuFormatUtil::is_int((std::string(100000, '0') + "9").c_str()));
}

// Real items accept one finite decimal number; what underflows is fine, what overflows is not.
TEST(FormatUtilTest, IsDoubleAcceptsOneFiniteDecimalNumberBetweenBlanks) {
    // clang-format off
    for (const std::string& text : std::vector<std::string>{"-12", "1.", "+.5", "-1.5E-3", "1E+05", "\t-0.0\n", "1e-999",
                                   "5e-324", "1.7e308", "0." + std::string(400, '0') + "1"}) {
        EXPECT_TRUE(ZentuFormatUtil::is_double(text.c_str(), text.size())) << text;
    }
    for (const std::string& text : std::vector<std::string>{"", " ", "+", ".", "-.", "1e", "1e+", "e5", ".e1", "1.5.",
                                   "1,5", "2 3", "12abc", "+-1", "1d5", "1e5.5", "inf", "nan",
                                   "0x1p3", "1e999", "-1e999", "1.8e308", "\xB9", "1\xA0",
                                   "1" + std::string(400, '0')}) {
        EXPECT_FALSE(ZentuFormatUtil::is_double(text.c_str(), text.size())) << text;
    }
    // clang-format on
    EXPECT_FALSE(ZentuFormatUtil::is_double(nullptr, 3));
}

// Callers hand unterminated slices, so only the given length counts, and a NUL ends it earlier.
TEST(FormatUtilTest, IsDoubleReadsOnlyTheGivenLengthUpToANul) {
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
    // clang-format off
    const std::string texts[] = {
        // Signs, blanks and stray bytes.
        "", " ", "+", "-", "--1", "+-1", "- 1", "\t\n\v\f\r 42", "\xff", "1\xa0", "1,5", "-0",
        // Decimal forms, complete and cut short.
        "  -1.5e3x", "1e", "1e+", "1e-x", ".", ".5", "1.", "-.5e-2", "+.e1", "1.5.2",
        "2.2250738585072014e-308",
        // Hexadecimal forms, infinity and NaN.
        "0x1p3", "0X1.8P1", "0x", "0xg", "0x.p1", "0x.8", "-0x10", "0x-1", "0x1p", "0x1p+", "0xinf",
        "inf", "-Infinity", "infinit", "INFx", "-nan", "nan(123)", "nan(", "NaN(abc_1)", "nan(1-)",
        "nanx",
        // Beyond the range of double at either end, and denormals.
        "1e999", "-1e999", "-1e-999", "4e-324", "3e-324", "2e-324", "1e-310", "0x1p2000",
        "-0x1p2000", "0x1p-1074", "0x1p-1075", "0x0.00001p-1030", "1e99999999999999999999",
        "1e-99999999999999999999", "0e99999", "1.7976931348623157e+308", "1.7976931348623159e+308",
        // Very long digit strings.
        std::string(100000, '9'), "0." + std::string(100000, '0') + "1",
        "0." + std::string(1000, '0') + "1e+700", std::string(1000, '1') + "e-1300",
        "0x" + std::string(1000, 'f') + "p-5000", "1." + std::string(5000, '5') + "e-3",
        std::string(500, '0') + "1e-400"};
    // clang-format on
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
