// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "hostkit/image.h"
#include "hostkit/mask.h"

namespace hostkit {

/// A grid of labelled frames: each shows the whole frame under its overlay and, beside it, the surroundings of its mask
/// enlarged with the mask's border drawn in, because the fit of a mask a few pixels wide cannot be judged in a small
/// picture.
class ContactSheet {
  public:
    /// `frameWidth` and `frameHeight` are what a whole frame is shrunk or enlarged to.
    ContactSheet(int columns, int frameWidth, int frameHeight);

    /// Makes a picture of that size from a part of a frame.
    using PartOf = std::function<Image(const PixelRect &part, int width, int height)>;

    /// Adds a frame of the mask's size, bare and under its overlay. Parts begin at even places.
    void add(const PartOf &frame, const PartOf &overlaid, const Mask &mask, const std::string &label, bool highlighted);
    /// Adds a frame, bare and under its overlay. A highlighted label (a keyframe's) stands out.
    void add(const Image &frame, const Image &overlaid, const Mask &mask, const std::string &label, bool highlighted);
    int count() const { return static_cast<int>(cells_.size()); }
    /// The sheet. Throws std::invalid_argument when nothing was added.
    Image compose() const;

  private:
    Image enlargement(const PartOf &frame, const Mask &mask) const;

    int columns_;
    int frameWidth_;
    int frameHeight_;
    std::vector<Image> cells_;
};

} // namespace hostkit
