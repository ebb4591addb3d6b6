// SPDX-License-Identifier: MIT
#pragma once

// Where the edges of a closed polyline cross the rows of a surface.

#include <cstddef>
#include <cstdint>

#include "mask/columns.h"
#include "mask/edge_starts.h"
#include "mask/flatten.h"
#include "mask/pod_buffer.h"
#include "mask/row_range.h"

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
    std::int32_t next;   ///< next chain that starts in the same group of rows, or -1
    std::int32_t mirror; ///< 0 downwards, -1 upwards
    std::ptrdiff_t offset;

    /// Where the crossing of a row is stored. Upwards that is offset - 1 - row.
    std::ptrdiff_t indexOf(std::int32_t row) const { return offset + (row ^ mirror); }
};

class CrossingTable {
  public:
    /// Replaces the table by the crossings of the closed polyline, whose box is given, with these rows: the column of
    /// the first pixel right of or on the edge, limited to 0 .. kMaxColumn. The polyline ends as closePolyline() left
    /// it.
    void build(const VertexBuffer &polyline, const FixedBox &box, RowRange rows);

    RowRange rows() const { return m_rows; }
    const Chain &chain(std::int32_t index) const { return m_chains[static_cast<std::size_t>(index)]; }

    /// Crossings of all chains. kRowsAtOnce - 1 more can be read on either side of a chain's own.
    const StoredColumn *crossings() const { return m_crossings.data(); }

    /// First of the chains that start on the rows from `row` up to row + kRowsAtOnce, or -1. `row` is a whole number of
    /// groups from the first.
    std::int32_t firstChainFrom(std::int32_t row) const { return m_firstIn[groupOf(row)]; }

  private:
    std::size_t groupOf(std::int32_t row) const { return static_cast<std::size_t>(row - m_rows.first) / kRowsAtOnce; }
    template <bool kFast>
    void trace(const VertexBuffer &polyline);
    void addChain(Chain chain);

    RowRange m_rows{0, 0};
    EdgeStarts m_starts;
    PodBuffer<StoredColumn> m_crossings;
    PodBuffer<Chain> m_chains;
    PodBuffer<std::int32_t> m_firstIn; ///< of each group of rows
};

} // namespace Quill
