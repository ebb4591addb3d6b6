// SPDX-License-Identifier: MIT
#include "mask/edge_starts.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

#include "mask/lanes.h"

namespace Quill {
namespace {

constexpr double kOnePixel = 4294967296.0; // of a 32.32 number
constexpr double kOneUnit = kOnePixel / kUnitsPerPixel;

/// Adding this to a number below 2^51 in magnitude leaves the number, rounded to an integer, in the lower bits.
constexpr double kRoundingBias = 6755399441055744.0; // 1.5 * 2^52
constexpr auto kRoundingBits = std::bit_cast<std::uint64_t>(kRoundingBias);

std::uint64_t roundToFixed(double value) {
    return std::bit_cast<std::uint64_t>(value + kRoundingBias) - kRoundingBits;
}

void computeOne(const FixedPoint &from, const FixedPoint &to, RowRange rows, std::int32_t &row, std::uint64_t &value,
                std::uint64_t &step) {
    const std::int32_t fromRow = std::clamp(rowAtOrBelow(from.y), rows.first, rows.end);
    const std::int32_t toRow = std::clamp(rowAtOrBelow(to.y), rows.first, rows.end);
    const std::int32_t firstRow = toRow < fromRow ? fromRow - 1 : fromRow;
    const double height = std::max(std::abs(to.y - from.y), 1); // an edge without height has no rows
    const double inverse = 1.0 / height;
    const double stride = (to.x - from.x) * inverse;
    const double ahead = std::abs(firstRow * kUnitsPerPixel - from.y);
    const double crossing = from.x + ahead * stride;
    row = fromRow;
    value = roundToFixed(crossing * kOneUnit + (kOnePixel - kOnePixel / 32 * inverse));
    step = roundToFixed(stride * kOnePixel);
}

void prepare(std::size_t count, EdgeStarts &starts) {
    starts.rows.resize(count + kEdgesAtOnce);
    starts.values.resize(count + kEdgesAtOnce);
    starts.steps.resize(count + kEdgesAtOnce);
}

#if ORVANEL_MASK_SSE2

struct Four {
    __m128i x;
    __m128i y;

    explicit Four(const FixedPoint *points) {
        const __m128 first = _mm_loadu_ps(reinterpret_cast<const float *>(points));
        const __m128 second = _mm_loadu_ps(reinterpret_cast<const float *>(points + 2));
        x = _mm_castps_si128(_mm_shuffle_ps(first, second, _MM_SHUFFLE(2, 0, 2, 0)));
        y = _mm_castps_si128(_mm_shuffle_ps(first, second, _MM_SHUFFLE(3, 1, 3, 1)));
    }
};

__m128i select(__m128i mask, __m128i ifSet, __m128i ifClear) {
    return _mm_or_si128(_mm_and_si128(mask, ifSet), _mm_andnot_si128(mask, ifClear));
}

__m128i magnitude(__m128i value) {
    const __m128i sign = _mm_srai_epi32(value, 31);
    return _mm_sub_epi32(_mm_xor_si128(value, sign), sign);
}

__m128i rowsOf(__m128i y, RowRange rows) {
    const __m128i first = _mm_set1_epi32(rows.first);
    const __m128i end = _mm_set1_epi32(rows.end);
    const __m128i row = _mm_srai_epi32(_mm_add_epi32(y, _mm_set1_epi32(kUnitsPerPixel - 1)), 4);
    const __m128i atLeast = select(_mm_cmplt_epi32(row, first), first, row);
    return select(_mm_cmpgt_epi32(atLeast, end), end, atLeast);
}

/// The same arithmetic in the same order as computeOne, for two edges.
void computePair(__m128i fromX, __m128i dx, __m128i height, __m128i ahead, std::uint64_t *values,
                 std::uint64_t *steps) {
    const __m128d inverse = _mm_div_pd(_mm_set1_pd(1.0), _mm_cvtepi32_pd(height));
    const __m128d stride = _mm_mul_pd(_mm_cvtepi32_pd(dx), inverse);
    const __m128d crossing = _mm_add_pd(_mm_cvtepi32_pd(fromX), _mm_mul_pd(_mm_cvtepi32_pd(ahead), stride));
    const __m128d bias = _mm_sub_pd(_mm_set1_pd(kOnePixel), _mm_mul_pd(_mm_set1_pd(kOnePixel / 32), inverse));
    const __m128d value = _mm_add_pd(_mm_mul_pd(crossing, _mm_set1_pd(kOneUnit)), bias);
    const auto store = [](std::uint64_t *out, __m128d number) {
        const __m128i rounded = _mm_castpd_si128(_mm_add_pd(number, _mm_set1_pd(kRoundingBias)));
        const __m128i bits = _mm_set1_epi64x(static_cast<std::int64_t>(kRoundingBits));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_sub_epi64(rounded, bits));
    };
    store(values, value);
    store(steps, _mm_mul_pd(stride, _mm_set1_pd(kOnePixel)));
}

void computeFour(const FixedPoint *vertices, RowRange range, std::int32_t *rows, std::uint64_t *values,
                 std::uint64_t *steps) {
    const Four from(vertices);
    const Four to(vertices + 1);
    const __m128i fromRow = rowsOf(from.y, range);
    const __m128i toRow = rowsOf(to.y, range);
    const __m128i firstRow = _mm_add_epi32(fromRow, _mm_cmplt_epi32(toRow, fromRow)); // a mask counts as -1
    const __m128i dy = magnitude(_mm_sub_epi32(to.y, from.y));
    const __m128i height = _mm_sub_epi32(dy, _mm_cmpeq_epi32(dy, _mm_setzero_si128()));
    const __m128i dx = _mm_sub_epi32(to.x, from.x);
    const __m128i ahead = magnitude(_mm_sub_epi32(_mm_slli_epi32(firstRow, 4), from.y));
    _mm_storeu_si128(reinterpret_cast<__m128i *>(rows), fromRow);
    const auto upper = [](__m128i value) { return _mm_unpackhi_epi64(value, value); };
    computePair(from.x, dx, height, ahead, values, steps);
    computePair(upper(from.x), upper(dx), upper(height), upper(ahead), values + 2, steps + 2);
}

#endif

} // namespace

void computeEdgeStartsPlainly(const FixedPoint *vertices, std::size_t count, RowRange rows, EdgeStarts &starts) {
    prepare(count, starts);
    for (std::size_t i = 0; i < count; ++i)
        computeOne(vertices[i], vertices[i + 1], rows, starts.rows[i], starts.values[i], starts.steps[i]);
}

void computeEdgeStarts(const FixedPoint *vertices, std::size_t count, RowRange rows, EdgeStarts &starts) {
#if ORVANEL_MASK_SSE2
    prepare(count, starts);
    for (std::size_t i = 0; i < count; i += kEdgesAtOnce)
        computeFour(vertices + i, rows, &starts.rows[i], &starts.values[i], &starts.steps[i]);
#else
    computeEdgeStartsPlainly(vertices, count, rows, starts);
#endif
}

} // namespace Quill
