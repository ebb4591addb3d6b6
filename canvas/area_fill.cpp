// SPDX-License-Identifier: MIT
#include "canvas/area_fill.h"

#include <algorithm>
#include <utility>

// Scan conversion by buckets: one pass over the edges counts the crossings of every row, a prefix sum gives each row its
// place in one array, a second pass stores them, and every row is sorted and filled in pairs. Crossings are exact: the
// error term of the line stepper is an integer throughout. A pixel is inside when its centre, at integer coordinates, has
// an odd number of edges at or left of it. The stroke covers the stairs of this edge, so no smoothing is spent on it, and
// what is tinted is what will be graded.

namespace canvas {
namespace {

using Quill::FixedPoint;
using Quill::kUnitsPerPixel;

// Sixteen megabytes; a picture of more is filled in bands.
constexpr std::size_t kMostCrossings = 1 << 22;

constexpr std::int64_t ceilDivide(std::int64_t numerator, std::int64_t positive) {
    return numerator >= 0 ? (numerator + positive - 1) / positive : -(-numerator / positive);
}

/// One edge, downwards, with the rows it crosses on the surface.
struct Edge {
    FixedPoint top;
    FixedPoint bottom;
    std::int32_t firstRow;
    std::int32_t endRow;

    Edge(FixedPoint from, FixedPoint to, std::int32_t first, std::int32_t end) : top(from), bottom(to) {
        if (top.y > bottom.y)
            std::swap(top, bottom);
        firstRow = std::clamp((top.y + kUnitsPerPixel - 1) >> 4, first, end);
        endRow = std::clamp((bottom.y + kUnitsPerPixel - 1) >> 4, first, end);
    }
};

template <typename Visit>
void forEachEdge(std::span<const FixedPoint> vertices, std::int32_t firstRow, std::int32_t endRow, Visit visit) {
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const Edge edge(vertices[i], vertices[i + 1 < vertices.size() ? i + 1 : 0], firstRow, endRow);
        if (edge.firstRow < edge.endRow)
            visit(edge);
    }
}

/// The first column at or right of the edge, row by row.
class EdgeStepper {
  public:
    explicit EdgeStepper(const Edge &edge)
        : m_divisor(kUnitsPerPixel * (std::int64_t{edge.bottom.y} - edge.top.y)) {
        const std::int64_t run = std::int64_t{edge.bottom.x} - edge.top.x;
        const std::int64_t rise = std::int64_t{edge.bottom.y} - edge.top.y;
        const std::int64_t start =
            edge.top.x * rise + (std::int64_t{edge.firstRow} * kUnitsPerPixel - edge.top.y) * run;
        m_column = ceilDivide(start, m_divisor);
        m_error = start - m_column * m_divisor; // in (-divisor, 0]
        m_columnStep = ceilDivide(run, rise);
        m_errorStep = kUnitsPerPixel * (run - m_columnStep * rise); // in (-divisor, 0]
    }

    std::int64_t column() const { return m_column; }
    void step() {
        m_column += m_columnStep;
        m_error += m_errorStep;
        if (m_error <= -m_divisor) {
            m_error += m_divisor;
            --m_column;
        }
    }

  private:
    std::int64_t m_divisor;
    std::int64_t m_column;
    std::int64_t m_error;
    std::int64_t m_columnStep;
    std::int64_t m_errorStep;
};

void fillSpan(Pixel *pixels, int count, Pixel color, bool blank) {
    if (blank) {
        std::fill_n(pixels, count, color);
        return;
    }
    for (int i = 0; i < count; ++i)
        pixels[i] = over(pixels[i], color);
}

} // namespace

void AreaFill::fill(Surface &surface, std::span<const FixedPoint> vertices, Pixel color) {
    if (alphaOf(color) == 0)
        return;
    const bool blank = surface.isBlank();
    const int height = surface.height();
    // As many rows at once as keep the crossings of all edges together within the limit.
    const auto rows = static_cast<int>(std::max<std::size_t>(1, kMostCrossings / std::max<std::size_t>(1, vertices.size())));
    for (int firstRow = 0; firstRow < height; firstRow += rows) {
        const int endRow = std::min(height, firstRow + rows);
        sortCrossings(surface.width(), firstRow, endRow, vertices);
        std::int32_t *first = m_crossings.data();
        for (int y = firstRow; y < endRow; ++y) {
            std::int32_t *const end = m_crossings.data() + m_rowEnds[static_cast<std::size_t>(y - firstRow)];
            if (first == end)
                continue;
            std::sort(first, end);
            const Surface::TouchedRow touched = surface.touchRow(y);
            for (; first != end; first += 2) {
                if (first[0] == first[1])
                    continue;
                touched.mark(first[0], first[1]);
                fillSpan(surface.row(y) + first[0], first[1] - first[0], color, blank);
            }
        }
    }
}

// Puts the columns at which each row crosses an edge one row after the other.
void AreaFill::sortCrossings(int width, int firstRow, int endRow, std::span<const FixedPoint> vertices) {
    m_rowEnds.assign(static_cast<std::size_t>(endRow - firstRow) + 2, 0);
    forEachEdge(vertices, firstRow, endRow, [&](const Edge &edge) {
        // Differences of counts, one place on; unsigned wrap-around cancels out in the sums.
        m_rowEnds[static_cast<std::size_t>(edge.firstRow - firstRow) + 1] += 1;
        m_rowEnds[static_cast<std::size_t>(edge.endRow - firstRow) + 1] -= 1;
    });
    std::uint32_t count = 0;
    std::uint32_t start = 0;
    for (std::uint32_t &value : m_rowEnds) {
        count += value;
        start += count;
        value = start;
    }
    // Now each row's start. It moves on as the row is filled, and stands at the row's end afterwards.
    m_crossings.resize(start);
    forEachEdge(vertices, firstRow, endRow, [&](const Edge &edge) {
        EdgeStepper stepper(edge);
        for (std::int32_t row = edge.firstRow; row < edge.endRow; ++row, stepper.step())
            m_crossings[m_rowEnds[static_cast<std::size_t>(row - firstRow)]++] =
                static_cast<std::int32_t>(std::clamp<std::int64_t>(stepper.column(), 0, width));
    });
}

} // namespace canvas
