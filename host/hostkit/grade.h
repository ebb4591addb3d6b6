// SPDX-License-Identifier: MIT
#pragma once

#include "hostkit/image.h"
#include "hostkit/mask.h"

namespace hostkit {

/// Exposure and saturation inside of a mask, computed in linear light (the display's 2.4 power, BT.709 primaries).
class Grade {
  public:
    /// Exposure in stops (each doubles the light), saturation as a factor (0 grey, 1 unchanged). Throws
    /// std::invalid_argument for an exposure beyond 16 stops either way or a saturation outside of 0 to 16.
    Grade(double exposureStops, double saturation);

    /// Grades `image`; partial coverage mixes the graded light with the original light. Sizes have to agree.
    void applyInside(Image &image, const Mask &mask) const;

  private:
    float gain_;
    float saturation_;
};

} // namespace hostkit
