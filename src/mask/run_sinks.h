// SPDX-License-Identifier: MIT
#pragma once

// Spans to the three encodings, and the filter for the invert flag and the exclusion map that stands before any of
// them. The sinks are those of sweep.h. Rows and columns are 16-bit values in every encoding.

#include <cstring>

#include "mask/mask_handler.h"
#include "mask/pod_buffer.h"
#include "mask/sweep.h"

namespace Quill {

/// Run records: column, row, length.
class RunSink {
  public:
    explicit RunSink(PodBuffer<MaskRun> &runs) : m_runs(runs) { m_runs.clear(); }

    void emptyRows(RowRange) {}
    void beginRow(std::int32_t row, std::size_t spans) {
        m_row = static_cast<std::uint16_t>(row);
        m_out = m_runs.room(spans);
    }
    void span(std::int32_t first, std::int32_t end) {
        *m_out++ = {static_cast<std::uint16_t>(first), m_row, static_cast<std::uint16_t>(end - first)};
    }
    void endRow() { m_runs.setEnd(m_out); }

  private:
    PodBuffer<MaskRun> &m_runs;
    MaskRun *m_out = nullptr;
    std::uint16_t m_row = 0;
};

/// Row lists: a count, then (first, last) for each run.
class RowListSink {
  public:
    explicit RowListSink(PodBuffer<std::uint16_t> &values) : m_values(values) { m_values.clear(); }

    void emptyRows(RowRange rows) {
        if (rows.empty())
            return;
        const auto count = static_cast<std::size_t>(rows.end - rows.first);
        std::uint16_t *out = m_values.room(count);
        std::fill_n(out, count, std::uint16_t{0});
        m_values.setEnd(out + count);
    }
    void beginRow(std::int32_t, std::size_t spans) {
        m_count = m_values.room(1 + 2 * spans);
        m_out = m_count + 1;
    }
    void span(std::int32_t first, std::int32_t end) {
        *m_out++ = static_cast<std::uint16_t>(first);
        *m_out++ = static_cast<std::uint16_t>(end - 1);
    }
    void endRow() {
        *m_count = static_cast<std::uint16_t>(m_out - m_count - 1);
        m_values.setEnd(m_out);
    }

  private:
    PodBuffer<std::uint16_t> &m_values;
    std::uint16_t *m_count = nullptr;
    std::uint16_t *m_out = nullptr;
};

/// Where normalised runs are measured from and by what they are divided.
struct RunScale {
    std::int32_t originX;
    std::int32_t originY;
    std::int32_t width;
    std::int32_t height;
};

/// Normalised records: every field the single-precision quotient of two integers.
class FractionSink {
  public:
    FractionSink(PodBuffer<MaskRunF> &runs, const RunScale &scale)
        : m_runs(runs), m_originX(scale.originX), m_originY(scale.originY), m_width(static_cast<float>(scale.width)),
          m_height(static_cast<float>(scale.height)) {
        m_runs.clear();
    }

    void emptyRows(RowRange) {}
    void beginRow(std::int32_t row, std::size_t spans) {
        m_y = static_cast<float>(static_cast<std::uint16_t>(row) - m_originY) / m_height;
        m_out = m_runs.room(spans);
    }
    void span(std::int32_t first, std::int32_t end) {
        *m_out++ = {static_cast<float>(first - m_originX) / m_width, m_y, static_cast<float>(end - first) / m_width};
    }
    void endRow() { m_runs.setEnd(m_out); }

  private:
    PodBuffer<MaskRunF> &m_runs;
    MaskRunF *m_out = nullptr;
    std::int64_t m_originX;
    std::int64_t m_originY;
    float m_width;
    float m_height;
    float m_y = 0;
};

/// Turns inside and outside round if asked to, then takes out the pixels that the exclusion map marks.
template <typename Sink>
class FilterSink {
  public:
    /// `exclusion` may be null; otherwise one byte a pixel, `mapWidth` bytes a row, and exactly 1 excludes. `width` is
    /// the number of columns that are encoded.
    FilterSink(Sink &sink, bool invert, const std::uint8_t *exclusion, std::int32_t mapWidth, std::int32_t width)
        : m_sink(sink), m_invert(invert), m_exclusion(exclusion), m_mapWidth(mapWidth), m_width(width) {}

    void emptyRows(RowRange rows) {
        if (!m_invert) {
            m_sink.emptyRows(rows);
            return;
        }
        for (std::int32_t row = rows.first; row < rows.end; ++row) {
            beginRow(row, 0);
            endRow();
        }
    }
    void beginRow(std::int32_t row, std::size_t spans) {
        const auto width = static_cast<std::size_t>(std::max(m_width, 0));
        m_sink.beginRow(row, m_exclusion ? (width + 1) / 2 : spans + 1);
        m_map = m_exclusion ? m_exclusion + static_cast<std::ptrdiff_t>(row) * m_mapWidth : nullptr;
        m_cursor = 0;
    }
    void span(std::int32_t first, std::int32_t end) {
        if (!m_invert) {
            exclude(first, end);
            return;
        }
        exclude(m_cursor, first);
        m_cursor = end;
    }
    void endRow() {
        if (m_invert)
            exclude(m_cursor, m_width);
        m_sink.endRow();
    }

  private:
    static constexpr int kExcluded = 1;

    void exclude(std::int32_t first, std::int32_t end) {
        if (first >= end)
            return;
        if (!m_map) {
            m_sink.span(first, end);
            return;
        }
        for (;;) {
            while (first < end && m_map[first] == kExcluded)
                ++first;
            if (first == end)
                return;
            const void *hit = std::memchr(m_map + first, kExcluded, static_cast<std::size_t>(end - first));
            if (!hit) {
                m_sink.span(first, end);
                return;
            }
            const auto stop = static_cast<std::int32_t>(static_cast<const std::uint8_t *>(hit) - m_map);
            m_sink.span(first, stop);
            first = stop;
        }
    }

    Sink &m_sink;
    bool m_invert;
    const std::uint8_t *m_exclusion;
    std::int32_t m_mapWidth;
    std::int32_t m_width;
    const std::uint8_t *m_map = nullptr;
    std::int32_t m_cursor = 0;
};

} // namespace Quill
