// SPDX-License-Identifier: MIT
#pragma once

#include "canvas/pixel.h"
#include "platform/sse2.h"

namespace canvas {

/// Four neighbouring pixels. This form says what the results are; the other one gives the same.
class PortableFourPixels {
  public:
    PortableFourPixels(Pixel first, Pixel second, Pixel third, Pixel fourth) : m_pixels{first, second, third, fourth} {}

    static PortableFourPixels load(const Pixel *pixels) { return {pixels[0], pixels[1], pixels[2], pixels[3]}; }
    void store(Pixel *pixels) const {
        for (int i = 0; i < 4; ++i)
            pixels[i] = m_pixels[i];
    }

    /// Whether in no place both are anything but transparent.
    friend bool areDisjoint(const PortableFourPixels &a, const PortableFourPixels &b) {
        return a.all([&](int i) { return a.m_pixels[i] == kTransparent || b.m_pixels[i] == kTransparent; });
    }
    /// Both of two that are disjoint.
    friend PortableFourPixels operator|(const PortableFourPixels &a, const PortableFourPixels &b) {
        return a.with(b, [](Pixel first, Pixel second) { return first | second; });
    }
    /// `source` laid over `below`, place by place.
    friend PortableFourPixels over(const PortableFourPixels &below, const PortableFourPixels &source) {
        return below.with(source, [](Pixel under, Pixel upper) { return over(under, upper); });
    }

  private:
    template <typename Test>
    bool all(Test test) const {
        return test(0) && test(1) && test(2) && test(3);
    }
    template <typename Combine>
    PortableFourPixels with(const PortableFourPixels &other, Combine combine) const {
        return {combine(m_pixels[0], other.m_pixels[0]), combine(m_pixels[1], other.m_pixels[1]),
                combine(m_pixels[2], other.m_pixels[2]), combine(m_pixels[3], other.m_pixels[3])};
    }

    Pixel m_pixels[4];
};

#ifdef ORVANEL_SSE2

class FourPixels {
  public:
    FourPixels(Pixel first, Pixel second, Pixel third, Pixel fourth)
        : m_pixels(_mm_unpacklo_epi64(_mm_unpacklo_epi32(one(first), one(second)),
                                      _mm_unpacklo_epi32(one(third), one(fourth)))) {}

    static FourPixels load(const Pixel *pixels) {
        return FourPixels(_mm_loadu_si128(reinterpret_cast<const __m128i *>(pixels)));
    }
    void store(Pixel *pixels) const { _mm_storeu_si128(reinterpret_cast<__m128i *>(pixels), m_pixels); }

    friend bool areDisjoint(FourPixels a, FourPixels b) {
        return isEverywhere(_mm_or_si128(equal(a.m_pixels, kTransparent), equal(b.m_pixels, kTransparent)));
    }
    friend FourPixels operator|(FourPixels a, FourPixels b) { return FourPixels(_mm_or_si128(a.m_pixels, b.m_pixels)); }

    // The last case of over() for single pixels: the others are its limits, but for nothing over nothing, whose weight
    // of 0 becomes 1 here. Sums stay below 2^24, where single precision is exact. Their quotients cannot be rounded up
    // to the next integer: what a quotient below 256 lacks to that is at least 1 / 65025, and half a unit in its last
    // place is at most 1 / 131072.
    friend FourPixels over(FourPixels below, FourPixels source) {
        const __m128 full = _mm_set1_ps(255);
        const __m128 sourceAlpha = channel<24>(source.m_pixels);
        const __m128 sourceWeight = _mm_mul_ps(sourceAlpha, full);
        const __m128 belowWeight = _mm_mul_ps(channel<24>(below.m_pixels), _mm_sub_ps(full, sourceAlpha));
        const __m128 weight = _mm_max_ps(_mm_add_ps(sourceWeight, belowWeight), _mm_set1_ps(1));
        const __m128i wholeWeight = _mm_cvttps_epi32(weight);
        const __m128 half = _mm_cvtepi32_ps(_mm_srli_epi32(wholeWeight, 1));
        const auto mixed = [&](__m128 upper, __m128 under) {
            const __m128 sum = _mm_add_ps(_mm_mul_ps(upper, sourceWeight), _mm_mul_ps(under, belowWeight));
            return _mm_cvttps_epi32(_mm_div_ps(_mm_add_ps(sum, half), weight));
        };
        const __m128i blue = mixed(channel<0>(source.m_pixels), channel<0>(below.m_pixels));
        const __m128i green = mixed(channel<8>(source.m_pixels), channel<8>(below.m_pixels));
        const __m128i red = mixed(channel<16>(source.m_pixels), channel<16>(below.m_pixels));
        // dividedBy255()
        const __m128i raised = _mm_add_epi32(wholeWeight, _mm_set1_epi32(128));
        const __m128i alpha = _mm_srli_epi32(_mm_add_epi32(raised, _mm_srli_epi32(raised, 8)), 8);
        return FourPixels(_mm_or_si128(_mm_or_si128(blue, _mm_slli_epi32(green, 8)),
                                       _mm_or_si128(_mm_slli_epi32(red, 16), _mm_slli_epi32(alpha, 24))));
    }

  private:
    explicit FourPixels(__m128i pixels) : m_pixels(pixels) {}

    static __m128i one(Pixel pixel) { return _mm_cvtsi32_si128(static_cast<int>(pixel)); }
    static __m128i equal(__m128i pixels, Pixel color) {
        return _mm_cmpeq_epi32(pixels, _mm_set1_epi32(static_cast<int>(color)));
    }
    static bool isEverywhere(__m128i mask) { return _mm_movemask_epi8(mask) == 0xFFFF; }
    template <int Shift>
    static __m128 channel(__m128i pixels) {
        return _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(pixels, Shift), _mm_set1_epi32(255)));
    }

    __m128i m_pixels;
};

#else

using FourPixels = PortableFourPixels;

#endif

} // namespace canvas
