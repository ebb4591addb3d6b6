// SPDX-License-Identifier: MIT
#include "platform/double_lanes.h"

#include <array>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace {

using Pair = std::array<double, 2>;

// Everything the lanes can do, in one expression.
template <typename Lanes>
std::array<int, 2> compute(const Pair &a, const Pair &b, double low, double high) {
    const Lanes sum = Lanes(a[0], a[1]) + Lanes(b[0], b[1]);
    std::array<int, 2> result;
    greater(lesser(sum, Lanes::all(high)), Lanes::all(low)).truncate(result[0], result[1]);
    return result;
}

TEST(DoubleLanes, EqualThePortableForm) {
    std::mt19937 random(23);
    std::uniform_real_distribution<double> number(-100000, 100000);
    for (int i = 0; i < 20000; ++i) {
        const Pair a = {number(random), number(random)};
        const Pair b = {number(random), number(random)};
        const double low = number(random);
        const double high = number(random);
        ASSERT_EQ(compute<platform::DoubleLanes>(a, b, low, high),
                  compute<platform::PortableDoubleLanes>(a, b, low, high));
    }
}

template <typename Lanes>
void expectResults() {
    using Result = std::array<int, 2>;
    EXPECT_EQ(compute<Lanes>({1.75, -1.75}, {1, -1}, -10, 10), (Result{2, -2})) << "truncated, each lane by itself";
    EXPECT_EQ(compute<Lanes>({1e300, -1e300}, {0, 0}, -10, 10), (Result{10, -10}));
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(compute<Lanes>({kInfinity, -kInfinity}, {5, 5}, 0, 7), (Result{7, 0}));
}

TEST(DoubleLanes, ResultsOfBothForms) {
    expectResults<platform::DoubleLanes>();
    expectResults<platform::PortableDoubleLanes>();
}

} // namespace
