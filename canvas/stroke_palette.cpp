// SPDX-License-Identifier: MIT
#include "canvas/stroke_palette.h"

#include <algorithm>

namespace canvas {
namespace {

// Part of a pixel at `distance` from the centre line that lies within `halfWidth` of it.
double coverage(float halfWidth, double distance) {
    const double inside = std::clamp(static_cast<double>(halfWidth) - distance + 0.5, 0.0, 1.0);
    return std::min(inside, 2 * static_cast<double>(halfWidth));
}

Pixel partly(Pixel color, double part) {
    return withCoverage(color, static_cast<std::uint32_t>(part * 255 + 0.5));
}

} // namespace

void StrokePalette::prepare(const StrokeLook &look) {
    if (look == m_look)
        return;
    m_look = look;
    m_pixels[0] = kTransparent;
    for (std::size_t nearness = 1; nearness < 256; ++nearness) {
        const double distance = static_cast<double>(255 - nearness) / look.stepsPerPixel();
        const Pixel edge = partly(look.edge, coverage(look.edgeHalfWidth, distance));
        const Pixel core = partly(look.core, coverage(look.coreHalfWidth, distance));
        m_pixels[nearness] = over(edge, core);
    }
}

} // namespace canvas
