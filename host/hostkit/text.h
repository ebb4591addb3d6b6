// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "hostkit/image.h"

namespace hostkit {

/// Writes one line with its top left corner at (left, top); letters come out as capitals, what the font lacks as '?'.
/// `scale` is the size of one font pixel, `rgb` 0xRRGGBB. What leaves the image is cut off.
void drawText(Image &image, int left, int top, const std::string &text, int scale, std::uint32_t rgb);
/// Pixels that a line takes.
int textWidth(const std::string &text, int scale);
int textHeight(int scale);

} // namespace hostkit
