// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

#include "mask/flatten.h"
#include "overlay/types/outline_points.h"

namespace canvas {

/// An outline as line segments, by the same flattening as the mask's fill, so that line and mask agree.
struct OutlinePath {
    Quill::VertexBuffer vertices; ///< the start point, then every vertex in order of travel
    bool closed = false;          ///< the last vertex lies at the start again, or next to it
};

/// Flattens a chain (anchor, control, control, ...) into `path`, whose memory is reused. 3n points are closed; control
/// points after the last anchor of any other count belong to no segment. Parts further than `margin` pixels outside the
/// surface become chords. Coordinates beyond what the arithmetic holds are drawn at its limit. Throws std::bad_alloc.
void flattenOutline(std::span<const MPoint> points, int width, int height, int margin, OutlinePath &path);

/// The anchor that a control point's handle starts from; `count` for a control point that has none.
std::size_t anchorOfControl(std::size_t control, std::size_t count);

} // namespace canvas
