// SPDX-License-Identifier: MIT
#include "canvas/stroke.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace canvas {
namespace {

// Part of a pixel at `distance` from the centre line that lies within `halfWidth` of it.
double coverage(double halfWidth, double distance) {
    const double inside = std::clamp(halfWidth - distance + 0.5, 0.0, 1.0);
    return std::min(inside, 2 * halfWidth);
}

Pixel partly(Pixel color, double part) {
    return withCoverage(color, static_cast<std::uint32_t>(part * 255 + 0.5));
}

struct Line {
    double x0, y0, x1, y1;
};

// Liang and Barsky: cuts the line to low <= v <= high on one axis; false when nothing is left.
bool clipAxis(double origin, double delta, double low, double high, double &enter, double &leave) {
    if (delta == 0)
        return origin >= low && origin <= high;
    double first = (low - origin) / delta;
    double last = (high - origin) / delta;
    if (first > last)
        std::swap(first, last);
    enter = std::max(enter, first);
    leave = std::min(leave, last);
    return enter <= leave;
}

bool clipToSurface(Line &line, int width, int height, double margin) {
    double enter = 0;
    double leave = 1;
    const Line whole = line;
    const double dx = whole.x1 - whole.x0;
    const double dy = whole.y1 - whole.y0;
    if (!clipAxis(whole.x0, dx, -margin, width - 1 + margin, enter, leave) ||
        !clipAxis(whole.y0, dy, -margin, height - 1 + margin, enter, leave))
        return false;
    if (enter > 0)
        line.x0 = whole.x0 + enter * dx, line.y0 = whole.y0 + enter * dy;
    if (leave < 1)
        line.x1 = whole.x0 + leave * dx, line.y1 = whole.y0 + leave * dy;
    return true;
}

} // namespace

StrokePalette makePalette(const StrokeLook &look) {
    StrokePalette palette{};
    for (std::size_t nearness = 1; nearness < palette.size(); ++nearness) {
        const double distance = (255.5 - static_cast<double>(nearness)) / 255 * static_cast<double>(look.reach());
        const Pixel edge = partly(look.edge, coverage(static_cast<double>(look.edgeHalfWidth), distance));
        const Pixel core = partly(look.core, coverage(static_cast<double>(look.coreHalfWidth), distance));
        palette[nearness] = over(edge, core);
    }
    return palette;
}

HRESULT Stroker::resize(int width, int height) {
    if (m_nearness && width == m_width && height == m_height)
        return S_OK;
    // calloc: pages that no stroke crosses are never made.
    m_nearness.reset(static_cast<std::uint8_t *>(
        std::calloc(static_cast<std::size_t>(height), static_cast<std::size_t>(width) + 1)));
    if (!m_nearness)
        return E_OUTOFMEMORY;
    try {
        m_touched.resize(width, height);
    } catch (const std::bad_alloc &) {
        m_nearness.reset();
        return E_OUTOFMEMORY;
    }
    m_width = width;
    m_height = height;
    return S_OK;
}

void Stroker::begin(float reach) {
    m_reach = reach;
}

void Stroker::addLine(double x0, double y0, double x1, double y1) {
    const double reach = static_cast<double>(m_reach);
    Line line = {x0, y0, x1, y1};
    if (!clipToSurface(line, m_width, m_height, reach + 2))
        return;
    const int firstRow = std::max(0, static_cast<int>(std::ceil(std::min(line.y0, line.y1) - reach)));
    const int lastRow = std::min(m_height - 1, static_cast<int>(std::floor(std::max(line.y0, line.y1) + reach)));
    const double low = std::min(line.x0, line.x1) - reach;
    const double high = std::max(line.x0, line.x1) + reach;
    const double dx = line.x1 - line.x0;
    const double dy = line.y1 - line.y0;
    const double lengthSquared = dx * dx + dy * dy;
    const double slope = dy != 0 ? dx / dy : 0;
    const double halfSpan = dy != 0 ? reach * std::sqrt(lengthSquared) / std::abs(dy) : high - low;

    const auto ox = static_cast<float>(line.x0);
    const auto oy = static_cast<float>(line.y0);
    const auto fdx = static_cast<float>(dx);
    const auto fdy = static_cast<float>(dy);
    const float perLength = lengthSquared > 0 ? static_cast<float>(1 / lengthSquared) : 0;
    const float scale = 255 / m_reach;
    for (int row = firstRow; row <= lastRow; ++row) {
        const double middle = line.x0 + (row - line.y0) * slope;
        const int first = std::max(0, static_cast<int>(std::ceil(std::max(low, middle - halfSpan))));
        const int end = std::min(m_width, static_cast<int>(std::floor(std::min(high, middle + halfSpan))) + 1);
        if (first >= end)
            continue;
        m_touched.mark(row, first, end);
        std::uint8_t *const nearness = m_nearness.get() + static_cast<std::size_t>(row) * static_cast<std::size_t>(m_width);
        const float py = static_cast<float>(row) - oy;
        for (int x = first; x < end; ++x) {
            const float px = static_cast<float>(x) - ox;
            const float along = std::clamp((px * fdx + py * fdy) * perLength, 0.0F, 1.0F);
            const float ex = px - along * fdx;
            const float ey = py - along * fdy;
            const float distance = std::sqrt(ex * ex + ey * ey) * scale;
            const int value = 255 - static_cast<int>(std::min(distance, 255.0F));
            nearness[x] = std::max(nearness[x], static_cast<std::uint8_t>(value));
        }
    }
}

void Stroker::paint(Surface &surface, const StrokePalette &palette) {
    m_touched.drain([&](int y, int first, int end) {
        const int stop = std::min(end, m_width);
        std::uint8_t *const nearness = m_nearness.get() + static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width);
        Pixel *const pixels = surface.row(y);
        surface.touch(y, first, stop);
        for (int x = first; x < stop; ++x) {
            if (nearness[x] == 0)
                continue;
            pixels[x] = over(pixels[x], palette[nearness[x]]);
            nearness[x] = 0;
        }
    });
}

} // namespace canvas
