// SPDX-License-Identifier: MIT
#pragma once

// Rows of crossings to rows of spans, even-odd, eight rows at a time.
//
// A sink receives every row of the surface in order:
//
//     void emptyRows(RowRange rows);                      rows without a span
//     Cursor open(std::size_t rows, std::size_t spans);   room for that many rows of at most that many spans each
//     void close(const Cursor &cursor);                   what the cursor wrote counts
//
// and its cursor, a small value that lives in registers while rows are swept:
//
//     void beginRow(std::int32_t row);
//     void span(std::int32_t first, std::int32_t end);    columns first .. end - 1, left to right, not touching
//     void spanOrNone(std::int32_t first, std::int32_t end);   the same, and nothing when first == end: no branch
//     void endRow();
//     void eightSpans(std::int32_t row, const Columns &first, const Columns &end);   optional: one span on each of
//     eight rows
//
// A pixel is inside when the number of crossings at or left of it is odd, so the sorted crossings of a row pair up into
// spans; equal crossings cancel, which drops empty spans and joins those that would touch. Chains that do not reach all
// of the eight rows count as crossings at the right edge on the others, where nothing is seen of them.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "mask/crossings.h"
#include "mask/sorting_network.h"

namespace Quill {

struct SweepBuffers {
    PodBuffer<std::int32_t> active;  ///< numbers of the chains that reach the present rows
    PodBuffer<StoredColumn> columns; ///< eight of each of them
};

namespace detail {

/// Drops the chains that end before the group of rows and adds those that start in it. Returns the row on which the
/// first of them ends.
inline std::int32_t updateActive(const CrossingTable &table, std::int32_t row, PodBuffer<std::int32_t> &active) {
    std::int32_t firstEnd = table.rows().end;
    std::size_t kept = 0;
    for (const std::int32_t index : active) {
        const std::int32_t end = table.chain(index).rows.end;
        if (end <= row)
            continue;
        active[kept++] = index;
        firstEnd = std::min(firstEnd, end);
    }
    active.resize(kept);
    for (std::int32_t index = table.firstChainFrom(row); index >= 0; index = table.chain(index).next) {
        active.push_back(index);
        firstEnd = std::min(firstEnd, table.chain(index).rows.end);
    }
    return firstEnd;
}

inline bool coversGroup(const Chain &chain, std::int32_t row) {
    return chain.rows.first <= row && chain.rows.end >= row + kRowsAtOnce;
}

/// Eight columns of a chain from `row` on, limited to `edge`, and `edge` itself where the chain does not reach.
inline lanes::Columns loadChain(const CrossingTable &table, const Chain &chain, std::int32_t row, lanes::Columns edge) {
    const StoredColumn *at = table.crossings() + chain.indexOf(row);
    const lanes::Columns raw =
        chain.mirror ? lanes::Columns::loadReversed(at - (kRowsAtOnce - 1)) : lanes::Columns::load(at);
    const lanes::Columns columns = lanes::Columns::min(raw, edge);
    if (coversGroup(chain, row))
        return columns;
    return columns.onlyWithin(chain.rows.first - row, chain.rows.end - row, edge);
}

/// Loads and sorts the columns of all active chains. Returns their number, made even by one more at the edge.
inline std::size_t loadSorted(const CrossingTable &table, std::int32_t row, lanes::Columns edge,
                              SweepBuffers &buffers) {
    std::size_t count = buffers.active.size();
    buffers.columns.resize((count + 1) * kRowsAtOnce);
    StoredColumn *out = buffers.columns.data();
    for (const std::int32_t index : buffers.active) {
        loadChain(table, table.chain(index), row, edge).store(out);
        out += kRowsAtOnce;
    }
    if (count % 2 != 0) {
        edge.store(out);
        ++count;
    }
    sortVectors(buffers.columns.data(), count);
    return count;
}

/// Whether two neighbours of sorted columns are equal on some row.
inline bool anyNeighboursEqual(const StoredColumn *columns, std::size_t count) {
    bool equal = false;
    lanes::Columns before = lanes::Columns::load(columns);
    for (std::size_t i = 1; i < count; ++i) {
        const lanes::Columns next = lanes::Columns::load(columns + i * kRowsAtOnce);
        equal |= lanes::Columns::anyEqual(before, next);
        before = next;
    }
    return equal;
}

/// The spans of one row, whose sorted columns stand kRowsAtOnce apart; equal ones cancel.
template <typename Cursor>
void emitCancelling(const StoredColumn *columns, std::size_t count, Cursor &cursor) {
    std::int32_t first = columnOf(columns[0]);
    std::int32_t end = columnOf(columns[kRowsAtOnce]);
    for (std::size_t i = 2; i < count; i += 2) {
        const std::int32_t nextFirst = columnOf(columns[i * kRowsAtOnce]);
        const std::int32_t nextEnd = columnOf(columns[(i + 1) * kRowsAtOnce]);
        if (nextFirst != end) {
            cursor.spanOrNone(first, end);
            first = nextFirst;
        }
        end = nextEnd;
    }
    cursor.spanOrNone(first, end);
}

/// The same when no two are equal.
template <typename Cursor>
void emitDistinct(const StoredColumn *columns, std::size_t count, Cursor &cursor) {
    for (std::size_t i = 0; i < count; i += 2)
        cursor.span(columnOf(columns[i * kRowsAtOnce]), columnOf(columns[(i + 1) * kRowsAtOnce]));
}

template <typename Cursor>
void emitRows(const StoredColumn *columns, std::size_t count, RowRange rows, Cursor &cursor) {
    const bool distinct = !anyNeighboursEqual(columns, count);
    for (std::int32_t row = rows.first; row < rows.end; ++row, ++columns) {
        cursor.beginRow(row);
        if (distinct)
            emitDistinct(columns, count, cursor);
        else
            emitCancelling(columns, count, cursor);
        cursor.endRow();
    }
}

/// The column of a chain on each of eight rows that it covers; steps from group to group.
class WholeGroups {
  public:
    WholeGroups(const CrossingTable &table, const Chain &chain, std::int32_t row)
        : m_upwards(chain.mirror != 0),
          m_at(table.crossings() + chain.indexOf(row) - (m_upwards ? kRowsAtOnce - 1 : 0)),
          m_stride(m_upwards ? -kRowsAtOnce : kRowsAtOnce) {}

    lanes::Columns take(lanes::Columns edge) {
        const lanes::Columns columns = m_upwards ? lanes::Columns::loadReversed(m_at) : lanes::Columns::load(m_at);
        m_at += m_stride;
        return lanes::Columns::min(columns, edge);
    }

  private:
    bool m_upwards;
    const StoredColumn *m_at;
    std::ptrdiff_t m_stride;
};

/// Two chains on whole groups of rows, up to `end`: the commonest case by far. Stops early where a chain starts or a
/// row has no span. Returns the row it came to.
template <typename Sink>
std::int32_t sweepPairs(const CrossingTable &table, const PodBuffer<std::int32_t> &active, RowRange rows,
                        lanes::Columns edge, Sink &sink) {
    const Chain &a = table.chain(active[0]);
    const Chain &b = table.chain(active[1]);
    std::int32_t row = rows.first;
    if (!coversGroup(a, row) || !coversGroup(b, row))
        return row;
    WholeGroups left(table, a, row);
    WholeGroups right(table, b, row);
    auto &&cursor = sink.open(static_cast<std::size_t>(rows.end - row), 1);
    do {
        const lanes::Columns one = left.take(edge);
        const lanes::Columns other = right.take(edge);
        if (lanes::Columns::anyEqual(one, other))
            break;
        cursor.eightSpans(row, lanes::Columns::min(one, other), lanes::Columns::max(one, other));
        row += kRowsAtOnce;
    } while (row + kRowsAtOnce <= rows.end && table.firstChainFrom(row) < 0);
    sink.close(cursor);
    return row;
}

template <typename Sink>
void sweepGroup(const CrossingTable &table, RowRange rows, lanes::Columns edge, SweepBuffers &buffers, Sink &sink) {
    auto &&cursor = sink.open(kRowsAtOnce, (buffers.active.size() + 1) / 2);
    const std::size_t count = loadSorted(table, rows.first, edge, buffers);
    emitRows(buffers.columns.data(), count, rows, cursor);
    sink.close(cursor);
}

template <typename Sink>
concept TakesEightSpans = requires(Sink sink, lanes::Columns columns) {
    sink.open(0, 0).eightSpans(0, columns, columns);
};

} // namespace detail

/// Sends the rows of the table to the sink, columns within 0 .. width, at most kMaxColumn.
template <typename Sink>
void sweep(const CrossingTable &table, std::int32_t width, SweepBuffers &buffers, Sink &sink) {
    const lanes::Columns edge(storeColumn(width));
    const std::int32_t end = table.rows().end;
    buffers.active.clear();
    std::int32_t firstEnd = table.rows().first;
    for (std::int32_t row = table.rows().first; row < end;) {
        if (row >= firstEnd || table.firstChainFrom(row) >= 0)
            firstEnd = detail::updateActive(table, row, buffers.active);
        if constexpr (detail::TakesEightSpans<Sink>) {
            if (buffers.active.size() == 2) {
                const std::int32_t swept = detail::sweepPairs(table, buffers.active, {row, firstEnd}, edge, sink);
                if (swept != row) {
                    row = swept;
                    continue;
                }
            }
        }
        const RowRange rows{row, std::min(row + kRowsAtOnce, end)};
        if (buffers.active.empty())
            sink.emptyRows(rows);
        else
            detail::sweepGroup(table, rows, edge, buffers, sink);
        row += kRowsAtOnce;
    }
}

} // namespace Quill
