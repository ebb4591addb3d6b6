// SPDX-License-Identifier: MIT
#pragma once

// An outline to runs in any of the three encodings, by either of two routes that give the same runs:
//
// - Direct: flatten, find the crossings, pair them up. No surface; cost grows with edges, rows and runs.
// - Surface: fill the 24-bit surface and read its pixels. The definition of the result, the way through the platform's
//   own engine, and what the direct route is tested against.

#include <cstdint>

#include "mask/raster_engine.h"
#include "mask/scratch.h"

namespace Quill {

enum class EncodeRoute { Direct, Surface };

/// Direct, unless the build makes masks with the platform's engine (see maskEngine).
EncodeRoute defaultEncodeRoute();

/// What to encode. `points` as in buildOutline, count >= 9; `exclusion` null or width x height bytes.
struct EncodeJob {
    const MPoint *points;
    int count;
    int width;
    int height;
    bool invert = false;
    const std::uint8_t *exclusion = nullptr;
};

/// Columns beyond this are not encoded: run fields are 16 bits wide and 65535 stands for "no column".
inline constexpr int kMaxEncodedWidth = 65535;

/// Where and how.
struct EncodeContext {
    RasterScratch &scratch;
    EncodeRoute route;
    RasterEngine engine; ///< who fills, on the surface route
};

/// The runs of the job, in scratch memory that lasts until its next use.
const PodBuffer<MaskRun> &encodeRuns(const EncodeContext &context, const EncodeJob &job);
const PodBuffer<std::uint16_t> &encodeRowList(const EncodeContext &context, const EncodeJob &job);
const PodBuffer<MaskRunF> &encodeFractions(const EncodeContext &context, const EncodeJob &job, std::int32_t originX,
                                           std::int32_t originY);

} // namespace Quill
