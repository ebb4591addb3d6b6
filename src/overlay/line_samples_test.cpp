// SPDX-License-Identifier: MIT
#include "overlay/line_samples.h"

#include <gtest/gtest.h>

#include "overlay/chain.h"

namespace {

std::vector<MPoint> triangle() {
    std::vector<MPoint> points;
    std::vector<MPointF> pointsF;
    const PixelRect placement = {0, 0, 100, 100};
    const Chain chain = {points, pointsF, placement};
    for (const auto &[x, y] : {std::pair{100, 100}, {300, 100}, {300, 300}})
        appendAnchor(chain, x, y);
    closeChain(chain);
    return points;
}

TEST(LineSamples, FindsTheSegmentAndItsFirstSampleWithinReach) {
    LineSamples samples;
    samples.rebuild(triangle(), 640, 360);
    const auto hit = samples.find(200, 110, 10);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->segment, 0);
    EXPECT_EQ(hit->sample.x, 190);
    EXPECT_EQ(hit->sample.y, 100);
    EXPECT_FALSE(samples.find(200, 111, 10));
}

TEST(LineSamples, OfTwoSegmentsTheHigherNumberedWins) {
    LineSamples samples;
    samples.rebuild(triangle(), 640, 360);
    EXPECT_EQ(samples.find(300, 100, 10)->segment, 1);
    EXPECT_EQ(samples.find(300, 300, 10)->segment, 2);
    EXPECT_EQ(samples.find(100, 100, 10)->segment, 2);
}

TEST(LineSamples, ARefusedOutlineLeavesNothingToHover) {
    LineSamples samples;
    samples.rebuild(triangle(), 640, 360);
    samples.rebuild({}, 640, 360);
    EXPECT_FALSE(samples.find(200, 100, 10));
}

TEST(LineSamples, FarAwayPointersAreNoOverflow) {
    LineSamples samples;
    samples.rebuild(triangle(), 640, 360);
    EXPECT_FALSE(samples.find(INT32_MAX, INT32_MIN, 10));
    EXPECT_FALSE(samples.find(INT32_MIN, INT32_MAX, 10));
}

} // namespace
