// SPDX-License-Identifier: MIT
#pragma once

#include "mask/surface.h"
#include "mask/sweep.h"

namespace Quill {

/// Reads the first `columns` columns of every row of a filled surface pixel by pixel and sends the runs to a sink (see
/// sweep.h). A pixel is in when it differs from the background, or with `invert` when it does not; a pixel whose byte
/// of the exclusion map (null, or width x height bytes without padding) is exactly 1 is out.
template <typename Sink>
void scanSurface(const MaskSurface &surface, std::int32_t columns, bool invert, const std::uint8_t *exclusion,
                 Sink &sink) {
    constexpr std::int32_t kNone = -1;
    for (std::int32_t row = 0; row < surface.height; ++row) {
        const std::uint8_t *pixel = surface.bits + static_cast<std::ptrdiff_t>(row) * surface.stride;
        const std::uint8_t *map = exclusion ? exclusion + static_cast<std::ptrdiff_t>(row) * surface.width : nullptr;
        auto cursor = sink.open(1, (static_cast<std::size_t>(columns) + 1) / 2);
        cursor.beginRow(row);
        std::int32_t first = kNone;
        for (std::int32_t column = 0; column < columns; ++column, pixel += kBytesPerPixel) {
            const bool in = (pixelKey(pixel) != kBackgroundKey) != invert && !(map && map[column] == 1);
            if (in && first == kNone) {
                first = column;
            } else if (!in && first != kNone) {
                cursor.span(first, column);
                first = kNone;
            }
        }
        if (first != kNone)
            cursor.span(first, columns);
        cursor.endRow();
        sink.close(cursor);
    }
}

} // namespace Quill
