// SPDX-License-Identifier: MIT
#pragma once

// The crossings of one edge with consecutive rows, exactly.
//
// Row y (sampled at exactly y, no half-pixel offset) is crossed at c = x0 + (16 y - y0) dx / dy units, and the first
// pixel inside is column ceil(c / 16). Two ways to the same integers:
//
// - `exactColumn` and a remainder that is carried from row to row, in integers, for any edge.
// - a 24.40 fixed-point value with a constant step, for edges that are short enough. It is biased so that the column is
//   its integer part: c / 16 is a multiple of 1 / (16 dy), so adding 1 - 1 / (32 dy) before taking the floor gives the
//   ceiling and leaves 1 / (32 dy) of room for error on either side. With |x| <= 2^22 units and dy <= 2^16 units
//   (4096 rows) that room is 2^19 of 2^-40 pixel; rounding in the set-up and in the steps stays below 2^14.

#include <algorithm>
#include <cstdint>

#include "mask/flatten.h"

namespace Quill {

/// First row at or below a vertical position in units.
constexpr std::int32_t rowAtOrBelow(std::int32_t y) {
    return (y + kUnitsPerPixel - 1) >> 4;
}

/// An edge whose first end is the upper one: first.y < second.y.
struct DownwardEdge {
    FixedPoint first;
    FixedPoint second;
};

inline bool fitsFastSteps(const DownwardEdge &edge) {
    constexpr std::int32_t kMaxX = 1 << 22;
    constexpr std::int32_t kMaxHeight = 1 << 16;
    return edge.second.y - edge.first.y <= kMaxHeight && edge.first.x >= -kMaxX && edge.first.x <= kMaxX &&
           edge.second.x >= -kMaxX && edge.second.x <= kMaxX;
}

/// Writes the columns of `count` rows from `row` on. Needs fitsFastSteps, and rows that the edge crosses.
template <typename Store>
void fastSteps(const DownwardEdge &edge, std::int32_t row, std::int32_t count, Store store) {
    constexpr int kFraction = 40;
    constexpr double kOnePixel = static_cast<double>(std::int64_t{1} << kFraction);
    constexpr double kOneUnit = kOnePixel / kUnitsPerPixel;
    const double inverseHeight = 1.0 / (edge.second.y - edge.first.y);
    const double slope = (edge.second.x - edge.first.x) * inverseHeight;
    const double crossing = edge.first.x + (kUnitsPerPixel * row - edge.first.y) * slope;
    const double bias = kOnePixel - kOnePixel / 32 * inverseHeight;
    std::int64_t value = static_cast<std::int64_t>(crossing * kOneUnit + bias);
    const std::int64_t step = static_cast<std::int64_t>(slope * kOnePixel);
    for (std::int32_t i = 0; i < count; ++i, value += step)
        store(i, value >> kFraction);
}

/// The same for any edge within kMaxPixelCoordinate. Largest product: 2^56.
template <typename Store>
void exactSteps(const DownwardEdge &edge, std::int32_t row, std::int32_t count, Store store) {
    const auto floorDivide = [](std::int64_t a, std::int64_t b) { return a / b - (a % b < 0); };
    const std::int64_t dx = edge.second.x - edge.first.x;
    const std::int64_t dy = edge.second.y - edge.first.y;
    const std::int64_t divisor = kUnitsPerPixel * dy;
    const std::int64_t numerator = edge.first.x * dy + (std::int64_t{kUnitsPerPixel} * row - edge.first.y) * dx;
    // numerator = column * divisor + remainder with -divisor < remainder <= 0
    std::int64_t column = -floorDivide(-numerator, divisor);
    std::int64_t remainder = numerator - column * divisor;
    const std::int64_t quotient = floorDivide(dx, dy);
    const std::int64_t rest = kUnitsPerPixel * (dx - quotient * dy);
    for (std::int32_t i = 0; i < count; ++i) {
        store(i, column);
        column += quotient;
        remainder += rest;
        if (remainder > 0) {
            remainder -= divisor;
            ++column;
        }
    }
}

} // namespace Quill
