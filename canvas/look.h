// SPDX-License-Identifier: MIT
#pragma once

#include "canvas/pixel.h"
#include "canvas/stroke_palette.h"

// How the overlay looks: every width, size and fixed colour in one place. Lengths are pixels at scale 1.

namespace canvas {

/// Limits of the size scale; what lies beyond is drawn at the limit. The largest is what a picture of 4320 lines needs
/// for marks of the size that they have on one of 720.
inline constexpr float kSmallestScale = 0.5F;
inline constexpr float kLargestScale = 6.0F;
/// Largest width of a marker in pixels, whatever a caller asks for: more than the editor's largest at kLargestScale.
inline constexpr int kLargestMark = 64;

// The outline: a coloured core in a thin dark edge, so that one of them stands out from any picture.
inline constexpr float kOutlineCoreHalfWidth = 0.75F;
inline constexpr float kOutlineEdgeWidth = 1.0F;
inline constexpr float kHandleLineCoreHalfWidth = 0.5F;
inline constexpr float kHandleLineEdgeWidth = 1.0F;
inline constexpr Pixel kEdgeColor = 0xB0000000;

// Marks: a dark ring, a light ring, and the colour inside. Sizes are odd at every scale, so that a mark has a middle
// pixel.
inline constexpr float kAnchorRadius = 5.0F;
inline constexpr float kHandleRadius = 5.0F;
inline constexpr Pixel kDarkRing = 0xE0000000;
inline constexpr Pixel kLightRing = 0xFFFFFFFF;

// The selection rectangle: a line along the dark edge of the border.
inline constexpr Pixel kRegionEdge = 0x80000000;

/// The outline's line at one scale.
StrokeLook outlineLook(const OutlineStyle &style, float scale);
/// The line from an anchor to a handle's end.
StrokeLook handleLook(const OutlineStyle &style, float scale);

/// A length in pixels at one scale, rounded to nearest.
int scaled(float length, float scale);

/// Pixels from a mark's middle one to its outermost ones, and across each of its two rings. What lies within the dark
/// ring is opaque.
struct MarkRadii {
    int outer;
    int ring;

    MarkRadii(float radius, float scale);
    int opaque() const { return outer - ring; }
};

/// How much of a line between an anchor and a handle lies hidden below the mark at either end (pixels), with all of its
/// width. A round end is hidden, too.
double hiddenByMarks(const StrokeLook &line, float scale);

} // namespace canvas
