// SPDX-License-Identifier: MIT
#include "fitting/trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "fitting/testing/drawn_mask.h"

namespace {

using namespace fitting;

/// The order of anchors on these pixels; what is no border pixel counts as no place.
std::vector<std::uint32_t> trace(const DrawnMask &mask, const std::vector<Pixel> &pixels) {
    const BitPicture picture = mask.picture();
    const Border border(picture);
    std::vector<BorderPlace> anchors;
    for (const Pixel &pixel : pixels)
        anchors.push_back(border.indexOf(pixel));
    return traceAnchors(picture, border, anchors);
}

using Order = std::vector<std::uint32_t>;

const DrawnMask kSquare({"........", "........", "..####..", "..####..", "..####..", "..####..", "........",
                         "........"});

TEST(Trace, AnchorsComeInBorderOrder) {
    // Corners of the square, out of order: top left, bottom right, top right, bottom left.
    EXPECT_EQ(trace(kSquare, {{2, 2}, {5, 5}, {5, 2}, {2, 5}}), (Order{0, 2, 1, 3}));
}

TEST(Trace, TheDirectionKeepsNeighbours) {
    EXPECT_EQ(trace(kSquare, {{2, 2}, {5, 2}, {5, 5}, {2, 5}}), (Order{0, 1, 2, 3}));
    EXPECT_EQ(trace(kSquare, {{2, 2}, {2, 5}, {5, 5}, {5, 2}}), (Order{0, 1, 2, 3}));
}

TEST(Trace, PixelsOutsideOfTheMaskAreOnTheBorderToo) {
    EXPECT_EQ(trace(kSquare, {{2, 1}, {6, 4}, {5, 1}, {1, 4}}), (Order{0, 2, 1, 3}));
}

TEST(Trace, SeveralAnchorsOnOnePixelKeepTheirOrder) {
    EXPECT_EQ(trace(kSquare, {{2, 2}, {5, 5}, {2, 2}, {5, 5}, {2, 2}}), (Order{0, 2, 4, 1, 3}));
}

TEST(Trace, AnchorsOffTheBorderAreMissed) {
    EXPECT_EQ(trace(kSquare, {{0, 0}, {5, 5}, {5, 2}, {7, 7}, {2, 2}}), (Order{1, 2, 4}));
    EXPECT_TRUE(trace(kSquare, {{0, 0}, {7, 7}}).empty());
    EXPECT_TRUE(trace(kSquare, {}).empty());
}

TEST(Trace, AtTheEdgeOfTheMaskTheWalkGoesOn) {
    const DrawnMask mask({"####", "####", "####", "...."});
    EXPECT_EQ(trace(mask, {{0, 0}, {3, 2}, {3, 0}, {0, 2}}), (Order{0, 2, 1, 3}));
}

TEST(Trace, ABarOnePixelThick) {
    const DrawnMask mask({"..........", ".########.", ".........."});
    const Order order = trace(mask, {{1, 0}, {4, 2}, {8, 0}, {4, 0}, {8, 2}, {1, 2}});
    EXPECT_EQ(order, (Order{0, 3, 2, 4, 1, 5}));
}

TEST(Trace, PixelsThatTouchByACornerAreOneLoop) {
    const DrawnMask mask({"......", ".##...", ".##...", "...##.", "...##.", "......"});
    // Down the right side of the upper square, round the lower one, and back up on the left.
    EXPECT_EQ(trace(mask, {{1, 1}, {1, 2}, {4, 4}, {2, 1}, {4, 3}, {3, 4}}), (Order{0, 3, 4, 2, 5, 1}));
}

TEST(Trace, AHoleIsJoinedWhereItIsNearest) {
    const DrawnMask mask({"............", ".##########.", ".##########.", ".##########.", ".######..##.",
                          ".######..##.", ".##########.", ".##########.", "............"});
    const std::vector<Pixel> anchors = {{1, 1}, {10, 1}, {10, 7}, {1, 7}, {7, 4}, {8, 4}, {8, 5}, {7, 5}};
    const Order order = trace(mask, anchors);
    ASSERT_EQ(order.size(), 8U);
    EXPECT_EQ(std::set<std::uint32_t>(order.begin(), order.end()).size(), 8U);
    // The hole's four anchors follow one another, between two corners on the right side.
    const auto first = std::ranges::find_if(order, [](std::uint32_t anchor) { return anchor >= 4; });
    EXPECT_TRUE(std::all_of(first, first + 4, [](std::uint32_t anchor) { return anchor >= 4; }));
    EXPECT_TRUE(*(first - 1) == 1 || *(first - 1) == 2) << *(first - 1);
}

TEST(Trace, IslandsAreAllVisited) {
    const DrawnMask mask({"............", ".###....###.", ".###....###.", ".###....###.", "............"});
    const Order order = trace(mask, {{1, 1}, {10, 1}, {3, 1}, {10, 3}, {3, 3}, {8, 1}, {1, 3}, {8, 3}});
    EXPECT_EQ(std::set<std::uint32_t>(order.begin(), order.end()), (std::set<std::uint32_t>{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(order.front(), 0U);
    // Each island's anchors are together, the first one's in order.
    const auto position = [&order](std::uint32_t anchor) { return std::ranges::find(order, anchor) - order.begin(); };
    EXPECT_EQ(position(1) < position(3), position(5) < position(1) || position(7) < position(5));
    const auto [least, most] = std::minmax({position(1), position(3), position(5), position(7)});
    EXPECT_EQ(most - least, 3);
}

/// A row of islands with an anchor on each: nothing is lost, nothing is met twice, whatever the mask.
TEST(Trace, EveryAnchorOnceInRandomMasks) {
    std::mt19937 random(11);
    for (int round = 0; round < 300; ++round) {
        const int width = 2 + static_cast<int>(random() % 40);
        const int height = 2 + static_cast<int>(random() % 40);
        const unsigned density = 1 + static_cast<unsigned>(random() % 9);
        std::vector<std::string> lines;
        for (int row = 0; row < height; ++row) {
            std::string line;
            for (int column = 0; column < width; ++column)
                line += random() % 10 < density ? '#' : '.';
            lines.push_back(line);
        }
        lines[0][0] = '#';
        const BitPicture picture = DrawnMask(lines).picture();
        const Border border(picture);
        std::vector<BorderPlace> anchors;
        std::size_t placed = 0;
        for (std::size_t count = random() % 30; count > 0; --count) {
            if (random() % 8 == 0) {
                anchors.push_back(std::nullopt);
                continue;
            }
            anchors.push_back(static_cast<std::uint32_t>(random() % border.pixels().size()));
            ++placed;
        }
        const Order order = traceAnchors(picture, border, anchors);
        ASSERT_EQ(order.size(), placed);
        EXPECT_EQ(std::set<std::uint32_t>(order.begin(), order.end()).size(), placed);
        for (const std::uint32_t anchor : order)
            EXPECT_TRUE(anchors[anchor].has_value());
        if (placed > 0) {
            EXPECT_EQ(order.front(), *std::ranges::min_element(order));
        }
    }
}

} // namespace
