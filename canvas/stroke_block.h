// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>

#include "canvas/four_pixels.h"
#include "canvas/stroke_palette.h"
#include "canvas/stroke_rows.h"
#include "canvas/surface.h"
#include "platform/int16_lanes.h"

// Some neighbouring pixels of a stroke: from distances to nearness (StrokePalette), and from nearness to pixels.

namespace canvas {

/// Pixels that are computed and painted at once.
inline constexpr int kBlock = platform::Int16Lanes::kCount;
static_assert(kBlock == 8 && kBlock <= Surface::kSpill);

/// Raises the bytes [0, count) to the nearness of pixels whose distance starts at `distance` and grows by `step` each,
/// both with StrokeRows' fraction. Up to kBlock - 1 bytes behind them are written as they are.
inline void raiseNearness(std::uint8_t *nearness, std::int32_t distance, std::int32_t step, int count) {
    using platform::Int16Lanes;
    // Distances of this fraction leave 16 bits for twice the reach. Lanes out of reach may wrap around, but only those.
    constexpr int kLaneFraction = 6;
    constexpr int kToLane = StrokeRows::kDistanceFraction - kLaneFraction;
    const Int16Lanes growth = Int16Lanes::ramp() * Int16Lanes::all(step >> kToLane);
    const auto lanesAt = [&](std::int32_t start) {
        const Int16Lanes distances = Int16Lanes::all(start >> kToLane) + growth;
        return Int16Lanes::all(255) - distances.magnitude().shifted<kLaneFraction>();
    };
    for (; count > kBlock; nearness += kBlock, distance += kBlock * step, count -= kBlock)
        lanesAt(distance).raise(nearness);
    lanesAt(distance).where(Int16Lanes::ramp(), Int16Lanes::all(count)).raise(nearness);
}

/// The nearness of a block, a byte a pixel.
using BlockNearness = std::uint64_t;

/// Takes a block's nearness away.
inline BlockNearness takeBlock(std::uint8_t *nearness) {
    BlockNearness block;
    std::memcpy(&block, nearness, sizeof(block));
    std::memset(nearness, 0, sizeof(block));
    return block;
}

/// Lays a block of stroke over the surface.
inline void paintBlock(Pixel *pixels, BlockNearness nearness, const StrokePalette &palette) {
    std::uint8_t at[kBlock];
    std::memcpy(at, &nearness, sizeof(at));
    const auto four = [&](int i) {
        return FourPixels(palette.at(at[i]), palette.at(at[i + 1]), palette.at(at[i + 2]), palette.at(at[i + 3]));
    };
    const FourPixels stroke[] = {four(0), four(4)};
    const FourPixels below[] = {FourPixels::load(pixels), FourPixels::load(pixels + 4)};
    FourPixels result[] = {below[0] | stroke[0], below[1] | stroke[1]};
    const bool areFree[] = {areDisjoint(below[0], stroke[0]), areDisjoint(below[1], stroke[1])};
    if (!areFree[0] || !areFree[1])
        for (int i = 0; i < 2; ++i)
            result[i] = over(below[i], stroke[i]);
    result[0].store(pixels);
    result[1].store(pixels + 4);
}

} // namespace canvas
