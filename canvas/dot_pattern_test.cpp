// SPDX-License-Identifier: MIT
#include "canvas/dot_pattern.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace {

using canvas::DotPattern;
using canvas::Position;

int nearnessAt(const DotPattern &pattern, int x, int y) {
    const int column = x - pattern.left();
    const int row = y - pattern.top();
    const bool inside = column >= 0 && column < pattern.side() && row >= 0 && row < pattern.side();
    return inside ? pattern.row(row)[column] : 0;
}

void expectTrueNearness(const DotPattern &pattern, const Position &centre, double reach, double stepsPerPixel) {
    const int x = static_cast<int>(std::floor(centre.x));
    const int y = static_cast<int>(std::floor(centre.y));
    for (int dy = -12; dy <= 13; ++dy)
        for (int dx = -12; dx <= 13; ++dx) {
            const double distance = std::hypot(x + dx - centre.x, y + dy - centre.y);
            const int nearness = nearnessAt(pattern, x + dx, y + dy);
            if (distance <= reach)
                ASSERT_NEAR(nearness, 255 - distance * stepsPerPixel, 1) << dx << ' ' << dy;
            else
                ASSERT_LE(nearness, std::max(0.0, 256 - reach * stepsPerPixel)) << dx << ' ' << dy;
        }
}

TEST(DotPattern, HoldsTheNearnessOfEveryPixelInReach) {
    std::mt19937 random(17);
    std::uniform_real_distribution<double> place(-50, 5000);
    DotPattern pattern;
    for (const double reach : {1.25, 2.0, 4.5, 8.0}) {
        const auto steps = std::floor(255 / reach);
        pattern.setLook(reach, steps);
        for (int i = 0; i < 100; ++i) {
            const Position centre = {place(random), place(random)};
            pattern.setCentre(centre);
            expectTrueNearness(pattern, centre, reach, steps);
        }
    }
}

TEST(DotPattern, AroundAPixelItIsSymmetricAndNoLargerThanItsReach) {
    DotPattern pattern;
    pattern.setLook(2, 127);
    pattern.setCentre({7, -3});
    EXPECT_EQ(pattern.side(), 5);
    EXPECT_EQ(pattern.left(), 5);
    EXPECT_EQ(pattern.top(), -5);
    EXPECT_EQ(nearnessAt(pattern, 7, -3), 255);
    for (int dy = -2; dy <= 2; ++dy)
        for (int dx = -2; dx <= 2; ++dx) {
            EXPECT_EQ(nearnessAt(pattern, 7 + dx, -3 + dy), nearnessAt(pattern, 7 - dx, -3 + dy));
            EXPECT_EQ(nearnessAt(pattern, 7 + dx, -3 + dy), nearnessAt(pattern, 7 + dy, -3 + dx));
        }
}

TEST(DotPattern, ANewLookMakesANewPattern) {
    DotPattern pattern;
    pattern.setLook(2, 127);
    pattern.setCentre({10, 10});
    pattern.setLook(4, 63);
    pattern.setCentre({20, 20});
    expectTrueNearness(pattern, {20, 20}, 4, 63);
    pattern.setCentre({20.5, 20});
    expectTrueNearness(pattern, {20.5, 20}, 4, 63);
}

} // namespace
