// SPDX-License-Identifier: MIT
#include "overlay/chain.h"

#include <gtest/gtest.h>

#include <limits>

#include "overlay/segment_controls.h"

namespace {

/// A chain in a 100 x 100 video rectangle at the surface's origin.
struct TestChain {
    std::vector<MPoint> points;
    std::vector<MPointF> pointsF;
    PixelRect placement = {0, 0, 100, 100};

    operator Chain() { return {points, pointsF, placement}; }

    /// Anchors joined by straight segments, closed when asked for.
    static TestChain of(std::initializer_list<std::pair<int, int>> anchors, bool closed) {
        TestChain chain;
        for (const auto &[x, y] : anchors)
            appendAnchor(chain, x, y);
        if (closed)
            closeChain(chain);
        return chain;
    }
};

TestChain square() {
    return TestChain::of({{0, 0}, {40, 0}, {40, 40}, {0, 40}}, true);
}

std::vector<std::pair<int, int>> positions(const TestChain &chain) {
    std::vector<std::pair<int, int>> result;
    for (const MPoint &point : chain.points)
        result.emplace_back(point.x, point.y);
    return result;
}

std::vector<std::pair<int, int>> firstSeven(const TestChain &chain) {
    const auto all = positions(chain);
    return {all.begin(), all.begin() + 7};
}

void expectLayout(const TestChain &chain) {
    ASSERT_EQ(chain.points.size(), chain.pointsF.size());
    for (std::size_t index = 0; index < chain.points.size(); ++index) {
        EXPECT_EQ(chain.points[index].type, index % 3 == 0 ? kAnchorPoint : kControlPoint) << index;
        EXPECT_EQ(chain.pointsF[index].type, chain.points[index].type) << index;
        EXPECT_EQ(chain.pointsF[index].x, static_cast<float>(chain.points[index].x) / 100.0F) << index;
        EXPECT_EQ(chain.pointsF[index].y, static_cast<float>(chain.points[index].y) / 100.0F) << index;
        EXPECT_EQ(chain.pointsF[index].curveIn, chain.points[index].curveIn) << index;
        EXPECT_EQ(chain.pointsF[index].curveOut, chain.points[index].curveOut) << index;
    }
}

using Positions = std::vector<std::pair<int, int>>;

TEST(Chain, AppendingAnchorsPlacesControlsAtOneAndThreeQuarters) {
    EXPECT_EQ(positions(TestChain::of({{10, 20}}, false)), (Positions{{10, 20}}));
    const TestChain two = TestChain::of({{10, 20}, {50, -20}}, false);
    EXPECT_EQ(positions(two), (Positions{{10, 20}, {20, 10}, {40, -10}, {50, -20}}));
    expectLayout(two);
    EXPECT_EQ(TestChain::of({{0, 0}, {1, 1}, {2, 2}}, false).points.size(), 7U);
}

TEST(Chain, StraightControlsTruncateTowardZero) {
    const auto [quarter, threeQuarters] = straightControls({0, 0, 0, 0, 0, 0}, {0, 7, -7, 0, 0, 0});
    EXPECT_EQ(std::pair(quarter.x, quarter.y), std::pair(1, -1));
    EXPECT_EQ(std::pair(threeQuarters.x, threeQuarters.y), std::pair(5, -5));
}

TEST(Chain, ClosingAddsTheLastSegmentAndStraightensItsArrival) {
    TestChain chain = TestChain::of({{0, 0}, {40, 0}, {40, 40}}, false);
    chain.points[0].curveIn = chain.pointsF[0].curveIn = 1;
    closeChain(chain);
    EXPECT_EQ(chain.points.size(), 9U);
    EXPECT_EQ(positions(chain)[7], std::pair(30, 30));
    EXPECT_EQ(positions(chain)[8], std::pair(10, 10));
    EXPECT_EQ(chain.points[0].curveIn, 0U);
    expectLayout(chain);
}

TEST(Chain, ClosingTwiceChangesNothing) {
    TestChain chain = square();
    const auto before = positions(chain);
    closeChain(chain);
    EXPECT_EQ(positions(chain), before);
}

TEST(Chain, AppendingToAClosedChainKeepsItClosed) {
    TestChain chain = TestChain::of({{0, 0}, {40, 0}, {40, 40}}, true);
    appendAnchor(chain, 0, 40);
    EXPECT_EQ(positions(chain), positions(square()));
    expectLayout(chain);
}

TEST(Chain, AppendingToAClosedChainStraightensItsBentClosingSegment) {
    TestChain chain = TestChain::of({{0, 0}, {40, 0}, {40, 40}}, true);
    moveControl(chain, 7, 5, 5);
    appendAnchor(chain, 0, 40);
    EXPECT_EQ(positions(chain), positions(square()));
    EXPECT_EQ(chain.points[6].curveOut, 0U);
    EXPECT_EQ(chain.points[0].curveIn, 0U);
    expectLayout(chain);
}

TEST(Chain, InsertionOnAStraightSegment) {
    TestChain chain = square();
    EXPECT_TRUE(insertPoint(chain, {kAnchorPoint, 20, 0, 0, 0, 1}, 1));
    ASSERT_EQ(chain.points.size(), 15U);
    EXPECT_EQ(firstSeven(chain), (Positions{{0, 0}, {5, 0}, {15, 0}, {20, 0}, {25, 0}, {35, 0}, {40, 0}}));
    EXPECT_EQ(chain.points[3].handleShown, 0U);
    expectLayout(chain);
}

TEST(Chain, InsertionOnABentSegmentIsSmooth) {
    TestChain chain = square();
    chain.points[0].curveOut = chain.pointsF[0].curveOut = 1;
    EXPECT_TRUE(insertPoint(chain, {kAnchorPoint, 20, 20, 0, 0, 0}, 1));
    // From (0,0): 0.15 x ((20,20) - (0,40)); around the point: 0.15 x ((40,0) - (0,0)); to (40,0):
    // 0.15 x ((20,20) - (40,40)).
    EXPECT_EQ(firstSeven(chain), (Positions{{0, 0}, {3, -3}, {14, 20}, {20, 20}, {26, 20}, {37, -3}, {40, 0}}));
    EXPECT_EQ(chain.points[3].curveIn, 1U);
    EXPECT_EQ(chain.points[3].curveOut, 1U);
    expectLayout(chain);
}

TEST(Chain, InsertionOnTheClosingSegmentGoesToTheEnd) {
    TestChain chain = square();
    EXPECT_TRUE(insertPoint(chain, {kAnchorPoint, 0, 20, 0, 0, 0}, 10));
    ASSERT_EQ(chain.points.size(), 15U);
    EXPECT_EQ(positions(chain)[12], std::pair(0, 20));
    expectLayout(chain);
}

TEST(Chain, InsertionWithoutAnchorsIsRefused) {
    TestChain chain;
    EXPECT_FALSE(insertPoint(chain, {}, 0));
    chain.points.assign(3, {kControlPoint, 0, 0, 0, 0, 0});
    chain.pointsF.assign(3, {kControlPoint, 0, 0, 0, 0, 0});
    EXPECT_FALSE(insertPoint(chain, {}, 1));
}

TEST(Chain, RemovingAnAnchorStraightensTheSegmentThatArises) {
    TestChain chain = square();
    moveControl(chain, 1, 0, -10); // bends the first segment
    removeAnchors(chain, {3});
    EXPECT_EQ(positions(chain), positions(TestChain::of({{0, 0}, {40, 40}, {0, 40}}, true)));
    EXPECT_EQ(chain.points[0].curveOut, 0U);
    expectLayout(chain);
}

TEST(Chain, RemovingTheFirstAnchorRebuildsTheClosingSegment) {
    TestChain chain = square();
    removeAnchors(chain, {0});
    EXPECT_EQ(positions(chain), positions(TestChain::of({{40, 0}, {40, 40}, {0, 40}}, true)));
    expectLayout(chain);
}

TEST(Chain, RemovingKeepsBentSegmentsBetweenKeptNeighbours) {
    TestChain chain = square();
    moveControl(chain, 7, 5, 5); // the segment from (40,40) to (0,40)
    const MPoint bent = chain.points[7];
    removeAnchors(chain, {3});
    EXPECT_EQ(chain.points[4], bent);
    EXPECT_EQ(chain.points[3].curveOut, 1U);
}

TEST(Chain, RemovingIgnoresIndicesBeyondTheChain) {
    TestChain chain = square();
    removeAnchors(chain, {99});
    EXPECT_EQ(positions(chain), positions(square()));
}

TEST(Chain, MovingALeavingHandleBendsItsSegmentAtBothEnds) {
    TestChain chain = square();
    moveControl(chain, 1, 2, 3);
    EXPECT_EQ(positions(chain)[1], std::pair(12, 3));
    EXPECT_EQ(positions(chain)[2], std::pair(30, 0));
    EXPECT_EQ(chain.points[0].curveOut, 1U);
    EXPECT_EQ(chain.points[3].curveIn, 1U);
    expectLayout(chain);
}

TEST(Chain, MovingTheLastArrivingHandleWrapsToTheFirstAnchor) {
    TestChain chain = square();
    moveControl(chain, 11, 1, 1);
    EXPECT_EQ(chain.points[9].curveOut, 1U);
    EXPECT_EQ(chain.points[0].curveIn, 1U);
}

TEST(Chain, MovingAnAnchorReplacesStraightSidesAndTakesBentHandlesAlong) {
    TestChain chain = square();
    moveControl(chain, 1, 0, 10);
    moveAnchor(chain, 0, 8, 8);
    EXPECT_EQ(positions(chain)[0], std::pair(8, 8));
    EXPECT_EQ(positions(chain)[1], std::pair(18, 18)); // bent: moved along
    EXPECT_EQ(positions(chain)[2], std::pair(30, 0));  // the far handle stays
    // Straight arriving side, measured from the moved anchor toward (0,40).
    EXPECT_EQ(positions(chain)[11], std::pair(6, 16));
    EXPECT_EQ(positions(chain)[10], std::pair(2, 32));
    expectLayout(chain);
}

TEST(Chain, MovingAnEndOfAnOpenChainLeavesTheOtherEndAlone) {
    TestChain chain = TestChain::of({{0, 0}, {40, 0}, {40, 40}}, false);
    moveAnchor(chain, 0, 4, 4);
    EXPECT_EQ(positions(chain)[6], std::pair(40, 40));
    EXPECT_EQ(positions(chain)[3], std::pair(40, 0));
    expectLayout(chain);
}

TEST(Chain, ClampStopsFlushWithTheEdges) {
    const TestChain chain = TestChain::of({{10, 10}, {50, 30}}, false);
    std::int32_t dx = 1000;
    std::int32_t dy = -1000;
    clampMoveToDisplay(chain.points, 100, 100, dx, dy);
    EXPECT_EQ(std::pair(dx, dy), std::pair(50, -10));
}

TEST(Chain, ClampLetsTheRightAndBottomEdgeWin) {
    const TestChain chain = TestChain::of({{0, 0}, {200, 200}}, false);
    std::int32_t dx = -5;
    std::int32_t dy = 5;
    clampMoveToDisplay(chain.points, 100, 100, dx, dy);
    EXPECT_EQ(std::pair(dx, dy), std::pair(-100, -100));
}

TEST(Chain, ClampSurvivesExtremeCoordinates) {
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    const std::vector<MPoint> points = {{0, kMin, kMax, 0, 0, 0}, {0, kMax, kMin, 0, 0, 0}};
    std::int32_t dx = kMin;
    std::int32_t dy = kMax;
    clampMoveToDisplay(points, 0, 0, dx, dy);
    EXPECT_EQ(dx, -kMax);
    EXPECT_EQ(dy, -kMax);
}

TEST(Chain, HitTestToleranceIsTenPixelsAndTheLowestIndexWins) {
    const TestChain chain = TestChain::of({{50, 50}, {55, 50}}, false);
    EXPECT_EQ(hitTestAnchor(chain.points, 60, 60), 0U);
    EXPECT_EQ(hitTestAnchor(chain.points, 61, 60), 3U);
    EXPECT_EQ(hitTestAnchor(chain.points, 55, 61), std::nullopt);
    EXPECT_EQ(hitTestAnchor({}, 0, 0), std::nullopt);
}

TEST(Chain, HandlesOfAnAnchorAreItsNeighbours) {
    TestChain chain = square();
    showHandles(chain.points, 0);
    EXPECT_EQ(chain.points[1].handleShown, 1U);
    EXPECT_EQ(chain.points[11].handleShown, 1U);
    showHandles(chain.points, 1); // a handle changes nothing
    EXPECT_EQ(chain.points[1].handleShown, 1U);
    showHandles(chain.points, 3);
    EXPECT_EQ(chain.points[1].handleShown, 0U);
    EXPECT_EQ(chain.points[2].handleShown, 1U);
    EXPECT_EQ(chain.points[4].handleShown, 1U);
    showHandles(chain.points, std::nullopt);
    EXPECT_EQ(chain.points[4].handleShown, 0U);
}

TEST(Chain, OppositeHandles) {
    const TestChain chain = square();
    EXPECT_EQ(oppositeHandle(chain.points, 1)->handle, 11U);
    EXPECT_EQ(oppositeHandle(chain.points, 11)->handle, 1U);
    EXPECT_EQ(oppositeHandle(chain.points, 2)->handle, 4U);
    EXPECT_EQ(oppositeHandle(chain.points, 2)->anchor, 3U);
    EXPECT_FALSE(oppositeHandle(chain.points, 0));
    EXPECT_FALSE(oppositeHandle(chain.points, 12));
    const TestChain open = TestChain::of({{0, 0}, {40, 0}}, false);
    EXPECT_FALSE(oppositeHandle(open.points, 1));
}

TEST(Chain, ReorderingKeepsSegmentsThatStayAndStraightensThoseThatArise) {
    TestChain chain = TestChain::of({{0, 0}, {40, 40}, {40, 0}, {0, 40}}, true);
    moveControl(chain, 10, 5, 5); // bends the closing segment
    reorderAnchors(chain, {0, 2, 1, 3});
    expectLayout(chain);
    const Positions expected = {{0, 0},   {10, 0},  {30, 0},  {40, 0}, {40, 10}, {40, 30},
                                {40, 40}, {30, 40}, {10, 40}, {0, 40}, {5, 35},  {0, 10}};
    EXPECT_EQ(positions(chain), expected);
    EXPECT_EQ(chain.points[9].curveOut, 1U);
    EXPECT_EQ(chain.points[0].curveIn, 1U);
    reorderAnchors(chain, {0, 3, 2, 1});
    expectLayout(chain);
    EXPECT_EQ(positions(chain)[3], (std::pair{0, 40}));
    for (const MPoint &point : chain.points)
        EXPECT_EQ(point.curveIn + point.curveOut, 0U);
}

TEST(Chain, ReorderingIntoTheSameOrderChangesNothing) {
    TestChain chain = square();
    moveControl(chain, 4, 3, 3);
    const std::vector<MPoint> before = chain.points;
    reorderAnchors(chain, {0, 1, 2, 3});
    EXPECT_EQ(chain.points, before);
}

TEST(Chain, APlacedAnchorKeepsItsPlaceAndTheSidesFollow) {
    TestChain chain = square();
    placeAnchor(chain, 3, 0.8049F, 0.2F);
    EXPECT_EQ(chain.pointsF[3].x, 0.8049F); // finer than a pixel
    EXPECT_EQ((std::pair{chain.points[3].x, chain.points[3].y}), (std::pair{80, 20}));
    EXPECT_EQ((std::pair{chain.points[4].x, chain.points[4].y}), (std::pair{70, 25}));
    EXPECT_EQ((std::pair{chain.points[2].x, chain.points[2].y}), (std::pair{60, 15}));
}

TEST(Chain, AnchorPositionsAndWhetherItIsClosed) {
    TestChain open = TestChain::of({{0, 0}, {1, 1}, {2, 2}}, false);
    EXPECT_EQ(anchorPositions(open.points), (std::vector<std::size_t>{0, 3, 6}));
    EXPECT_FALSE(isClosed(open));
    EXPECT_TRUE(isClosed(square()));
    TestChain none;
    EXPECT_FALSE(isClosed(none));
    EXPECT_TRUE(anchorPositions(none.points).empty());
}

} // namespace
