// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mask/mask_handler.h"

// A normalised run list as an 8-bit picture, for diagnosis.

namespace overlay {

/// A picture of one byte a pixel: 255 inside a run, 0 elsewhere.
struct RunBitmap {
    int width = 0;
    int height = 0;
    int stride = 0;                   ///< the width rounded up to a multiple of 4
    std::vector<std::uint8_t> pixels; ///< height x stride bytes; empty when no such picture can exist
};

/// Draws runs, whose column and length are fractions of the width and whose row is one of the height.
///
/// Positions are those of fitting::spanOfRun: a row starts at row x width, not at row x stride, and a run that ends
/// with the last pixel is left out. Readers of these pictures have always seen them so. A size that is not positive or
/// that exceeds 2^31 - 1 bytes gives a picture without pixels.
RunBitmap drawRunBitmap(std::span<const Quill::MaskRunF> runs, int width, int height);

} // namespace overlay
