// SPDX-License-Identifier: MIT
#include "canvas/surface.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

namespace {

using canvas::Pixel;
using canvas::Surface;

bool isTransparent(Surface &surface) {
    return std::all_of(surface.pixels(), surface.pixels() + surface.pixelCount(),
                       [](Pixel pixel) { return pixel == 0; });
}

TEST(Surface, StartsEmptyAndBecomesTransparent) {
    Surface surface;
    EXPECT_TRUE(surface.empty());
    EXPECT_EQ(surface.byteCount(), 0U);
    surface.clear();
    ASSERT_EQ(surface.resize(33, 17), S_OK);
    EXPECT_EQ(surface.byteCount(), 33U * 17 * 4);
    EXPECT_TRUE(isTransparent(surface));
}

TEST(Surface, AddressStaysUntilTheSizeChanges) {
    Surface surface;
    ASSERT_EQ(surface.resize(64, 64), S_OK);
    const Pixel *const address = surface.pixels();
    std::fill_n(surface.touch(3, 4, 20), 20, 0xFFFFFFFF);
    surface.clear();
    EXPECT_EQ(surface.pixels(), address);
    std::fill_n(surface.touch(3, 4, 20), 20, 0xFFFFFFFF);
    ASSERT_EQ(surface.resize(64, 64), S_OK);
    EXPECT_EQ(surface.pixels(), address);
    EXPECT_TRUE(isTransparent(surface));
}

TEST(Surface, ImpossibleSizesLeaveItEmpty) {
    Surface surface;
    ASSERT_EQ(surface.resize(8, 8), S_OK);
    EXPECT_EQ(surface.resize(0, 8), S_OK);
    EXPECT_TRUE(surface.empty());
    ASSERT_EQ(surface.resize(8, 8), S_OK);
    EXPECT_EQ(surface.resize(canvas::kLongestSide + 1, 1), E_INVALIDARG);
    EXPECT_TRUE(surface.empty());
    EXPECT_EQ(surface.resize(0xFFFFFFFF, 0xFFFFFFFF), E_INVALIDARG);
    EXPECT_EQ(surface.resize(32768, 32768), E_OUTOFMEMORY) << "four gigabytes";
    EXPECT_TRUE(surface.empty());
    EXPECT_EQ(surface.width(), 0);
}

TEST(Surface, ClearForgetsEverySpan) {
    std::mt19937 random(2);
    Surface surface;
    ASSERT_EQ(surface.resize(61, 37), S_OK);
    for (int round = 0; round < 300; ++round) {
        EXPECT_TRUE(surface.isBlank());
        for (int i = 0; i < 30; ++i) {
            const int first = static_cast<int>(random() % 61);
            const int count = 1 + static_cast<int>(random() % static_cast<unsigned>(61 - first));
            std::fill_n(surface.touch(static_cast<int>(random() % 37), first, count), count, 0xFF00FF00);
        }
        surface.clear();
        ASSERT_TRUE(isTransparent(surface));
    }
}

TEST(Surface, ClearsEverythingWhenThereWasMoreThanItRemembers) {
    Surface surface;
    ASSERT_EQ(surface.resize(400, 400), S_OK);
    for (int y = 0; y < 400; ++y)
        for (int x = 0; x < 400; ++x)
            *surface.touch(y, x, 1) = 0xFFFFFFFF;
    surface.clear();
    EXPECT_TRUE(isTransparent(surface));
    *surface.touch(399, 399, 1) = 1;
    surface.clear();
    EXPECT_TRUE(isTransparent(surface));
}

} // namespace
