// SPDX-License-Identifier: MIT
#pragma once

// Cubic Bezier segments to line segments, the one way that every part of the system does it: what the fill covers, what
// the sampler lists and what the canvas draws are the same vertices.

#include <array>
#include <cstdint>

#include "mask/pod_buffer.h"

namespace Quill {

/// A point in 28.4 fixed point: x and y in sixteenths of a pixel.
struct FixedPoint {
    std::int32_t x;
    std::int32_t y;

    friend bool operator==(const FixedPoint &, const FixedPoint &) = default;
};

inline constexpr std::int32_t kUnitsPerPixel = 16;

/// Largest magnitude of a pixel coordinate that a figure may have (2^23 - 1). A figure that exceeds it is not drawn.
inline constexpr std::int32_t kMaxPixelCoordinate = 8388607;

/// Largest distance in units between two control points of one segment, on either axis, that the arithmetic holds.
inline constexpr std::int32_t kMaxSegmentSpan = 1 << 30;

/// Start, two controls, end of one cubic segment.
using CubicControls = std::array<FixedPoint, 4>;

/// Line vertices in order of travel.
using VertexBuffer = PodBuffer<FixedPoint>;

/// The surface that a fill draws on, in pixels. A segment that lies wholly outside becomes its chord.
struct FlattenClip {
    std::int32_t width;
    std::int32_t height;
};

constexpr std::int32_t toFixed(std::int32_t pixel) {
    return pixel * kUnitsPerPixel;
}

/// Appends the vertices of one segment after its start point, its end included, each rounded to a unit and at most a
/// quarter of a pixel off the curve. A point gives one vertex, never none. Without `clip` nothing is cut short.
/// Needs: no two control points further apart than kMaxSegmentSpan on either axis.
void flattenSegment(const CubicControls &controls, VertexBuffer &vertices, const FlattenClip *clip = nullptr);

/// Whether the segment goes through the 32-bit arithmetic (control points within 1022 pixels of one another on each
/// axis) and not the 64-bit one. The two differ in how they round; this is the one place that chooses.
bool usesShortArithmetic(const CubicControls &controls);

} // namespace Quill
