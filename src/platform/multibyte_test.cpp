// SPDX-License-Identifier: MIT
#include "platform/multibyte.h"

#include <array>

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(MultibyteTest, AsciiBecomesWide) {
    EXPECT_EQ(wideFromMultibyte(std::string("Orvanel 1.0\n")), L"Orvanel 1.0\n");
    EXPECT_EQ(wideFromMultibyte(std::string()), L"");
}

TEST(MultibyteTest, CutsAtTheBufferAndAlwaysTerminates) {
    std::array<wchar_t, 8> wide;
    wide.fill(L'#');
    EXPECT_EQ(wideFromMultibyte("0123456789", wide.data(), 5), 4U);
    EXPECT_STREQ(wide.data(), L"0123");
    EXPECT_EQ(wide[5], L'#') << "nothing behind the size given is touched";
    EXPECT_EQ(wideFromMultibyte("x", wide.data(), 1), 0U);
    EXPECT_STREQ(wide.data(), L"");
    EXPECT_EQ(wideFromMultibyte("0123456", wide.data(), 8), 7U);
    EXPECT_STREQ(wide.data(), L"0123456");
}

} // namespace
} // namespace platform
