// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "hostkit/float_lanes.h"

namespace hostkit {

/// An increasing function with f(0) = 0, tabulated as straight pieces whose length is a fixed share of their place, so
/// the relative error is the same everywhere. Odd: f(-x) = -f(x).
class CurveTable {
  public:
    /// Pieces from 2^firstOctave to 2^lastOctave; below and above the nearest piece goes on.
    CurveTable(const std::function<double(double)> &curve, int firstOctave, int lastOctave);

    /// Four values at once: only then it counts what the look-ups wait for.
    FloatLanes operator()(FloatLanes x) const;
    const CurveTable &lookup() const { return *this; }

    float operator()(float x) const {
        const auto bits = std::bit_cast<std::uint32_t>(x);
        const std::uint32_t magnitude = bits & 0x7FFFFFFFU;
        const std::uint32_t above = magnitude > first_ ? magnitude - first_ : 0;
        const std::size_t index = (above >> kShift) < last_ ? above >> kShift : last_;
        const float value = pieces_[index].base + pieces_[index].slope * std::bit_cast<float>(magnitude);
        return std::bit_cast<float>(std::bit_cast<std::uint32_t>(value) | (bits & 0x80000000U));
    }

  private:
    /// 128 pieces an octave: their index is the exponent and the first seven bits of the mantissa.
    static constexpr int kShift = 23 - 7;

    struct Piece {
        float base, slope;
    };
    std::uint32_t first_;
    std::size_t last_;
    std::vector<Piece> pieces_;
};

#ifdef ORVANEL_SSE2

inline FloatLanes CurveTable::operator()(FloatLanes x) const {
    static_assert(sizeof(Piece) == 8);
    const __m128 magnitudeBits = _mm_castsi128_ps(_mm_set1_epi32(0x7FFFFFFF));
    const __m128 magnitude = _mm_and_ps(x.vector(), magnitudeBits);
    // Positive numbers are ordered as their bits are.
    const auto first = _mm_set1_epi32(static_cast<int>(first_));
    const auto last = _mm_set1_epi32(static_cast<int>(first_ + (static_cast<std::uint32_t>(last_) << kShift)));
    const __m128 inside = _mm_min_ps(_mm_max_ps(magnitude, _mm_castsi128_ps(first)), _mm_castsi128_ps(last));
    const __m128i index = _mm_srli_epi32(_mm_sub_epi32(_mm_castps_si128(inside), first), kShift);
    const auto piece = [this](int i) { return reinterpret_cast<const __m64 *>(&pieces_[static_cast<std::size_t>(i)]); };
    __m128 low = _mm_loadl_pi(_mm_setzero_ps(), piece(_mm_extract_epi16(index, 0)));
    low = _mm_loadh_pi(low, piece(_mm_extract_epi16(index, 2)));
    __m128 high = _mm_loadl_pi(_mm_setzero_ps(), piece(_mm_extract_epi16(index, 4)));
    high = _mm_loadh_pi(high, piece(_mm_extract_epi16(index, 6)));
    const __m128 base = _mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0));
    const __m128 slope = _mm_shuffle_ps(low, high, _MM_SHUFFLE(3, 1, 3, 1));
    const __m128 value = _mm_add_ps(base, _mm_mul_ps(slope, magnitude));
    return FloatLanes(_mm_or_ps(value, _mm_andnot_ps(magnitudeBits, x.vector())));
}

#else

inline FloatLanes CurveTable::operator()(FloatLanes x) const {
    float values[FloatLanes::kCount];
    x.store(values);
    for (float &value : values)
        value = (*this)(value);
    return FloatLanes::load(values);
}

#endif

/// From code values (0 black, 1 white) to light and back.
struct LightCurve {
    CurveTable decode;
    CurveTable encode;
};

/// The curve of a clip with that transfer tag (AVColorTransferCharacteristic). What is not PQ, HLG or a plain power is
/// meant for a reference display: its 2.4th power (BT.1886).
const LightCurve &lightCurveOf(int transfer);

/// AVCOL_TRC_UNSPECIFIED.
inline constexpr int kUnknownTransfer = 2;

} // namespace hostkit
