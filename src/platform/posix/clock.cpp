// SPDX-License-Identifier: MIT
#include "platform/clock.h"

#include <chrono>

namespace platform {

std::uint32_t millisecondClock() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

} // namespace platform
