// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

namespace canvas {

/// A position in pixels; a pixel's centre has integer coordinates.
struct Position {
    double x;
    double y;

    friend bool operator==(const Position &, const Position &) = default;
};

/// The straight line along which a segment's body meets its neighbour's: the body lies where the normal points.
struct StrokeCut {
    Position at;
    double normalX;
    double normalY;
};

/// A segment of a stroke: the pixels within reach of the line through its ends and between its two cuts.
struct StrokeBody {
    Position from;
    Position to;
    double directionX; ///< unit length
    double directionY;
    StrokeCut start;
    StrokeCut end;

    /// Cut straight at both ends, which differ.
    StrokeBody(const Position &from, const Position &to);

    /// Moves ends outside the box to its sides; false when nothing lies inside.
    bool clip(double left, double top, double right, double bottom);
    /// Whether both ends lie in the box.
    bool isInside(double left, double top, double right, double bottom) const {
        return std::min(from.x, to.x) >= left && std::max(from.x, to.x) <= right && std::min(from.y, to.y) >= top &&
               std::max(from.y, to.y) <= bottom;
    }
};

/// Lets two consecutive bodies meet along their bisector. False when they turn too sharply for that: both stay cut
/// straight, and a dot has to round the corner.
bool joinBodies(StrokeBody &before, StrokeBody &after);

/// A bound on the columns of a row that moves with the row: by `step` a row. Fixed point, kColumnFraction bits.
struct MovingBound {
    std::int64_t column;
    std::int64_t step;
};

/// Where a body's columns lie, row by row, and how far they are from its line.
struct StrokeBodyRows {
    static constexpr int kColumnFraction = 16;
    static constexpr int kDistanceFraction = 20;

    /// The bounds of the first row: lower ones from the front, upper ones from the back. The sides of the strip give
    /// one of either kind; the two ends may give the same kind.
    MovingBound bounds[4];
    int lowerCount = 0;
    int firstRow = 0;
    int endRow = 0;
    /// Distance of column 0 of the first row, and its growth from column to column and from row to row;
    /// kDistanceFraction bits of the unit in which 255 are at least the reach.
    std::int64_t distance = 0;
    std::int64_t perColumn = 0;
    std::int64_t perRow = 0;

    /// The body's rows within [firstRow, endRow); none of them when firstRow >= endRow afterwards.
    StrokeBodyRows(const StrokeBody &body, double reach, double stepsPerPixel, int firstRow, int endRow);

  private:
    void limit(int &upper, double step, bool isLower, double column);
};

/// Calls visit(row, firstColumn, endColumn, distance of the first column) for every row that has columns within the
/// width.
template <int LowerCount, typename Visit>
void forEachRow(const StrokeBodyRows &rows, int width, Visit &visit) {
    constexpr int kFraction = StrokeBodyRows::kColumnFraction;
    constexpr std::int64_t kAlmostOne = (1 << kFraction) - 1;
    const std::int64_t rightmost = (std::int64_t{width} - 1) << kFraction;
    MovingBound bounds[4] = {rows.bounds[0], rows.bounds[1], rows.bounds[2], rows.bounds[3]};
    std::int64_t distance = rows.distance;
    for (int row = rows.firstRow; row < rows.endRow; ++row, distance += rows.perRow) {
        std::int64_t lower = 0;
        std::int64_t upper = rightmost;
        for (int i = 0; i < LowerCount; ++i)
            lower = std::max(lower, bounds[i].column);
        for (int i = LowerCount; i < 4; ++i)
            upper = std::min(upper, bounds[i].column);
        for (MovingBound &bound : bounds)
            bound.column += bound.step;
        const std::int64_t first = (lower + kAlmostOne) >> kFraction;
        const std::int64_t last = upper >> kFraction;
        if (first <= last)
            visit(row, static_cast<int>(first), static_cast<int>(last + 1),
                  static_cast<std::int32_t>(distance + first * rows.perColumn));
    }
}

template <typename Visit>
void forEachRow(const StrokeBodyRows &rows, int width, Visit visit) {
    switch (rows.lowerCount) {
    case 1:
        return forEachRow<1>(rows, width, visit);
    case 2:
        return forEachRow<2>(rows, width, visit);
    default:
        return forEachRow<3>(rows, width, visit);
    }
}

} // namespace canvas
