// SPDX-License-Identifier: MIT
#pragma once

// The columns of one edge on consecutive rows, in order of travel: downwards from its first row on, upwards from its
// last row back. Either way exactly ceil(crossing), limited to what a stored column can be.

#include <algorithm>
#include <cstdint>

#include "mask/edge_starts.h"
#include "mask/lanes.h"

namespace Quill {

/// stepFixed writes whole blocks: this many columns beyond the last may be overwritten.
inline constexpr std::int32_t kStepBlock = 8;

/// From a 32.32 value and step (see edge_starts.h). Most edges are shorter than a block: one round, and no loop whose
/// length the processor has to guess.
inline void stepFixed(std::uint64_t value, std::uint64_t step, std::int32_t count, StoredColumn *out) {
    lanes::FixedRows rows(value, step);
    do {
        for (std::int32_t i = 0; i < kStepBlock; i += kRowsAtOnce, out += kRowsAtOnce)
            rows.storeNext(out);
        count -= kStepBlock;
    } while (count > 0);
}

/// `count` rows of an edge, starting with `row`, going down or up.
struct EdgeRows {
    FixedPoint from;
    FixedPoint to;
    std::int32_t row;
    std::int32_t count;
};

/// Column and remainder carried from row to row, in integers, for any edge within kMaxPixelCoordinate. Largest product:
/// 2^56.
inline void stepExactly(const EdgeRows &edge, StoredColumn *out) {
    const auto floorDivide = [](std::int64_t a, std::int64_t b) { return a / b - (a % b < 0); };
    // Upwards, the edge is mirrored at the x axis: rows change their sign and nothing else does.
    const std::int64_t direction = edge.to.y > edge.from.y ? 1 : -1;
    const std::int64_t dx = std::int64_t{edge.to.x} - edge.from.x;
    const std::int64_t dy = direction * (std::int64_t{edge.to.y} - edge.from.y);
    const std::int64_t ahead = direction * (std::int64_t{kUnitsPerPixel} * edge.row - edge.from.y);
    const std::int64_t divisor = kUnitsPerPixel * dy;
    const std::int64_t numerator = edge.from.x * dy + ahead * dx;
    // numerator = column * divisor + remainder with -divisor < remainder <= 0
    std::int64_t column = -floorDivide(-numerator, divisor);
    std::int64_t remainder = numerator - column * divisor;
    const std::int64_t quotient = floorDivide(dx, dy);
    const std::int64_t rest = kUnitsPerPixel * (dx - quotient * dy);
    for (std::int32_t i = 0; i < edge.count; ++i) {
        out[i] = storeColumn(static_cast<std::int32_t>(std::clamp<std::int64_t>(column, 0, kMaxColumn)));
        column += quotient;
        remainder += rest;
        if (remainder > 0) {
            remainder -= divisor;
            ++column;
        }
    }
}

} // namespace Quill
