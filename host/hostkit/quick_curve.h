// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include "hostkit/float_lanes.h"

namespace hostkit {

/// A function as a table that is looked up and not interpolated.
class QuickTable {
  public:
    /// Entries from -reach to reach, that many a unit; beyond, the last one goes on.
    QuickTable(const std::function<double(double)> &function, int entries, int reach);

    /// What a loop that looks values up wants to have at hand. Valid as long as the table.
    class Lookup {
      public:
        explicit Lookup(const QuickTable &table)
            : entries_(FloatLanes::all(table.entries_)), middle_(FloatLanes::all(table.middle_)),
              last_(FloatLanes::all(table.last_)), values_(table.values_.data()) {}

        FloatLanes operator()(FloatLanes x) const {
            return at(lesser(greater(x * entries_ + middle_, FloatLanes::all(0)), last_));
        }

      private:
        FloatLanes at(FloatLanes place) const;

        FloatLanes entries_, middle_, last_;
        const float *values_;
    };
    Lookup lookup() const { return Lookup(*this); }

  private:
    float entries_;
    float middle_; ///< index of zero, and half an entry to round by
    float last_;
    std::vector<float> values_;
};

#ifdef ORVANEL_SSE2

inline FloatLanes QuickTable::Lookup::at(FloatLanes place) const {
    const __m128i index = _mm_cvttps_epi32(place.vector());
    const auto value = [this](int i) { return _mm_load_ss(values_ + i); };
    const __m128 low = _mm_unpacklo_ps(value(_mm_extract_epi16(index, 0)), value(_mm_extract_epi16(index, 2)));
    const __m128 high = _mm_unpacklo_ps(value(_mm_extract_epi16(index, 4)), value(_mm_extract_epi16(index, 6)));
    return FloatLanes(_mm_movelh_ps(low, high));
}

#else

inline FloatLanes QuickTable::Lookup::at(FloatLanes place) const {
    float values[FloatLanes::kCount];
    place.store(values);
    for (float &value : values)
        value = values_[static_cast<std::size_t>(value)];
    return FloatLanes::load(values);
}

#endif

/// A table over the root of its argument: near black, light is that much denser than codes.
class QuickRootTable {
  public:
    explicit QuickRootTable(QuickTable table) : table_(std::move(table)) {}

    auto lookup() const {
        return [find = table_.lookup()](FloatLanes x) { return find(signedRoot(x)); };
    }

  private:
    QuickTable table_;
};

/// A light curve (light_curve.h) that is good for codes of 8 bits, at half the time: what is decoded is encoded again
/// to within half a code.
struct QuickCurve {
    QuickTable decode;
    QuickRootTable encode;
};

/// The curve for that transfer tag; null for those that are too steep for it.
const QuickCurve *quickCurveOf(int transfer);

} // namespace hostkit
