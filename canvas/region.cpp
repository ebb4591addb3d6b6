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
    const auto first = static_cast<int>(std::max<std::int64_t>(box.left, 0));
    const auto last = static_cast<int>(std::min<std::int64_t>(box.right, surface.width() - 1));
    if (first > last)
        return;
    for (std::int64_t row = std::max<std::int64_t>(box.top, 0); row <= std::min<std::int64_t>(box.bottom, surface.height() - 1);
         ++row) {
        Pixel *const pixels = surface.touch(static_cast<int>(row), first, last + 1 - first);
        for (int i = 0; i <= last - first; ++i)
            pixels[i] = over(pixels[i], color);
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
    if (rect.width == 0 || rect.height == 0)
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
