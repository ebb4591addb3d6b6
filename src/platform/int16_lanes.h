// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/sse2.h"

// Several values computed at once where the processor can. The portable forms say what the results are; the others give
// the same.

namespace platform {

/// Eight 16-bit integers.
class PortableInt16Lanes {
  public:
    static constexpr int kCount = 8;

    /// All lanes the low 16 bits of `value`.
    static PortableInt16Lanes all(int value) {
        return from([=](int) { return value; });
    }
    /// 0, 1, 2, ... 7.
    static PortableInt16Lanes ramp() {
        return from([](int i) { return i; });
    }

    /// Sums, differences and products wrap around.
    friend PortableInt16Lanes operator+(const PortableInt16Lanes &a, const PortableInt16Lanes &b) {
        return from([&](int i) { return a.m_lanes[i] + b.m_lanes[i]; });
    }
    friend PortableInt16Lanes operator-(const PortableInt16Lanes &a, const PortableInt16Lanes &b) {
        return from([&](int i) { return a.m_lanes[i] - b.m_lanes[i]; });
    }
    friend PortableInt16Lanes operator*(const PortableInt16Lanes &a, const PortableInt16Lanes &b) {
        return from([&](int i) { return a.m_lanes[i] * b.m_lanes[i]; });
    }
    /// The magnitude; -32768 stays.
    PortableInt16Lanes magnitude() const {
        return from([this](int i) { return m_lanes[i] < 0 ? -m_lanes[i] : m_lanes[i]; });
    }
    /// Arithmetic shift to the right.
    template <int Bits>
    PortableInt16Lanes shifted() const {
        return from([this](int i) { return m_lanes[i] >> Bits; });
    }
    /// The lanes where `a` is less than `b`, 0 elsewhere.
    PortableInt16Lanes where(const PortableInt16Lanes &a, const PortableInt16Lanes &b) const {
        return from([&](int i) { return a.m_lanes[i] < b.m_lanes[i] ? m_lanes[i] : 0; });
    }
    /// Raises eight bytes to the lanes, which are limited to 0..255.
    void raise(std::uint8_t *bytes) const {
        for (int i = 0; i < kCount; ++i)
            bytes[i] = std::max(bytes[i], static_cast<std::uint8_t>(std::clamp<int>(m_lanes[i], 0, 255)));
    }

  private:
    template <typename Value>
    static PortableInt16Lanes from(Value value) {
        PortableInt16Lanes lanes;
        for (int i = 0; i < kCount; ++i)
            lanes.m_lanes[i] = static_cast<std::int16_t>(value(i));
        return lanes;
    }

    std::int16_t m_lanes[kCount];
};

#ifdef ORVANEL_SSE2

class Int16Lanes {
  public:
    static constexpr int kCount = 8;

    static Int16Lanes all(int value) { return Int16Lanes(_mm_set1_epi16(static_cast<short>(value))); }
    static Int16Lanes ramp() { return Int16Lanes(_mm_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7)); }

    friend Int16Lanes operator+(Int16Lanes a, Int16Lanes b) { return Int16Lanes(_mm_add_epi16(a.m_lanes, b.m_lanes)); }
    friend Int16Lanes operator-(Int16Lanes a, Int16Lanes b) { return Int16Lanes(_mm_sub_epi16(a.m_lanes, b.m_lanes)); }
    friend Int16Lanes operator*(Int16Lanes a, Int16Lanes b) {
        return Int16Lanes(_mm_mullo_epi16(a.m_lanes, b.m_lanes));
    }
    Int16Lanes magnitude() const {
        return Int16Lanes(_mm_max_epi16(m_lanes, _mm_sub_epi16(_mm_setzero_si128(), m_lanes)));
    }
    template <int Bits>
    Int16Lanes shifted() const {
        return Int16Lanes(_mm_srai_epi16(m_lanes, Bits));
    }
    Int16Lanes where(Int16Lanes a, Int16Lanes b) const {
        return Int16Lanes(_mm_and_si128(m_lanes, _mm_cmplt_epi16(a.m_lanes, b.m_lanes)));
    }
    void raise(std::uint8_t *bytes) const {
        auto *const target = reinterpret_cast<__m128i *>(bytes);
        _mm_storel_epi64(target, _mm_max_epu8(_mm_loadl_epi64(target), _mm_packus_epi16(m_lanes, m_lanes)));
    }

  private:
    explicit Int16Lanes(__m128i lanes) : m_lanes(lanes) {}

    __m128i m_lanes;
};

#else

using Int16Lanes = PortableInt16Lanes;

#endif

} // namespace platform
