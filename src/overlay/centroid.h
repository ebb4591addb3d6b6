// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "overlay/types/outline_points.h"
#include "platform/win_types.h"

/// A position in normalised video coordinates.
struct Centroid {
    float x = 0;
    float y = 0;
};

/// The centre of the points' bounding box, in single precision; (0, 0) for a single point. E_FAIL, with `centroid` as
/// it was, when there are no points or nowhere to store it.
HRESULT calculateCentroid(const std::vector<MPointF> *points, Centroid *centroid);
