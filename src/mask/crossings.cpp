// SPDX-License-Identifier: MIT
#include "mask/crossings.h"

#include <algorithm>
#include <cstdlib>

#include "mask/edge_steps.h"

// The polyline is cut where it turns from going down to going up and back. Each piece, a chain, crosses every one of
// its rows once, so its crossings are a plain array indexed by row, written edge after edge without looking anything
// up. What a group of rows needs is a stretch of the array of each chain that reaches it; the sweep (sweep.h) loads,
// orders and pairs them with vector instructions.
//
// The usual alternatives: an active edge table pays for every edge's end where chains pay for every turn, and there are
// ten edges to a turn; buckets of crossings per row need a counting pass and a sort from scratch on every row.
//
// Memory is two bytes for each crossing. The caller bounds it by handing over the rows in bands (row_bands.h).

namespace Quill {
namespace {

/// Whether value and step are exact for the edge, or for every edge within the box.
bool fitsSteps(FixedPoint a, FixedPoint b) {
    return std::abs(a.x) <= kSteppedX && std::abs(b.x) <= kSteppedX && std::abs(b.y - a.y) <= kSteppedHeight;
}

/// From how many edges a row on those that cross no row are dropped beforehand: below, it takes more than it saves.
constexpr std::size_t kManyEdgesARow = 2;

/// Moves the edges that cross a row together, in order, and returns how many there are. Without a branch: of an outline
/// with a thousand anchors every other edge crosses none, and no processor guesses which.
std::size_t dropRowless(EdgeStarts &starts, std::size_t edges) {
    std::int32_t *const rows = starts.rows.data();
    std::uint64_t *const values = starts.values.data();
    std::uint64_t *const steps = starts.steps.data();
    std::size_t kept = 0;
    std::int32_t row = rows[0];
    for (std::size_t i = 0; i < edges; ++i) {
        const std::int32_t next = rows[i + 1];
        rows[kept] = row;
        values[kept] = values[i];
        steps[kept] = steps[i];
        kept += next != row;
        row = next;
    }
    rows[kept] = row;
    return kept;
}

} // namespace

void closePolyline(VertexBuffer &polyline) {
    // Once as a vertex, and as often again as edges are computed beyond the last.
    FixedPoint *end = polyline.room(1 + kEdgesAtOnce);
    std::fill_n(end, 1 + kEdgesAtOnce, polyline[0]);
    polyline.setEnd(end + 1);
}

FixedBox boxOf(const VertexBuffer &polyline) {
    FixedBox box{polyline[0], polyline[0]};
    for (const FixedPoint &vertex : polyline) {
        box.low.x = std::min(box.low.x, vertex.x);
        box.low.y = std::min(box.low.y, vertex.y);
        box.high.x = std::max(box.high.x, vertex.x);
        box.high.y = std::max(box.high.y, vertex.y);
    }
    return box;
}

RowRange touchedRows(const FixedBox &box, std::int32_t height) {
    return {std::clamp(rowAtOrBelow(box.low.y), 0, height), std::clamp(rowAtOrBelow(box.high.y), 0, height)};
}

void CrossingTable::build(const VertexBuffer &polyline, const FixedBox &box, RowRange rows) {
    m_rows = rows;
    m_chains.clear();
    m_crossings.clear();
    m_firstIn.resize(groupOf(rows.end) + 1);
    std::fill(m_firstIn.begin(), m_firstIn.end(), -1);
    if (fitsSteps(box.low, box.high))
        trace<true>(polyline);
    else
        trace<false>(polyline);
}

template <bool kFast>
void CrossingTable::trace(const VertexBuffer &polyline) {
    std::size_t edges = polyline.size() - 1;
    computeEdgeStarts(polyline.data(), polyline.size(), m_rows, m_starts);
    if (kFast && edges > kManyEdgesARow * static_cast<std::size_t>(m_rows.end - m_rows.first))
        edges = dropRowless(m_starts, edges);
    // The loops work on copies: their stores could be to anything, as far as the compiler knows.
    const std::int32_t *rows = m_starts.rows.data();
    const std::uint64_t *values = m_starts.values.data();
    const std::uint64_t *steps = m_starts.steps.data();
    StoredColumn *out = m_crossings.room(kRowsAtOnce) + kRowsAtOnce;
    const StoredColumn *limit = m_crossings.begin() + m_crossings.capacity();
    for (std::size_t i = 0; i < edges;) {
        if (rows[i + 1] == rows[i]) {
            ++i;
            continue;
        }
        const std::int32_t start = rows[i];
        const std::int32_t mirror = rows[i + 1] > start ? 0 : -1;
        const std::ptrdiff_t offset = out - m_crossings.data() - ((start + mirror) ^ mirror);
        std::int32_t row = start;
        for (; i < edges; ++i) {
            const std::int32_t count = (rows[i + 1] ^ mirror) - (row ^ mirror);
            if (count <= 0) {
                if (count == 0)
                    continue;
                break; // it turns
            }
            if (limit - out < count + kStepBlock) {
                m_crossings.setEnd(out);
                out = m_crossings.room(static_cast<std::size_t>(count) + kStepBlock);
                limit = m_crossings.begin() + m_crossings.capacity();
            }
            if (kFast || fitsSteps(polyline[i], polyline[i + 1]))
                stepFixed(values[i], steps[i], count, out);
            else
                stepExactly({polyline[i], polyline[i + 1], row + mirror, count}, out);
            out += count;
            row = rows[i + 1];
        }
        addChain({{std::min(start, row), std::max(start, row)}, -1, mirror, offset});
    }
    m_crossings.setEnd(out);
}

void CrossingTable::addChain(Chain chain) {
    std::int32_t &first = m_firstIn[groupOf(chain.rows.first)];
    chain.next = first;
    first = static_cast<std::int32_t>(m_chains.size());
    m_chains.push_back(chain);
}

} // namespace Quill
