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

TEST(FileUtilTest, ConvertsBetweenWideTextAndUtf8BothWays) {
    const std::pair<std::wstring, std::string> cases[] = {
        {L"", ""},
        {L"plain/path.par", "plain/path.par"},
        {L"\u007F", "\x7F"},
        {L"\u0080", "\xC2\x80"},
        {L"\u00E9", "\xC3\xA9"},
        {L"\u07FF", "\xDF\xBF"},
        {L"\u0800", "\xE0\xA0\x80"},
        {L"\u20AC", "\xE2\x82\xAC"},
        {L"\uD7FF", "\xED\x9F\xBF"},
        {L"\uE000", "\xEE\x80\x80"},
        {L"\uFFFD", "\xEF\xBF\xBD"},
        {L"\U00010000", "\xF0\x90\x80\x80"},
        {L"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
        {L"a\u00E9\u20AC\U0001F600z", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z"},
        {std::wstring(L"a\0b", 3), std::string("a\0b", 3)},
    };
    for (const auto& [wide, utf8] : cases) {
        EXPECT_EQ(ZentuFileUtil::to_utf8(wide), utf8) << CodeUnits(wide);
        EXPECT_EQ(ZentuFileUtil::from_utf8(utf8), wide) << CodeUnits(wide);
    }
}

TEST(FileUtilTest, InvalidWideCodePointsBecomeReplacementCharacters) {
    if (sizeof(wchar_t) != 4) {
        GTEST_SKIP() << "wide texts here are UTF-16";
    }
    for (long unit : {0xD800L, 0xDBFFL, 0xDC00L, 0xDFFFL, 0x110000L, 0x7FFFFFFFL, -1L}) {
        const std::wstring text = {L'a', static_cast<wchar_t>(unit), L'z'};
        EXPECT_EQ(ZentuFileUtil::to_utf8(text), "a\xEF\xBF\xBDz") << unit;
    }
}

// Expects each input to turn into count replacement characters.
void ExpectReplacements(std::size_t count, std::initializer_list<const char*> inputs) {
    for (const char* input : inputs) {
        const std::wstring wide = ZentuFileUtil::from_utf8(input);
        EXPECT_EQ(wide, std::wstring(count, L'\uFFFD')) << CodeUnits(wide);
    }
}

TEST(FileUtilTest, MalformedUtf8BecomesOneReplacementPerMaximalBadSequence) {
    ExpectReplacements(1, {"\x80", "\xBF", "\xFE", "\xFF", "\xC3", "\xE2\x82", "\xF0\x9F\x98"});
    ExpectReplacements(2, {"\xC0\xAF", "\xC1\xBF"});
    ExpectReplacements(3, {"\xE0\x80\xAF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF"});
    ExpectReplacements(4, {"\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"});
    ExpectReplacements(5, {"\xF8\x88\x80\x80\x80"});
    EXPECT_EQ(ZentuFileUtil::from_utf8("a\xC3"), L"a\uFFFD");
    EXPECT_EQ(ZentuFileUtil::from_utf8("\xE2\x82Z"), L"\uFFFDZ");
    EXPECT_EQ(ZentuFileUtil::from_utf8("\xF0\x9F\x98\xF0\x9F\x98\x80"), L"\uFFFD\U0001F600");
    EXPECT_EQ(ZentuFileUtil::from_utf8("\xC3\xA9\xA9"), L"\u00E9\uFFFD");
    EXPECT_EQ(ZentuFileUtil::from_utf8("\xC3\xC3\xA9"), L"\uFFFD\u00E9");
}

// A file in the temporary folder whose name holds characters outside ASCII; removed at the end.
class FileUtilOpenTest : public testing::Test {
  protected:
    void SetUp() override {
        path_ = ZentuFileUtil::from_utf8(testing::TempDir()) + L"zentu_\u00E9\u20AC\U0001F600_" +
                std::to_wstring(std::random_device()()) + L".par";
    }

    void TearDown() override { std::remove(ZentuFileUtil::to_utf8(path_).c_str()); }

    std::wstring path_;
};

TEST_F(FileUtilOpenTest, WritesAndReadsBackUnderTheUtf8Name) {
    std::FILE* out = ZentuFileUtil::wfopen(path_, L"w");
    ASSERT_NE(out, nullptr);
    std::fputs("MODEL_INPUT\n", out);
    std::fclose(out);

    std::FILE* in = std::fopen(ZentuFileUtil::to_utf8(path_).c_str(), "r");
    ASSERT_NE(in, nullptr);
    char line[32] = {};
    EXPECT_NE(std::fgets(line, sizeof line, in), nullptr);
    std::fclose(in);
    EXPECT_STREQ(line, "MODEL_INPUT\n");
}

TEST_F(FileUtilOpenTest, GivesNullWhenTheFileCannotBeOpened) {
    const std::pair<std::wstring, std::wstring> cases[] = {{path_, L"r"},
                                                           {L"/zentu-no-such-folder/job.par", L"w"},
                                                           {L"", L"r"},
                                                           {std::wstring(L"job\0.par", 8), L"w"},
                                                           {path_, std::wstring(L"w\0", 2)}};
    for (const auto& [path, mode] : cases) {
        std::FILE* file = ZentuFileUtil::wfopen(path, mode);
        EXPECT_EQ(file, nullptr) << ZentuFileUtil::to_utf8(path);
        if (file != nullptr) {
            std::fclose(file);
        }
    }
}

}  // namespace
