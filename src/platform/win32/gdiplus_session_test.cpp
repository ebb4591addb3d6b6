// SPDX-License-Identifier: MIT
#include "platform/win32/gdiplus_session.h"

#include <gtest/gtest.h>

#include <array>

#include "platform/native_raster.h"

namespace platform {
namespace {

TEST(GdiplusSession, StaysWhenOthersFreeTheLibrary) {
    ASSERT_TRUE(startGdiplus());
    const HMODULE library = GetModuleHandleW(L"gdiplus.dll");
    ASSERT_TRUE(library);
    // More often than this process has loaded it.
    for (int count = 0; count < 100; ++count)
        FreeLibrary(library);
    ASSERT_EQ(GetModuleHandleW(L"gdiplus.dll"), library);
    std::array<std::uint8_t, 3 * 8 * 8> pixels{};
    const std::array<PixelPoint, 4> square = {{{1, 1}, {7, 1}, {7, 7}, {1, 7}}};
    nativeFillPolygon({pixels.data(), 8, 8, 24}, square.data(), static_cast<int>(square.size()));
    EXPECT_EQ(pixels[4 * 24 + 4 * 3], 0xFF);
}

} // namespace
} // namespace platform
