// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "mask/mask_handler.h"
#include "overlay/types/outline_points.h"

/// The outline sampled along its segments, for finding the segment under the pointer.
class LineSamples {
  public:
    /// Resamples; `density` is the display width (a finer list on a wider display). Fewer than two points change
    /// nothing.
    void rebuild(const std::vector<MPoint> &outline, int density, int height);

    struct Hit {
        std::int32_t segment;
        MPoint sample;
    };
    /// The highest-numbered segment with a sample within `tolerance` pixels on both axes, and its first such sample.
    std::optional<Hit> find(std::int32_t x, std::int32_t y, std::int32_t tolerance) const;

  private:
    struct Bounds {
        std::int32_t left, top, right, bottom; ///< inclusive
    };
    Quill::SegmentSamples m_segments;
    std::vector<Bounds> m_bounds; ///< one a segment: a move over the picture rarely looks into any list
};
