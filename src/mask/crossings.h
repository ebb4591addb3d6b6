// SPDX-License-Identifier: MIT
#pragma once

// Where the edges of a closed polyline cross the rows of a surface.

#include <cstddef>
#include <cstdint>

#include "mask/flatten.h"
#include "mask/pod_buffer.h"

namespace Quill {

/// Rows first to end - 1.
struct RowRange {
    std::int32_t first;
    std::int32_t end;

    bool empty() const { return first >= end; }
};

/// A maximal stretch of the polyline that keeps going down, or up: exactly one crossing on each of its rows.
struct Chain {
    RowRange rows;
    std::ptrdiff_t offset; ///< the crossing of row r is crossing number offset + r
    std::int32_t next;     ///< next chain that starts on the same row, or -1
};

/// Rows of 0 .. height - 1 that the polyline touches.
RowRange touchedRows(const VertexBuffer &polyline, std::int32_t height);

class CrossingTable {
  public:
    /// Replaces the table by the crossings of the closed polyline with these rows, as columns clamped to 0 .. width:
    /// the first pixel right of or on the edge.
    void build(const VertexBuffer &polyline, RowRange rows, std::int32_t width);

    RowRange rows() const { return m_rows; }
    const Chain &chain(std::int32_t index) const { return m_chains[static_cast<std::size_t>(index)]; }
    const std::int32_t *crossings() const { return m_crossings.data(); }

    /// First of the chains that start on this row, or -1.
    std::int32_t firstChainAt(std::int32_t row) const {
        return m_firstAt[static_cast<std::size_t>(row - m_rows.first)];
    }

    /// The first row after `row` on which a chain starts or ends, or the end of the range.
    std::int32_t nextEvent(std::int32_t row) const;

    /// Largest number of chains that can be active on one row.
    std::size_t chainCount() const { return m_chains.size(); }

  private:
    template <bool kClamp>
    void trace(const VertexBuffer &polyline, std::int32_t width);
    void closeChain(const Chain &chain);
    void markEvent(std::int32_t row);

    RowRange m_rows{0, 0};
    PodBuffer<std::int32_t> m_crossings; // chains that go down from the front, chains that go up from the back
    PodBuffer<Chain> m_chains;
    PodBuffer<std::int32_t> m_firstAt;
    PodBuffer<std::uint64_t> m_events; // one bit a row
};

} // namespace Quill
