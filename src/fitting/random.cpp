// SPDX-License-Identifier: MIT
#include "fitting/random.h"

#include <cstdlib>

namespace fitting {

std::uint32_t randomBelow(std::uint32_t bound) {
    // Numbers that are left over favour the small results by less than one in this many.
    constexpr std::uint64_t kFairness = 1024;
    constexpr std::uint64_t kRange = static_cast<std::uint64_t>(RAND_MAX) + 1;
    auto value = static_cast<std::uint64_t>(std::rand());
    for (std::uint64_t range = kRange; range / bound < kFairness; range *= kRange)
        value = value * kRange + static_cast<std::uint64_t>(std::rand());
    return static_cast<std::uint32_t>(value % bound);
}

} // namespace fitting
