// SPDX-License-Identifier: MIT
#include "mask/crossings.h"

#include <bit>

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

std::int32_t clampRow(std::int32_t row, RowRange rows) {
    return std::clamp(row, rows.first, rows.end);
}

} // namespace

RowRange touchedRows(const VertexBuffer &polyline, std::int32_t height) {
    if (polyline.empty())
        return {0, 0};
    std::int32_t low = polyline[0].y;
    std::int32_t high = low;
    for (const FixedPoint &vertex : polyline) {
        low = std::min(low, vertex.y);
        high = std::max(high, vertex.y);
    }
    return {std::clamp(rowAtOrBelow(low), 0, height), std::clamp(rowAtOrBelow(high), 0, height)};
}

void CrossingTable::build(const VertexBuffer &polyline, RowRange rows, std::int32_t width) {
    m_rows = rows;
    m_chains.clear();
    const auto rowCount = static_cast<std::size_t>(rows.end - rows.first);
    m_firstAt.resize(rowCount);
    std::fill(m_firstAt.begin(), m_firstAt.end(), -1);
    m_events.resize(rowCount / kEventBits + 1);
    std::fill(m_events.begin(), m_events.end(), 0);

    std::size_t count = 0;
    std::int32_t low = 0;
    std::int32_t high = 0;
    const FixedPoint *previous = &polyline.back();
    for (const FixedPoint &vertex : polyline) {
        count += static_cast<std::size_t>(
            std::abs(clampRow(rowAtOrBelow(vertex.y), rows) - clampRow(rowAtOrBelow(previous->y), rows)));
        low = std::min(low, vertex.x);
        high = std::max(high, vertex.x);
        previous = &vertex;
    }
    m_crossings.resize(count);
    if (low < 0 || high > static_cast<std::int64_t>(width) * kUnitsPerPixel)
        trace<true>(polyline, width);
    else
        trace<false>(polyline, width);
}

template <bool kClamp>
void CrossingTable::trace(const VertexBuffer &polyline, std::int32_t width) {
    std::int32_t *front = m_crossings.begin();
    std::int32_t *back = m_crossings.end();
    Chain chain{{0, 0}, 0, -1};
    bool down = false;
    FixedPoint from = polyline.back();
    std::int32_t fromRow = clampRow(rowAtOrBelow(from.y), m_rows);
    for (const FixedPoint &to : polyline) {
        const std::int32_t toRow = clampRow(rowAtOrBelow(to.y), m_rows);
        if (toRow != fromRow) {
            const bool turned = chain.rows.empty() || down != (toRow > fromRow);
            if (turned) {
                closeChain(chain);
                down = toRow > fromRow;
                chain.rows = {fromRow, fromRow};
            }
            const std::int32_t count = std::abs(toRow - fromRow);
            std::int32_t *out;
            if (down) {
                out = front;
                front += count;
                chain.rows.end = toRow;
                chain.offset = front - m_crossings.begin() - toRow;
            } else {
                back -= count;
                out = back;
                chain.rows.first = toRow;
                chain.offset = back - m_crossings.begin() - toRow;
            }
            const auto store = [=](std::int32_t i, std::int64_t column) {
                if constexpr (kClamp)
                    column = std::clamp<std::int64_t>(column, 0, width);
                out[i] = static_cast<std::int32_t>(column);
            };
            const DownwardEdge edge = down ? DownwardEdge{from, to} : DownwardEdge{to, from};
            const std::int32_t firstRow = std::min(fromRow, toRow);
            if (fitsFastSteps(edge))
                fastSteps(edge, firstRow, count, store);
            else
                exactSteps(edge, firstRow, count, store);
        }
        from = to;
        fromRow = toRow;
    }
    closeChain(chain);
}

void CrossingTable::closeChain(const Chain &chain) {
    if (chain.rows.empty())
        return;
    std::int32_t &first = m_firstAt[static_cast<std::size_t>(chain.rows.first - m_rows.first)];
    m_chains.push_back({chain.rows, chain.offset, first});
    first = static_cast<std::int32_t>(m_chains.size() - 1);
    markEvent(chain.rows.first);
    markEvent(chain.rows.end);
}

void CrossingTable::markEvent(std::int32_t row) {
    const auto bit = static_cast<std::size_t>(row - m_rows.first);
    m_events[bit / kEventBits] |= std::uint64_t{1} << bit % kEventBits;
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
