// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "platform/sse2.h"

// Two numbers computed at once where the processor can. The portable form says what the results are; the other gives
// the same.

namespace platform {

/// Two double-precision numbers.
class PortableDoubleLanes {
  public:
    PortableDoubleLanes() = default;
    PortableDoubleLanes(double first, double second) : m_lanes{first, second} {}
    /// Both lanes the same.
    static PortableDoubleLanes all(double value) { return {value, value}; }

    friend PortableDoubleLanes operator+(const PortableDoubleLanes &a, const PortableDoubleLanes &b) {
        return {a.m_lanes[0] + b.m_lanes[0], a.m_lanes[1] + b.m_lanes[1]};
    }
    /// The lesser and the greater number of each lane; none of them may be NaN.
    friend PortableDoubleLanes lesser(const PortableDoubleLanes &a, const PortableDoubleLanes &b) {
        return {std::min(a.m_lanes[0], b.m_lanes[0]), std::min(a.m_lanes[1], b.m_lanes[1])};
    }
    friend PortableDoubleLanes greater(const PortableDoubleLanes &a, const PortableDoubleLanes &b) {
        return {std::max(a.m_lanes[0], b.m_lanes[0]), std::max(a.m_lanes[1], b.m_lanes[1])};
    }

    /// Both without their fractions. They fit into an int.
    void truncate(int &first, int &second) const {
        first = static_cast<int>(m_lanes[0]);
        second = static_cast<int>(m_lanes[1]);
    }

  private:
    double m_lanes[2];
};

#ifdef ORVANEL_SSE2

class DoubleLanes {
  public:
    DoubleLanes() = default;
    DoubleLanes(double first, double second) : m_lanes(_mm_setr_pd(first, second)) {}
    static DoubleLanes all(double value) { return DoubleLanes(_mm_set1_pd(value)); }

    friend DoubleLanes operator+(DoubleLanes a, DoubleLanes b) { return DoubleLanes(_mm_add_pd(a.m_lanes, b.m_lanes)); }
    friend DoubleLanes lesser(DoubleLanes a, DoubleLanes b) { return DoubleLanes(_mm_min_pd(a.m_lanes, b.m_lanes)); }
    friend DoubleLanes greater(DoubleLanes a, DoubleLanes b) { return DoubleLanes(_mm_max_pd(a.m_lanes, b.m_lanes)); }

    void truncate(int &first, int &second) const {
        const __m128i whole = _mm_cvttpd_epi32(m_lanes);
        first = _mm_cvtsi128_si32(whole);
        second = _mm_cvtsi128_si32(_mm_shuffle_epi32(whole, 1));
    }

  private:
    explicit DoubleLanes(__m128d lanes) : m_lanes(lanes) {}

    __m128d m_lanes;
};

#else

using DoubleLanes = PortableDoubleLanes;

#endif

} // namespace platform
