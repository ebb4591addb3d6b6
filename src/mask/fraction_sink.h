// SPDX-License-Identifier: MIT
#pragma once

// Spans to normalised runs (a sink as sweep.h has them).

#include <algorithm>
#include <cstdint>

#include "mask/mask_handler.h"
#include "mask/pod_buffer.h"
#include "mask/sweep.h"

namespace Quill {

/// Where normalised runs are measured from and by what they are divided.
struct RunScale {
    std::int32_t originX;
    std::int32_t originY;
    std::int32_t width;
    std::int32_t height;
};

/// Single-precision quotients of integers by one divisor, by multiplication.
///
/// The product with the inverse, in double precision, is off by at most 2^-52 of its value. Numbers below 2^24 in
/// magnitude are exact in single precision, and their true quotient by a divisor below 2^24 is either a
/// single-precision number plus or minus half a unit, which no such quotient is, or at least 2^-49 of its value away
/// from that: the rounding to single precision comes out as that of the division.
class QuotientBy {
  public:
    /// `largest` bounds the magnitude of the numbers. There are none for a divisor that is not positive.
    QuotientBy(std::int32_t divisor, std::int64_t largest)
        : m_divisor(static_cast<float>(divisor)), m_inverse(1.0 / std::max(divisor, 1)),
          m_byInverse(largest < kExact && divisor < kExact) {}

    float of(std::int64_t number) const {
        if (m_byInverse)
            return static_cast<float>(static_cast<std::int32_t>(number) * m_inverse);
        return static_cast<float>(number) / m_divisor;
    }

  private:
    static constexpr std::int64_t kExact = std::int64_t{1} << 24;
    float m_divisor;
    double m_inverse;
    bool m_byInverse;
};

/// Normalised records: every field the single-precision quotient of two integers.
class FractionSink {
  public:
    class Cursor {
      public:
        void beginRow(std::int32_t row) { m_y = m_byHeight.of(static_cast<std::uint16_t>(row) - m_originY); }
        void span(std::int32_t first, std::int32_t end) {
            *m_out++ = {m_byWidth.of(first - m_originX), m_y, m_byWidth.of(end - first)};
        }
        void spanOrNone(std::int32_t first, std::int32_t end) {
            if (first != end)
                span(first, end);
        }
        void endRow() {}

      private:
        friend FractionSink;
        Cursor(const RunScale &scale, MaskRunF *out)
            : m_out(out), m_originX(scale.originX), m_originY(scale.originY),
              m_byWidth(scale.width, std::abs(m_originX) + kLargestField),
              m_byHeight(scale.height, std::abs(m_originY) + kLargestField) {}

        static constexpr std::int64_t kLargestField = 65535;

        MaskRunF *m_out;
        float m_y = 0;
        std::int64_t m_originX;
        std::int64_t m_originY;
        QuotientBy m_byWidth;
        QuotientBy m_byHeight;
    };

    FractionSink(PodBuffer<MaskRunF> &runs, const RunScale &scale) : m_runs(runs), m_cursor(scale, nullptr) {
        m_runs.clear();
    }

    void emptyRows(RowRange) {}
    Cursor open(std::size_t rows, std::size_t spans) {
        m_cursor.m_out = m_runs.room(rows * spans);
        return m_cursor;
    }
    void close(const Cursor &cursor) { m_runs.setEnd(cursor.m_out); }

  private:
    PodBuffer<MaskRunF> &m_runs;
    Cursor m_cursor;
};

} // namespace Quill
