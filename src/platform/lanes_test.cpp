// SPDX-License-Identifier: MIT
#include "platform/lanes.h"

#include <array>
#include <random>

#include <gtest/gtest.h>

namespace {

using Bytes = std::array<std::uint8_t, 8>;

// Everything the lanes can do, in one expression.
template <typename Lanes>
Bytes compute(int start, int step, int limit, Bytes bytes) {
    const Lanes ramp = Lanes::ramp();
    const Lanes values =
        Lanes::all(300) - (Lanes::all(start) + ramp * Lanes::all(step)).magnitude().template shifted<3>();
    values.where(ramp, Lanes::all(limit)).raise(bytes.data());
    return bytes;
}

TEST(Lanes, EqualThePortableForm) {
    std::mt19937 random(11);
    std::uniform_int_distribution<int> word(-32768, 32767);
    std::uniform_int_distribution<int> small(-2, 10);
    for (int i = 0; i < 20000; ++i) {
        Bytes bytes;
        for (std::uint8_t &byte : bytes)
            byte = static_cast<std::uint8_t>(word(random));
        const int start = i % 3 ? word(random) : word(random) / 16;
        const int step = i % 3 ? word(random) : word(random) / 64;
        const int limit = small(random);
        ASSERT_EQ(compute<platform::Int16Lanes>(start, step, limit, bytes),
                  compute<platform::PortableInt16Lanes>(start, step, limit, bytes))
            << start << ' ' << step << ' ' << limit;
    }
    EXPECT_EQ(compute<platform::Int16Lanes>(-32768, 0, 8, {}), compute<platform::PortableInt16Lanes>(-32768, 0, 8, {}));
}

TEST(Lanes, RampIsWhereItIsLess) {
    const Bytes expected = {0, 1, 2, 3, 0, 0, 0, 0};
    Bytes bytes{};
    platform::Int16Lanes::ramp().where(platform::Int16Lanes::ramp(), platform::Int16Lanes::all(4)).raise(bytes.data());
    EXPECT_EQ(bytes, expected);
}

template <typename Lanes>
void expectPacked() {
    EXPECT_EQ((Lanes::ramp() - Lanes::all(3)).packed(), 0x0403020100000000U);
    EXPECT_EQ((Lanes::ramp() + Lanes::all(250)).packed(), 0xFFFFFFFEFDFCFBFAU);
}

TEST(Lanes, PackedBytesAreLimitedAndTheFirstIsTheLowest) {
    expectPacked<platform::Int16Lanes>();
    expectPacked<platform::PortableInt16Lanes>();
}

TEST(Lanes, ZeroTestsEqualThePortableForm) {
    for (int other = 0; other < 8; ++other)
        for (const std::uint32_t value : {0U, 1U, 0x80000000U, 0x7D000078U}) {
            std::uint32_t values[8] = {};
            EXPECT_TRUE(platform::allZero(values));
            values[other] = value;
            EXPECT_EQ(platform::allZero(values), platform::portableAllZero(values));
            EXPECT_EQ(platform::allZeroOr(values, 0x7D000078U), platform::portableAllZeroOr(values, 0x7D000078U));
            EXPECT_EQ(platform::allZeroOr(values, 0), platform::portableAllZero(values));
        }
}

} // namespace
