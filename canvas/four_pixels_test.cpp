// SPDX-License-Identifier: MIT
#include "canvas/four_pixels.h"

#include <array>
#include <random>

#include <gtest/gtest.h>

namespace {

using canvas::FourPixels;
using canvas::Pixel;
using canvas::PortableFourPixels;

using Four = std::array<Pixel, 4>;

template <typename Pixels>
Four laidOver(const Four &below, const Four &source) {
    Four result;
    over(Pixels::load(below.data()), Pixels::load(source.data())).store(result.data());
    return result;
}

Pixel pixel(std::uint32_t alpha, std::uint32_t color) {
    return alpha == 0 ? canvas::kTransparent : alpha << 24 | (color & 0xFFFFFF);
}

// Every pair of alphas with every value of one channel over a few of another.
TEST(FourPixels, OverEqualsThePortableFormForEveryPairOfAlphas) {
    for (std::uint32_t sourceAlpha = 0; sourceAlpha < 256; ++sourceAlpha)
        for (std::uint32_t belowAlpha = 0; belowAlpha < 256; ++belowAlpha)
            for (std::uint32_t value = 0; value < 256; value += 4) {
                Four below;
                Four source;
                for (std::uint32_t i = 0; i < 4; ++i) {
                    const std::uint32_t other = (value * 167 + sourceAlpha * 3 + belowAlpha * 5 + i) % 256;
                    source[i] = pixel(sourceAlpha, (value + i) << 16 | other << 8 | (255 - value));
                    below[i] = pixel(belowAlpha, other << 16 | (value + i) << 8 | i * 85);
                }
                ASSERT_EQ(laidOver<FourPixels>(below, source), laidOver<PortableFourPixels>(below, source))
                    << sourceAlpha << " over " << belowAlpha << ", " << value;
            }
}

TEST(FourPixels, OverEqualsThePortableFormForRandomPixels) {
    std::mt19937 random(3);
    for (int round = 0; round < 200000; ++round) {
        Four below;
        Four source;
        for (std::size_t i = 0; i < 4; ++i) {
            below[i] = pixel(static_cast<std::uint32_t>(random() >> 24), static_cast<std::uint32_t>(random()));
            source[i] = pixel(static_cast<std::uint32_t>(random() >> 24), static_cast<std::uint32_t>(random()));
        }
        ASSERT_EQ(laidOver<FourPixels>(below, source), laidOver<PortableFourPixels>(below, source));
    }
}

template <typename Pixels>
void expectTests() {
    const Pixels some(1, 0, 0xFFFFFFFF, 0);
    EXPECT_TRUE(areDisjoint(some, Pixels(0, 7, 0, 0)));
    EXPECT_FALSE(areDisjoint(some, Pixels(0, 7, 0x80000000, 0)));
    EXPECT_FALSE(areDisjoint(Pixels(5, 0, 0, 0), some));

    Four both;
    (some | Pixels(0, 7, 0, 2)).store(both.data());
    EXPECT_EQ(both, (Four{1, 7, 0xFFFFFFFF, 2}));
}

TEST(FourPixels, TestsAndUnionOfBothForms) {
    expectTests<FourPixels>();
    expectTests<PortableFourPixels>();
}

} // namespace
