// SPDX-License-Identifier: MIT
#include "mask/line_points.h"

#include <limits>
#include <utility>

#include "overlay/types/placement.h"

namespace Quill {
namespace {

/// Adds a half, then truncates: halves go up for positive values and toward zero for negative ones.
std::int32_t roundHalfUp(float value) {
    return truncateToInt32(static_cast<double>(value) + 0.5);
}

MPoint pointAt(std::int32_t x, std::int32_t y) {
    MPoint point;
    point.x = x;
    point.y = y;
    return point;
}

bool isNear(std::int32_t a, std::int32_t b, std::int32_t tolerance) {
    const std::int64_t distance = std::int64_t{a} - b;
    return distance >= -tolerance && distance <= tolerance;
}

/// Position of the first step of the sweep whose value is near the target. Values keep rising or falling, so those at
/// the ends tell whether any can be.
template <typename ValueAt>
std::optional<std::int32_t> firstNear(const Sweep &sweep, std::int32_t target, std::int32_t tolerance,
                                      ValueAt valueAt) {
    if (sweep.first > sweep.last)
        return std::nullopt;
    const auto [low, high] =
        std::minmax({valueAt(static_cast<std::int32_t>(sweep.first)), valueAt(static_cast<std::int32_t>(sweep.last))});
    const bool fits = low != std::numeric_limits<std::int32_t>::min();
    if (fits &&
        (std::int64_t{low} > std::int64_t{target} + tolerance || std::int64_t{high} < std::int64_t{target} - tolerance))
        return std::nullopt;
    for (std::int64_t position = sweep.first; position <= sweep.last; ++position)
        if (isNear(valueAt(static_cast<std::int32_t>(position)), target, tolerance))
            return static_cast<std::int32_t>(position);
    return std::nullopt;
}

/// The part of a listed sweep that is near a position.
Sweep sweepNear(std::int32_t a, std::int32_t b, std::int32_t position, std::int32_t tolerance) {
    return {a, b, std::max<std::int64_t>(-kListedCoordinate, std::int64_t{position} - tolerance),
            std::min<std::int64_t>(kListedCoordinate, std::int64_t{position} + tolerance)};
}

} // namespace

SlopeLine::SlopeLine(const MPoint &first, const MPoint &second) : m_firstX(first.x) {
    // The difference is taken in 64 bits: the ends of a line may lie further apart than 32 bits hold.
    if (first.x != second.x)
        m_k = (static_cast<float>(second.y) - static_cast<float>(first.y)) /
              static_cast<float>(std::int64_t{second.x} - first.x);
    m_b = static_cast<float>(second.y) - static_cast<float>(second.x) * m_k;
}

std::int32_t SlopeLine::yAt(std::int32_t x) const {
    return roundHalfUp(m_k * static_cast<float>(x) + m_b);
}

std::int32_t SlopeLine::xAt(std::int32_t y) const {
    return m_k != 0 ? roundHalfUp((static_cast<float>(y) - m_b) / m_k) : m_firstX;
}

void appendLinePoints(const MPoint &first, const MPoint &second, std::vector<MPoint> &points) {
    if (first.x == second.x && first.y == second.y) {
        points.push_back(first);
        return;
    }
    const SlopeLine line(first, second);
    const Sweep columns(first.x, second.x, -kListedCoordinate, kListedCoordinate);
    const Sweep rows(first.y, second.y, -kListedCoordinate, kListedCoordinate);
    columns.forEach([&](std::int32_t x) { points.push_back(pointAt(x, line.yAt(x))); });
    rows.forEach([&](std::int32_t y) { points.push_back(pointAt(line.xAt(y), y)); });
}

std::optional<MPoint> firstLinePointNear(const MPoint &first, const MPoint &second, std::int32_t x, std::int32_t y,
                                         std::int32_t tolerance) {
    if (first.x == second.x && first.y == second.y)
        return isNear(first.x, x, tolerance) && isNear(first.y, y, tolerance) ? std::optional(first) : std::nullopt;
    const Sweep columns = sweepNear(first.x, second.x, x, tolerance);
    const Sweep rows = sweepNear(first.y, second.y, y, tolerance);
    if (columns.first > columns.last && rows.first > rows.last)
        return std::nullopt;
    const SlopeLine line(first, second);
    const auto yAt = [&line](std::int32_t column) { return line.yAt(column); };
    if (const auto column = firstNear(columns, y, tolerance, yAt))
        return pointAt(*column, line.yAt(*column));
    const auto xAt = [&line](std::int32_t row) { return line.xAt(row); };
    if (const auto row = firstNear(rows, x, tolerance, xAt))
        return pointAt(line.xAt(*row), *row);
    return std::nullopt;
}

} // namespace Quill
