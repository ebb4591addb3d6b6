// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "canvas/surface.h"

namespace canvas {

enum class MarkShape { Square, Round };

/// One layer of a mark: its full width in pixels, and its colour.
struct MarkLayer {
    double size;
    Pixel color;
};

/// A small picture around a middle pixel, drawn once and laid down many times.
class Stamp {
  public:
    /// Layers from the outermost inwards, each laid over the one before.
    Stamp(MarkShape shape, std::span<const MarkLayer> layers);

    /// Lays the picture over the surface, its middle pixel at (x, y), clipped.
    void paint(Surface &surface, std::int32_t x, std::int32_t y) const;

  private:
    int m_radius = 0; ///< pixels to either side of the middle one
    std::vector<Pixel> m_pixels;
};

/// Lays one mark of one colour over the surface, centred on a pixel: of any size, in time proportional to what is visible.
void paintMark(Surface &surface, MarkShape shape, std::int32_t x, std::int32_t y, std::uint32_t size, Pixel color);

} // namespace canvas
