// SPDX-License-Identifier: MIT
#pragma once

// Four single-precision numbers computed at once where the processor can. The portable form says what the results are;
// the other gives the same.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "platform/sse2.h"

namespace hostkit {

class PortableFloatLanes {
  public:
    static constexpr int kCount = 4;

    PortableFloatLanes() = default;
    static PortableFloatLanes all(float value) {
        return from([=](int) { return value; });
    }
    static PortableFloatLanes load(const float *values) {
        return from([=](int i) { return values[i]; });
    }
    static PortableFloatLanes load(const std::uint8_t *values) {
        return from([=](int i) { return static_cast<float>(values[i]); });
    }
    static PortableFloatLanes load(const std::uint16_t *values) {
        return from([=](int i) { return static_cast<float>(values[i]); });
    }
    void store(float *values) const { std::copy_n(m_lanes, kCount, values); }
    /// The integers below; they have to fit.
    void store(std::uint8_t *values) const {
        for (int i = 0; i < kCount; ++i)
            values[i] = static_cast<std::uint8_t>(m_lanes[i]);
    }
    void store(std::uint16_t *values) const {
        for (int i = 0; i < kCount; ++i)
            values[i] = static_cast<std::uint16_t>(m_lanes[i]);
    }

    friend PortableFloatLanes operator+(const PortableFloatLanes &a, const PortableFloatLanes &b) {
        return from([&](int i) { return a.m_lanes[i] + b.m_lanes[i]; });
    }
    friend PortableFloatLanes operator-(const PortableFloatLanes &a, const PortableFloatLanes &b) {
        return from([&](int i) { return a.m_lanes[i] - b.m_lanes[i]; });
    }
    friend PortableFloatLanes operator*(const PortableFloatLanes &a, const PortableFloatLanes &b) {
        return from([&](int i) { return a.m_lanes[i] * b.m_lanes[i]; });
    }
    friend PortableFloatLanes lesser(const PortableFloatLanes &a, const PortableFloatLanes &b) {
        return from([&](int i) { return std::min(a.m_lanes[i], b.m_lanes[i]); });
    }
    friend PortableFloatLanes greater(const PortableFloatLanes &a, const PortableFloatLanes &b) {
        return from([&](int i) { return std::max(a.m_lanes[i], b.m_lanes[i]); });
    }
    /// The root of the magnitude, with the sign.
    friend PortableFloatLanes signedRoot(const PortableFloatLanes &a) {
        return from([&](int i) { return std::copysign(std::sqrt(std::abs(a.m_lanes[i])), a.m_lanes[i]); });
    }

  private:
    template <typename Value>
    static PortableFloatLanes from(Value value) {
        PortableFloatLanes lanes;
        for (int i = 0; i < kCount; ++i)
            lanes.m_lanes[i] = value(i);
        return lanes;
    }

    float m_lanes[kCount];
};

#ifdef ORVANEL_SSE2

class FloatLanes {
  public:
    static constexpr int kCount = 4;

    FloatLanes() = default;
    static FloatLanes all(float value) { return FloatLanes(_mm_set1_ps(value)); }
    static FloatLanes load(const float *values) { return FloatLanes(_mm_loadu_ps(values)); }
    static FloatLanes load(const std::uint8_t *values) {
        std::int32_t four = 0;
        std::memcpy(&four, values, sizeof four);
        const __m128i zero = _mm_setzero_si128();
        const __m128i wide = _mm_unpacklo_epi8(_mm_cvtsi32_si128(four), zero);
        return FloatLanes(_mm_cvtepi32_ps(_mm_unpacklo_epi16(wide, zero)));
    }
    static FloatLanes load(const std::uint16_t *values) {
        const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(values));
        return FloatLanes(_mm_cvtepi32_ps(_mm_unpacklo_epi16(four, _mm_setzero_si128())));
    }
    void store(float *values) const { _mm_storeu_ps(values, m_lanes); }
    void store(std::uint8_t *values) const {
        const __m128i whole = _mm_cvttps_epi32(m_lanes);
        const __m128i packed = _mm_packs_epi32(whole, whole);
        const std::int32_t four = _mm_cvtsi128_si32(_mm_packus_epi16(packed, packed));
        std::memcpy(values, &four, sizeof four);
    }
    void store(std::uint16_t *values) const {
        // There is no packing without a sign.
        const __m128i low = _mm_sub_epi32(_mm_cvttps_epi32(m_lanes), _mm_set1_epi32(32768));
        const __m128i packed = _mm_xor_si128(_mm_packs_epi32(low, low), _mm_set1_epi16(-32768));
        _mm_storel_epi64(reinterpret_cast<__m128i *>(values), packed);
    }
    explicit FloatLanes(__m128 lanes) : m_lanes(lanes) {}
    __m128 vector() const { return m_lanes; }

    friend FloatLanes operator+(FloatLanes a, FloatLanes b) { return FloatLanes(_mm_add_ps(a.m_lanes, b.m_lanes)); }
    friend FloatLanes operator-(FloatLanes a, FloatLanes b) { return FloatLanes(_mm_sub_ps(a.m_lanes, b.m_lanes)); }
    friend FloatLanes operator*(FloatLanes a, FloatLanes b) { return FloatLanes(_mm_mul_ps(a.m_lanes, b.m_lanes)); }
    friend FloatLanes lesser(FloatLanes a, FloatLanes b) { return FloatLanes(_mm_min_ps(a.m_lanes, b.m_lanes)); }
    friend FloatLanes greater(FloatLanes a, FloatLanes b) { return FloatLanes(_mm_max_ps(a.m_lanes, b.m_lanes)); }
    friend FloatLanes signedRoot(FloatLanes a) {
        const __m128 sign = _mm_set1_ps(-0.0F);
        const __m128 root = _mm_sqrt_ps(_mm_andnot_ps(sign, a.m_lanes));
        return FloatLanes(_mm_or_ps(root, _mm_and_ps(sign, a.m_lanes)));
    }

  private:
    __m128 m_lanes;
};

#else

using FloatLanes = PortableFloatLanes;

#endif

} // namespace hostkit
