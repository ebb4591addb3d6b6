// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "canvas/surface.h"
#include "mask/flatten.h"

namespace canvas {

/// Fills the inside of a polyline: exactly the pixels that the mask of the same outline holds.
class AreaFill {
  public:
    /// Lays `color` over the pixels inside (even-odd); the last vertex joins the first. Throws std::bad_alloc.
    void fill(Surface &surface, std::span<const Quill::FixedPoint> vertices, Pixel color);

  private:
    void sortCrossings(int width, int firstRow, int endRow, std::span<const Quill::FixedPoint> vertices);

    std::vector<std::uint32_t> m_rowEnds; ///< where each row's crossings end
    Quill::PodBuffer<std::int32_t> m_crossings;
};

} // namespace canvas
