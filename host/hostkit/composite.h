// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "hostkit/image.h"
#include "hostkit/mask.h"
#include "platform/win_types.h"

namespace hostkit {

/// Lays the overlay over `frame`. `overlay` is what PrepareKeyframe returns: straight-alpha BGRA of the display's size,
/// rows without padding; `length` is GetBufferLen. Throws std::invalid_argument when the length is not the frame's.
void compositeOverlay(Image &frame, const BYTE *overlay, std::size_t length);

/// Mixes a colour into what the mask covers. `strength` is 0 (nothing) to 1 (the bare colour).
void tint(Image &image, const Mask &mask, std::uint8_t blue, std::uint8_t green, std::uint8_t red, double strength);

} // namespace hostkit
