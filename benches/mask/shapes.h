// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "rasterizer.h"

namespace bench {

struct Shape {
    const char *name;
    int anchors;
    double roughness; ///< how far radii vary, as a fraction
    enum class Form { Round, Star, Eight } form;
};

inline constexpr Shape kShapes[] = {
    {"8", 8, 0.3, Shape::Form::Round},        {"24", 24, 0.25, Shape::Form::Round},
    {"star64", 64, 0.5, Shape::Form::Star},   {"200", 200, 0.08, Shape::Form::Round},
    {"1000", 1000, 0.04, Shape::Form::Round}, {"eight", 8, 0.2, Shape::Form::Eight},
};

struct Size {
    const char *name;
    int width;
    int height;
};

inline constexpr Size kSizes[] = {{"720p", 1280, 720}, {"1080p", 1920, 1080}, {"4K", 3840, 2160}, {"8K", 7680, 4320}};

/// Inputs are rotated through this many, so that no branch predictor learns one.
inline constexpr std::size_t kVariants = 16;

/// The same for every contender: a shape drawn differently each time, filling most of the surface.
std::array<Outline, kVariants> makeVariants(const Shape &shape, const Size &size);

} // namespace bench
