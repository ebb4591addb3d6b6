// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The operating system's own rasterizer. Where there is one (GDI+ on Windows) the mask routines use it; elsewhere every
// function here says so and the portable engine, which follows the same rules, takes its place.

namespace platform {

/// An integer pixel position.
struct PixelPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;

    friend bool operator==(const PixelPoint &, const PixelPoint &) = default;
};

/// A caller-owned 24-bit surface: blue, green, red; rows top to bottom; stride in bytes, a multiple of 4.
struct MaskSurface {
    std::uint8_t *bits;
    int width;
    int height;
    int stride;
};

/// Colours of the surface, ARGB. What clears and fills a surface takes them from here, and so does who reads it.
inline constexpr std::uint32_t kMaskClearColour = 0x00000000;
inline constexpr std::uint32_t kMaskFillColour = 0xFF0000FF; // opaque blue

/// Whether this platform has a rasterizer of its own.
bool hasNativeRaster();

/// Clears the surface and fills the closed polygon, even-odd, aliased. Errors are swallowed.
void nativeFillPolygon(const MaskSurface &surface, const PixelPoint *points, int count);

/// Clears the surface and fills the closed outline of cubic Beziers (3 points an anchor) the same way.
void nativeFillBeziers(const MaskSurface &surface, const PixelPoint *points, int count);

/// Flattens one cubic Bezier with the given flatness (pixels) into integer points, appended to `points`.
/// False when the platform has no flattener to be relied upon.
bool nativeFlattenBezier(const PixelPoint (&controls)[4], float flatness, std::vector<PixelPoint> &points);

/// A position in pixels and parts of them.
struct PathPosition {
    float x = 0;
    float y = 0;

    friend bool operator==(const PathPosition &, const PathPosition &) = default;
};

/// Flattens a chain of cubic Beziers (1 + 3 n positions) and appends all vertices, start included, as they are. For
/// comparisons: unlike the above it asks whoever is there, at the flatnesses of fills.
bool nativeFlattenChain(const std::vector<PathPosition> &chain, float flatness, std::vector<PathPosition> &vertices);

/// Name and version of the platform's rasterizer, and of what stands in for it; empty without one.
std::string nativeRasterName();

} // namespace platform
