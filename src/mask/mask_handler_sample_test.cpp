// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::XY;

SegmentSamples sample(const std::vector<MPoint> &points, int density = 100) {
    SegmentSamples segments{{MPoint{}}, {}, {}, {MPoint{}}, {}}; // what was there goes
    EXPECT_EQ(MaskHandler::GenAllPoints(points.data(), static_cast<int>(points.size()), density, 0, &segments), S_OK);
    return segments;
}

std::vector<MPoint> triangle() {
    return test::outline({{0, 0}, {2, 0}, {6, 0}, {8, 0}, {8, 2}, {8, 6}, {8, 8}, {6, 6}, {2, 2}});
}

std::vector<MPoint> lineBetween(const MPoint &first, const MPoint &second) {
    std::vector<MPoint> points;
    MaskHandler::m_fnGetLinePoints(first, second, 0, &points);
    return points;
}

TEST(GenAllPoints, TwoAnchorsYieldOneSegmentAndNoClosingSegment) {
    const std::vector<MPoint> points = test::outline({{0, 0}, {1, 0}, {3, 0}, {4, 0}, {3, 0}, {1, 0}});
    EXPECT_TRUE(sample(points) == (SegmentSamples{lineBetween(points[0], points[3])}));
}

TEST(GenAllPoints, ThreeAnchorsYieldThreeSegments) {
    const std::vector<MPoint> points = triangle();
    EXPECT_TRUE(sample(points) == (SegmentSamples{lineBetween(points[0], points[3]), lineBetween(points[3], points[6]),
                                                  lineBetween(points[6], points[0])}));
}

TEST(GenAllPoints, TheLastPointIsNeverExamined) {
    std::vector<MPoint> points = triangle();
    points.resize(7); // an open chain whose last anchor stands last
    EXPECT_EQ(sample(points).size(), 1u);
    points.push_back({kControlPoint, 0, 0, 0, 0, 0});
    EXPECT_EQ(sample(points).size(), 3u);
}

TEST(GenAllPoints, CurveFlagsOfTheLeavingAnchorAndOfTheFirstDecide) {
    std::vector<MPoint> points = triangle();
    const SegmentSamples straight = sample(points);
    points[3].curveOut = 1;
    const SegmentSamples bent = sample(points);
    EXPECT_TRUE(bent[0] == straight[0]);
    EXPECT_FALSE(bent[1] == straight[1]);
    EXPECT_TRUE(bent[2] == straight[2]);
    points[3].curveOut = 0;
    points[6].curveOut = 1; // the closing segment asks the first anchor
    EXPECT_TRUE(sample(points) == straight);
    points[0].curveIn = 1;
    EXPECT_FALSE(sample(points)[2] == straight[2]);
}

TEST(GenAllPoints, SamplesStartAndEndOnTheAnchorsAndCarryOnlyTheirPlace) {
    std::vector<MPoint> points = triangle();
    points[0].curveOut = points[3].curveOut = points[0].curveIn = 1;
    const SegmentSamples segments = sample(points, 1920);
    ASSERT_EQ(segments.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const MPoint &start = points[3 * i];
        const MPoint &end = points[3 * (i + 1) % 9];
        EXPECT_TRUE(segments[i].front() == (MPoint{0, start.x, start.y, 0, 0, 0}));
        EXPECT_TRUE(segments[i].back() == (MPoint{0, end.x, end.y, 0, 0, 0}));
        EXPECT_GT(segments[i].size(), 20u);
    }
}

TEST(GenAllPoints, ArgumentFaultsAreNamedInTheLogAndLeaveTheOutput) {
    const std::vector<MPoint> points = triangle();
    SegmentSamples segments{{MPoint{}}};
    const auto lines = test::loggedLines([&] {
        EXPECT_EQ(MaskHandler::GenAllPoints(nullptr, 9, 100, 0, &segments), E_POINTER);
        EXPECT_EQ(MaskHandler::GenAllPoints(points.data(), 9, 100, 0, nullptr), E_POINTER);
        EXPECT_EQ(MaskHandler::GenAllPoints(points.data(), 1, 100, 0, &segments), E_FAIL);
        EXPECT_EQ(MaskHandler::GenAllPoints(points.data(), -4, 100, 0, &segments), E_FAIL);
    });
    EXPECT_EQ(segments.size(), 1u);
    EXPECT_EQ(lines, (std::vector<std::string>{"Quill::MaskHandler::GenAllPoints Null Pointer : points",
                                               "Quill::MaskHandler::GenAllPoints Null Pointer : allpoints"}));
}

TEST(GenAllPoints, TwoPointsEmptyTheOutput) {
    EXPECT_TRUE(sample(test::outline({{0, 0}, {5, 5}})).empty());
}

TEST(GenAllPoints, WithoutADisplaySizeACurveIsItsEnds) {
    std::vector<MPoint> points = triangle();
    points[0].curveOut = 1;
    for (const int density : {0, -1, std::numeric_limits<int>::min()})
        EXPECT_TRUE(sample(points, density)[0] == (std::vector<MPoint>{{0, 0, 0, 0, 0, 0}, {0, 8, 0, 0, 0, 0}}));
}

TEST(GenAllPoints, CurvesBeyondTheEndOfTheArrayStayEmpty) {
    // Four anchors in a row: by position the second curve would need points 3 to 6.
    std::vector<MPoint> points(5);
    for (int i = 0; i < 5; ++i)
        points[static_cast<std::size_t>(i)] = {kAnchorPoint, i, i, 1, 1, 0};
    const SegmentSamples segments = sample(points);
    ASSERT_EQ(segments.size(), 4u);
    EXPECT_FALSE(segments[0].empty());
    EXPECT_TRUE(segments[1].empty());
    EXPECT_TRUE(segments[2].empty());
    EXPECT_FALSE(segments[3].empty());
}

TEST(GenAllPoints, HostileCoordinatesAndDensitiesStayBounded) {
    constexpr int kLowest = std::numeric_limits<int>::min();
    constexpr int kHighest = std::numeric_limits<int>::max();
    for (const int far : {8191, 65535, kMaxPixelCoordinate, kMaxPixelCoordinate + 1, kHighest, kLowest})
        for (const int density : {1, 1920, 65535, kHighest}) {
            std::vector<MPoint> points = triangle();
            points[0].curveOut = points[3].curveOut = points[0].curveIn = 1;
            points[1].x = far;
            points[4].y = far;
            points[8] = {kControlPoint, -(far / 2), far, 0, 0, 0};
            for (const auto &segment : sample(points, density)) {
                EXPECT_GE(segment.size(), 2u);
                EXPECT_LT(segment.size(), 200000u);
            }
        }
}

} // namespace
} // namespace Quill
