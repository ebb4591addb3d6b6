// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "hostkit/planes.h"

namespace hostkit {

/// How a picture is turned to stand upright: rows and columns are swapped first, then columns and rows mirrored.
struct Orientation {
    bool transposed = false;
    bool mirroredX = false;
    bool mirroredY = false;

    bool isUpright() const { return !transposed && !mirroredX && !mirroredY; }
    friend bool operator==(const Orientation &, const Orientation &) = default;
};

/// The orientation of a display matrix (nine numbers, ISO/IEC 14496-12, 16.16 in its left columns). False when it is
/// something else than quarter turns and mirrors.
bool readDisplayMatrix(const std::int32_t *matrix, Orientation &orientation);

/// Copies a picture turned; sizes and sampling of `target` are those of the turned picture.
void turn(const Planes &source, const Orientation &orientation, const Planes &target);

} // namespace hostkit
