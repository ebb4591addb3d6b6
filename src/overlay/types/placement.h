// SPDX-License-Identifier: MIT
#pragma once

// The two mappings between normalised video coordinates and display pixels, and the narrowing that both need.

#include <cmath>
#include <cstdint>
#include <limits>

#include "overlay/types/outline_points.h"

/// Truncates toward zero. What does not fit 32 bits, NaN included, becomes INT32_MIN, as the x86 conversion gives it.
inline std::int32_t truncateToInt32(double value) {
    if (!(value > -2147483649.0 && value < 2147483648.0))
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

/// One axis of the placement rule: the single-precision product and sum, widened, plus one half, truncated.
inline std::int32_t placeCoordinate(float normalised, std::int32_t extent, std::int32_t origin) {
    const float product = static_cast<float>(extent) * normalised;
    const float sum = product + static_cast<float>(origin);
    return truncateToInt32(static_cast<double>(sum) + 0.5);
}

/// One axis of the reverse mapping. An extent of 0 gives a value that is not finite; nothing guards against it.
inline float normaliseCoordinate(std::int32_t pixel, std::int32_t extent, std::int32_t origin) {
    return static_cast<float>(static_cast<std::int64_t>(pixel) - origin) / static_cast<float>(extent);
}

/// The pixel point of a normalised one: type and curve flags copied, handle hidden.
inline MPoint placePoint(const MPointF &point, const PixelRect &rect) {
    return {point.type,
            placeCoordinate(point.x, rect.width, rect.left),
            placeCoordinate(point.y, rect.height, rect.top),
            point.curveIn,
            point.curveOut,
            0};
}

/// The normalised twin of a pixel point, all flags copied.
inline MPointF normalisePoint(const MPoint &point, const PixelRect &rect) {
    return {point.type,
            normaliseCoordinate(point.x, rect.width, rect.left),
            normaliseCoordinate(point.y, rect.height, rect.top),
            point.curveIn,
            point.curveOut,
            point.handleShown};
}
