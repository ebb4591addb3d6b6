// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mask/flatten.h"
#include "mask/raster_engine.h"
#include "overlay/types/outline_points.h"

namespace Quill {

/// Appends the points of one cubic segment, in order of travel, start and end included: flattened to 1 / density pixel,
/// rounded to whole pixels, repeats kept. `controls` start, two controls, end.
void sampleSegment(RasterEngine engine, const MPoint *const (&controls)[4], int density, VertexBuffer &scratch,
                   std::vector<MPoint> &samples);

} // namespace Quill
