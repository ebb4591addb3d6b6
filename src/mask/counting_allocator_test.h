// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <limits>

// What the test program's own operators new see.

inline std::atomic<std::size_t> allocations{0};
inline std::atomic<std::size_t> allocatedBytes{0};
inline constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();
/// A larger request throws std::bad_alloc.
inline std::atomic<std::size_t> largestGranted{kUnlimited};
