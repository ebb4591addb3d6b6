// SPDX-License-Identifier: MIT
#include "canvas/area_fill.h"

#include <algorithm>
#include <new>
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

constexpr std::int64_t ceilDivide(std::int64_t numerator, std::int64_t positive) {
    return numerator >= 0 ? (numerator + positive - 1) / positive : -(-numerator / positive);
}

/// One edge, downwards, with the rows it crosses on the surface.
struct Edge {
    FixedPoint top;
    FixedPoint bottom;
    std::int32_t firstRow;
    std::int32_t endRow;

    Edge(FixedPoint from, FixedPoint to, std::int32_t height) : top(from), bottom(to) {
        if (top.y > bottom.y)
            std::swap(top, bottom);
        firstRow = std::clamp((top.y + kUnitsPerPixel - 1) >> 4, 0, height);
        endRow = std::clamp((bottom.y + kUnitsPerPixel - 1) >> 4, 0, height);
    }
};

template <typename Visit>
void forEachEdge(std::span<const FixedPoint> vertices, std::int32_t height, Visit visit) {
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const Edge edge(vertices[i], vertices[i + 1 < vertices.size() ? i + 1 : 0], height);
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

void fillSpan(Surface &surface, int y, int first, int end, Pixel color) {
    surface.touch(y, first, end);
    Pixel *const pixels = surface.row(y);
    for (int x = first; x < end; ++x)
        pixels[x] = over(pixels[x], color);
}

} // namespace

HRESULT AreaFill::fill(Surface &surface, std::span<const FixedPoint> vertices, Pixel color) {
    const int width = surface.width();
    const int height = surface.height();
    try {
        m_rowStarts.assign(static_cast<std::size_t>(height) + 2, 0);
        forEachEdge(vertices, height, [&](const Edge &edge) {
            // Differences of counts; unsigned wrap-around cancels out in the sums.
            m_rowStarts[static_cast<std::size_t>(edge.firstRow) + 1] += 1;
            m_rowStarts[static_cast<std::size_t>(edge.endRow) + 1] -= 1;
        });
        std::uint32_t count = 0;
        std::uint32_t start = 0;
        for (std::uint32_t &value : m_rowStarts) {
            count += value;
            start += count;
            value = start;
        }
        m_crossings.resize(start);
    } catch (const std::bad_alloc &) {
        return E_OUTOFMEMORY;
    }

    // Every row's place moves on as it is filled, and ends where the next row's began.
    forEachEdge(vertices, height, [&](const Edge &edge) {
        EdgeStepper stepper(edge);
        for (std::int32_t row = edge.firstRow; row < edge.endRow; ++row, stepper.step())
            m_crossings[m_rowStarts[static_cast<std::size_t>(row)]++] =
                static_cast<std::int32_t>(std::clamp<std::int64_t>(stepper.column(), 0, width));
    });

    auto first = m_crossings.begin();
    for (int y = 0; y < height; ++y) {
        const auto end = m_crossings.begin() + m_rowStarts[static_cast<std::size_t>(y)];
        std::sort(first, end);
        for (; first != end; first += 2)
            if (first[0] < first[1])
                fillSpan(surface, y, first[0], first[1], color);
    }
    return S_OK;
}

} // namespace canvas
