// SPDX-License-Identifier: MIT
#include "fitting/loop_joiner.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

namespace {

using namespace fitting;
using Order = std::vector<std::uint32_t>;

/// The cheapest pair of bridges by trying every one.
void joinPlainly(std::span<const Pixel> places, Order &order, Order loop) {
    std::size_t position = order.size() - 1;
    if (order.size() * loop.size() <= LoopJoiner::kMostBridges) {
        const auto distance = [&](std::uint32_t a, std::uint32_t b) {
            return std::sqrt(squaredDistance(places[a], places[b]));
        };
        std::size_t entry = 0;
        double least = 0;
        bool found = false;
        for (std::size_t at = 0; at < order.size(); ++at) {
            for (std::size_t in = 0; in < loop.size(); ++in) {
                const std::uint32_t from = order[at];
                const std::uint32_t to = order[(at + 1) % order.size()];
                const std::uint32_t first = loop[in];
                const std::uint32_t last = loop[(in + loop.size() - 1) % loop.size()];
                const double added =
                    distance(from, first) + distance(last, to) - distance(from, to) - distance(last, first);
                if (found && added >= least)
                    continue;
                found = true;
                least = added;
                position = at;
                entry = in;
            }
        }
        std::rotate(loop.begin(), loop.begin() + static_cast<std::ptrdiff_t>(entry), loop.end());
    }
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(position) + 1, loop.begin(), loop.end());
}

/// Loops of anchors with successive numbers.
std::vector<Order> loopsOf(std::mt19937 &random, std::size_t loops, std::size_t most) {
    std::vector<Order> result;
    std::uint32_t number = 0;
    for (std::size_t loop = 0; loop < loops; ++loop) {
        Order anchors(1 + random() % most);
        std::iota(anchors.begin(), anchors.end(), number);
        number += static_cast<std::uint32_t>(anchors.size());
        result.push_back(anchors);
    }
    return result;
}

void expectThePlainOrder(std::span<const Pixel> places, const std::vector<Order> &loops) {
    Order plain = loops.front();
    LoopJoiner joiner(places, loops.front());
    for (std::size_t loop = 1; loop < loops.size(); ++loop) {
        joinPlainly(places, plain, loops[loop]);
        joiner.join(loops[loop]);
    }
    ASSERT_EQ(joiner.order(), plain);
}

TEST(LoopJoiner, JoinsAsTryingEveryPairDoes) {
    std::mt19937 random(1);
    for (int round = 0; round < 50 && !testing::Test::HasFatalFailure(); ++round) {
        const std::vector<Order> loops = loopsOf(random, 2 + random() % 60, 1 + random() % 70);
        const unsigned extent = 1U << (1 + random() % 14);
        std::vector<Pixel> places(loops.back().back() + 1);
        for (const Order &loop : loops) {
            // Round a middle of its own, so that loops are apart, or all over one another.
            const Pixel middle = {static_cast<int>(random() % extent), static_cast<int>(random() % extent)};
            const auto reach = static_cast<int>(1 + random() % (extent / 2));
            for (std::size_t at = 0; at < loop.size(); ++at) {
                const double angle = 6.3 * static_cast<double>(at) / static_cast<double>(loop.size());
                places[loop[at]] = {middle.x + static_cast<int>(reach * std::cos(angle)),
                                    middle.y + static_cast<int>(reach * std::sin(angle))};
            }
        }
        expectThePlainOrder(places, loops);
    }
}

TEST(LoopJoiner, OfEquallyCheapOnesTheFirstCounts) {
    // Islands on a grid: nearly every bridge has others of its length.
    std::mt19937 random(2);
    for (const int across : {3, 10, 30}) {
        const std::vector<Order> loops = loopsOf(random, static_cast<std::size_t>(across) * 20, 2);
        std::vector<Pixel> places;
        for (std::size_t loop = 0; loop < loops.size(); ++loop)
            for (std::size_t at = 0; at < loops[loop].size(); ++at)
                places.push_back(
                    {static_cast<int>(loop) % across * 8, static_cast<int>(loop) / across * 8 + static_cast<int>(at)});
        expectThePlainOrder(places, loops);
    }
}

TEST(LoopJoiner, CoordinatesAtTheEndsOfTheNumberRange) {
    constexpr std::int32_t kLow = INT32_MIN;
    constexpr std::int32_t kHigh = INT32_MAX;
    const std::vector<Pixel> places = {{kLow, kLow}, {kHigh, kHigh}, {0, 0}, {kLow, kHigh}, {kHigh, kLow}, {1, 1}};
    expectThePlainOrder(places, {{0, 1}, {2}, {3, 4}, {5}});
}

TEST(LoopJoiner, PastTheLimitALoopIsAppended) {
    std::vector<Pixel> places(4100, Pixel{0, 0});
    Order first(2050);
    std::iota(first.begin(), first.end(), 0);
    Order second(2050);
    std::iota(second.begin(), second.end(), 2050);
    for (std::size_t at = 0; at < places.size(); ++at)
        places[at].x = static_cast<int>(at % 2050);
    expectThePlainOrder(places, {first, second});
}

TEST(LoopJoiner, TenThousandIslandsLookAtFewPairs) {
    constexpr int kIslands = 10000;
    std::vector<Pixel> places;
    std::mt19937 random(3);
    for (int island = 0; island < kIslands; ++island)
        places.push_back(
            {island % 100 * 80 + static_cast<int>(random() % 5), island / 100 * 40 + static_cast<int>(random() % 5)});
    std::vector<std::uint32_t> loops(kIslands);
    std::iota(loops.begin(), loops.end(), 0);
    for (const bool shuffled : {false, true}) {
        if (shuffled)
            std::shuffle(loops.begin() + 1, loops.end(), random);
        LoopJoiner joiner(places, std::span(loops).first(1));
        for (std::size_t loop = 1; loop < loops.size(); ++loop)
            joiner.join(std::span(loops).subspan(loop, 1));
        // Every pair would be fifty million.
        EXPECT_LT(joiner.visited(), 12000000U) << shuffled;
        EXPECT_EQ(joiner.order().size(), static_cast<std::size_t>(kIslands));
    }
}

} // namespace
