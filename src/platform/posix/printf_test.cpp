// SPDX-License-Identifier: MIT
#include "platform/printf.h"

#include <array>
#include <clocale>
#include <string>

#include <gtest/gtest.h>

namespace platform {
namespace {

std::wstring wide(const wchar_t *format, ...) {
    std::array<wchar_t, 64> buffer{};
    va_list arguments;
    va_start(arguments, format);
    formatWide(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    return buffer.data();
}

std::string narrow(const char *format, ...) {
    std::array<char, 64> buffer{};
    va_list arguments;
    va_start(arguments, format);
    formatNarrow(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    return buffer.data();
}

TEST(PosixPrintfTest, TextsOutsideAsciiNeedNoLocaleOfTheProcess) {
    ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    EXPECT_EQ(wide(L"%S %s", "K\xC3\xA4se", L"K\xE4se"), L"K\xE4se K\xE4se");
    EXPECT_EQ(narrow("%S %s", L"K\xE4se", "K\xC3\xA4se"), "K\xC3\xA4se K\xC3\xA4se");
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C") << "and change none";
}

TEST(PosixPrintfTest, AnUnreadableTextEndsTheMessageAndNothingElse) {
    EXPECT_EQ(wide(L"before %S", "\xFF").substr(0, 7), L"before ");
}

} // namespace
} // namespace platform
