// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hostkit/image.h"

namespace hostkit {

/// Writes a picture as 8-bit RGB. Throws MediaError when the file cannot be written.
void writePng(const std::string &path, const Image &image);

} // namespace hostkit
