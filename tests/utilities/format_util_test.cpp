#include "ZentuFormatUtil.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "ZentuStringUtil.h"

namespace {

TEST(FormatUtilTest, IsIntAcceptsOneSigned32BitDecimalIntegerBetweenBlanks) {
    for (const char* text : {"1", " -12 ", "+7", "-0", "\t5\n", "\v\f7\r", "2147483647",
                             "-2147483648", "00000000000000000000000000042"}) {
        EXPECT_TRUE(ZentuFormatUtil::is_int(text)) << "\"" << text << "\"";
    }
    for (const char* text :
         {"",           " ",           "+",           "-",          "1 2",
          "12abc",      "abc12",       "+-1",         "--1",        "- 1",
          "0x10",       "1.0",         "1e3",         "\xB9",       "1\xA0",
          "2147483648", "+2147483648", "-2147483649", "4294967296", "99999999999999999999999"}) {
        EXPECT_FALSE(ZentuFormatUtil::is_int(text)) << "\"" << text << "\"";
    }
    EXPECT_FALSE(ZentuFormatUtil::is_int(nullptr));
    EXPECT_FALSE(ZentuFormatUtil::is_int(std::string(100000, '9').c_str()));
    EXPECT_TRUE(ZentuFormatUtil::is_int((std::string(100000, '0') + "9").c_str()));
}

TEST(FormatUtilTest, IsDoubleAcceptsOneFiniteDecimalNumberBetweenBlanks) {
    const std::string tiny = "0." + std::string(400, '0') + "1";
    for (const std::string text : {"1", "-12", "1.", ".5", "+.5", "-1.5E-3", "1e5", "1E+05",
                                   "00.50", " 2 ", "\t-0.0\n", "1e-999", "5e-324", "1.7e308"}) {
        EXPECT_TRUE(ZentuFormatUtil::is_double(text.c_str(), text.size())) << text;
    }
    EXPECT_TRUE(ZentuFormatUtil::is_double(tiny.c_str(), tiny.size()));
    const std::string huge = "1" + std::string(400, '0');
    for (const std::string text :
         {"",      " ",     "+",    "-",     ".",      "-.",      "1e",       "1e+",
          "1e-",   "e5",    ".e1",  "-.e1",  "1.5.",   "1..5",    "1,5",      "2 3",
          "12abc", "+-1",   "1d5",  "1e5.5", "inf",    "-inf",    "infinity", "nan",
          "NaN",   "0x1p3", "0x10", "1e999", "-1e999", "1.8e308", "\xB9",     "1\xA0"}) {
        EXPECT_FALSE(ZentuFormatUtil::is_double(text.c_str(), text.size())) << text;
    }
    EXPECT_FALSE(ZentuFormatUtil::is_double(huge.c_str(), huge.size()));
    EXPECT_FALSE(ZentuFormatUtil::is_double(nullptr, 3));
}

TEST(FormatUtilTest, IsDoubleReadsOnlyTheGivenLengthUpToANul) {
    const char unterminated[] = {'4', '.', '5'};
    const char withNul[] = {'7', '\0', 'x', 'y'};
    EXPECT_TRUE(ZentuFormatUtil::is_double(unterminated, sizeof unterminated));
    EXPECT_TRUE(ZentuFormatUtil::is_double(unterminated, 2));
    EXPECT_FALSE(ZentuFormatUtil::is_double(unterminated, 0));
    EXPECT_TRUE(ZentuFormatUtil::is_double(withNul, sizeof withNul));
    EXPECT_TRUE(ZentuFormatUtil::is_double("12.5abc", 4));
    EXPECT_FALSE(ZentuFormatUtil::is_double("12.5abc", 5));
    EXPECT_FALSE(ZentuFormatUtil::is_double("1e5", 2));
    EXPECT_TRUE(ZentuFormatUtil::is_double("3", 1000));
}

// Expects str_to_double to give what strtod gives in the C locale: value, sign and end.
void ExpectReadsLikeStrtod(const std::string& text) {
    SCOPED_TRACE("\"" + text.substr(0, 40) + "\"");
    char* expectedEnd = nullptr;
    const double expected = std::strtod(text.c_str(), &expectedEnd);
    const char* end = nullptr;
    const double value = ZentuFormatUtil::str_to_double(text.c_str(), &end);
    EXPECT_EQ(end - text.c_str(), expectedEnd - text.c_str());
    EXPECT_EQ(std::signbit(value), std::signbit(expected));
    EXPECT_TRUE(std::isnan(expected) ? std::isnan(value) : value == expected) << value;
}

TEST(FormatUtilTest, StrToDoubleReadsLikeStrtodInTheCLocale) {
    // Signs, blanks and stray bytes.
    for (const char* text : {"", " ", "+", "-", "--1", "+-1", "-+1", "- 1", "\t\n\v\f\r 42", "\xff",
                             "\xc3\xa9", "1\xa0", "1,5", "-0", "0.000"}) {
        ExpectReadsLikeStrtod(text);
    }
    // Decimal forms, complete and cut short.
    for (const char* text : {"1", "  -1.5e3x", "1e", "1e+", "1e-x", ".", ".5", "1.", "-.5e-2",
                             "+.e1", "1.5.2", "2.2250738585072014e-308"}) {
        ExpectReadsLikeStrtod(text);
    }
    // Hexadecimal forms, infinity and NaN.
    for (const char* text :
         {"0x1p3", "0X1.8P1",  "0x",    "0xg",        "0x.p1",     "0x.8",    "-0x10", "0x-1",
          "0x1p",  "0x1p+",    "0xinf", "inf",        "-Infinity", "infinit", "INFx",  "nan",
          "-nan",  "nan(123)", "nan(",  "NaN(abc_1)", "nan(1-)",   "nanx"}) {
        ExpectReadsLikeStrtod(text);
    }
    // Beyond the range of double at either end, and denormals.
    for (const char* text : {"1e999", "-1e999", "1e-999", "-1e-999", "4e-324", "3e-324", "2e-324",
                             "1e-310", "0x1p2000", "-0x1p2000", "0x1p-1074", "0x1p-1075",
                             "0x0.00001p-1030", "1e99999999999999999999", "1e-99999999999999999999",
                             "0e99999", "1.7976931348623157e+308", "1.7976931348623159e+308"}) {
        ExpectReadsLikeStrtod(text);
    }
    // Very long digit strings.
    for (const std::string& text :
         {std::string(100000, '9'), "0." + std::string(100000, '0') + "1",
          "0." + std::string(1000, '0') + "1e+700", std::string(1000, '1') + "e-1300",
          "0x" + std::string(1000, 'f') + "p-5000", "1." + std::string(5000, '5') + "e-3"}) {
        ExpectReadsLikeStrtod(text);
    }
}

TEST(FormatUtilTest, StrToDoubleToleratesNullArguments) {
    EXPECT_EQ(ZentuFormatUtil::str_to_double("2.5", nullptr), 2.5);
    const char* end = "unchanged";
    EXPECT_EQ(ZentuFormatUtil::str_to_double(nullptr, &end), 0.0);
    EXPECT_EQ(end, nullptr);
}

// Switches the numeric locale for one test and back, also when the test fails.
class NumericLocale {
  public:
    NumericLocale() : previous_(std::setlocale(LC_NUMERIC, nullptr)) {}
    ~NumericLocale() { std::setlocale(LC_NUMERIC, previous_.c_str()); }
    NumericLocale(const NumericLocale&) = delete;
    NumericLocale& operator=(const NumericLocale&) = delete;

    // Switches to the first installed locale among the names; false when none is installed.
    bool SwitchToAnyOf(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            if (std::setlocale(LC_NUMERIC, name) != nullptr) {
                return true;
            }
        }
        return false;
    }

  private:
    std::string previous_;
};

TEST(FormatUtilTest, NumbersIgnoreADecimalCommaLocale) {
    NumericLocale locale;
    if (!locale.SwitchToAnyOf({"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR"})) {
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    const char* end = nullptr;
    EXPECT_EQ(ZentuFormatUtil::str_to_double("1.5e1,25", &end), 15.0);
    EXPECT_STREQ(end, ",25");
    EXPECT_EQ(ZentuFormatUtil::str_to_double("1,5", &end), 1.0);
    EXPECT_TRUE(ZentuFormatUtil::is_double("-2.75", 5));
    EXPECT_FALSE(ZentuFormatUtil::is_double("2,75", 4));
    EXPECT_EQ(ZentuStringUtil::String(-2.75), "-2.75");
}

}  // namespace
