// SPDX-License-Identifier: MIT
#include "canvas/region.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "canvas/look.h"

namespace {

using canvas::Pixel;
using canvas::Surface;

constexpr Pixel kBorder = 0xFF257BC9;
constexpr Pixel kFill = 0x8065A5E2;

std::vector<Pixel> drawn(const PixelRect &rect, int width = 24, int height = 20, Pixel below = 0) {
    Surface surface;
    EXPECT_EQ(surface.resize(static_cast<UINT>(width), static_cast<UINT>(height)), S_OK);
    for (int y = 0; below && y < height; ++y)
        std::fill_n(surface.touch(y, 0, width), width, below);
    canvas::paintRegion(surface, rect, kBorder, kFill);
    return {surface.pixels(), surface.pixels() + surface.pixelCount()};
}

// What one pixel of the rectangle with these corners, both included, is.
Pixel expected(int x, int y, int left, int top, int right, int bottom) {
    const auto within = [&](int by) { return x >= left - by && x <= right + by && y >= top - by && y <= bottom + by; };
    if (within(-1))
        return kFill;
    if (within(0))
        return kBorder;
    return within(1) ? canvas::kRegionEdge : 0;
}

TEST(Region, EdgeBorderAndFill) {
    const auto pixels = drawn({4, 3, 10, 8});
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 24; ++x)
            ASSERT_EQ(pixels[static_cast<std::size_t>(y * 24 + x)], expected(x, y, 4, 3, 14, 11)) << x << ' ' << y;
}

TEST(Region, IsBlendedNotOverwritten) {
    const Pixel below = 0xFFC08040;
    const auto pixels = drawn({4, 3, 10, 8}, 24, 20, below);
    EXPECT_EQ(pixels[6 * 24 + 8], canvas::over(below, kFill));
    EXPECT_EQ(pixels[3 * 24 + 8], kBorder);
    EXPECT_EQ(pixels[2 * 24 + 8], canvas::over(below, canvas::kRegionEdge));
    EXPECT_EQ(pixels[0], below);
}

TEST(Region, NegativeExtentsCountFromTheOtherSide) {
    EXPECT_EQ(drawn({14, 11, -10, -8}), drawn({4, 3, 10, 8}));
    EXPECT_EQ(drawn({4, 11, 10, -8}), drawn({4, 3, 10, 8}));
}

TEST(Region, ZeroExtentDrawsNothing) {
    for (const PixelRect rect : {PixelRect{4, 3, 0, 8}, {4, 3, 10, 0}, {4, 3, 0, 0}}) {
        const auto pixels = drawn(rect);
        EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 0U), 480);
    }
}

TEST(Region, SmallestRectanglesBlendNoPixelTwice) {
    for (int width = 1; width <= 3; ++width)
        for (int height = 1; height <= 3; ++height) {
            const auto pixels = drawn({6, 5, width, height});
            for (int y = 0; y < 20; ++y)
                for (int x = 0; x < 24; ++x)
                    ASSERT_EQ(pixels[static_cast<std::size_t>(y * 24 + x)],
                              expected(x, y, 6, 5, 6 + width, 5 + height));
        }
}

TEST(Region, ExtremeRectanglesAreClipped) {
    constexpr int kLow = std::numeric_limits<std::int32_t>::min();
    constexpr int kHigh = std::numeric_limits<std::int32_t>::max();
    const std::vector<Pixel> filled(480, kFill);
    std::vector<Pixel> edgeInTheCorner(480, 0);
    edgeInTheCorner[0] = canvas::kRegionEdge;
    EXPECT_EQ(drawn({kLow, kLow, kHigh, kHigh}), edgeInTheCorner) << "ends at (-1, -1)";
    EXPECT_EQ(drawn({-5, -5, kHigh, kHigh}), filled);
    EXPECT_EQ(drawn({kHigh, kHigh, kLow, kLow}), filled) << "from (-1, -1) on";
    EXPECT_EQ(drawn({kHigh, kHigh, kHigh, kHigh}), std::vector<Pixel>(480, 0));
    EXPECT_EQ(drawn({-1, -1, 100, 100}), filled);
    const auto corner = drawn({0, 0, 100, 100});
    EXPECT_EQ(corner[0], kBorder);
    EXPECT_EQ(corner[23], kBorder);
    EXPECT_EQ(corner[25], kFill);
}

} // namespace
