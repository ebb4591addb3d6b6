// SPDX-License-Identifier: MIT
#pragma once

// The invert flag and the exclusion map, as a sink (see sweep.h) that stands before another one.

#include <cstring>

#include "mask/sweep.h"

namespace Quill {

/// What a filter takes out and turns round.
struct RunFilter {
    bool invert;
    const std::uint8_t *exclusion; ///< null, or one byte a pixel, `mapWidth` bytes a row; exactly 1 excludes
    std::int32_t mapWidth;
    std::int32_t columns; ///< how many columns are encoded
};

/// Turns inside and outside round if asked to, then takes out the pixels that the exclusion map marks.
template <typename Sink>
class FilterSink {
  public:
    class Cursor {
      public:
        void beginRow(std::int32_t row) {
            m_done = 0;
            if (m_owner->m_filter.exclusion) {
                // As many runs as a row can have: room for one row at a time, not for all of them.
                m_map = m_owner->m_filter.exclusion + static_cast<std::ptrdiff_t>(row) * m_owner->m_filter.mapWidth;
                m_owner->m_sink.close(m_inner);
                m_inner = m_owner->m_sink.open(1, (static_cast<std::size_t>(m_columns) + 1) / 2);
            }
            m_inner.beginRow(row);
        }
        void span(std::int32_t first, std::int32_t end) {
            if (m_invert) {
                exclude(m_done, first);
                m_done = end;
            } else {
                exclude(first, end);
            }
        }
        void spanOrNone(std::int32_t first, std::int32_t end) {
            if (first != end)
                span(first, end);
        }
        void endRow() {
            if (m_invert)
                exclude(m_done, m_columns);
            m_inner.endRow();
        }

      private:
        friend FilterSink;
        Cursor(FilterSink &owner, typename Sink::Cursor inner)
            : m_owner(&owner), m_inner(inner), m_invert(owner.m_filter.invert),
              m_columns(std::max(owner.m_filter.columns, 0)) {}

        void exclude(std::int32_t first, std::int32_t end) {
            if (m_map)
                splitAtMap(first, end);
            else
                m_inner.spanOrNone(first, std::max(first, end));
        }

        void splitAtMap(std::int32_t first, std::int32_t end) {
            constexpr int kExcluded = 1;
            while (first < end) {
                if (m_map[first] == kExcluded) {
                    ++first;
                    continue;
                }
                const void *hit = std::memchr(m_map + first, kExcluded, static_cast<std::size_t>(end - first));
                const auto stop = hit ? static_cast<std::int32_t>(static_cast<const std::uint8_t *>(hit) - m_map) : end;
                m_inner.span(first, stop);
                first = stop;
            }
        }

        FilterSink *m_owner;
        typename Sink::Cursor m_inner;
        const std::uint8_t *m_map = nullptr;
        bool m_invert;
        std::int32_t m_columns;
        std::int32_t m_done = 0; ///< inverted: everything left of this is said
    };

    FilterSink(Sink &sink, const RunFilter &filter) : m_sink(sink), m_filter(filter) {}

    void emptyRows(RowRange rows) {
        if (!m_filter.invert) {
            m_sink.emptyRows(rows);
            return;
        }
        if (rows.empty())
            return;
        Cursor cursor = open(static_cast<std::size_t>(rows.end - rows.first), 0);
        for (std::int32_t row = rows.first; row < rows.end; ++row) {
            cursor.beginRow(row);
            cursor.endRow();
        }
        close(cursor);
    }
    Cursor open(std::size_t rows, std::size_t spans) { return Cursor(*this, m_sink.open(rows, spans + 1)); }
    void close(const Cursor &cursor) { m_sink.close(cursor.m_inner); }

  private:
    Sink &m_sink;
    RunFilter m_filter;
};

} // namespace Quill
