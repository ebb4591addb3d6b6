// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hostkit/mask.h"

namespace hostkit {

/// The bytes of an 8-bit grey PNG file of a mask. Its last column and row are repeated up to `width` and `height`.
std::string encodePng(const Mask &mask, int width, int height);

/// Writes such a file. Throws MediaError when it cannot be written.
void writePng(const std::string &path, const Mask &mask, int width, int height);
void writePng(const std::string &path, const Mask &mask);

} // namespace hostkit
