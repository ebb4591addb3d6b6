// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

#include "canvas/stroke_segment.h"
#include "platform/double_lanes.h"

namespace canvas {

/// Where the columns of a stroke's body lie, row by row, and how far they are from its line. Goes through the rows
/// once, in as many turns as its user likes.
class StrokeRows {
  public:
    static constexpr int kDistanceFraction = 20;

    /// The body's rows within [0, height). `reach` is in pixels, `stepsPerPixel` the unit of distance.
    StrokeRows(const StrokeBody &body, double reach, double stepsPerPixel, int height);

    /// The row that is visited next, if it is one.
    int row() const { return m_row; }
    /// Whether all rows were visited.
    bool done() const { return m_row >= m_endRow; }
    /// Growth of the distance from column to column; kDistanceFraction bits.
    std::int32_t perColumn() const { return m_perColumn; }

    /// Calls visit(row, first column, end column, distance of the first) for every row before `endRow` that was not
    /// visited yet and has columns within the width.
    template <typename Visit>
    void visit(int endRow, int width, Visit visit);

  private:
    /// Columns from -first lane to second lane, so that the nearer bound is the lesser one on either side.
    using Bounds = platform::DoubleLanes;

    void cut(Bounds &bounds, Bounds &step, const Position &at, double normalX, double normalY) const;

    // Of the row to be visited next, and how they change from row to row: of the strip's sides and of its two cuts.
    Bounds m_sides;
    Bounds m_start;
    Bounds m_end;
    Bounds m_sidesStep;
    Bounds m_startStep;
    Bounds m_endStep;
    // Distance of column 0 of that row; kDistanceFraction bits.
    std::int64_t m_distance = 0;
    std::int64_t m_perRow = 0;
    std::int32_t m_perColumn = 0;
    int m_row;
    int m_endRow;
};

template <typename Visit>
void StrokeRows::visit(int endRow, int width, Visit visit) {
    // Beyond every column, so that bounds of any size become integers, and floors by way of positive numbers.
    constexpr int kBeyond = 1 << 16;
    const Bounds beyond = Bounds::all(kBeyond);
    const Bounds nothing = Bounds::all(0);
    const Bounds surface(0, width - 1);
    Bounds sides = m_sides;
    Bounds startCut = m_start;
    Bounds endCut = m_end;
    std::int64_t distance = m_distance;
    const int end = std::min(endRow, m_endRow);
    for (int row = m_row; row < end; ++row) {
        const Bounds bounds = lesser(lesser(sides, startCut), lesser(endCut, surface));
        int left;
        int right;
        greater(bounds + beyond, nothing).truncate(left, right);
        const int first = kBeyond - left;
        const int last = right - kBeyond;
        if (first <= last)
            visit(row, first, last + 1, static_cast<std::int32_t>(distance + std::int64_t{first} * m_perColumn));
        sides = sides + m_sidesStep;
        startCut = startCut + m_startStep;
        endCut = endCut + m_endStep;
        distance += m_perRow;
    }
    m_row = end;
    m_sides = sides;
    m_start = startCut;
    m_end = endCut;
    m_distance = distance;
}

} // namespace canvas
