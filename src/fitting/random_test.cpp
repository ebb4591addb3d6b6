// SPDX-License-Identifier: MIT
#include "fitting/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <numeric>
#include <vector>

namespace {

std::vector<int> shuffledNumbers(unsigned seed, std::size_t count) {
    std::vector<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    std::srand(seed);
    fitting::shuffle(std::span(numbers));
    return numbers;
}

TEST(Random, TheSameSeedGivesTheSameOrder) {
    EXPECT_EQ(shuffledNumbers(3, 1000), shuffledNumbers(3, 1000));
    EXPECT_NE(shuffledNumbers(3, 1000), shuffledNumbers(4, 1000));
}

TEST(Random, AShuffleKeepsEveryValue) {
    std::vector<int> numbers = shuffledNumbers(1, 5000);
    EXPECT_FALSE(std::ranges::is_sorted(numbers));
    std::ranges::sort(numbers);
    for (int index = 0; index < 5000; ++index)
        EXPECT_EQ(numbers[static_cast<std::size_t>(index)], index);
    std::vector<int> none;
    fitting::shuffle(std::span(none));
}

TEST(Random, EveryOrderIsAsLikely) {
    std::srand(9);
    std::map<std::vector<int>, int> counts;
    for (int round = 0; round < 24000; ++round) {
        std::vector<int> numbers = {0, 1, 2, 3};
        fitting::shuffle(std::span(numbers));
        ++counts[numbers];
    }
    ASSERT_EQ(counts.size(), 24U);
    // 1000 each; the standard deviation is 31.
    for (const auto &[order, count] : counts)
        EXPECT_NEAR(count, 1000, 160);
}

TEST(Random, LargeBoundsAreReached) {
    std::srand(2);
    const std::uint32_t bound = 4000000000U;
    std::uint32_t largest = 0;
    for (int round = 0; round < 200; ++round) {
        const std::uint32_t number = fitting::randomBelow(bound);
        EXPECT_LT(number, bound);
        largest = std::max(largest, number);
    }
    EXPECT_GT(largest, bound / 10 * 9);
    EXPECT_EQ(fitting::randomBelow(1), 0U);
}

} // namespace
