// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "overlay/types/outline_points.h"

namespace Quill {

/// One keyframe: the outline stored for one time position. Field order is part of the boundary.
///
/// A new record is all zero. The mask buffer holds a row list (see mask/mask_handler.h) as little-endian 16-bit values
/// and stays empty until a mask is made.
struct KeyFrameMaskInfo {
    std::int64_t duration = 0;    ///< time position in the host's unit
    std::vector<MPoint> points;   ///< display pixels
    std::vector<MPointF> pointsF; ///< fractions of the placement rectangle
    PixelRect placement;          ///< the video rectangle when the record was last filled
    std::uint16_t maskWidth = 0;  ///< overlay surface size, pixels
    std::uint16_t maskHeight = 0;
    std::vector<std::uint8_t> maskBuffer;
};

} // namespace Quill
