// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "canvas/surface.h"

namespace canvas {

/// What a stroke puts down at each nearness to its centre line: index 255 is the centre, 1 the rim, 0 unused.
using StrokePalette = std::array<Pixel, 256>;

/// A line with an edge on either side. Half widths in pixels from the centre line; the edge ends at `edgeHalfWidth`.
struct StrokeLook {
    float coreHalfWidth = 0;
    float edgeHalfWidth = 0;
    Pixel core = kTransparent;
    Pixel edge = kTransparent;

    /// Distance from the centre line at which nothing is left of the stroke, half a pixel of smoothing included.
    float reach() const { return edgeHalfWidth + 0.5F; }
    friend bool operator==(const StrokeLook &, const StrokeLook &) = default;
};

StrokePalette makePalette(const StrokeLook &look);

/// Draws anti-aliased lines. Lines are collected first and painted together: where they overlap, the nearest one counts,
/// so that joints and crossings are seamless and no pixel is blended twice.
class Stroker {
  public:
    /// Size of the surfaces to be painted; E_OUTOFMEMORY when the memory of one byte a pixel is not to be had.
    HRESULT resize(int width, int height);

    /// Starts a collection of lines that end at `reach` pixels from their centre.
    void begin(float reach);
    /// A line with round ends between two points in pixels; a pixel's centre has integer coordinates.
    void addLine(double x0, double y0, double x1, double y1);
    /// Lays the collected lines over the surface and forgets them.
    void paint(Surface &surface, const StrokePalette &palette);

  private:
    struct Free {
        void operator()(std::uint8_t *memory) const { std::free(memory); }
    };

    std::unique_ptr<std::uint8_t[], Free> m_nearness;
    TouchedBlocks m_touched;
    int m_width = 0;
    int m_height = 0;
    float m_reach = 0;
};

} // namespace canvas
