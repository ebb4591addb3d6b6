// SPDX-License-Identifier: MIT
#include "canvas/marks.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

namespace {

using canvas::MarkLayer;
using canvas::MarkPainter;
using canvas::MarkShape;
using canvas::Pixel;
using canvas::Surface;

constexpr Pixel kColor = 0xFF4AE1E1;

std::vector<Pixel> drawn(MarkShape shape, std::uint32_t size, int x, int y, int width, int height,
                         Pixel color = kColor) {
    Surface surface;
    EXPECT_EQ(surface.resize(static_cast<UINT>(width), static_cast<UINT>(height)), S_OK);
    MarkPainter painter;
    painter.paint(surface, shape, x, y, {size, color});
    return {surface.pixels(), surface.pixels() + surface.pixelCount()};
}

TEST(Marks, OddSquareIsItsSizeAndCrisp) {
    const auto pixels = drawn(MarkShape::Square, 9, 10, 12, 24, 24);
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < 24; ++x) {
            const bool inside = std::abs(x - 10) <= 4 && std::abs(y - 12) <= 4;
            ASSERT_EQ(pixels[static_cast<std::size_t>(y * 24 + x)], inside ? kColor : 0U) << x << ' ' << y;
        }
}

TEST(Marks, EvenSquareStaysCentredWithHalfCoveredSides) {
    const auto pixels = drawn(MarkShape::Square, 4, 10, 10, 24, 24);
    EXPECT_EQ(pixels[10 * 24 + 10], kColor);
    EXPECT_EQ(pixels[10 * 24 + 11], kColor);
    EXPECT_EQ(pixels[10 * 24 + 12], canvas::withCoverage(kColor, 128));
    EXPECT_EQ(pixels[10 * 24 + 8], canvas::withCoverage(kColor, 128));
    EXPECT_EQ(pixels[8 * 24 + 8], canvas::withCoverage(kColor, 64));
    EXPECT_EQ(pixels[10 * 24 + 13], 0U);
}

TEST(Marks, EverySizeIsSymmetricAndCoversItsArea) {
    constexpr int kSide = 81;
    constexpr int kMiddle = kSide / 2;
    for (const MarkShape shape : {MarkShape::Square, MarkShape::Round})
        for (std::uint32_t size = 1; size <= 76; ++size) {
            const auto pixels = drawn(shape, size, kMiddle, kMiddle, kSide, kSide);
            const auto at = [&](int dx, int dy) {
                return pixels[static_cast<std::size_t>((kMiddle + dy) * kSide + kMiddle + dx)];
            };
            double area = 0;
            for (int dy = -kMiddle; dy <= kMiddle; ++dy)
                for (int dx = -kMiddle; dx <= kMiddle; ++dx) {
                    ASSERT_EQ(at(dx, dy), at(-dx, dy));
                    ASSERT_EQ(at(dx, dy), at(dy, dx));
                    ASSERT_EQ(at(dx, dy), at(dx, -dy));
                    area += canvas::alphaOf(at(dx, dy)) / 255.0;
                }
            const double expected = shape == MarkShape::Square ? size * size : std::numbers::pi / 4 * size * size;
            EXPECT_NEAR(area, expected, 0.5 + 0.05 * size) << size;
            EXPECT_GT(canvas::alphaOf(at(0, 0)), 200U) << size;
        }
}

TEST(Marks, SizeZeroDrawsNothing) {
    const auto pixels = drawn(MarkShape::Round, 0, 5, 5, 11, 11);
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 0U), 121);
}

TEST(Marks, AreClippedNotMoved) {
    for (const MarkShape shape : {MarkShape::Square, MarkShape::Round})
        for (const std::uint32_t size : {8U, 9U, 70U}) {
            const auto whole = drawn(shape, size, 100, 100, 200, 200);
            for (int y = -9; y < 20; y += 7)
                for (int x = -9; x < 20; x += 7) {
                    const auto part = drawn(shape, size, x, y, 13, 12);
                    for (int py = 0; py < 12; ++py)
                        for (int px = 0; px < 13; ++px)
                            ASSERT_EQ(part[static_cast<std::size_t>(py * 13 + px)],
                                      whole[static_cast<std::size_t>((100 + py - y) * 200 + 100 + px - x)]);
                }
        }
}

TEST(Marks, LargeMarksLookAsStampsDo) {
    // The stamps end where the direct way begins; neighbours in size differ by a rim.
    const auto small = drawn(MarkShape::Square, MarkPainter::kLargestStamp - 1, 40, 40, 81, 81);
    const auto large = drawn(MarkShape::Square, MarkPainter::kLargestStamp + 1, 40, 40, 81, 81);
    EXPECT_EQ(small[40 * 81 + 9], kColor);
    EXPECT_EQ(small[40 * 81 + 8], 0U);
    EXPECT_EQ(large[40 * 81 + 8], kColor);
    EXPECT_EQ(large[40 * 81 + 7], 0U);
}

TEST(Marks, ExtremePositionsAndSizes) {
    constexpr int kLow = std::numeric_limits<std::int32_t>::min();
    constexpr int kHigh = std::numeric_limits<std::int32_t>::max();
    for (const MarkShape shape : {MarkShape::Square, MarkShape::Round})
        for (const int x : {kLow, kHigh, 5})
            for (const int y : {kLow, kHigh})
                for (const std::uint32_t size : {1U, 9U, 64U, 65U, 0xFFFFFFFFU}) {
                    const auto pixels = drawn(shape, size, x, y, 10, 10);
                    EXPECT_EQ(pixels[0], pixels[9]) << "one side of it or the other";
                }
    const auto covered = drawn(MarkShape::Square, 0xFFFFFFFFU, 5, 5, 10, 10);
    EXPECT_EQ(std::count(covered.begin(), covered.end(), kColor), 100);
}

TEST(Marks, TranslucentMarksAreBlended) {
    Surface surface;
    ASSERT_EQ(surface.resize(9, 9), S_OK);
    for (int y = 0; y < 9; ++y)
        std::fill_n(surface.touch(y, 0, 9), 9, 0xFF804020);
    MarkPainter painter;
    painter.paint(surface, MarkShape::Square, 4, 4, {3, 0x80FFFFFF});
    EXPECT_EQ(surface.row(4)[4], canvas::over(0xFF804020, 0x80FFFFFF));
    EXPECT_EQ(surface.row(4)[1], 0xFF804020);
}

TEST(Marks, StampsOfManyLooksAreTheRightOnes) {
    MarkPainter painter;
    for (int round = 0; round < 3; ++round)
        for (std::uint32_t size = 1; size <= 60; ++size) {
            Surface surface;
            ASSERT_EQ(surface.resize(64, 64), S_OK);
            const Pixel color = 0xFF000000 | size;
            painter.paint(surface, MarkShape::Square, 31, 31, {size, color});
            EXPECT_EQ(surface.row(31)[31], color);
        }
}

} // namespace
