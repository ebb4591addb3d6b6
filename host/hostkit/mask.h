// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "overlay/types/outline_points.h"

namespace hostkit {

/// A run as Convert2SelectionLineUS hands it out: first column and length over the mask's width, row over its height.
struct MaskRun {
    double x = 0;
    double y = 0;
    double length = 0;
};

/// Coverage of a picture, 0 (outside) to 255 (inside), one byte a pixel.
class Mask {
  public:
    /// Nothing covered. Throws std::invalid_argument unless both sizes are 1 to 32767.
    Mask(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }
    /// To be written to; row by row, and not beyond its end.
    std::uint8_t *row(int y) {
        firstRow_ = y < firstRow_ ? y : firstRow_;
        endRow_ = y < endRow_ ? endRow_ : y + 1;
        return coverage_.data() + offset(y);
    }
    const std::uint8_t *row(int y) const { return coverage_.data() + offset(y); }

    /// Replaces the contents by what the runs cover. Throws std::invalid_argument when a run leaves the mask.
    void setRuns(const std::vector<MaskRun> &runs);
    /// Swaps inside and outside.
    void invert();
    /// Softens the edge: full coverage begins `pixels` inside of it and ends `pixels` outside. `passes` shapes the
    /// ramp: 1 is a straight one, 2 is smooth at both ends, 3 comes close to a Gaussian. Nothing happens at 0 pixels.
    void feather(int pixels, int passes);

    /// Smallest rectangle that holds everything covered; all zero when nothing is.
    PixelRect bounds() const;
    /// Covered pixels, however little.
    std::size_t coveredPixels() const;
    int value(int x, int y) const;
    /// Whether a row is known to be empty without a look at it.
    bool isUntouched(int y) const { return y < firstRow_ || y >= endRow_; }
    /// Rows top to bottom.
    std::string bytes() const { return {coverage_.begin(), coverage_.end()}; }

  private:
    void clear();
    std::size_t offset(int y) const { return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_); }

    int width_;
    int height_;
    /// Nothing is covered above and below these rows: an outline is small against its picture, and a picture large.
    int firstRow_;
    int endRow_ = 0;
    std::vector<std::uint8_t> coverage_;
};

} // namespace hostkit
