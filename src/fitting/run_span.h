// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "mask/mask_handler.h"

// Where a normalised run lies in a picture of one value a pixel, row behind row without a gap. One rule for everything
// that reads run lists; readers differ in one case only.

namespace fitting {

struct RunSpan {
    std::int64_t offset = 0; ///< of the first pixel, row x width + column
    std::int64_t length = 0; ///< pixels; 0 for a run that is not drawn

    std::int64_t end() const { return offset + length; }
};

/// What becomes of the end of a run that begins left of the picture and reaches past its right edge.
enum class LeftOverhang {
    Cut,    ///< cut at the right edge, like that of every other run
    RunsOn, ///< goes on in the rows below
};

/// Positions are rounded by adding one half and truncating. A run is clipped to columns 0 to width; a negative row
/// drops it and a row past the height counts as the height. A run whose end is not below width x height is dropped
/// whole, which takes in one that ends with the picture's last pixel: readers have always had it so. Sizes are
/// positive.
RunSpan spanOfRun(const Quill::MaskRunF &run, int width, int height, LeftOverhang overhang);

} // namespace fitting
