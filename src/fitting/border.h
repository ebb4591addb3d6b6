// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "fitting/bit_picture.h"

namespace fitting {

/// The border of a mask: a band two pixels wide, of the pixels inside that touch the outside and the pixels outside
/// that touch the inside, by an edge. Beyond the mask is outside but holds no pixel.
class Border {
  public:
    /// Throws std::bad_alloc also when there are more than kMostPixels.
    explicit Border(const BitPicture &mask);

    /// Rows from the top, columns from the left.
    const std::vector<Pixel> &pixels() const { return m_pixels; }
    bool contains(const Pixel &pixel) const { return m_image.test(pixel.x, pixel.y); }
    /// Place of a pixel in pixels().
    std::optional<std::uint32_t> indexOf(const Pixel &pixel) const;

    /// More than any mask of 8K has: beyond it memory, not time, would run out.
    static constexpr std::size_t kMostPixels = std::size_t{1} << 26;

  private:
    BitPicture m_image;
    std::vector<std::uint32_t> m_before; ///< for each word of the image, the pixels in the words before it
    std::vector<Pixel> m_pixels;
};

/// The outermost border pixels in eight directions, indexed like a numeric keypad: 1 top left, 2 top, 3 top right, 4
/// left, 6 right, 7 bottom left, 8 bottom, 9 bottom right; 0 and 5 hold nothing. (The keypad stands on its head: 8 is
/// the bottom.)
using ExtremeTable = std::array<Pixel, 10>;

/// Of equal pixels the first in the list counts for 3, 4, 8 and 9, and the last for 1, 2, 6 and 7. The list is not
/// empty.
ExtremeTable findExtremes(std::span<const Pixel> border);

} // namespace fitting
