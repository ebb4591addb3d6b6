// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "overlay/types/overlay_canvas.h"

// Pixels of the overlay surface: 0xAARRGGBB as one little-endian value, that is blue, green, red, alpha in memory, with
// straight alpha: a colour keeps its strength however transparent it is, and a renderer that blends with "source alpha,
// one minus source alpha" shows it as drawn.

namespace canvas {

using Pixel = std::uint32_t;

inline constexpr Pixel kTransparent = 0;

constexpr Pixel toPixel(const CanvasColor &color) {
    return Pixel{color.blue} | Pixel{color.green} << 8 | Pixel{color.red} << 16 | Pixel{color.alpha} << 24;
}

constexpr std::uint32_t alphaOf(Pixel pixel) {
    return pixel >> 24;
}

/// x / 255 rounded to nearest, for x up to 65025.
constexpr std::uint32_t dividedBy255(std::uint32_t x) {
    return (x + 128 + ((x + 128) >> 8)) >> 8;
}

/// The colour with its alpha multiplied by coverage / 255; transparent when nothing of it is left.
constexpr Pixel withCoverage(Pixel color, std::uint32_t coverage) {
    const std::uint32_t alpha = dividedBy255(alphaOf(color) * coverage);
    return alpha == 0 ? kTransparent : (color & 0x00FFFFFF) | alpha << 24;
}

/// `source` laid over `below` (Porter and Duff's "over", straight alpha in and out), rounded to nearest. Integers only,
/// so that the bytes are the same on every machine.
constexpr Pixel over(Pixel below, Pixel source) {
    const std::uint32_t sourceAlpha = alphaOf(source);
    const std::uint32_t belowAlpha = alphaOf(below);
    if (sourceAlpha == 0)
        return below;
    if (sourceAlpha == 255 || belowAlpha == 0)
        return source;
    const std::uint32_t rest = 255 - sourceAlpha;
    if (belowAlpha == 255) {
        const auto mixed = [&](int shift) {
            return dividedBy255((source >> shift & 255) * sourceAlpha + (below >> shift & 255) * rest) << shift;
        };
        return mixed(0) | mixed(8) | mixed(16) | 0xFF000000;
    }
    const std::uint32_t sourceWeight = sourceAlpha * 255;
    const std::uint32_t belowWeight = belowAlpha * rest;
    const std::uint32_t weight = sourceWeight + belowWeight; // 255 times the resulting alpha
    const auto mixed = [&](int shift) {
        const std::uint32_t sum = (source >> shift & 255) * sourceWeight + (below >> shift & 255) * belowWeight;
        return (sum + weight / 2) / weight << shift;
    };
    return mixed(0) | mixed(8) | mixed(16) | dividedBy255(weight) << 24;
}

} // namespace canvas
