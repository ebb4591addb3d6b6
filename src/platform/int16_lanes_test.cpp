// SPDX-License-Identifier: MIT
#include "platform/int16_lanes.h"

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

TEST(Int16Lanes, EqualThePortableForm) {
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

TEST(Int16Lanes, RampIsWhereItIsLess) {
    const Bytes expected = {0, 1, 2, 3, 0, 0, 0, 0};
    Bytes bytes{};
    platform::Int16Lanes::ramp().where(platform::Int16Lanes::ramp(), platform::Int16Lanes::all(4)).raise(bytes.data());
    EXPECT_EQ(bytes, expected);
}

} // namespace
