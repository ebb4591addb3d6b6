// SPDX-License-Identifier: MIT
#include "canvas/marks.h"

#include <algorithm>
#include <cmath>

#include "canvas/four_pixels.h"

namespace canvas {
namespace {

// Part of a pixel, `offset` pixels from the middle along one axis, that a width of `size` covers.
double axisCoverage(double size, double offset) {
    return std::clamp(size / 2 - std::abs(offset) + 0.5, 0.0, 1.0);
}

double coverage(MarkShape shape, double size, double dx, double dy) {
    if (shape == MarkShape::Square)
        return axisCoverage(size, dx) * axisCoverage(size, dy);
    return std::min(axisCoverage(size, std::sqrt(dx * dx + dy * dy)), size);
}

Pixel covered(Pixel color, double part) {
    return withCoverage(color, static_cast<std::uint32_t>(part * 255 + 0.5));
}

// Pixels to either side of the middle one that a width of `size` reaches.
std::int64_t radiusOf(std::uint32_t size) {
    return std::int64_t{size} / 2;
}

int limited(std::int64_t position, int extent) {
    return static_cast<int>(std::clamp<std::int64_t>(position, 0, extent));
}

} // namespace

/// The visible part of a square picture of 2 radius + 1 pixels around (x, y).
struct MarkWindow {
    int first;
    int end;
    int firstRow;
    int endRow;

    MarkWindow(const Surface &surface, std::int64_t x, std::int64_t y, std::int64_t radius)
        : first(limited(x - radius, surface.width())), end(limited(x + radius + 1, surface.width())),
          firstRow(limited(y - radius, surface.height())), endRow(limited(y + radius + 1, surface.height())) {}

    bool empty() const { return first >= end || firstRow >= endRow; }
};

Stamp::Stamp(MarkShape shape, std::span<const MarkLayer> layers) {
    for (const MarkLayer &layer : layers)
        m_radius = std::max(m_radius, static_cast<int>(radiusOf(layer.size)));
    m_groups = 2 * m_radius / kGroup + 1;
    for (int dy = -m_radius; dy <= m_radius; ++dy)
        for (int dx = -m_radius; dx < m_groups * kGroup - m_radius; ++dx) {
            Pixel pixel = kTransparent;
            if (dx <= m_radius)
                for (const MarkLayer &layer : layers)
                    pixel = over(pixel, covered(layer.color, coverage(shape, layer.size, dx, dy)));
            m_pixels.push_back(pixel);
        }
    for (auto group = m_pixels.begin(); group != m_pixels.end(); group += kGroup)
        m_hides.push_back(std::all_of(group, group + kGroup, [](Pixel pixel) { return alphaOf(pixel) == 255; }));
}

void Stamp::paint(Surface &surface, std::int32_t x, std::int32_t y) const {
    const MarkWindow window(surface, x, y, m_radius);
    if (window.empty())
        return;
    if (window.end - window.first == side() && window.endRow - window.firstRow == side())
        paintWhole(surface, window.first, window.firstRow);
    else
        paintPart(surface, window, x - m_radius, y - m_radius);
}

void Stamp::paintWhole(Surface &surface, int left, int top) const {
    const Pixel *source = m_pixels.data();
    const char *hides = m_hides.data();
    for (int row = top; row < top + side(); ++row) {
        Pixel *pixels = surface.touch(row, left, side());
        for (int group = 0; group < m_groups; ++group, pixels += kGroup, source += kGroup) {
            const FourPixels mark = FourPixels::load(source);
            const FourPixels below = FourPixels::load(pixels);
            if (*hides++)
                mark.store(pixels);
            else if (areDisjoint(below, mark))
                (below | mark).store(pixels);
            else
                over(below, mark).store(pixels);
        }
    }
}

void Stamp::paintPart(Surface &surface, const MarkWindow &window, int left, int top) const {
    for (int row = window.firstRow; row < window.endRow; ++row) {
        surface.touch(row, window.first, window.end - window.first);
        Pixel *const pixels = surface.row(row);
        const Pixel *const source = m_pixels.data() + (row - top) * m_groups * kGroup;
        for (int column = window.first; column < window.end; ++column)
            pixels[column] = over(pixels[column], source[column - left]);
    }
}

const Stamp &MarkPainter::stamp(MarkShape shape, std::span<const MarkLayer> layers) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &entry) {
        return entry.shape == shape &&
               std::equal(layers.begin(), layers.end(), entry.layers.begin(), entry.layers.end());
    });
    if (found != m_entries.end())
        return found->stamp;
    if (m_entries.size() == kMostEntries)
        m_entries.clear();
    m_entries.push_back({shape, std::vector<MarkLayer>(layers.begin(), layers.end()), Stamp(shape, layers)});
    return m_entries.back().stamp;
}

void MarkPainter::paint(Surface &surface, MarkShape shape, std::int32_t x, std::int32_t y, const MarkLayer &layer) {
    if (layer.size == 0)
        return;
    if (layer.size <= kLargestStamp) {
        stamp(shape, std::span(&layer, 1)).paint(surface, x, y);
        return;
    }
    const MarkWindow window(surface, x, y, radiusOf(layer.size));
    if (window.empty())
        return;
    for (int row = window.firstRow; row < window.endRow; ++row) {
        Pixel *const pixels = surface.touch(row, window.first, window.end - window.first) - window.first;
        const double dy = static_cast<double>(row) - y;
        for (int column = window.first; column < window.end; ++column) {
            const double dx = static_cast<double>(column) - x;
            pixels[column] = over(pixels[column], covered(layer.color, coverage(shape, layer.size, dx, dy)));
        }
    }
}

} // namespace canvas
