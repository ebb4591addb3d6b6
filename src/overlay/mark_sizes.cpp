// SPDX-License-Identifier: MIT
#include "overlay/mark_sizes.h"

#include <cmath>
#include <limits>

MarkSizes MarkSizes::scaled(float scale) {
    MarkSizes sizes;
    for (std::uint32_t &size : sizes.pixels) {
        const double rounded = std::floor(static_cast<double>(size) * static_cast<double>(scale) + 0.5);
        if (!(rounded > 0))
            size = 0;
        else if (rounded >= static_cast<double>(std::numeric_limits<std::uint32_t>::max()))
            size = std::numeric_limits<std::uint32_t>::max();
        else
            size = static_cast<std::uint32_t>(rounded);
    }
    return sizes;
}
