// SPDX-License-Identifier: MIT
#include "canvas/stroke_rows.h"

#include <cmath>
#include <limits>

namespace canvas {
namespace {

// Bodies overlap by this much (pixels) so that rounding leaves no pixel between two of them.
constexpr double kJointOverlap = 1.0 / 64;
// Normals are kept this far from the rows' own direction; over the longest row that moves a border by 1/300 pixel.
constexpr double kLeastNormal = 1e-7;
constexpr double kUnbounded = std::numeric_limits<double>::infinity();

double awayFromRows(double normalX) {
    return std::abs(normalX) < kLeastNormal ? std::copysign(kLeastNormal, normalX) : normalX;
}

// Truncated. The largest is the distance of a corner of the largest surface, some 2^43.
std::int64_t toFixed(double distance) {
    return static_cast<std::int64_t>(distance * (1 << StrokeRows::kDistanceFraction));
}

} // namespace

StrokeRows::StrokeRows(const StrokeBody &body, double reach, double stepsPerPixel, int height) {
    const auto &[from, to, along] = body.segment;
    const double top = std::min(from.y, to.y);
    const double bottom = std::max(from.y, to.y);
    const double past =
        reach * (StrokeJoint::kMitre * std::abs(along.x) + StrokeJoint::kLean * std::abs(along.y)) + 1.0 / 16;
    m_row = std::max(0, static_cast<int>(std::ceil(top - past)));
    m_endRow = std::min(height, static_cast<int>(std::floor(bottom + past)) + 1);

    const double normalX = -along.y;
    const double normalY = along.x;
    m_perColumn = static_cast<std::int32_t>(toFixed(normalX * stepsPerPixel));
    m_perRow = toFixed(normalY * stepsPerPixel);
    m_distance = toFixed(((m_row - from.y) * normalY - from.x * normalX) * stepsPerPixel);
    // Rows in which the whole width of the strip is hidden. The others keep their distances to the last bit.
    const double hiddenRows = body.hidden * std::abs(along.y) - reach * std::abs(along.x);
    if (hiddenRows > 0) {
        const int skipped = std::max(0, static_cast<int>(std::floor(top + hiddenRows)) + 1 - m_row);
        m_row += skipped;
        m_distance += skipped * m_perRow;
        m_endRow = std::min(m_endRow, static_cast<int>(std::ceil(bottom - hiddenRows)));
    }

    const double perNormal = 1 / awayFromRows(normalX);
    const double step = -normalY * perNormal;
    const double middle = from.x + (m_row - from.y) * step;
    const double halfWidth = reach * std::abs(perNormal);
    m_sides = Bounds(halfWidth - middle, halfWidth + middle);
    m_sidesStep = Bounds(-step, step);
    cut(m_start, m_startStep, from, body.start.x, body.start.y);
    cut(m_end, m_endStep, to, -body.end.x, -body.end.y);
}

// The half plane normal . (position - at) >= -overlap, solved for the column.
void StrokeRows::cut(Bounds &bounds, Bounds &step, const Position &at, double normalX, double normalY) const {
    const double perNormal = 1 / awayFromRows(normalX);
    const double perRow = -normalY * perNormal;
    const double column = at.x + (m_row - at.y) * perRow - kJointOverlap * perNormal;
    if (perNormal > 0) {
        bounds = Bounds(-column, kUnbounded);
        step = Bounds(-perRow, 0);
    } else {
        bounds = Bounds(kUnbounded, column);
        step = Bounds(0, perRow);
    }
}

} // namespace canvas
