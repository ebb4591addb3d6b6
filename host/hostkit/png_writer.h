// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hostkit/image.h"
#include "hostkit/mask.h"

namespace hostkit {

/// Writes a picture as 8-bit RGB. Throws MediaError when the file cannot be written.
void writePng(const std::string &path, const Image &image);
/// Writes a mask as 8-bit grey.
void writePng(const std::string &path, const Mask &mask);

} // namespace hostkit
