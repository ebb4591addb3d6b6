// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "mask/mask_handler.h"

// Masks of many kinds with outlines that somebody might have drawn around them in a hurry. Everything follows from a
// seed.

namespace fitting_quality {

inline constexpr int kWidth = 480;
inline constexpr int kHeight = 270;

using Point = std::pair<double, double>;
using Polygon = std::vector<Point>;

/// One bit a pixel of kWidth x kHeight, row behind row.
using Pixels = std::vector<bool>;

struct Case {
    std::string kind;
    bool isConvex = false;
    Pixels mask;
    std::vector<std::pair<int, int>> drawn; ///< the anchors, in pixels
};

/// The kinds take turns.
Case makeCase(std::uint32_t seed);

/// The runs of a mask, as a host hands them over.
std::vector<Quill::MaskRunF> runsOf(const Pixels &mask);
Pixels pixelsOf(const std::vector<Quill::MaskRunF> &runs);
double intersectionOverUnion(const Pixels &a, const Pixels &b);

} // namespace fitting_quality
