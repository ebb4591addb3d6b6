// SPDX-License-Identifier: MIT
#include "hostkit/mask.h"

#include <algorithm>
#include <limits>
#include <random>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "hostkit/mask_png.h"

namespace hostkit {
namespace {

/// What a run looks like after it went through single precision, as it does on its way from the module.
MaskRun runOf(int column, int line, int length, int width, int height) {
    return {static_cast<float>(column) / static_cast<float>(width),
            static_cast<float>(line) / static_cast<float>(height),
            static_cast<float>(length) / static_cast<float>(width)};
}

TEST(Mask, EveryRunOfEverySizeComesBackToItsPixels) {
    const struct { int width, height; } sizes[] = {{1, 1}, {3, 7}, {640, 360}, {1921, 1083}, {7681, 13}};
    for (const auto &size : sizes) {
        Mask mask(size.width, size.height);
        for (int column = 0; column < size.width; column += 1 + size.width / 97) {
            const int length = (size.width - column + 1) / 2;
            const int line = column % size.height;
            mask.setRuns({runOf(column, line, length, size.width, size.height)});
            const PixelRect expected = {column, line, length, 1};
            ASSERT_EQ(mask.bounds(), expected);
            ASSERT_EQ(mask.coveredPixels(), static_cast<std::size_t>(length));
        }
    }
}

TEST(Mask, NewRunsReplaceTheOldOnes) {
    Mask mask(8, 8);
    mask.setRuns({runOf(0, 0, 8, 8, 8)});
    mask.setRuns({runOf(2, 3, 1, 8, 8)});
    EXPECT_EQ(mask.coveredPixels(), 1U);
    EXPECT_EQ(mask.value(2, 3), 255);
}

TEST(Mask, OneThatIsUsedAgainIsAsANewOne) {
    constexpr int kWidth = 61, kHeight = 40;
    std::mt19937 random(11);
    Mask used(kWidth, kHeight);
    for (int round = 0; round < 300; ++round) {
        Mask fresh(kWidth, kHeight);
        std::vector<MaskRun> runs;
        for (unsigned i = random() % 4; i > 0; --i)
            runs.push_back(runOf(static_cast<int>(random() % 30), static_cast<int>(random() % kHeight),
                                 static_cast<int>(1 + random() % 30), kWidth, kHeight));
        const unsigned kind = random() % 8;
        for (Mask *const mask : {&used, &fresh}) {
            mask->setRuns(runs);
            if (kind % 4 == 0)
                mask->invert();
            if (kind % 2 == 0)
                mask->feather(static_cast<int>(kind), 2);
            if (kind == 7)
                mask->row(round % kHeight)[round % kWidth] = 9;
        }
        ASSERT_EQ(used.bytes(), fresh.bytes());
        ASSERT_EQ(used.bounds(), fresh.bounds());
        ASSERT_EQ(encodePng(used, kWidth + 1, kHeight + 1), encodePng(fresh, kWidth + 1, kHeight + 1));
        for (int y = 0; y < kHeight; ++y)
            if (used.isUntouched(y)) {
                const std::uint8_t *const row = std::as_const(used).row(y);
                ASSERT_EQ(std::count(row, row + kWidth, 0), kWidth);
            }
    }
}

TEST(Mask, RunsOutsideAreRefused) {
    Mask mask(8, 8);
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const MaskRun wrong[] = {{-0.5, 0, 0.5}, {0, 1, 0.5},  {0.75, 0, 0.5},    {kNaN, 0, 0.5},
                             {0, kNaN, 0.5}, {0, 0, kNaN}, {0, 0, kInfinity}, {0, 0, -0.5}};
    for (const MaskRun &run : wrong)
        EXPECT_THROW(mask.setRuns({run}), std::invalid_argument);
}

TEST(Mask, InvertSwapsInsideAndOutside) {
    Mask mask(4, 2);
    mask.setRuns({runOf(0, 0, 1, 4, 2)});
    mask.invert();
    EXPECT_EQ(mask.value(0, 0), 0);
    EXPECT_EQ(mask.coveredPixels(), 7U);
}

TEST(Mask, FeatherReachesExactlyItsWidthOnBothSides) {
    for (int passes = 1; passes <= 3; ++passes)
        for (int pixels = 1; pixels <= 9; ++pixels) {
            Mask mask(100, 100);
            std::vector<MaskRun> runs;
            for (int line = 30; line < 70; ++line)
                runs.push_back(runOf(30, line, 40, 100, 100));
            mask.setRuns(runs);
            mask.feather(pixels, passes);
            EXPECT_EQ(mask.value(29 - pixels, 50), 0);
            EXPECT_EQ(mask.value(30 + pixels, 50), 255);
            EXPECT_EQ(mask.value(69 - pixels, 50), 255);
            EXPECT_EQ(mask.value(70 + pixels, 50), 0);
            for (int x = 30 - pixels; x < 30 + pixels; ++x) {
                EXPECT_LE(mask.value(x, 50), mask.value(x + 1, 50));
                EXPECT_EQ(mask.value(x, 50), mask.value(99 - x, 50)) << "both edges look alike";
                EXPECT_EQ(mask.value(x, 50), mask.value(50, x)) << "both directions look alike";
            }
            // Half way up the ramp the edge itself lies between two pixels.
            EXPECT_NEAR(mask.value(29, 50) + mask.value(30, 50), 255, 2);
        }
}

TEST(Mask, OnePassIsAStraightRamp) {
    Mask mask(40, 3);
    mask.setRuns({runOf(20, 0, 20, 40, 3), runOf(20, 1, 20, 40, 3), runOf(20, 2, 20, 40, 3)});
    mask.feather(2, 1);
    const int expected[] = {0, 51, 102, 153, 204, 255};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(mask.value(17 + i, 1), expected[i]);
}

/// One pass as it is defined, along one direction.
std::vector<int> blurred(const std::vector<int> &values, int radius) {
    const int count = static_cast<int>(values.size());
    const int window = 2 * radius + 1;
    std::vector<int> result;
    for (int i = 0; i < count; ++i) {
        int sum = 0;
        for (int k = i - radius; k <= i + radius; ++k)
            sum += values[static_cast<std::size_t>(std::clamp(k, 0, count - 1))];
        result.push_back((sum + window / 2) / window);
    }
    return result;
}

TEST(Mask, FeatherIsABoxInBothDirections) {
    constexpr int kWidth = 97, kHeight = 61;
    std::mt19937 random(20261122);
    for (const int radius : {1, 2, 5, 30, 70}) {
        Mask mask(kWidth, kHeight);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                // All sides are reached, so the blur covers the whole mask; flat parts and noise.
                mask.row(y)[x] = static_cast<std::uint8_t>(x % 40 < 20 ? 255 : y % 30 < 15 ? 0 : random());
        mask.row(0)[kWidth - 1] = mask.row(kHeight - 1)[0] = mask.row(kHeight - 1)[kWidth - 1] = 255;
        std::vector<std::vector<int>> expected;
        for (int y = 0; y < kHeight; ++y)
            expected.push_back(blurred({mask.row(y), mask.row(y) + kWidth}, radius));
        for (int x = 0; x < kWidth; ++x) {
            std::vector<int> column;
            for (const auto &row : expected)
                column.push_back(row[static_cast<std::size_t>(x)]);
            column = blurred(column, radius);
            for (int y = 0; y < kHeight; ++y)
                expected[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] =
                    column[static_cast<std::size_t>(y)];
        }
        mask.feather(radius, 1);
        for (int y = 0; y < kHeight; ++y)
            EXPECT_EQ(std::vector<int>(mask.row(y), mask.row(y) + kWidth), expected[static_cast<std::size_t>(y)])
                << radius;
    }
}

TEST(Mask, FeatherDoesNotDarkenThePicturesBorder) {
    Mask mask(32, 32);
    mask.setRuns({});
    mask.invert();
    mask.feather(7, 2);
    EXPECT_EQ(mask.value(0, 0), 255);
    EXPECT_EQ(mask.value(31, 31), 255);
}

TEST(Mask, FeatherOfNothingIsNothing) {
    Mask mask(8, 8);
    mask.feather(3, 2);
    EXPECT_EQ(mask.coveredPixels(), 0U);
    EXPECT_THROW(mask.feather(-1, 2), std::invalid_argument);
    EXPECT_THROW(mask.feather(1, 0), std::invalid_argument);
}

TEST(Mask, SizesAreChecked) {
    EXPECT_THROW(Mask(0, 5), std::invalid_argument);
    EXPECT_THROW(Mask(5, -1), std::invalid_argument);
    EXPECT_THROW(Mask(5, 5).value(5, 0), std::invalid_argument);
}

} // namespace
} // namespace hostkit
