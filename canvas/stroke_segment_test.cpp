// SPDX-License-Identifier: MIT
#include "canvas/stroke_segment.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

using canvas::Extent;
using canvas::Position;
using canvas::StrokeJoint;
using canvas::StrokeSegment;

constexpr Extent kBox = {{0, 0}, {100, 50}};

StrokeSegment turnedBy(double angle) {
    return {{10, 0}, {10 + 7 * std::cos(angle), 7 * std::sin(angle)}};
}

TEST(StrokeSegment, DirectionHasUnitLength) {
    const StrokeSegment segment({2, 3}, {-1, 7});
    EXPECT_DOUBLE_EQ(segment.along.x, -0.6);
    EXPECT_DOUBLE_EQ(segment.along.y, 0.8);
}

TEST(StrokeSegment, ClipMovesEndsToTheSides) {
    StrokeSegment crossing({-50, 10}, {150, 30});
    ASSERT_TRUE(crossing.clip(kBox));
    EXPECT_EQ(crossing.from, (Position{0, 15}));
    EXPECT_EQ(crossing.to, (Position{100, 25}));
    StrokeSegment upwards({20, 20}, {20, -80});
    ASSERT_TRUE(upwards.clip(kBox));
    EXPECT_EQ(upwards.from, (Position{20, 20}));
    EXPECT_EQ(upwards.to, (Position{20, 0}));
}

TEST(StrokeSegment, ClipRefusesWhatLiesOutside) {
    EXPECT_FALSE(StrokeSegment({-10, 60}, {110, 60}).clip(kBox)) << "parallel to a side";
    EXPECT_FALSE(StrokeSegment({-10, -20}, {-1, 300}).clip(kBox));
    EXPECT_FALSE(StrokeSegment({90, -20}, {130, 20}).clip(kBox)) << "past a corner";
}

TEST(StrokeSegment, JointsLeanAlongTheBisectorUntilTheyAreSharp) {
    const StrokeSegment first({0, 0}, {10, 0});
    const StrokeJoint smooth(first, turnedBy(0.29));
    EXPECT_FALSE(smooth.isSharp);
    EXPECT_NEAR(std::atan2(smooth.endOfFirst.y, smooth.endOfFirst.x), 0.145, 1e-12);
    EXPECT_EQ(smooth.startOfSecond.y, smooth.endOfFirst.y);
    EXPECT_LE(std::tan(0.145), StrokeJoint::kLean);

    const StrokeJoint sharp(first, turnedBy(-0.31));
    EXPECT_TRUE(sharp.isSharp);
    EXPECT_EQ(sharp.endOfFirst.x, 1);
    EXPECT_NEAR(sharp.startOfSecond.y, std::sin(-0.31), 1e-12);
}

} // namespace
