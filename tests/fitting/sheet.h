// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "cases.h"

namespace fitting_quality {

/// A grid of pairs of pictures: a mask under the outline as it was drawn, and under the fitted one with its anchors.
class Sheet {
  public:
    explicit Sheet(int columns) : m_columns(columns) {}

    struct Outline {
        Pixels mask;                                    ///< what it covers
        std::vector<std::pair<double, double>> anchors; ///< in pixels
    };
    void add(const Pixels &mask, const Outline &drawn, const Outline &fitted);
    /// False when the file cannot be written.
    bool write(const std::string &path) const;

  private:
    using Color = std::array<std::uint8_t, 3>; ///< blue, green, red
    struct Picture {
        std::vector<Color> pixels;
    };
    static Picture picture(const Pixels &mask, const Outline &outline);

    int m_columns;
    std::vector<Picture> m_pictures;
};

} // namespace fitting_quality
