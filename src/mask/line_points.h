// SPDX-License-Identifier: MIT
#pragma once

// The points of a straight line in slope-intercept form, single precision: one sweep over x, then one over y. The two
// together leave no gap at any slope; where they meet a point comes twice, and consumers take the list as it is.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "overlay/types/outline_points.h"

namespace Quill {

/// y = k x + b, computed from the second point. Both roundings never decrease, or never increase, along a sweep, as
/// long as they fit 32 bits; what does not becomes INT32_MIN.
class SlopeLine {
  public:
    SlopeLine(const MPoint &first, const MPoint &second);
    std::int32_t yAt(std::int32_t x) const;
    std::int32_t xAt(std::int32_t y) const;

  private:
    float m_k = 0;
    float m_b;
    std::int32_t m_firstX;
};

/// Inclusive bounds of one sweep, cut to a range.
struct Sweep {
    std::int64_t first;
    std::int64_t last;

    Sweep(std::int32_t a, std::int32_t b, std::int64_t low, std::int64_t high)
        : first(std::max<std::int64_t>(std::min(a, b), low)), last(std::min<std::int64_t>(std::max(a, b), high)) {}

    template <typename Visit>
    void forEach(Visit visit) const {
        for (std::int64_t value = first; value <= last; ++value)
            visit(static_cast<std::int32_t>(value));
    }
};

/// Points further from the origin than this, on the axis of their sweep, are not listed: no surface reaches there, and
/// a coordinate born from NaN would otherwise ask for a hundred gigabytes.
inline constexpr std::int32_t kListedCoordinate = 131072;

/// Appends the points of a line: the x sweep, then the y sweep. Of a line from a point to itself that is the point.
void appendLinePoints(const MPoint &first, const MPoint &second, std::vector<MPoint> &points);

/// The first of these points within `tolerance` of (x, y) on both axes, without listing the others.
std::optional<MPoint> firstLinePointNear(const MPoint &first, const MPoint &second, std::int32_t x, std::int32_t y,
                                         std::int32_t tolerance);

} // namespace Quill
