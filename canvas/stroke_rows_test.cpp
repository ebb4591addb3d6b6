// SPDX-License-Identifier: MIT
#include "canvas/stroke_rows.h"

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace {

using canvas::Direction;
using canvas::Position;
using canvas::StrokeRows;
using canvas::StrokeSegment;

constexpr int kWidth = 90;
constexpr int kHeight = 70;
constexpr double kReach = 3.5;
constexpr double kSteps = 72;

/// row, first column, end column, distance of the first column in steps
using Visited = std::vector<std::array<double, 4>>;

void visitTo(StrokeRows &rows, int endRow, Visited &visited) {
    rows.visit(endRow, kWidth, [&](int row, int first, int end, std::int32_t distance) {
        visited.push_back({static_cast<double>(row), static_cast<double>(first), static_cast<double>(end),
                           std::ldexp(distance, -StrokeRows::kDistanceFraction)});
    });
}

Visited visitAll(const StrokeSegment &segment, double hidden = 0) {
    StrokeRows rows({segment, segment.along, segment.along, hidden}, kReach, kSteps, kHeight);
    Visited visited;
    visitTo(rows, kHeight, visited);
    EXPECT_TRUE(rows.done());
    return visited;
}

std::vector<StrokeSegment> randomSegments(int count) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-20, 110);
    std::vector<StrokeSegment> segments = {{{5, 30}, {80, 30}}, {{40, 3}, {40, 60}}, {{-4, -4}, {60, 60}}};
    while (static_cast<int>(segments.size()) < count)
        segments.push_back({{place(random), place(random)}, {place(random), place(random)}});
    return segments;
}

TEST(StrokeRows, VisitThePixelsOfTheStripWithTheirDistances) {
    for (const StrokeSegment &segment : randomSegments(300)) {
        std::vector<char> visited(kWidth * kHeight, 0);
        StrokeRows rows({segment, segment.along, segment.along}, kReach, kSteps, kHeight);
        rows.visit(kHeight, kWidth, [&](int row, int first, int end, std::int32_t distance) {
            ASSERT_TRUE(row >= 0 && row < kHeight && first >= 0 && first < end && end <= kWidth);
            for (int column = first; column < end; ++column) {
                visited[static_cast<std::size_t>(row * kWidth + column)] = 1;
                const double across =
                    (column - segment.from.x) * -segment.along.y + (row - segment.from.y) * segment.along.x;
                const double steps = std::ldexp(distance + static_cast<double>(column - first) * rows.perColumn(),
                                                -StrokeRows::kDistanceFraction);
                ASSERT_NEAR(steps, across * kSteps, 0.01);
            }
        });
        const double length = std::hypot(segment.to.x - segment.from.x, segment.to.y - segment.from.y);
        for (int row = 0; row < kHeight; ++row)
            for (int column = 0; column < kWidth; ++column) {
                const double dx = column - segment.from.x;
                const double dy = row - segment.from.y;
                const double along = dx * segment.along.x + dy * segment.along.y;
                const double across = std::abs(dy * segment.along.x - dx * segment.along.y);
                const bool isInside = visited[static_cast<std::size_t>(row * kWidth + column)] != 0;
                const bool mustBe = across < kReach - 0.02 && along > 0 && along < length;
                const bool mayBe = across < kReach + 0.02 && along > -0.05 && along < length + 0.05;
                ASSERT_TRUE(isInside ? mayBe : !mustBe) << column << ' ' << row;
            }
    }
}

TEST(StrokeRows, TurnsMakeNoDifference) {
    for (const StrokeSegment &segment : randomSegments(100)) {
        StrokeRows rows({segment, segment.along, segment.along}, kReach, kSteps, kHeight);
        Visited inTurns;
        for (int endRow = 5; !rows.done(); endRow += 5)
            if (rows.row() < endRow)
                visitTo(rows, endRow, inTurns);
        ASSERT_EQ(inTurns, visitAll(segment));
    }
}

TEST(StrokeRows, HiddenRowsAreLeftOutAndTheOthersStayTheSame) {
    for (const StrokeSegment &segment : randomSegments(200)) {
        const Visited all = visitAll(segment);
        const Visited rest = visitAll(segment, 9);
        if (rest.empty())
            continue;
        std::size_t before = 0;
        while (before < all.size() && all[before][0] < rest[0][0])
            ++before;
        ASSERT_LE(before + rest.size(), all.size());
        for (std::size_t i = 0; i < rest.size(); ++i)
            EXPECT_EQ(rest[i], all[before + i]);
    }
    const Visited upright = visitAll({{40, 3}, {40, 60}}, 9);
    ASSERT_FALSE(upright.empty());
    EXPECT_EQ(upright.front()[0], 13);
    EXPECT_EQ(upright.back()[0], 50);
}

} // namespace
