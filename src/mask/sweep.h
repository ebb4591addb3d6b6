// SPDX-License-Identifier: MIT
#pragma once

// Rows of crossings to rows of spans, even-odd.
//
// A sink receives every row of the surface in order:
//
//     void emptyRows(RowRange rows);          rows without a span
//     Cursor open(std::size_t rows, std::size_t spans);   room for that many rows of at most that many spans each
//     void close(const Cursor &cursor);       what the cursor wrote counts
//
// and its cursor, a small value that lives in registers while rows are swept:
//
//     void beginRow(std::int32_t row);
//     void span(std::int32_t first, std::int32_t end);    columns first .. end - 1, left to right, not touching
//     void spanOrNone(std::int32_t first, std::int32_t end);   the same, and nothing when first == end: no branch
//     void endRow();
//
// A pixel is inside when the number of crossings at or left of it is odd, so the sorted crossings of a row pair up into
// spans; equal crossings cancel, which drops empty spans and joins those that would touch.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "mask/crossings.h"

namespace Quill {

/// The chains that reach the present row, in the order of their columns on the row before: column in the upper half,
/// number of the chain in the lower.
using ActiveChains = PodBuffer<std::uint64_t>;

namespace detail {

inline std::int32_t columnOf(std::uint64_t active) {
    return static_cast<std::int32_t>(active >> 32);
}
inline std::uint32_t chainOf(std::uint64_t active) {
    return static_cast<std::uint32_t>(active);
}

/// Drops the chains that end on `row` and adds those that start there.
inline void updateActive(const CrossingTable &table, std::int32_t row, ActiveChains &active) {
    const Chain *chains = table.chains();
    std::size_t kept = 0;
    for (const std::uint64_t entry : active) {
        active[kept] = entry;
        kept += chains[chainOf(entry)].rows.end != row;
    }
    active.resize(kept);
    for (std::int32_t index = table.firstChainAt(row); index >= 0; index = chains[index].next)
        active.push_back(static_cast<std::uint32_t>(index));
}

/// Two chains: the commonest case by far, and no order to keep.
template <typename Cursor>
void sweepPair(const CrossingTable &table, const ActiveChains &active, RowRange rows, Cursor &cursor) {
    const Chain &a = table.chains()[chainOf(active[0])];
    const Chain &b = table.chains()[chainOf(active[1])];
    const std::int32_t *left = table.crossings() + a.indexOf(rows.first);
    const std::int32_t *right = table.crossings() + b.indexOf(rows.first);
    const std::ptrdiff_t leftStride = a.stride();
    const std::ptrdiff_t rightStride = b.stride();
    for (std::int32_t row = rows.first; row < rows.end; ++row, left += leftStride, right += rightStride) {
        cursor.beginRow(row);
        cursor.spanOrNone(std::min(*left, *right), std::max(*left, *right));
        cursor.endRow();
    }
}

/// Loads the columns of `row` and sorts them. They come nearly sorted.
inline void loadSorted(const CrossingTable &table, std::int32_t row, std::uint64_t *active, std::size_t count) {
    const Chain *chains = table.chains();
    const std::int32_t *crossings = table.crossings();
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t chain = chainOf(active[i]);
        const auto column = static_cast<std::uint32_t>(crossings[chains[chain].indexOf(row)]);
        const std::uint64_t entry = std::uint64_t{column} << 32 | chain;
        std::size_t place = i;
        for (; place > 0 && active[place - 1] > entry; --place)
            active[place] = active[place - 1];
        active[place] = entry;
    }
}

template <typename Cursor>
void sweepMany(const CrossingTable &table, ActiveChains &active, RowRange rows, Cursor &cursor) {
    std::uint64_t *entries = active.data();
    const std::size_t count = active.size();
    for (std::int32_t row = rows.first; row < rows.end; ++row) {
        loadSorted(table, row, entries, count);
        cursor.beginRow(row);
        std::int32_t first = columnOf(entries[0]);
        std::int32_t end = columnOf(entries[1]);
        for (std::size_t i = 2; i < count; i += 2) {
            if (columnOf(entries[i]) == end) {
                end = columnOf(entries[i + 1]);
                continue;
            }
            cursor.spanOrNone(first, end);
            first = columnOf(entries[i]);
            end = columnOf(entries[i + 1]);
        }
        cursor.spanOrNone(first, end);
        cursor.endRow();
    }
}

} // namespace detail

/// Sends the rows of the table to the sink.
template <typename Sink>
void sweep(const CrossingTable &table, ActiveChains &active, Sink &sink) {
    active.clear();
    for (std::int32_t row = table.rows().first; row < table.rows().end;) {
        detail::updateActive(table, row, active);
        const RowRange rows{row, table.nextEvent(row)};
        if (active.empty()) {
            sink.emptyRows(rows);
        } else {
            auto cursor = sink.open(static_cast<std::size_t>(rows.end - rows.first), active.size() / 2);
            if (active.size() == 2)
                detail::sweepPair(table, active, rows, cursor);
            else
                detail::sweepMany(table, active, rows, cursor);
            sink.close(cursor);
        }
        row = rows.end;
    }
}

} // namespace Quill
