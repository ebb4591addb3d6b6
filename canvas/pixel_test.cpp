// SPDX-License-Identifier: MIT
#include "canvas/pixel.h"

#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

namespace {

using canvas::over;
using canvas::Pixel;

// Whether n / d rounds to `value`; ties may go either way.
bool rounds(std::uint64_t n, std::uint64_t d, std::uint64_t value) {
    const auto twice = static_cast<std::int64_t>(2 * n) - static_cast<std::int64_t>(2 * value * d);
    return std::abs(twice) <= static_cast<std::int64_t>(d);
}

TEST(Pixel, ColoursAreBgraInMemory) {
    const CanvasColor color = CanvasColor::fromArgb(0x7D000078);
    EXPECT_EQ(color.blue, 0x78);
    EXPECT_EQ(color.alpha, 0x7D);
    EXPECT_EQ(canvas::toPixel(color), 0x7D000078U);
}

TEST(Pixel, DividesBy255Exactly) {
    for (std::uint32_t x = 0; x <= 65025; ++x)
        ASSERT_EQ(canvas::dividedBy255(x), (2 * x + 255) / 510) << x;
}

TEST(Pixel, OverIsPorterAndDuffRoundedToNearest) {
    std::mt19937 random(5);
    for (int i = 0; i < 200000; ++i) {
        auto below = static_cast<Pixel>(random());
        auto source = static_cast<Pixel>(random());
        if (i % 4 == 0)
            below |= 0xFF000000;
        if (i % 5 == 0)
            source |= 0xFF000000;
        const Pixel result = over(below, source);
        const std::uint64_t sa = source >> 24;
        const std::uint64_t ba = below >> 24;
        const std::uint64_t weight = sa * 255 + ba * (255 - sa);
        ASSERT_TRUE(rounds(weight, 255, result >> 24)) << std::hex << below << ' ' << source;
        if (weight == 0 || sa == 0)
            continue;
        for (int shift = 0; shift < 24; shift += 8) {
            const std::uint64_t sum = (source >> shift & 255) * sa * 255 + (below >> shift & 255) * ba * (255 - sa);
            ASSERT_TRUE(rounds(sum, weight, result >> shift & 255)) << std::hex << below << ' ' << source;
        }
    }
}

TEST(Pixel, OverKeepsWhatCannotChange) {
    for (const Pixel pixel : {0x00000000U, 0x7D000078U, 0xFF123456U, 0x01FFFFFFU}) {
        EXPECT_EQ(over(pixel, 0x00FFFFFF), pixel) << "nothing laid over";
        EXPECT_EQ(over(pixel, 0xFFABCDEF), 0xFFABCDEF) << "opaque laid over";
        EXPECT_EQ(over(0, pixel), pixel) << "laid over nothing";
    }
}

TEST(Pixel, CoverageScalesAlphaAlone) {
    EXPECT_EQ(canvas::withCoverage(0x80123456, 255), 0x80123456U);
    EXPECT_EQ(canvas::withCoverage(0x80123456, 0), 0U);
    EXPECT_EQ(canvas::withCoverage(0x01123456, 50), 0U);
    EXPECT_EQ(canvas::withCoverage(0xFF123456, 128), 0x80123456U);
}

} // namespace
