// SPDX-License-Identifier: MIT
#include "canvas/marks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

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
std::int64_t radiusOf(double size) {
    return static_cast<std::int64_t>(std::ceil(size / 2 - 0.5));
}

} // namespace

Stamp::Stamp(MarkShape shape, std::span<const MarkLayer> layers) {
    for (const MarkLayer &layer : layers)
        m_radius = std::max(m_radius, static_cast<int>(radiusOf(layer.size)));
    m_pixels.reserve(static_cast<std::size_t>(2 * m_radius + 1) * static_cast<std::size_t>(2 * m_radius + 1));
    for (int dy = -m_radius; dy <= m_radius; ++dy) {
        for (int dx = -m_radius; dx <= m_radius; ++dx) {
            Pixel pixel = kTransparent;
            for (const MarkLayer &layer : layers)
                pixel = over(pixel, covered(layer.color, coverage(shape, layer.size, dx, dy)));
            m_pixels.push_back(pixel);
        }
    }
}

void Stamp::paint(Surface &surface, std::int32_t x, std::int32_t y) const {
    const std::int64_t left = std::int64_t{x} - m_radius;
    const std::int64_t top = std::int64_t{y} - m_radius;
    const std::int64_t side = 2 * m_radius + 1;
    const auto first = static_cast<int>(std::clamp<std::int64_t>(left, 0, surface.width()));
    const auto end = static_cast<int>(std::clamp<std::int64_t>(left + side, 0, surface.width()));
    const auto firstRow = static_cast<int>(std::clamp<std::int64_t>(top, 0, surface.height()));
    const auto endRow = static_cast<int>(std::clamp<std::int64_t>(top + side, 0, surface.height()));
    if (first >= end)
        return;
    for (int row = firstRow; row < endRow; ++row) {
        surface.touch(row, first, end);
        Pixel *const pixels = surface.row(row);
        const Pixel *const source = m_pixels.data() + (row - top) * side;
        for (int column = first; column < end; ++column)
            pixels[column] = over(pixels[column], source[column - left]);
    }
}

void paintMark(Surface &surface, MarkShape shape, std::int32_t x, std::int32_t y, std::uint32_t size, Pixel color) {
    const std::int64_t radius = radiusOf(size);
    const auto first = static_cast<int>(std::clamp<std::int64_t>(x - radius, 0, surface.width()));
    const auto end = static_cast<int>(std::clamp<std::int64_t>(x + radius + 1, 0, surface.width()));
    const auto firstRow = static_cast<int>(std::clamp<std::int64_t>(y - radius, 0, surface.height()));
    const auto endRow = static_cast<int>(std::clamp<std::int64_t>(y + radius + 1, 0, surface.height()));
    if (first >= end || size == 0)
        return;
    for (int row = firstRow; row < endRow; ++row) {
        surface.touch(row, first, end);
        Pixel *const pixels = surface.row(row);
        for (int column = first; column < end; ++column) {
            const double part = coverage(shape, size, static_cast<double>(std::int64_t{column} - x),
                                         static_cast<double>(std::int64_t{row} - y));
            pixels[column] = over(pixels[column], covered(color, part));
        }
    }
}

} // namespace canvas
