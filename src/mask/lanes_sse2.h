// SPDX-License-Identifier: MIT
#pragma once

#include <emmintrin.h>

#include <cstdint>
#include <cstring>

#include "mask/columns.h"
#include "mask/flatten.h"

namespace Quill::lanes {

struct IntPair {
    __m128i value; ///< x and y in the lower half; the upper half is nobody's

    explicit IntPair(FixedPoint point) : IntPair(point.x, point.y) {}
    IntPair(std::int32_t x, std::int32_t y) : value(_mm_unpacklo_epi32(_mm_cvtsi32_si128(x), _mm_cvtsi32_si128(y))) {}
    explicit IntPair(__m128i v) : value(v) {}

    friend IntPair operator+(IntPair a, IntPair b) { return IntPair(_mm_add_epi32(a.value, b.value)); }
    friend IntPair operator-(IntPair a, IntPair b) { return IntPair(_mm_sub_epi32(a.value, b.value)); }
    IntPair shiftedLeft(int bits) const { return IntPair(_mm_sll_epi32(value, _mm_cvtsi32_si128(bits))); }
    IntPair shiftedRight(int bits) const { return IntPair(_mm_sra_epi32(value, _mm_cvtsi32_si128(bits))); }
    void store(FixedPoint *out) const { _mm_storel_epi64(reinterpret_cast<__m128i *>(out), value); }

    /// Whether a value of either pair is larger than `limit` in magnitude.
    static bool anyExceeds(IntPair a, IntPair b, std::int32_t limit) {
        const __m128i both = _mm_unpacklo_epi64(a.value, b.value);
        const __m128i above = _mm_cmpgt_epi32(both, _mm_set1_epi32(limit));
        const __m128i below = _mm_cmplt_epi32(both, _mm_set1_epi32(-limit));
        return _mm_movemask_epi8(_mm_or_si128(above, below)) != 0;
    }
};

/// Eight rows of an edge: 32.32 fixed-point columns less kColumnBias.
class FixedRows {
  public:
    FixedRows(std::uint64_t value, std::uint64_t step) {
        const __m128i steps = _mm_set1_epi64x(static_cast<std::int64_t>(step));
        m_low = _mm_add_epi64(_mm_set1_epi64x(static_cast<std::int64_t>(value)), _mm_slli_si128(steps, 8));
        m_high = _mm_add_epi64(m_low, _mm_slli_epi64(steps, 1));
        m_fourSteps = _mm_slli_epi64(steps, 2);
    }

    /// Writes the integer parts of the next eight rows, limited to what a stored column can be.
    void storeNext(StoredColumn *out) {
        const __m128i first = takeFour();
        const __m128i second = takeFour();
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_packs_epi32(first, second));
    }

  private:
    __m128i takeFour() {
        const __m128 columns =
            _mm_shuffle_ps(_mm_castsi128_ps(m_low), _mm_castsi128_ps(m_high), _MM_SHUFFLE(3, 1, 3, 1));
        m_low = _mm_add_epi64(m_low, m_fourSteps);
        m_high = _mm_add_epi64(m_high, m_fourSteps);
        return _mm_castps_si128(columns);
    }

    __m128i m_low;  ///< the next two rows
    __m128i m_high; ///< the two after them
    __m128i m_fourSteps;
};

/// One stored column for each of eight rows.
class Columns {
  public:
    Columns() = default;
    explicit Columns(StoredColumn everywhere) : m_value(_mm_set1_epi16(everywhere)) {}

    static Columns load(const StoredColumn *rows) {
        return Columns(_mm_loadu_si128(reinterpret_cast<const __m128i *>(rows)));
    }
    /// The last row first in memory.
    static Columns loadReversed(const StoredColumn *rows) {
        __m128i value = _mm_loadu_si128(reinterpret_cast<const __m128i *>(rows));
        value = _mm_shufflelo_epi16(value, _MM_SHUFFLE(0, 1, 2, 3));
        value = _mm_shufflehi_epi16(value, _MM_SHUFFLE(0, 1, 2, 3));
        return Columns(_mm_shuffle_epi32(value, _MM_SHUFFLE(1, 0, 3, 2)));
    }
    void store(StoredColumn *out) const { _mm_storeu_si128(reinterpret_cast<__m128i *>(out), m_value); }

    static Columns min(Columns a, Columns b) { return Columns(_mm_min_epi16(a.m_value, b.m_value)); }
    static Columns max(Columns a, Columns b) { return Columns(_mm_max_epi16(a.m_value, b.m_value)); }
    static bool anyEqual(Columns a, Columns b) { return _mm_movemask_epi8(_mm_cmpeq_epi16(a.m_value, b.m_value)) != 0; }

    /// These on rows first .. end - 1 of the eight, `others` elsewhere.
    Columns onlyWithin(std::int32_t first, std::int32_t end, Columns others) const {
        const __m128i row = _mm_set_epi16(7, 6, 5, 4, 3, 2, 1, 0);
        const __m128i before = _mm_cmplt_epi16(row, _mm_set1_epi16(static_cast<std::int16_t>(first)));
        const __m128i after = _mm_cmpgt_epi16(row, _mm_set1_epi16(static_cast<std::int16_t>(end - 1)));
        const __m128i outside = _mm_or_si128(before, after);
        return Columns(_mm_or_si128(_mm_and_si128(outside, others.m_value), _mm_andnot_si128(outside, m_value)));
    }

    /// Eight records (column, row, length) of six bytes each, from span ends of which no two are equal. Writes two
    /// bytes beyond the last.
    static void storeRuns(Columns first, Columns end, std::uint16_t row, std::uint8_t *out) {
        const __m128i rows =
            _mm_add_epi16(_mm_set1_epi16(static_cast<std::int16_t>(row)), _mm_set_epi16(7, 6, 5, 4, 3, 2, 1, 0));
        storeTriples(unbiased(first.m_value), rows, _mm_sub_epi16(end.m_value, first.m_value), out);
    }
    /// Eight records (2, column, last column) likewise.
    static void storeRowLists(Columns first, Columns end, std::uint8_t *out) {
        const __m128i last = _mm_sub_epi16(unbiased(end.m_value), _mm_set1_epi16(1));
        storeTriples(_mm_set1_epi16(2), unbiased(first.m_value), last, out);
    }

  private:
    explicit Columns(__m128i value) : m_value(value) {}

    static __m128i unbiased(__m128i value) { return _mm_xor_si128(value, _mm_set1_epi16(INT16_MIN)); }

    static void storeTriples(__m128i a, __m128i b, __m128i c, std::uint8_t *out) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i abLow = _mm_unpacklo_epi16(a, b);
        const __m128i abHigh = _mm_unpackhi_epi16(a, b);
        const __m128i cLow = _mm_unpacklo_epi16(c, zero);
        const __m128i cHigh = _mm_unpackhi_epi16(c, zero);
        storeTwo(_mm_unpacklo_epi32(abLow, cLow), out);
        storeTwo(_mm_unpackhi_epi32(abLow, cLow), out + 12);
        storeTwo(_mm_unpacklo_epi32(abHigh, cHigh), out + 24);
        storeTwo(_mm_unpackhi_epi32(abHigh, cHigh), out + 36);
    }
    static void storeTwo(__m128i records, std::uint8_t *out) {
        _mm_storel_epi64(reinterpret_cast<__m128i *>(out), records);
        // The store of an upper half by name wants an aligned address; copied like this it becomes the same
        // instruction.
        const __m128d both = _mm_castsi128_pd(records);
        const double upper = _mm_cvtsd_f64(_mm_unpackhi_pd(both, both));
        std::memcpy(out + 6, &upper, sizeof upper);
    }

    __m128i m_value;
};

} // namespace Quill::lanes
