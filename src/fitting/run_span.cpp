// SPDX-License-Identifier: MIT
#include "fitting/run_span.h"

#include <algorithm>

#include "overlay/types/placement.h"

namespace fitting {
namespace {

std::int64_t roundedPosition(float fraction, int extent) {
    return truncateToInt32(static_cast<double>(fraction * static_cast<float>(extent)) + 0.5);
}

} // namespace

RunSpan spanOfRun(const Quill::MaskRunF &run, int width, int height, LeftOverhang overhang) {
    std::int64_t column = roundedPosition(run.x, width);
    std::int64_t length = roundedPosition(run.length, width);
    const std::int64_t row = std::min<std::int64_t>(roundedPosition(run.y, height), height);
    bool cut = true;
    if (column < 0) {
        length = std::max<std::int64_t>(length + column, 0);
        column = 0;
        cut = overhang == LeftOverhang::Cut;
    }
    if (cut)
        length = std::min(length, width - column);
    const RunSpan span = {row * width + column, length};
    const bool isDrawn = row >= 0 && length > 0 && span.end() < std::int64_t{width} * height;
    return isDrawn ? span : RunSpan{};
}

} // namespace fitting
