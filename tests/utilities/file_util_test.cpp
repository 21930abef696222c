#include "ZentuFileUtil.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

namespace {

// Renders a wide text as its code unit values, for readable failure messages.
std::string CodeUnits(const std::wstring& text) {
    std::string units;
    for (wchar_t unit : text) {
        units += std::to_string(static_cast<long>(unit)) + " ";
    }
    return units;
}

// Paths travel as wide text, so every encoded length and its boundaries must convert both ways.
TEST(FileUtilTest, ConvertsBetweenWideTextAndUtf8BothWays) {
    const std::pair<std::wstring, std::string> cases[] = {
        {L"", ""},
        {L"\u007F", "\x7F"},
        {L"\u0080", "\xC2\x80"},
        {L"\u07FF", "\xDF\xBF"},
        {L"\u0800", "\xE0\xA0\x80"},
        {L"\uD7FF", "\xED\x9F\xBF"},
        {L"\uE000", "\xEE\x80\x80"},
        {L"\U00010000", "\xF0\x90\x80\x80"},
        {L"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
        {L"a\u00E9\u20AC\U0001F600z", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z"},
        {std::wstring(L"a\0b", 3), std::string("a\0b", 3)},
    };
    for (const auto& [wide, utf8] : cases) {
        EXPECT_EQ(ZentuFileUtil::to_utf8(wide), utf8) << CodeUnits(wide);
        EXPECT_EQ(ZentuFileUtil::from_utf8(utf8), wide) << CodeUnits(wide);
    }
    // Surrogates and values beyond U+10FFFF have no UTF-8 form and become U+FFFD.
    if (sizeof(wchar_t) == 4) {
        for (long unit : {0xD800L, 0xDFFFL, 0x110000L, -1L}) {
            const std::wstring text = {L'a', static_cast<wchar_t>(unit), L'z'};
            EXPECT_EQ(ZentuFileUtil::to_utf8(text), "a\xEF\xBF\xBDz") << unit;
        }
    }
}

// Malformed bytes become one U+FFFD per maximal bad sequence, as other UTF-8 readers count them.
TEST(FileUtilTest, MalformedUtf8BecomesOneReplacementPerMaximalBadSequence) {
    const std::pair<std::string, std::wstring> cases[] = {
        {"\x80", L"\uFFFD"},
        {"\xFF", L"\uFFFD"},
        {"a\xC3", L"a\uFFFD"},
        {"\xE2\x82Z", L"\uFFFDZ"},
        {"\xF0\x9F\x98\xF0\x9F\x98\x80", L"\uFFFD\U0001F600"},
        {"\xC3\xA9\xA9", L"\u00E9\uFFFD"},
        {"\xC3\xC3\xA9", L"\uFFFD\u00E9"},
        {"\xC0\xAF", std::wstring(2, L'\uFFFD')},
        {"\xC1\xBF", std::wstring(2, L'\uFFFD')},
        {"\xE0\x9F\xBF", std::wstring(3, L'\uFFFD')},
        {"\xED\xA0\x80", std::wstring(3, L'\uFFFD')},
        {"\xF0\x8F\xBF\xBF", std::wstring(4, L'\uFFFD')},
        {"\xF4\x90\x80\x80", std::wstring(4, L'\uFFFD')},
        {"\xF5\x80\x80\x80", std::wstring(4, L'\uFFFD')},
        {"\xF8\x88\x80\x80\x80", std::wstring(5, L'\uFFFD')},
    };
    for (const auto& [utf8, wide] : cases) {
        EXPECT_EQ(ZentuFileUtil::from_utf8(utf8), wide) << CodeUnits(wide);
    }
}

// Files with names outside ASCII open under their UTF-8 name; what cannot be opened gives null.
TEST(FileUtilTest, OpensUnderTheUtf8NameOrGivesNull) {
    const std::wstring path = ZentuFileUtil::from_utf8(testing::TempDir()) +
                              L"zentu_\u00E9\u20AC\U0001F600_" +
                              std::to_wstring(std::random_device()()) + L".par";
    const std::pair<std::wstring, std::wstring> failing[] = {
        {path, L"r"},
        {L"/zentu-no-such-folder/job.par", L"w"},
        {L"", L"r"},
        {std::wstring(L"job\0.par", 8), L"w"},
        {path, std::wstring(L"w\0", 2)}};
    for (const auto& [name, mode] : failing) {
        std::FILE* file = ZentuFileUtil::wfopen(name, mode);
        EXPECT_EQ(file, nullptr) << ZentuFileUtil::to_utf8(name);
        if (file != nullptr) {
            std::fclose(file);
        }
    }
    std::FILE* out = ZentuFileUtil::wfopen(path, L"w");
    ASSERT_NE(out, nullptr);
    std::fputs("MODEL_INPUT\n", out);
    std::fclose(out);
    std::FILE* in = std::fopen(ZentuFileUtil::to_utf8(path).c_str(), "r");
    ASSERT_NE(in, nullptr);
    char line[32] = {};
    EXPECT_NE(std::fgets(line, sizeof line, in), nullptr);
    std::fclose(in);
    std::remove(ZentuFileUtil::to_utf8(path).c_str());
    EXPECT_STREQ(line, "MODEL_INPUT\n");
}

}  // namespace
