// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

/// Milliseconds of a monotonic clock, wrapping at 2^32 (timeGetTime on Windows).
std::uint32_t millisecondClock();

} // namespace platform
