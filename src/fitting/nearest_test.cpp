// SPDX-License-Identifier: MIT
#include "fitting/nearest.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <random>

#include "fitting/border.h"
#include "fitting/testing/drawn_mask.h"
#include "fitting/testing/plain_selection.h"

namespace {

using namespace fitting;

/// The border of a wavy disk, shuffled.
std::vector<Pixel> wavyBorder(int size, unsigned seed) {
    std::vector<std::string> lines;
    const double middle = size / 2.0;
    for (int y = 0; y < size; ++y) {
        std::string line;
        for (int x = 0; x < size; ++x) {
            const double angle = std::atan2(y - middle, x - middle);
            line += std::hypot(x - middle, y - middle) < size * (0.35 + 0.08 * std::sin(seed + 7 * angle)) ? '#' : '.';
        }
        lines.push_back(line);
    }
    std::vector<Pixel> pixels = Border(DrawnMask(lines).picture()).pixels();
    std::srand(seed);
    shuffle(std::span(pixels));
    return pixels;
}

void expectPlainOrder(NearestPixels &nearest, std::span<const Pixel> list, const Pixel &target, std::size_t limit) {
    const std::vector<std::uint32_t> plain = plainOrder(list, target, limit);
    const std::span<const std::uint32_t> found = nearest.find(target, limit);
    ASSERT_EQ(found.size(), std::min(limit, kCandidates));
    for (std::size_t index = 0; index < found.size(); ++index)
        ASSERT_EQ(found[index], plain[index]) << "target " << target.x << ", " << target.y << ", limit " << limit;
}

TEST(Nearest, FindsWhatAFullSortFinds) {
    std::mt19937 random(1);
    for (const int size : {12, 60, 200, 700}) {
        const std::vector<Pixel> list = wavyBorder(size, static_cast<unsigned>(size));
        NearestPixels nearest(list);
        for (int round = 0; round < 60; ++round) {
            const auto coordinate = [&] { return static_cast<int>(random() % static_cast<unsigned>(3 * size)) - size; };
            const Pixel target = {coordinate(), coordinate()};
            expectPlainOrder(nearest, list, target, list.size());
            expectPlainOrder(nearest, list, target, list.size() / 2);
        }
    }
}

TEST(Nearest, FindsItInScatteredPixels) {
    std::mt19937 random(2);
    for (int round = 0; round < 100; ++round) {
        std::vector<Pixel> list;
        const unsigned extent = 1U << (random() % 31);
        for (std::size_t count = 1 + random() % 40; count > 0; --count)
            list.push_back({static_cast<int>(random() % extent), static_cast<int>(random() % extent)});
        NearestPixels nearest(list);
        for (int target = 0; target < 20; ++target)
            expectPlainOrder(nearest, list, {static_cast<int>(random() % extent), static_cast<int>(random() % extent)},
                             1 + random() % list.size());
    }
}

TEST(Nearest, TargetsAtTheEndsOfTheNumberRange) {
    const std::vector<Pixel> list = wavyBorder(100, 3);
    NearestPixels nearest(list);
    constexpr int kLow = std::numeric_limits<int>::min();
    constexpr int kHigh = std::numeric_limits<int>::max();
    for (const Pixel &target : {Pixel{kLow, kLow}, {kHigh, kHigh}, {kLow, 50}, {50, kHigh}, {kHigh, kLow}})
        expectPlainOrder(nearest, list, target, list.size());
}

TEST(Nearest, ManyEqualDistancesComeInListOrder) {
    std::vector<Pixel> list(200, Pixel{5, 5});
    for (int copy = 0; copy < 3; ++copy)
        list.push_back({6, 5});
    NearestPixels nearest(list);
    expectPlainOrder(nearest, list, {5, 5}, list.size());
    expectPlainOrder(nearest, list, {9, 9}, list.size());
}

TEST(Nearest, FewerThanFiveWhenThereAreFewer) {
    const std::vector<Pixel> list = {{1, 1}, {3, 3}};
    NearestPixels nearest(list);
    EXPECT_EQ(nearest.find({0, 0}, 2).size(), 2U);
    EXPECT_EQ(nearest.find({0, 0}, 1).size(), 1U);
    EXPECT_EQ(nearest.find({0, 0}, 0).size(), 0U);
    EXPECT_EQ(NearestPixels({}).find({0, 0}, 0).size(), 0U);
}

/// Pixels of a rectangle's rim, shuffled.
std::vector<Pixel> rim(const Pixel &origin, int side, unsigned seed) {
    std::vector<Pixel> list;
    for (int at = 0; at < side; ++at)
        for (const Pixel &pixel : {Pixel{at, 0}, {side, at}, {at + 1, side}, {0, at + 1}})
            list.push_back({origin.x + pixel.x, origin.y + pixel.y});
    std::srand(seed);
    shuffle(std::span(list));
    return list;
}

/// Boxes and pixels that a search looks at, on average over targets all over a mask.
double visitedASearch(std::span<const Pixel> list, int width, int height, std::size_t limit) {
    NearestPixels nearest(list);
    std::mt19937 random(4);
    constexpr int kSearches = 500;
    for (int round = 0; round < kSearches; ++round)
        nearest.find({static_cast<int>(random() % static_cast<unsigned>(width)),
                      static_cast<int>(random() % static_cast<unsigned>(height))},
                     limit);
    return static_cast<double>(nearest.visited()) / kSearches;
}

TEST(Nearest, FarTargetsLookAtNoMoreThanNearOnes) {
    constexpr int kWidth = 1 << 24;
    std::vector<Pixel> line;
    for (int x = 0; x < 200000; ++x)
        line.push_back({x % 2 == 0 ? x : kWidth - x, 0});
    std::srand(1);
    shuffle(std::span(line));
    EXPECT_LT(visitedASearch(line, kWidth, 1, line.size()), 300);
    EXPECT_LT(visitedASearch(line, kWidth, 1, line.size() / 2), 300);
    EXPECT_LT(visitedASearch(line, kWidth, 1, 3), 300) << "what lies beyond the limit is not walked over";
}

TEST(Nearest, OnePixelFarOffDoesNotMakeEverySearchLookAtAll) {
    std::vector<Pixel> list = rim({100, 100}, 20000, 2);
    EXPECT_LT(visitedASearch(list, 20000, 20000, list.size()), 500);
    list.push_back({1 << 30, 1 << 30});
    EXPECT_LT(visitedASearch(list, 20000, 20000, list.size()), 500);
    for (int seed = 0; seed < 3; ++seed) {
        NearestPixels nearest(list);
        expectPlainOrder(nearest, list, {seed * 7000, 300}, list.size());
    }
}

TEST(Nearest, TenThousandIslands) {
    std::vector<Pixel> list;
    for (int island = 0; island < 10000; ++island)
        for (const Pixel &pixel : rim({island % 100 * 80, island / 100 * 40}, 3, 3))
            list.push_back(pixel);
    std::srand(3);
    shuffle(std::span(list));
    EXPECT_LT(visitedASearch(list, 8000, 4000, list.size()), 300);
    EXPECT_LT(visitedASearch(list, 8000, 4000, list.size() / 2), 300);
}

using Frequencies = std::map<std::pair<int, int>, int>;

/// How often each pixel is chosen for a target, over many shuffles of one border.
template <typename Choose>
Frequencies frequencies(Choose choose) {
    constexpr int kRounds = 20000;
    const DrawnMask mask(
        {"..........", "..######..", ".########.", ".########.", "..####.##.", "..........", ".........."});
    const std::vector<Pixel> border = Border(mask.picture()).pixels();
    Frequencies counts;
    for (int round = 0; round < kRounds; ++round) {
        std::vector<Pixel> list = border;
        shuffle(std::span(list));
        const Pixel chosen = choose(list);
        ++counts[{chosen.x, chosen.y}];
    }
    return counts;
}

/// The plain way as the fit is defined, sort and shuffle in place, against the search: each pixel is chosen as often,
/// also where several at equal distances compete for the fifth place.
TEST(Nearest, ChoosesEachPixelAsOftenAsSortingDoes) {
    std::srand(17);
    for (const Pixel target : {Pixel{4, 1}, {6, 4}, {0, 0}, {5, 2}}) {
        for (const std::size_t divisor : {1U, 2U}) {
            const Frequencies plain =
                frequencies([&](std::vector<Pixel> &list) { return plainChoice(list, target, list.size() / divisor); });
            const Frequencies fast = frequencies([&](std::vector<Pixel> &list) {
                NearestPixels nearest(list);
                const auto found = nearest.find(target, list.size() / divisor);
                std::vector<std::uint32_t> candidates(found.begin(), found.end());
                shuffle(std::span(candidates));
                return list[candidates.front()];
            });
            std::map<std::pair<int, int>, std::pair<int, int>> both;
            for (const auto &[pixel, count] : plain)
                both[pixel].first = count;
            for (const auto &[pixel, count] : fast)
                both[pixel].second = count;
            // Of two samples of one distribution the sum follows chi squared with one degree less than pixels.
            double sum = 0;
            for (const auto &[pixel, counts] : both) {
                const double difference = counts.first - counts.second;
                sum += difference * difference / (counts.first + counts.second);
            }
            const double freedom = static_cast<double>(both.size()) - 1;
            EXPECT_GE(freedom, 4);
            // Four standard deviations above the mean.
            EXPECT_LT(sum, freedom + 4 * std::sqrt(2 * freedom))
                << "target " << target.x << ", " << target.y << ", divisor " << divisor;
        }
    }
}

/// Anchor after anchor with one generator: the search draws as often as the plain way and takes the same pixels. Equal
/// distances come in list order on both sides here; in the plain way's own list they come as the sorts before left
/// them.
TEST(Nearest, AWholeRowOfChoicesIsThePlainOne) {
    std::vector<Pixel> list = wavyBorder(400, 5);
    NearestPixels nearest(list);
    std::mt19937 random(6);
    std::vector<Pixel> targets;
    for (int count = 0; count < 200; ++count)
        targets.push_back({static_cast<int>(random() % 400), static_cast<int>(random() % 400)});
    const auto choices = [&](auto order) {
        std::srand(9);
        std::vector<Pixel> chosen;
        for (const Pixel &target : targets) {
            std::vector<std::uint32_t> candidates = order(target);
            shuffle(std::span(candidates).first(kCandidates));
            chosen.push_back(list[candidates.front()]);
        }
        return chosen;
    };
    const auto plain = choices([&](const Pixel &target) { return plainOrder(list, target, list.size() / 2); });
    const auto fast = choices([&](const Pixel &target) {
        const auto found = nearest.find(target, list.size() / 2);
        return std::vector<std::uint32_t>(found.begin(), found.end());
    });
    EXPECT_EQ(plain, fast);
}

} // namespace
