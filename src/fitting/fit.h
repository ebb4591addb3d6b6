// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "fitting/bit_picture.h"
#include "fitting/border.h"
#include "fitting/nearest.h"

namespace fitting {

/// A place of the outline as fractions of the mask's size.
struct Place {
    float x = 0;
    float y = 0;
};

/// The mask that an outline is fitted to, with all that the fit asks of it. Making one shuffles the border, so every
/// choice after that is random too.
class Target {
  public:
    /// Nothing when the runs set no pixel, when the size is none a mask can have, or when memory does not suffice.
    static std::optional<Target> decode(std::span<const Quill::MaskRunF> runs, int width, int height);

    const Pixel &centroid() const { return m_centroid; }
    const ExtremeTable &extremes() const { return m_extremes; }

    Place placeOf(const Pixel &pixel) const;
    /// Truncates; what does not fit 32 bits becomes the smallest integer.
    Pixel pixelOf(const Place &place) const;
    /// The longest distance between neighbouring anchors, in pixels, that gets no new anchor.
    double longestGap() const;

    /// Moves places to the border, `shift` pixels away from where they are: one that hits it stays, another goes to one
    /// of the five nearest pixels of a random half of the border. Returns how many hit it.
    std::size_t snap(std::span<Place> places, const Pixel &shift);
    /// One of the five border pixels nearest to the middle between two.
    Pixel fillGap(const Pixel &a, const Pixel &b);
    /// Numbers of the places in border order, see trace.h. A place counts as on the border when a pixel of that lies
    /// within `reach` pixels.
    std::vector<std::uint32_t> trace(std::span<const Place> places, double reach);

  private:
    Target(BitPicture mask, int width, int height);
    /// One of the nearest among the first `limit` pixels of the shuffled border.
    Pixel chooseNear(const Pixel &target, std::size_t limit);

    int m_width;
    int m_height;
    BitPicture m_mask;
    Border m_border;
    Pixel m_centroid;
    ExtremeTable m_extremes;
    std::vector<Pixel> m_shuffled;
    NearestPixels m_nearest;
};

} // namespace fitting
