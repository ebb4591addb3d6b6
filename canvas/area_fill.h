// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "canvas/surface.h"
#include "mask/scratch.h"
#include "overlay/types/outline_points.h"

namespace canvas {

/// Tints the inside of a closed outline: exactly the pixels that its mask holds, so that what is tinted is what will be
/// graded. The stroke covers the stairs of that edge; no smoothing is spent on them.
class AreaFill {
  public:
    /// Lays `color` over the mask's pixels. An outline that has no mask (open, fewer than three anchors, coordinates
    /// that the mask refuses) is left alone. Whether anything was filled; throws std::bad_alloc.
    bool fill(Surface &surface, std::span<const MPoint> points, Pixel color);

  private:
    Quill::RasterScratch m_scratch;
};

} // namespace canvas
