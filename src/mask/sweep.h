// SPDX-License-Identifier: MIT
#pragma once

// Rows of crossings to rows of spans, even-odd.
//
// A sink receives every row of the surface in order:
//
//     void emptyRows(RowRange rows);                         rows without a span
//     void beginRow(std::int32_t row, std::size_t spans);    at most that many spans follow
//     void span(std::int32_t first, std::int32_t end);       columns first .. end - 1, not empty, left to right, not
//     touching void endRow();
//
// A pixel is inside when the number of crossings at or left of it is odd, so the sorted crossings of a row pair up into
// spans; equal crossings cancel, which drops empty spans and joins those that would touch.

#include <cstddef>
#include <cstdint>

#include "mask/crossings.h"

namespace Quill {

/// The chains that reach the present row, kept in the order of their columns on the row before.
struct ActiveChains {
    PodBuffer<std::ptrdiff_t> offsets;
    PodBuffer<std::int32_t> ends;
    PodBuffer<std::int32_t> columns;
};

namespace detail {

/// Drops the chains that end on `row` and adds those that start there.
inline void updateActive(const CrossingTable &table, std::int32_t row, ActiveChains &active) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < active.ends.size(); ++i) {
        if (active.ends[i] == row)
            continue;
        active.ends[kept] = active.ends[i];
        active.offsets[kept] = active.offsets[i];
        ++kept;
    }
    active.ends.resize(kept);
    active.offsets.resize(kept);
    for (std::int32_t index = table.firstChainAt(row); index >= 0; index = table.chain(index).next) {
        active.ends.push_back(table.chain(index).rows.end);
        active.offsets.push_back(table.chain(index).offset);
    }
    active.columns.resize(active.ends.size());
}

/// Two chains: the commonest case by far, and no order to keep.
template <typename Sink>
void sweepPair(const std::int32_t *crossings, const ActiveChains &active, RowRange rows, Sink &sink) {
    const std::int32_t *left = crossings + active.offsets[0] + rows.first;
    const std::int32_t *right = crossings + active.offsets[1] + rows.first;
    for (std::int32_t row = rows.first; row < rows.end; ++row, ++left, ++right) {
        sink.beginRow(row, 1);
        if (*left != *right)
            sink.span(std::min(*left, *right), std::max(*left, *right));
        sink.endRow();
    }
}

/// Loads the columns of `row` and sorts them. They come nearly sorted.
inline void loadSorted(const std::int32_t *crossings, std::int32_t row, ActiveChains &active) {
    std::int32_t *columns = active.columns.data();
    std::ptrdiff_t *offsets = active.offsets.data();
    std::int32_t *ends = active.ends.data();
    const std::size_t count = active.columns.size();
    for (std::size_t i = 0; i < count; ++i) {
        const std::ptrdiff_t offset = offsets[i];
        const std::int32_t end = ends[i];
        const std::int32_t column = crossings[offset + row];
        std::size_t place = i;
        for (; place > 0 && columns[place - 1] > column; --place) {
            columns[place] = columns[place - 1];
            offsets[place] = offsets[place - 1];
            ends[place] = ends[place - 1];
        }
        columns[place] = column;
        offsets[place] = offset;
        ends[place] = end;
    }
}

template <typename Sink>
void sweepMany(const std::int32_t *crossings, ActiveChains &active, RowRange rows, Sink &sink) {
    const std::int32_t *columns = active.columns.data();
    const std::size_t count = active.columns.size();
    for (std::int32_t row = rows.first; row < rows.end; ++row) {
        loadSorted(crossings, row, active);
        sink.beginRow(row, count / 2);
        std::int32_t first = columns[0];
        std::int32_t end = columns[1];
        for (std::size_t i = 2; i < count; i += 2) {
            if (columns[i] == end) {
                end = columns[i + 1];
                continue;
            }
            if (first != end)
                sink.span(first, end);
            first = columns[i];
            end = columns[i + 1];
        }
        if (first != end)
            sink.span(first, end);
        sink.endRow();
    }
}

} // namespace detail

/// Sends the rows of the table to the sink.
template <typename Sink>
void sweep(const CrossingTable &table, ActiveChains &active, Sink &sink) {
    active.offsets.clear();
    active.ends.clear();
    for (std::int32_t row = table.rows().first; row < table.rows().end;) {
        detail::updateActive(table, row, active);
        const RowRange rows{row, table.nextEvent(row)};
        if (active.ends.empty())
            sink.emptyRows(rows);
        else if (active.ends.size() == 2)
            detail::sweepPair(table.crossings(), active, rows, sink);
        else
            detail::sweepMany(table.crossings(), active, rows, sink);
        row = rows.end;
    }
}

} // namespace Quill
