// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

#include "canvas/pixel.h"

namespace canvas {

/// A line with an edge on either side. Half widths in pixels from the centre line; the edge ends at `edgeHalfWidth`.
struct StrokeLook {
    float coreHalfWidth = 0;
    float edgeHalfWidth = 0;
    Pixel core = kTransparent;
    Pixel edge = kTransparent;

    /// Distance from the centre line at which nothing is left of the stroke, half a pixel of smoothing included.
    float reach() const { return edgeHalfWidth + 0.5F; }
    /// Steps of nearness in a pixel. A whole number, so that lines through pixel centres meet their neighbours' centres
    /// at exactly representable distances and come out crisp.
    int stepsPerPixel() const { return static_cast<int>(255 / reach()); }
    friend bool operator==(const StrokeLook &, const StrokeLook &) = default;
};

/// What a stroke of one look puts down at each nearness to its centre line: 255 is the centre, one step less for each
/// part of a pixel further away (StrokeLook::stepsPerPixel); 0 is no stroke.
class StrokePalette {
  public:
    void prepare(const StrokeLook &look);

    /// The pixel at a nearness, over nothing.
    Pixel at(std::uint8_t nearness) const { return m_pixels[nearness]; }

  private:
    StrokeLook m_look;
    std::array<Pixel, 256> m_pixels{};
};

} // namespace canvas
