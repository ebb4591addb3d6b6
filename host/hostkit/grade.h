// SPDX-License-Identifier: MIT
#pragma once

#include "hostkit/image.h"
#include "hostkit/mask.h"
#include "hostkit/planes.h"

namespace hostkit {

struct LightCurve;
struct QuickCurve;

/// Exposure and saturation inside of a mask, computed in linear light.
class Grade {
  public:
    /// Exposure in stops (each doubles the light), saturation as a factor (0 grey, 1 unchanged). Throws
    /// std::invalid_argument for an exposure beyond 16 stops either way or a saturation outside of 0 to 16.
    Grade(double exposureStops, double saturation);

    /// Grades a picture for a BT.1886 display; partial coverage mixes the graded light with the original light. Sizes
    /// have to agree, here and below.
    void applyInside(Image &image, const Mask &mask) const;
    /// Grades a video frame at its own depth and sampling. A colour sample becomes the mean of what its pixels would
    /// have, so a grade that changes nothing leaves every code as it is.
    void applyInside(const Planes &planes, const Mask &mask) const;

    /// Pixels that are graded together.
    static constexpr int kBlock = 64;
    struct Block {
        float red[kBlock], green[kBlock], blue[kBlock];
    };
    struct Light {
        const LightCurve &curve;
        float red, green, blue;            ///< shares of the luminance
        const QuickCurve *quick = nullptr; ///< taken instead of the other, where there is one
    };
    /// Grades code values (0 black, 1 white) under their coverage; all of a block is computed.
    void apply(Block &block, const std::uint8_t *coverage, const Light &light) const;

  private:
    template <bool kIsFull, typename Curve>
    void applyCurve(Block &block, const std::uint8_t *coverage, const Light &light, const Curve &curve) const;

    float gain_;
    float saturation_;
};

} // namespace hostkit
