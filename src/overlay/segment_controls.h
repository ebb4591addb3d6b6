// SPDX-License-Identifier: MIT
#pragma once

// Where the control points of new segments stand.

#include <array>
#include <utility>

#include "overlay/types/outline_points.h"

/// The control points of a straight segment, at one quarter and three quarters of the way.
std::pair<MPoint, MPoint> straightControls(const MPoint &from, const MPoint &to);

/// An inserted point between the control points of the two segments that it makes of one.
using InsertedRun = std::array<MPoint, 5>;

/// The anchors that an insertion looks at: `end` is whatever follows the segment, an anchor or not.
struct SegmentNeighbours {
    const MPoint &before; ///< the anchor before `begin`
    const MPoint &begin;
    const MPoint &end;
    const MPoint &after; ///< the anchor after `end`
};

/// What stands between `begin` and `end` with `point` inserted. Of a straight segment both parts are straight; of a
/// bent one both are bent, smoothly.
InsertedRun insertedRun(const MPoint &point, const SegmentNeighbours &segment);
