// SPDX-License-Identifier: MIT
#pragma once

// Two small vector types for the two inner loops that profit: a pair of 32-bit integers (the x and y of a point, which
// the flattener treats alike) and four 32.32 fixed-point numbers (consecutive rows of an edge).
//
// Written out with SSE2, which every 64-bit x86 has, and as plain integers, for other processors and as what the tests
// compare it with. Left to the compiler the same loops come out scalar or, from GCC 12's straight-line vectoriser,
// wrong.

#include <cstdint>

#include "mask/flatten.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ORVANEL_MASK_SSE2 1
#else
#define ORVANEL_MASK_SSE2 0
#endif

namespace Quill::lanes {

namespace plain {

struct IntPair {
    std::int32_t x;
    std::int32_t y;

    explicit IntPair(FixedPoint point) : x(point.x), y(point.y) {}
    IntPair(std::int32_t px, std::int32_t py) : x(px), y(py) {}

    friend IntPair operator+(IntPair a, IntPair b) { return {a.x + b.x, a.y + b.y}; }
    friend IntPair operator-(IntPair a, IntPair b) { return {a.x - b.x, a.y - b.y}; }
    IntPair shiftedLeft(int bits) const { return {x << bits, y << bits}; }
    IntPair shiftedRight(int bits) const { return {x >> bits, y >> bits}; }
    void store(FixedPoint *out) const { *out = {x, y}; }

    /// Whether a value of either pair is larger than `limit` in magnitude.
    static bool anyExceeds(IntPair a, IntPair b, std::int32_t limit) {
        const auto exceeds = [limit](std::int32_t value) { return value > limit || value < -limit; };
        return exceeds(a.x) || exceeds(a.y) || exceeds(b.x) || exceeds(b.y);
    }
};

/// value, value + step, value + 2 step, value + 3 step.
struct FixedRows {
    std::uint64_t value;
    std::uint64_t step;

    FixedRows(std::uint64_t first, std::uint64_t perRow) : value(first), step(perRow) {}
    void advance() { value += 4 * step; }

    /// Writes the four integer parts.
    void storeIntegers(std::int32_t *out) const {
        std::uint64_t row = value;
        for (int i = 0; i < 4; ++i, row += step)
            out[i] = static_cast<std::int32_t>(row >> 32);
    }
};

} // namespace plain

#if ORVANEL_MASK_SSE2
namespace sse2 {

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

    static bool anyExceeds(IntPair a, IntPair b, std::int32_t limit) {
        const __m128i both = _mm_unpacklo_epi64(a.value, b.value);
        const __m128i above = _mm_cmpgt_epi32(both, _mm_set1_epi32(limit));
        const __m128i below = _mm_cmplt_epi32(both, _mm_set1_epi32(-limit));
        return _mm_movemask_epi8(_mm_or_si128(above, below)) != 0;
    }
};

struct FixedRows {
    __m128i low;  ///< rows 0 and 1
    __m128i high; ///< rows 2 and 3
    __m128i fourSteps;

    FixedRows(std::uint64_t first, std::uint64_t perRow) {
        const __m128i start = _mm_set1_epi64x(static_cast<std::int64_t>(first));
        const __m128i step = _mm_set1_epi64x(static_cast<std::int64_t>(perRow));
        const __m128i twoSteps = _mm_slli_epi64(step, 1);
        low = _mm_add_epi64(start, _mm_slli_si128(step, 8));
        high = _mm_add_epi64(low, twoSteps);
        fourSteps = _mm_slli_epi64(step, 2);
    }
    void advance() {
        low = _mm_add_epi64(low, fourSteps);
        high = _mm_add_epi64(high, fourSteps);
    }
    void storeIntegers(std::int32_t *out) const {
        const __m128 upper = _mm_shuffle_ps(_mm_castsi128_ps(low), _mm_castsi128_ps(high), _MM_SHUFFLE(3, 1, 3, 1));
        _mm_storeu_ps(reinterpret_cast<float *>(out), upper);
    }
};

} // namespace sse2
using namespace sse2;
#else
using namespace plain;
#endif

} // namespace Quill::lanes
