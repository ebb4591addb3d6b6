// SPDX-License-Identifier: MIT
#include "fitting/bit_picture.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "fitting/testing/drawn_mask.h"

namespace {

using namespace fitting;
using Lines = std::vector<std::string>;

TEST(BitPicture, ARunInTheLastRowThatReachesTheRightEdgeIsNotDrawn) {
    const DrawnMask mask({"........", "....####", "....####"});
    EXPECT_EQ(drawn(mask.picture(), 8, 3), (Lines{"........", "....####", "........"}));
}

TEST(BitPicture, ARunFromTheLeftGoesOnBelow) {
    const Quill::MaskRunF run = {-0.25F, 0, 1.5F};
    EXPECT_EQ(drawn(*decodeRuns(std::span(&run, 1), 8, 3), 8, 3), (Lines{"########", "###.....", "........"}));
}

TEST(BitPicture, WindowHoldsTheShapeAndOnePixelMore) {
    const DrawnMask mask({".......", ".......", "...#...", "...##..", ".......", "......."});
    const Window window = mask.picture().window();
    EXPECT_EQ(std::tuple(window.left, window.top, window.width, window.height), std::tuple(2, 1, 4, 4));
    const DrawnMask corner({"#..", "...", "..."});
    const Window cornerWindow = corner.picture().window();
    EXPECT_EQ(std::tuple(cornerWindow.left, cornerWindow.top, cornerWindow.width, cornerWindow.height),
              std::tuple(0, 0, 2, 2));
}

TEST(BitPicture, OutsideOfTheWindowEverythingIsClear) {
    const BitPicture picture = DrawnMask({"...", ".#.", "..."}).picture();
    EXPECT_TRUE(picture.test(1, 1));
    for (const auto &[x, y] : {std::pair{0, 1}, {-1, 1}, {1, -1}, {3, 1}, {1, 3}, {1000000, 1}, {1, -1000000}})
        EXPECT_FALSE(picture.test(x, y)) << x << ", " << y;
}

TEST(BitPicture, SizesThatNoMaskHasGiveNothing) {
    const Quill::MaskRunF run = {0, 0, 0.5F};
    for (const auto &[width, height] : {std::pair{0, 3},
                                        {3, 0},
                                        {-8, 3},
                                        {8, -3},
                                        {-8, -3},
                                        {65536, 65536},
                                        {std::numeric_limits<int>::max(), std::numeric_limits<int>::max()},
                                        {std::numeric_limits<int>::min(), std::numeric_limits<int>::min()}})
        EXPECT_FALSE(decodeRuns(std::span(&run, 1), width, height)) << width << " x " << height;
}

TEST(BitPicture, AHugeMaskCostsWhatIsInIt) {
    const Quill::MaskRunF run = {0.5F, 0.5F, 0.0001F};
    const auto picture = decodeRuns(std::span(&run, 1), 46340, 46340);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->window().width, 7);
    EXPECT_EQ(picture->window().height, 3);
}

TEST(BitPicture, NothingDrawnIsNothing) {
    EXPECT_FALSE(decodeRuns({}, 8, 8));
    const Quill::MaskRunF outside = {0.5F, 2, 0.5F};
    EXPECT_FALSE(decodeRuns(std::span(&outside, 1), 8, 8));
}

TEST(BitPicture, RangesCrossWords) {
    BitPicture picture({0, 0, 200, 1});
    picture.setRange(60, 0, 75);
    for (int x = 0; x < 200; ++x)
        EXPECT_EQ(picture.test(x, 0), x >= 60 && x < 135) << x;
}

TEST(BitPicture, CentroidIsTheTruncatedMean) {
    EXPECT_EQ(centroidOf(DrawnMask({"....", ".##.", ".##.", "...."}).picture()), (Pixel{1, 1})); // 1.5, 1.5
    EXPECT_EQ(centroidOf(DrawnMask({"#....", "....#", "...#."}).picture()), (Pixel{2, 1}));      // 7/3, 1
}

TEST(BitPicture, CentroidOfRandomMasks) {
    std::mt19937 random(8);
    for (int round = 0; round < 50; ++round) {
        const int width = 1 + static_cast<int>(random() % 300);
        const int height = 2 + static_cast<int>(random() % 20);
        Lines lines;
        std::int64_t x = 0, y = 0, count = 0;
        for (int row = 0; row < height; ++row) {
            std::string line;
            for (int column = 0; column < width; ++column)
                line += random() % 3 == 0 ? '.' : '#';
            if (row + 1 == height)
                line.back() = '.';
            for (int column = 0; column < width; ++column) {
                const bool inside = line[static_cast<std::size_t>(column)] == '#';
                x += inside ? column : 0;
                y += inside ? row : 0;
                count += inside ? 1 : 0;
            }
            lines.push_back(line);
        }
        if (count == 0)
            continue;
        EXPECT_EQ(centroidOf(DrawnMask(lines).picture()),
                  (Pixel{static_cast<int>(x / count), static_cast<int>(y / count)}));
    }
}

} // namespace
