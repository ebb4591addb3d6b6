// SPDX-License-Identifier: MIT
#include "canvas/area_fill.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "mask/mask_handler.h"
#include "mask/raster_engine.h"

namespace {

constexpr canvas::Pixel kTint = 0x7D000078;

std::vector<MPoint> randomOutline(std::mt19937 &random, int anchors, int low, int high) {
    std::uniform_int_distribution<int> coordinate(low, high);
    std::vector<MPoint> points(static_cast<std::size_t>(3 * anchors));
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i].type = i % 3 == 0 ? kAnchorPoint : kControlPoint;
        points[i].x = coordinate(random);
        points[i].y = coordinate(random);
    }
    return points;
}

TEST(AreaFill, TintsExactlyTheMask) {
    const Quill::RasterEngineOverride portable(Quill::RasterEngine::Portable);
    std::mt19937 random(7);
    constexpr int kWidth = 97;
    constexpr int kHeight = 61;
    for (int round = 0; round < 200; ++round) {
        const auto points = randomOutline(random, 3 + round % 9, -40, 140);
        canvas::Surface surface;
        ASSERT_EQ(surface.resize(kWidth, kHeight), S_OK);
        canvas::AreaFill fill;
        EXPECT_TRUE(fill.fill(surface, points, kTint));

        std::vector<Quill::MaskRun> runs;
        ASSERT_EQ(Quill::MaskHandler::ConvertPoints2Mask(points.data(), static_cast<int>(points.size()), kWidth,
                                                         kHeight, false, nullptr, &runs),
                  S_OK);
        std::vector<canvas::Pixel> expected(kWidth * kHeight, 0);
        for (const Quill::MaskRun &run : runs)
            std::fill_n(expected.begin() + run.row * kWidth + run.column, run.length, kTint);
        ASSERT_EQ(std::vector<canvas::Pixel>(surface.pixels(), surface.pixels() + surface.pixelCount()), expected)
            << round;
    }
}

TEST(AreaFill, BlendsOverWhatIsThere) {
    canvas::Surface surface;
    ASSERT_EQ(surface.resize(16, 16), S_OK);
    *surface.touch(5, 5, 1) = 0xFFFFFFFF;
    std::mt19937 random(1);
    std::vector<MPoint> points(9);
    const int corners[][2] = {{1, 1}, {14, 1}, {1, 14}};
    for (std::size_t i = 0; i < 9; ++i) {
        points[i].x = corners[(i + 1) / 3 % 3][0];
        points[i].y = corners[(i + 1) / 3 % 3][1];
    }
    canvas::AreaFill fill;
    ASSERT_TRUE(fill.fill(surface, points, kTint));
    EXPECT_EQ(surface.row(5)[5], canvas::over(0xFFFFFFFF, kTint));
    EXPECT_EQ(surface.row(5)[4], kTint);
}

TEST(AreaFill, OutlinesWithoutAMaskAreLeftAlone) {
    std::mt19937 random(3);
    canvas::Surface surface;
    ASSERT_EQ(surface.resize(64, 64), S_OK);
    canvas::AreaFill fill;
    auto points = randomOutline(random, 4, 0, 63);
    EXPECT_FALSE(fill.fill(surface, {points.data(), 6}, kTint)) << "two anchors";
    EXPECT_FALSE(fill.fill(surface, {points.data(), 10}, kTint)) << "open";
    EXPECT_FALSE(fill.fill(surface, points, 0x00123456)) << "invisible";
    points[4].x = 8388608;
    EXPECT_FALSE(fill.fill(surface, points, kTint)) << "coordinate beyond the mask's";
    EXPECT_TRUE(surface.isBlank());
}

} // namespace
