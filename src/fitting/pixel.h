// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace fitting {

/// A pixel of the mask that an outline is fitted to.
struct Pixel {
    std::int32_t x = 0;
    std::int32_t y = 0;

    friend bool operator==(const Pixel &, const Pixel &) = default;
};

/// The square of the distance between two pixels. Exact up to 2^26 apart, and never decreasing in either axis beyond
/// that.
inline double squaredDistance(const Pixel &a, const Pixel &b) {
    const double dx = static_cast<double>(a.x) - b.x;
    const double dy = static_cast<double>(a.y) - b.y;
    return dx * dx + dy * dy;
}

} // namespace fitting
