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
    /// Lays `color` over the pixels inside (even-odd); the last vertex joins the first. E_OUTOFMEMORY leaves the surface as
    /// it was.
    HRESULT fill(Surface &surface, std::span<const Quill::FixedPoint> vertices, Pixel color);

  private:
    std::vector<std::uint32_t> m_rowStarts;
    std::vector<std::int32_t> m_crossings;
};

} // namespace canvas
