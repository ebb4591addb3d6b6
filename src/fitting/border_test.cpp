// SPDX-License-Identifier: MIT
#include "fitting/border.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "fitting/testing/drawn_mask.h"

namespace {

using namespace fitting;
using Lines = std::vector<std::string>;

/// The border test as it is defined: of a pixel and its four neighbours, one to four are inside.
std::vector<Pixel> plainBorder(const DrawnMask &mask) {
    std::vector<Pixel> border;
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            const int count = mask.inside(x, y) + mask.inside(x + 1, y) + mask.inside(x - 1, y) +
                              mask.inside(x, y + 1) + mask.inside(x, y - 1);
            if (count >= 1 && count <= 4)
                border.push_back({x, y});
        }
    }
    return border;
}

Lines drawnBorder(const DrawnMask &mask) {
    Lines rows(mask.rows.size(), std::string(mask.rows[0].size(), '.'));
    const Border border(mask.picture());
    for (const Pixel &pixel : border.pixels())
        rows[static_cast<std::size_t>(pixel.y)][static_cast<std::size_t>(pixel.x)] = '#';
    return rows;
}

TEST(Border, IsABandTwoPixelsWide) {
    EXPECT_EQ(drawnBorder(DrawnMask({".......", ".......", "..###..", "..###..", "..###..", ".......", "......."})),
              (Lines{".......", "..###..", ".#####.", ".##.##.", ".#####.", "..###..", "......."}));
}

TEST(Border, TheEdgeOfTheMaskIsOutside) {
    EXPECT_EQ(drawnBorder(DrawnMask({"####.", "####.", "####.", "####.", "....."})),
              (Lines{"#####", "#..##", "#..##", "#####", "####."}));
}

TEST(Border, OfOnePixel) {
    EXPECT_EQ(drawnBorder(DrawnMask({"...", ".#.", "..."})), (Lines{".#.", "###", ".#."}));
}

TEST(Border, AgreesWithItsDefinitionAndKnowsEachPixelsPlace) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const int width = 1 + static_cast<int>(random() % 140);
        const int height = 1 + static_cast<int>(random() % 12);
        const unsigned density = 1 + static_cast<unsigned>(random() % 9);
        Lines lines;
        for (int row = 0; row < height; ++row) {
            std::string line;
            for (int column = 0; column < width; ++column)
                line += random() % 10 < density ? '#' : '.';
            lines.push_back(line);
        }
        lines.back().back() = '.'; // which no run can reach
        lines.front().front() = '#';
        if (width * height == 1)
            continue;
        const DrawnMask mask(lines);
        const Border border(mask.picture());
        ASSERT_EQ(border.pixels(), plainBorder(mask));
        for (std::uint32_t place = 0; place < border.pixels().size(); ++place)
            ASSERT_EQ(border.indexOf(border.pixels()[place]), place);
        for (int y = -1; y <= height; ++y) {
            for (int x = -1; x <= width; ++x) {
                const bool listed = std::ranges::find(border.pixels(), Pixel{x, y}) != border.pixels().end();
                ASSERT_EQ(border.contains({x, y}), listed);
                ASSERT_EQ(border.indexOf({x, y}).has_value(), listed);
            }
        }
    }
}

TEST(Extremes, OfARectangle) {
    const ExtremeTable table = findExtremes(
        Border(DrawnMask({"......", "......", "..##..", "..##..", "......", "......"}).picture()).pixels());
    // Rows and columns 1 to 4, without the corners. Ties: the first for 3, 4, 8, 9, the last for 1, 2, 6, 7.
    EXPECT_EQ(table[8], (Pixel{2, 4}));
    EXPECT_EQ(table[2], (Pixel{3, 1}));
    EXPECT_EQ(table[4], (Pixel{1, 2}));
    EXPECT_EQ(table[6], (Pixel{4, 3}));
    EXPECT_EQ(table[1], (Pixel{1, 2}));
    EXPECT_EQ(table[3], (Pixel{3, 1}));
    EXPECT_EQ(table[7], (Pixel{2, 4}));
    EXPECT_EQ(table[9], (Pixel{4, 3}));
}

/// Walks the list in the direction that each entry's rule names, replacing on equal keys.
TEST(Extremes, TieRulesAreThoseOfTwoWalks) {
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        std::vector<Pixel> list;
        for (std::size_t count = 1 + random() % 30; count > 0; --count)
            list.push_back({static_cast<int>(random() % 6), static_cast<int>(random() % 6)});
        const auto walk = [&list](bool backwards, auto key) {
            Pixel best = backwards ? list.back() : list.front();
            for (std::size_t step = 0; step < list.size(); ++step) {
                const Pixel &pixel = list[backwards ? list.size() - 1 - step : step];
                if (key(pixel) >= key(best))
                    best = pixel;
            }
            return best;
        };
        const ExtremeTable table = findExtremes(list);
        EXPECT_EQ(table[8], walk(true, [](const Pixel &p) { return p.y; }));
        EXPECT_EQ(table[4], walk(true, [](const Pixel &p) { return -p.x; }));
        EXPECT_EQ(table[3], walk(true, [](const Pixel &p) { return p.x - p.y; }));
        EXPECT_EQ(table[9], walk(true, [](const Pixel &p) { return p.x + p.y; }));
        EXPECT_EQ(table[2], walk(false, [](const Pixel &p) { return -p.y; }));
        EXPECT_EQ(table[6], walk(false, [](const Pixel &p) { return p.x; }));
        EXPECT_EQ(table[7], walk(false, [](const Pixel &p) { return p.y - p.x; }));
        EXPECT_EQ(table[1], walk(false, [](const Pixel &p) { return -(p.x + p.y); }));
    }
}

} // namespace
