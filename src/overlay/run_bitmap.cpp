// SPDX-License-Identifier: MIT
#include "overlay/run_bitmap.h"

#include <algorithm>
#include <limits>
#include <new>

#include "fitting/run_span.h"

namespace overlay {
RunBitmap drawRunBitmap(std::span<const Quill::MaskRunF> runs, int width, int height) {
    RunBitmap bitmap;
    bitmap.width = width;
    bitmap.height = height;
    const std::int64_t stride = (std::int64_t{width} + 3) / 4 * 4;
    const std::int64_t limit = std::numeric_limits<std::int32_t>::max();
    if (width <= 0 || height <= 0 || stride > limit / height)
        return bitmap;
    bitmap.stride = static_cast<int>(stride);
    try {
        bitmap.pixels.resize(static_cast<std::size_t>(stride * height));
    } catch (const std::bad_alloc &) {
        return bitmap;
    }
    for (const Quill::MaskRunF &run : runs) {
        const fitting::RunSpan span = fitting::spanOfRun(run, width, height, fitting::LeftOverhang::Cut);
        std::fill_n(bitmap.pixels.begin() + span.offset, span.length, std::uint8_t{255});
    }
    return bitmap;
}

} // namespace overlay
