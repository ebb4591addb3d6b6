// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "canvas/testing/scenes.h"

namespace canvas::testing {

/// Writes 32-bit RGBA; false when the file could not be written.
bool writePicture(const std::string &path, const Picture &picture);

/// Reads a PNG file; an empty picture when that fails.
Picture readPicture(const std::string &path);

} // namespace canvas::testing
