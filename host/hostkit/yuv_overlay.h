// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "hostkit/planes.h"
#include "platform/win_types.h"

namespace hostkit {

/// Lays an overlay (straight-alpha BGRA of the frame's size, rows `pitch` bytes apart) over a video frame. A colour
/// sample takes the mean of what its pixels would have; what lies under no mark stays as it is.
void compositeOverlay(const Planes &planes, const BYTE *overlay, std::size_t pitch);

} // namespace hostkit
