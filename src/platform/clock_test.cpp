// SPDX-License-Identifier: MIT
#include "platform/clock.h"

#include <chrono>
#include <thread>

#include <gtest/gtest.h>

namespace platform {
namespace {

// No upper bounds: a busy machine may stop a thread for as long as it likes.

TEST(ClockTest, CountsMilliseconds) {
    const std::uint32_t before = millisecondClock();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    // The system's timer may tick as coarsely as every 16 ms. Unsigned, so that a wrap in between does no harm.
    EXPECT_GE(millisecondClock() - before, 30U);
}

TEST(ClockTest, NeverRunsBackwards) {
    std::uint32_t last = millisecondClock();
    for (int i = 0; i < 10000; ++i) {
        const std::uint32_t now = millisecondClock();
        ASSERT_LT(now - last, 0x80000000U);
        last = now;
    }
}

} // namespace
} // namespace platform
