// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "mask/flatten.h"

namespace Quill {

/// Rows first to end - 1.
struct RowRange {
    std::int32_t first;
    std::int32_t end;

    bool empty() const { return first >= end; }
};

/// First row at or below a vertical position in units.
constexpr std::int32_t rowAtOrBelow(std::int32_t y) {
    return (y + kUnitsPerPixel - 1) >> 4;
}

} // namespace Quill
