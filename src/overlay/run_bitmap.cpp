// SPDX-License-Identifier: MIT
#include "overlay/run_bitmap.h"

#include <algorithm>
#include <limits>
#include <new>

namespace overlay {
namespace {

// Truncation of fraction x extent + 0.5 to 32 bits; what does not fit becomes the smallest integer, as the processor's
// conversion has it.
std::int64_t roundedPosition(float fraction, int extent) {
    const double value = static_cast<double>(fraction * static_cast<float>(extent)) + 0.5;
    const bool fits = value > -2147483649.0 && value < 2147483648.0;
    return fits ? static_cast<std::int64_t>(value) : std::numeric_limits<std::int32_t>::min();
}

void drawRun(RunBitmap &bitmap, const Quill::MaskRunF &run) {
    const std::int64_t width = bitmap.width;
    const std::int64_t height = bitmap.height;
    std::int64_t column = roundedPosition(run.x, bitmap.width);
    std::int64_t length = roundedPosition(run.length, bitmap.width);
    const std::int64_t row = std::min(roundedPosition(run.y, bitmap.height), height);
    if (column < 0) {
        length = std::max<std::int64_t>(length + column, 0);
        column = 0;
    }
    length = std::min(length, width - column);
    const std::int64_t offset = row * width + column;
    if (row >= 0 && length > 0 && offset + length < width * height)
        std::fill_n(bitmap.pixels.begin() + offset, length, std::uint8_t{255});
}

} // namespace

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
    for (const Quill::MaskRunF &run : runs)
        drawRun(bitmap, run);
    return bitmap;
}

} // namespace overlay
