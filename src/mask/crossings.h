// SPDX-License-Identifier: MIT
#pragma once

// Where the edges of a closed polyline cross the rows of a surface.

#include <cstddef>
#include <cstdint>

#include "mask/edge_starts.h"
#include "mask/flatten.h"
#include "mask/pod_buffer.h"

namespace Quill {

/// Smallest box around the vertices, units, edges included.
struct FixedBox {
    FixedPoint low;
    FixedPoint high;
};

/// Appends the start of a polyline that is not empty to its end, where the table expects it.
void closePolyline(VertexBuffer &polyline);

/// Box of a polyline that is not empty.
FixedBox boxOf(const VertexBuffer &polyline);

/// Rows of 0 .. height - 1 that something within the box can touch.
RowRange touchedRows(const FixedBox &box, std::int32_t height);

/// A maximal stretch of the polyline that keeps going down, or up: exactly one crossing on each of its rows, stored in
/// order of travel.
struct Chain {
    RowRange rows;
    std::int32_t next;   ///< next chain that starts on the same row, or -1
    std::int32_t mirror; ///< 0 downwards, -1 upwards
    std::ptrdiff_t offset;

    /// Where the crossing of a row is stored. Upwards that is offset - 1 - row.
    std::ptrdiff_t indexOf(std::int32_t row) const { return offset + (row ^ mirror); }
    std::ptrdiff_t stride() const { return mirror | 1; }
};

class CrossingTable {
  public:
    /// Replaces the table by the crossings of the closed polyline, whose box is given, with these rows, as columns
    /// clamped to 0 .. width: the first pixel right of or on the edge.
    /// The polyline ends as closePolyline() left it.
    void build(const VertexBuffer &polyline, const FixedBox &box, RowRange rows, std::int32_t width);

    RowRange rows() const { return m_rows; }
    const Chain *chains() const { return m_chains.data(); }
    std::size_t chainCount() const { return m_chains.size(); }
    const std::int32_t *crossings() const { return m_crossings.data(); }

    /// First of the chains that start on this row, or -1. Of rows on which nothing starts only those count that
    /// nextEvent() returns.
    std::int32_t firstChainAt(std::int32_t row) const {
        return m_firstAt[static_cast<std::size_t>(row - m_rows.first)];
    }

    /// The first row after `row` on which a chain starts or ends, or the end of the range.
    std::int32_t nextEvent(std::int32_t row) const;

  private:
    void trace(const VertexBuffer &polyline, bool fast);
    void clampColumns(std::int32_t width);
    void closeChain(Chain chain);
    void markEvent(std::int32_t row);

    RowRange m_rows{0, 0};
    EdgeStarts m_starts;
    PodBuffer<std::int32_t> m_crossings;
    PodBuffer<Chain> m_chains;
    PodBuffer<std::int32_t> m_firstAt;
    PodBuffer<std::uint64_t> m_events; // one bit a row
};

} // namespace Quill
