// SPDX-License-Identifier: MIT
#pragma once

// Point arrays to the closed polyline that a fill covers.

#include "mask/flatten.h"
#include "overlay/types/outline_points.h"

namespace Quill {

/// Three anchors: what an outline needs before there is a mask of it.
inline constexpr int kMinOutlinePoints = 9;

/// Whether every coordinate can be drawn. A figure with one that cannot is not drawn at all, as the platform's fill has
/// it; coordinates born from NaN arrive as INT32_MIN and end here.
bool isDrawable(const MPoint *points, int count);

/// The same for the points that an outline's figure has (see buildOutline). Needs count >= 4.
bool isDrawableOutline(const MPoint *points, int count);

/// Replaces `polyline` by the polygon's vertices. Empty when the figure is not drawable.
void buildPolygon(const MPoint *points, int count, VertexBuffer &polyline);

/// Replaces `polyline` by the flattened outline: three points an anchor, the closing segment from the last anchor to
/// point 0. Segments off the surface become chords. Empty when the figure is not drawable. Needs count >= 4.
///
/// A count that is no multiple of three is no chain of segments: the path then holds the closing segment alone, which
/// starts at point count - 3, and the fill closes it by its chord.
void buildOutline(const MPoint *points, int count, const FlattenClip &clip, VertexBuffer &polyline);

} // namespace Quill
