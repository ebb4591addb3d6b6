// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>

#include "canvas/stroke_body.h"
#include "canvas/stroke_palette.h"
#include "platform/lanes.h"

// Some neighbouring pixels of a stroke: from distances to nearness (StrokePalette), and from nearness to pixels.

namespace canvas {

/// Distances in the lanes: 16 bits then hold twice the reach.
inline constexpr int kLaneFraction = 6;
inline constexpr int kToLane = StrokeBodyRows::kDistanceFraction - kLaneFraction;
inline constexpr int kLanes = platform::Int16Lanes::kCount;

/// The nearness of pixels whose distance starts at `distance` and grows by `step` each, both with kDistanceFraction
/// bits. Lanes whose pixel is out of reach may have wrapped around.
inline platform::Int16Lanes nearnessOf(std::int32_t distance, std::int32_t step) {
    using platform::Int16Lanes;
    const Int16Lanes growth = Int16Lanes::ramp() * Int16Lanes::all(step >> kToLane);
    const Int16Lanes distances = Int16Lanes::all(distance >> kToLane) + growth;
    return Int16Lanes::all(255) - distances.magnitude().shifted<kLaneFraction>();
}

/// The first `count` lanes, 0 in the others.
inline platform::Int16Lanes firstLanes(const platform::Int16Lanes &lanes, int count) {
    return lanes.where(platform::Int16Lanes::ramp(), platform::Int16Lanes::all(count));
}

/// Raises the bytes [0, count) to the nearness of pixels. Up to seven bytes behind them are written as they are.
inline void raiseNearness(std::uint8_t *nearness, std::int32_t distance, std::int32_t step, int count) {
    for (; count > kLanes; nearness += kLanes, distance += kLanes * step, count -= kLanes)
        nearnessOf(distance, step).raise(nearness);
    firstLanes(nearnessOf(distance, step), count).raise(nearness);
}

/// Pixels that are painted at once.
inline constexpr int kBlock = 8;
static_assert(kBlock == 8 && kBlock >= kLanes);

/// The nearness of a block, a byte a pixel, the first pixel's in the lowest bits.
using BlockNearness = std::uint64_t;

inline BlockNearness loadBlock(const std::uint8_t *nearness) {
    BlockNearness block = 0;
    for (int i = 0; i < kBlock; ++i)
        block |= static_cast<BlockNearness>(nearness[i]) << (8 * i);
    return block;
}

/// Sets a block's pixels, two with each store: stores are what the painting waits for.
template <typename Paint>
inline void paintPairs(Pixel *pixels, BlockNearness nearness, Paint paint) {
    for (int i = 0; i < kBlock; i += 2, nearness >>= 16) {
        const Pixel pair[2] = {paint(pixels[i], static_cast<std::uint8_t>(nearness)),
                               paint(pixels[i + 1], static_cast<std::uint8_t>(nearness >> 8))};
        const auto both = static_cast<std::uint64_t>(pair[1]) << 32 | pair[0];
        std::memcpy(pixels + i, &both, sizeof(both));
    }
}

/// Lays a block of stroke over the surface. Over a surface that was blank nothing is read: rows are painted from left
/// to right, so what a block covers is nothing yet, and what it clears behind its stroke is painted later.
template <bool kOverBlank>
inline void paintBlock(Pixel *pixels, BlockNearness nearness, const StrokePalette &palette) {
    if (kOverBlank || platform::allZero(pixels))
        paintPairs(pixels, nearness, [&](Pixel, std::uint8_t value) { return palette.overNothing(value); });
    else if (platform::allZeroOr(pixels, palette.expected()))
        paintPairs(pixels, nearness, [&](Pixel below, std::uint8_t value) { return palette.overKnown(below, value); });
    else
        paintPairs(pixels, nearness, [&](Pixel below, std::uint8_t value) { return palette.overAny(below, value); });
}

} // namespace canvas
