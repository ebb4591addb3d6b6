// SPDX-License-Identifier: MIT
#include "platform/multibyte.h"

#include <gtest/gtest.h>

#include "platform/posix/utf8.h"

namespace platform {
namespace {

struct Pair {
    const char *narrow;
    const wchar_t *wide;
};

TEST(Utf8Test, ConvertsBothWays) {
    constexpr Pair kPairs[] = {
        {"a\x7F", L"a\x7F"},
        {"\xC2\x80\xDF\xBF", L"\x80\x7FF"},
        {"\xE0\xA0\x80\xEF\xBF\xBF", L"\x800\xFFFF"},
        {"\xED\x9F\xBF\xEE\x80\x80", L"\xD7FF\xE000"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\x10000\x10FFFF"},
    };
    for (const auto &[narrow, wide] : kPairs) {
        EXPECT_EQ(wideFromMultibyte(std::string(narrow)), wide);
        EXPECT_EQ(utf8FromWide(wide), narrow);
    }
}

TEST(Utf8Test, EveryByteThatMeansNothingBecomesAReplacement) {
    constexpr Pair kPairs[] = {
        {"\x80z", L"\xFFFDz"},                             // a continuation alone
        {"\xC3", L"\xFFFD"},                               // cut off
        {"\xE2\x82z", L"\xFFFD\xFFFDz"},                   // cut off
        {"\xC0\xAF", L"\xFFFD\xFFFD"},                     // longer than needed
        {"\xE0\x9F\xBF", L"\xFFFD\xFFFD\xFFFD"},           // longer than needed
        {"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},           // half of a pair
        {"\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD"}, // beyond the last
        {"\xFE\xFF", L"\xFFFD\xFFFD"},                     // never used
    };
    for (const auto &[narrow, wide] : kPairs)
        EXPECT_EQ(wideFromMultibyte(std::string(narrow)), wide);
    constexpr wchar_t kNoScalars[] = {0xD800, 0xDFFF, 0x110000, L'z', 0};
    EXPECT_EQ(utf8FromWide(kNoScalars), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDz");
}

} // namespace
} // namespace platform
