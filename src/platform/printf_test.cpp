// SPDX-License-Identifier: MIT
#include "platform/printf.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr std::size_t kSize = 32;

std::string narrow(const char *format, ...) {
    std::array<char, kSize + 1> buffer{};
    buffer[kSize] = '#';
    va_list arguments;
    va_start(arguments, format);
    formatNarrow(buffer.data(), kSize, format, arguments);
    va_end(arguments);
    EXPECT_EQ(buffer[kSize], '#') << "written behind the end";
    return buffer.data();
}

std::wstring wide(const wchar_t *format, ...) {
    std::array<wchar_t, kSize + 1> buffer{};
    buffer[kSize] = L'#';
    va_list arguments;
    va_start(arguments, format);
    formatWide(buffer.data(), kSize, format, arguments);
    va_end(arguments);
    EXPECT_EQ(buffer[kSize], L'#') << "written behind the end";
    return buffer.data();
}

TEST(PrintfTest, NarrowNumbers) {
    EXPECT_EQ(narrow("%d %i %u 0x%x %c %%", -1, 2, 3U, 255, 'c'), "-1 2 3 0xff c %");
    EXPECT_EQ(narrow("%lld", -9223372036854775807LL - 1), "-9223372036854775808");
    EXPECT_EQ(narrow("%5.2f|%-4d|%04d", 1.0 / 3, 7, 7), " 0.33|7   |0007");
}

TEST(PrintfTest, NarrowTexts) {
    EXPECT_EQ(narrow("%s, %.2s, %S, %ls", "narrow", "cut", L"wide", L"wide"), "narrow, cu, wide, wide");
}

TEST(PrintfTest, WideNumbers) {
    EXPECT_EQ(wide(L"%d %i %u 0x%x %%", -1, 2, 3U, 255), L"-1 2 3 0xff %");
    EXPECT_EQ(wide(L"%lld", -9223372036854775807LL - 1), L"-9223372036854775808");
    EXPECT_EQ(wide(L"%5.2f|%-4d|%0*d", 1.0 / 3, 7, 4, 7), L" 0.33|7   |0007");
}

TEST(PrintfTest, WideTextsFollowMicrosoftsRule) {
    EXPECT_EQ(wide(L"%s %S %ls %hs", L"wide", "narrow", L"wide", "narrow"), L"wide narrow wide narrow");
    EXPECT_EQ(wide(L"%6.2s|%-6S|%%s", L"wide", "n"), L"    wi|n     |%s");
    EXPECT_EQ(wide(L"%c%C", L'w', 'n'), L"wn");
    // The rewriting must know where a conversion ends: these letters are text.
    EXPECT_EQ(wide(L"%ds %dS%dc", 1, 2, 3), L"1s 2S3c");
}

TEST(PrintfTest, CutsWhatDoesNotFit) {
    const std::string text(kSize * 2, 'x');
    EXPECT_EQ(narrow("%s", text.c_str()), std::string(kSize - 1, 'x'));
    EXPECT_EQ(narrow("%s", text.substr(0, kSize - 1).c_str()), std::string(kSize - 1, 'x'));
    const std::wstring wideText(kSize * 2, L'x');
    EXPECT_EQ(wide(L"%s", wideText.c_str()), std::wstring(kSize - 1, L'x'));
    EXPECT_EQ(wide(L"%s", wideText.substr(0, kSize - 1).c_str()), std::wstring(kSize - 1, L'x'));
    EXPECT_EQ(wide(L"ab%S", text.c_str()), L"ab" + std::wstring(kSize - 3, L'x'));
}

} // namespace
} // namespace platform
