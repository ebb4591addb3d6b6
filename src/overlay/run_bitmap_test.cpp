// SPDX-License-Identifier: MIT
#include "overlay/run_bitmap.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace {

using overlay::drawRunBitmap;
using overlay::RunBitmap;
using Quill::MaskRunF;

// The buffer as text, '#' for 255, in lines of one stride.
std::string text(const RunBitmap &bitmap) {
    std::string lines;
    for (std::size_t i = 0; i < bitmap.pixels.size(); ++i) {
        if (i && i % static_cast<std::size_t>(bitmap.stride) == 0)
            lines += '|';
        lines += bitmap.pixels[i] == 255 ? '#' : bitmap.pixels[i] == 0 ? '.' : '?';
    }
    return lines;
}

std::string drawn(MaskRunF run, int width = 8, int height = 3) {
    return text(drawRunBitmap(std::span(&run, 1), width, height));
}

TEST(RunBitmap, RoundsByTruncatingValuePlusHalf) {
    EXPECT_EQ(drawn({0.25F, 0.34F, 0.25F}), "........|..##....|........");
    EXPECT_EQ(drawn({0.1875F, 0.0F, 0.3125F}), "..###...|........|........"); // 1.5 -> 2, 2.5 -> 3
    EXPECT_EQ(drawn({0.18F, 0.0F, 0.31F}), ".##.....|........|........");
}

TEST(RunBitmap, SmallNegativePositionsTruncateToZero) {
    EXPECT_EQ(drawn({-0.125F, -0.4F, 0.25F}), "##......|........|........"); // -1 + 0.5 and -1.2 + 0.5 become 0
}

TEST(RunBitmap, NegativeColumnShortensTheRun) {
    EXPECT_EQ(drawn({-0.5F, 0.0F, 0.75F}), "###.....|........|........"); // column -4 + 0.5 = -3, six long
    EXPECT_EQ(drawn({-1.0F, 0.0F, 0.25F}), "........|........|........");
}

TEST(RunBitmap, ColumnPastTheWidthIsEmpty) {
    EXPECT_EQ(drawn({1.0F, 0.0F, 0.5F}), "........|........|........");
    EXPECT_EQ(drawn({1.5F, 0.0F, 0.5F}), "........|........|........");
}

TEST(RunBitmap, RunIsCutAtTheRightEdge) {
    EXPECT_EQ(drawn({0.75F, 0.0F, 0.75F}), "......##|........|........");
}

TEST(RunBitmap, RowsOutsideAreNotDrawn) {
    EXPECT_EQ(drawn({0.0F, -1.0F, 1.0F}), "........|........|........");
    EXPECT_EQ(drawn({0.0F, 1.0F, 0.5F}), "........|........|........");
    EXPECT_EQ(drawn({0.0F, 50.0F, 0.5F}), "........|........|........");
}

TEST(RunBitmap, RunThatEndsTheLastRowIsLeftOut) {
    EXPECT_EQ(drawn({0.5F, 0.67F, 0.5F}), "........|........|........");
    EXPECT_EQ(drawn({0.5F, 0.67F, 0.375F}), "........|........|....###.");
}

TEST(RunBitmap, RowsStartAtMultiplesOfTheWidthNotOfTheStride) {
    // Five wide, stride eight: row 1 starts at byte 5.
    EXPECT_EQ(drawn({0.0F, 0.34F, 0.4F}, 5, 3), ".....##.|........|........");
    EXPECT_EQ(drawn({0.0F, 0.67F, 0.4F}, 5, 3), "........|..##....|........");
}

TEST(RunBitmap, NonPositiveLengthsDrawNothing) {
    EXPECT_EQ(drawn({0.25F, 0.0F, 0.0F}), "........|........|........");
    EXPECT_EQ(drawn({0.25F, 0.0F, -1.0F}), "........|........|........");
}

TEST(RunBitmap, ValuesBeyondIntegersDrawNothing) {
    const float huge = 1e30F;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float value : {huge, -huge, nan, std::numeric_limits<float>::infinity()}) {
        EXPECT_EQ(drawn({value, 0.0F, 0.5F}), "........|........|........") << value;
        EXPECT_EQ(drawn({0.0F, value, 0.5F}), "........|........|........") << value;
        EXPECT_EQ(drawn({0.0F, 0.0F, value}), "........|........|........") << value;
    }
}

TEST(RunBitmap, RunsOverlap) {
    const MaskRunF runs[] = {{0.0F, 0.0F, 0.25F}, {0.125F, 0.0F, 0.25F}, {0.0F, 0.34F, 0.125F}};
    EXPECT_EQ(text(drawRunBitmap(runs, 8, 3)), "###.....|#.......|........");
}

TEST(RunBitmap, SizesWithoutAPicture) {
    for (const auto &[width, height] : {std::pair(0, 3), {3, 0}, {-1, 3}, {3, -1}, {65536, 65536}}) {
        const RunBitmap bitmap = drawRunBitmap({}, width, height);
        EXPECT_TRUE(bitmap.pixels.empty()) << width << " x " << height;
    }
    EXPECT_EQ(drawRunBitmap({}, 5, 3).pixels.size(), 24U);
}

} // namespace
