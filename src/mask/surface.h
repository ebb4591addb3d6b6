// SPDX-License-Identifier: MIT
#pragma once

// The 24-bit mask surface: blue, green, red; rows top to bottom; stride a multiple of four.

#include <cstdint>
#include <limits>

#include "platform/native_raster.h"

namespace Quill {

using platform::MaskSurface;

inline constexpr std::uint32_t kClearColour = platform::kMaskClearColour; ///< ARGB
inline constexpr std::uint32_t kFillColour = platform::kMaskFillColour;   ///< ARGB
inline constexpr int kBytesPerPixel = 3;

/// The three bytes of a pixel, read as (b0 << 16) | (b1 << 8) | b2.
constexpr std::uint32_t pixelKey(const std::uint8_t *pixel) {
    return static_cast<std::uint32_t>(pixel[0]) << 16 | static_cast<std::uint32_t>(pixel[1]) << 8 | pixel[2];
}

/// The key of a pixel of this colour: blue, green and red in that order.
constexpr std::uint32_t pixelKey(std::uint32_t argb) {
    return (argb & 0xFF) << 16 | (argb & 0xFF00) | (argb >> 16 & 0xFF);
}

/// What a background pixel reads as. A pixel is inside exactly when it reads as something else.
inline constexpr std::uint32_t kBackgroundKey = pixelKey(kClearColour);
static_assert(pixelKey(kFillColour) != kBackgroundKey);

/// Bytes of a row: three a pixel, rounded up to a multiple of four.
constexpr std::int64_t surfaceStride(int width) {
    return (std::int64_t{kBytesPerPixel} * width + 3) / 4 * 4;
}

/// Whether a surface of this size can be made: positive, and at most 2^31 - 1 bytes. One that cannot reads as all
/// background.
constexpr bool canMakeSurface(int width, int height) {
    return width > 0 && height > 0 && surfaceStride(width) * height <= std::numeric_limits<std::int32_t>::max();
}

/// Whether drawing on the caller's surface does anything. The platform refuses a size that is not positive and a stride
/// that is no multiple of four; a stride that does not hold a row, or runs backwards out of the buffer, is refused
/// here.
bool canDrawOn(const MaskSurface &surface);

} // namespace Quill
