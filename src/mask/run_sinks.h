// SPDX-License-Identifier: MIT
#pragma once

// Spans to the three encodings (sinks as sweep.h has them). Rows and columns are 16-bit values in every encoding.

#include <bit>
#include <cstring>

#include "mask/mask_handler.h"
#include "mask/pod_buffer.h"
#include "mask/sweep.h"

namespace Quill {

/// Run records: column, row, length.
class RunSink {
  public:
    class Cursor {
      public:
        void beginRow(std::int32_t row) { m_row = static_cast<std::uint16_t>(row); }
        void span(std::int32_t first, std::int32_t end) {
            put(first, end);
            ++m_out;
        }
        void spanOrNone(std::int32_t first, std::int32_t end) {
            put(first, end);
            m_out += first != end;
        }
        void endRow() {}

      private:
        friend RunSink;
        explicit Cursor(MaskRun *out) : m_out(out) {}

        /// Three values in one store where the byte order allows; it reaches two bytes into the next record.
        void put(std::int32_t first, std::int32_t end) {
            static_assert(sizeof(MaskRun) == 6);
            if constexpr (std::endian::native == std::endian::little) {
                const std::uint64_t record = static_cast<std::uint64_t>(end - first) << 32 |
                                             static_cast<std::uint32_t>(m_row) << 16 |
                                             static_cast<std::uint16_t>(first);
                std::memcpy(static_cast<void *>(m_out), &record, sizeof record);
            } else {
                *m_out = {static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(m_row),
                          static_cast<std::uint16_t>(end - first)};
            }
        }

        MaskRun *m_out;
        std::uint32_t m_row = 0;
    };

    explicit RunSink(PodBuffer<MaskRun> &runs) : m_runs(runs) { m_runs.clear(); }

    void emptyRows(RowRange) {}
    Cursor open(std::size_t rows, std::size_t spans) { return Cursor(m_runs.room(rows * spans + 1)); }
    void close(const Cursor &cursor) { m_runs.setEnd(cursor.m_out); }

  private:
    PodBuffer<MaskRun> &m_runs;
};

/// Row lists: a count, then (first, last) for each run.
class RowListSink {
  public:
    class Cursor {
      public:
        void beginRow(std::int32_t) { m_count = m_out++; }
        void span(std::int32_t first, std::int32_t end) {
            put(first, end);
            m_out += 2;
        }
        void spanOrNone(std::int32_t first, std::int32_t end) {
            put(first, end);
            m_out += 2 * (first != end);
        }
        void endRow() { *m_count = static_cast<std::uint16_t>(m_out - m_count - 1); }

      private:
        friend RowListSink;
        explicit Cursor(std::uint16_t *out) : m_out(out), m_count(out) {}

        void put(std::int32_t first, std::int32_t end) {
            m_out[0] = static_cast<std::uint16_t>(first);
            m_out[1] = static_cast<std::uint16_t>(end - 1);
        }

        std::uint16_t *m_out;
        std::uint16_t *m_count;
    };

    explicit RowListSink(PodBuffer<std::uint16_t> &values) : m_values(values) { m_values.clear(); }

    void emptyRows(RowRange rows) {
        if (rows.empty())
            return;
        const auto count = static_cast<std::size_t>(rows.end - rows.first);
        std::uint16_t *out = m_values.room(count);
        std::fill_n(out, count, std::uint16_t{0});
        m_values.setEnd(out + count);
    }
    Cursor open(std::size_t rows, std::size_t spans) { return Cursor(m_values.room(rows * (1 + 2 * spans) + 2)); }
    void close(const Cursor &cursor) { m_values.setEnd(cursor.m_out); }

  private:
    PodBuffer<std::uint16_t> &m_values;
};

} // namespace Quill
