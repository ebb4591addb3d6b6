// SPDX-License-Identifier: MIT
#include "canvas/region.h"

#include <algorithm>

#include "canvas/look.h"

namespace canvas {
namespace {

/// Columns and rows, both ends included.
struct Box {
    std::int64_t left;
    std::int64_t top;
    std::int64_t right;
    std::int64_t bottom;

    Box grownBy(std::int64_t pixels) const { return {left - pixels, top - pixels, right + pixels, bottom + pixels}; }
};

void paintBox(Surface &surface, const Box &box, Pixel color) {
    const auto limited = [](std::int64_t position, int extent) {
        return static_cast<int>(std::clamp<std::int64_t>(position, 0, extent));
    };
    const int first = limited(box.left, surface.width());
    const int end = limited(box.right + 1, surface.width());
    const int endRow = limited(box.bottom + 1, surface.height());
    if (first >= end)
        return;
    for (int row = limited(box.top, surface.height()); row < endRow; ++row) {
        Pixel *const pixels = surface.touch(row, first, end - first);
        std::transform(pixels, pixels + (end - first), pixels, [color](Pixel below) { return over(below, color); });
    }
}

// The outermost pixels of a box, each once.
void paintFrame(Surface &surface, const Box &box, Pixel color) {
    if (box.left > box.right || box.top > box.bottom)
        return;
    paintBox(surface, {box.left, box.top, box.right, box.top}, color);
    if (box.bottom > box.top)
        paintBox(surface, {box.left, box.bottom, box.right, box.bottom}, color);
    paintBox(surface, {box.left, box.top + 1, box.left, box.bottom - 1}, color);
    if (box.right > box.left)
        paintBox(surface, {box.right, box.top + 1, box.right, box.bottom - 1}, color);
}

} // namespace

void paintRegion(Surface &surface, const PixelRect &rect, Pixel border, Pixel fill) {
    if (rect.width == 0 || rect.height == 0 || surface.empty())
        return;
    const std::int64_t otherX = std::int64_t{rect.left} + rect.width;
    const std::int64_t otherY = std::int64_t{rect.top} + rect.height;
    const Box box = {std::min<std::int64_t>(rect.left, otherX), std::min<std::int64_t>(rect.top, otherY),
                     std::max<std::int64_t>(rect.left, otherX), std::max<std::int64_t>(rect.top, otherY)};
    paintFrame(surface, box.grownBy(1), kRegionEdge);
    paintFrame(surface, box, border);
    paintBox(surface, box.grownBy(-1), fill);
}

} // namespace canvas
