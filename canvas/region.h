// SPDX-License-Identifier: MIT
#pragma once

#include "canvas/surface.h"

namespace canvas {

/// Lays a rectangle over the surface: a border of one pixel through the corners' pixel centres, the fill inside, and a
/// dark line around the border. Negative extents count from the other side; an extent of zero draws nothing.
void paintRegion(Surface &surface, const PixelRect &rect, Pixel border, Pixel fill);

} // namespace canvas
