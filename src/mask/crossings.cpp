// SPDX-License-Identifier: MIT
#include "mask/crossings.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

#include "mask/edge_steps.h"

// The polyline is cut where it turns from going down to going up and back. Each piece, a chain, crosses every one of
// its rows once, so its crossings are a plain array indexed by row, and what a row needs is one value from each chain
// that reaches it. Between two rows on which chains start or end the set of chains does not change: the sweep (sweep.h)
// then runs over parallel arrays, keeps their order from row to row, and has nothing to look up.
//
// The usual alternatives: an active edge table pays for every edge's end where chains pay for every turn, and there are
// ten edges to a turn; buckets of crossings per row need a counting pass and a sort from scratch on every row.
//
// Memory is one word for each crossing. The caller bounds it by handing over few rows at a time.

namespace Quill {
namespace {

constexpr std::size_t kEventBits = 64;

/// Whether value and step are exact for the edge, or for every edge within the box.
bool fitsSteps(FixedPoint a, FixedPoint b) {
    return std::abs(a.x) <= kSteppedX && std::abs(b.x) <= kSteppedX && std::abs(b.y - a.y) <= kSteppedHeight;
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

void CrossingTable::build(const VertexBuffer &polyline, const FixedBox &box, RowRange rows, std::int32_t width) {
    m_rows = rows;
    m_chains.clear();
    m_crossings.clear();
    const auto rowCount = static_cast<std::size_t>(rows.end - rows.first);
    m_firstAt.resize(rowCount + 1);
    m_firstAt[0] = -1; // the sweep starts here, event or not
    m_events.resize(rowCount / kEventBits + 1);
    std::fill(m_events.begin(), m_events.end(), 0);

    trace(polyline, fitsSteps(box.low, box.high));
    if (box.low.x < 0 || box.high.x > static_cast<std::int64_t>(width) * kUnitsPerPixel)
        clampColumns(width);
}

void CrossingTable::clampColumns(std::int32_t width) {
    for (std::int32_t &column : m_crossings)
        column = std::clamp(column, 0, width);
}

void CrossingTable::trace(const VertexBuffer &polyline, bool fast) {
    const std::size_t edges = polyline.size() - 1;
    computeEdgeStarts(polyline.data(), polyline.size(), m_rows, m_starts);
    // The loop works on copies: its stores could be to anything, as far as the compiler knows.
    const FixedPoint *vertices = polyline.data();
    const std::int32_t *rows = m_starts.rows.data();
    const std::uint64_t *values = m_starts.values.data();
    const std::uint64_t *steps = m_starts.steps.data();
    std::int32_t *out = m_crossings.room(kStepBlock);
    std::ptrdiff_t left = static_cast<std::ptrdiff_t>(m_crossings.capacity());
    Chain chain{{0, 0}, -1, 0, 0};
    for (std::size_t i = 0; i < edges; ++i) {
        const std::int32_t fromRow = rows[i];
        const std::int32_t toRow = rows[i + 1];
        if (toRow == fromRow)
            continue;
        const std::int32_t mirror = toRow > fromRow ? 0 : -1;
        const std::int32_t count = std::abs(toRow - fromRow);
        const std::int32_t firstRow = fromRow + mirror; // upwards the row before the one that is next downwards
        if (chain.rows.empty() || chain.mirror != mirror) {
            closeChain(chain);
            chain = {{fromRow, fromRow}, -1, mirror, out - m_crossings.data() - (firstRow ^ mirror)};
        }
        (mirror ? chain.rows.first : chain.rows.end) = toRow;
        if (left < count + kStepBlock) {
            m_crossings.setEnd(out);
            out = m_crossings.room(static_cast<std::size_t>(count) + kStepBlock);
            left = static_cast<std::ptrdiff_t>(m_crossings.capacity() - m_crossings.size());
        }
        if (fast || fitsSteps(vertices[i], vertices[i + 1]))
            stepFixed(values[i], steps[i], count, out);
        else
            stepExactly({vertices[i], vertices[i + 1], firstRow, count}, out);
        out += count;
        left -= count;
    }
    m_crossings.setEnd(out);
    closeChain(chain);
}

void CrossingTable::closeChain(Chain chain) {
    if (chain.rows.empty())
        return;
    markEvent(chain.rows.first);
    markEvent(chain.rows.end);
    std::int32_t &first = m_firstAt[static_cast<std::size_t>(chain.rows.first - m_rows.first)];
    chain.next = first;
    first = static_cast<std::int32_t>(m_chains.size());
    m_chains.push_back(chain);
}

/// The list of a row counts from its first event on.
void CrossingTable::markEvent(std::int32_t row) {
    const auto bit = static_cast<std::size_t>(row - m_rows.first);
    const std::uint64_t mask = std::uint64_t{1} << bit % kEventBits;
    if ((m_events[bit / kEventBits] & mask) == 0)
        m_firstAt[bit] = -1;
    m_events[bit / kEventBits] |= mask;
}

std::int32_t CrossingTable::nextEvent(std::int32_t row) const {
    const auto bit = static_cast<std::size_t>(row - m_rows.first) + 1;
    std::size_t word = bit / kEventBits;
    if (word >= m_events.size())
        return m_rows.end;
    std::uint64_t bits = m_events[word] & (~std::uint64_t{0} << bit % kEventBits);
    while (bits == 0) {
        if (++word == m_events.size())
            return m_rows.end;
        bits = m_events[word];
    }
    return m_rows.first + static_cast<std::int32_t>(word * kEventBits) + std::countr_zero(bits);
}

} // namespace Quill
