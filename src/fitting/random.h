// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

// Random choice drawn from the C run time's generator, so that a host that seeds it (srand) gets repeatable fits.

namespace fitting {

/// A number below `bound`, which is positive. Takes as many draws as the run time's largest number makes necessary.
std::uint32_t randomBelow(std::uint32_t bound);

/// Every order is as likely as every other.
template <typename T>
void shuffle(std::span<T> values) {
    for (std::size_t index = 1; index < values.size(); ++index)
        std::swap(values[index], values[randomBelow(static_cast<std::uint32_t>(index + 1))]);
}

} // namespace fitting
