#include "ZentuFileUtil.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "zentu_test_cases.h"

namespace {

// Renders a wide text as its code unit values, blank-separated.
std::string CodeUnits(const std::wstring& text) {
    std::string units;
    for (wchar_t unit : text) {
        units += (units.empty() ? "" : " ") + std::to_string(static_cast<long>(unit));
    }
    return units;
}

// Paths travel as wide text, so UTF-8 reads to its code units, and well-formed text converts back.
TEST(FileUtilTest, ConvertsBetweenWideTextAndUtf8) {
    for (const auto& c : zentu_test::DataCases("utilities/cases/utf8.txt", 3)) {
        SCOPED_TRACE(c.where);
        const std::string utf8 = zentu_test::Bytes(c.fields[0]);
        const std::wstring wide = ZentuFileUtil::from_utf8(utf8);
        EXPECT_EQ(CodeUnits(wide), c.fields[1]);
        if (c.fields[2] == "1") {
            EXPECT_EQ(ZentuFileUtil::to_utf8(wide), utf8);
        }
    }
    // Surrogates and values beyond U+10FFFF have no UTF-8 form and become U+FFFD.
    if (sizeof(wchar_t) == 4) {
        for (long unit : {0xD800L, 0xDFFFL, 0x110000L, -1L}) {
            const std::wstring text = {L'a', static_cast<wchar_t>(unit), L'z'};
            EXPECT_EQ(ZentuFileUtil::to_utf8(text), "a\xEF\xBF\xBDz") << unit;
        }
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
    std::ostringstream content;
    content << std::ifstream(ZentuFileUtil::to_utf8(path)).rdbuf();
    std::remove(ZentuFileUtil::to_utf8(path).c_str());
    EXPECT_EQ(content.str(), "MODEL_INPUT\n");
}

}  // namespace
