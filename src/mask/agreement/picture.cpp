// SPDX-License-Identifier: MIT
#include "mask/agreement/picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "mask/outline_figure.h"

namespace agreement {
namespace {

double pixels(int units) {
    return units / static_cast<double>(Quill::kUnitsPerPixel);
}

double distanceTo(Quill::FixedPoint from, Quill::FixedPoint to, int x, int y) {
    const double dx = pixels(to.x) - pixels(from.x);
    const double dy = pixels(to.y) - pixels(from.y);
    const double px = x - pixels(from.x);
    const double py = y - pixels(from.y);
    const double length = dx * dx + dy * dy;
    const double along = length > 0 ? std::clamp((px * dx + py * dy) / length, 0.0, 1.0) : 0.0;
    return std::hypot(px - along * dx, py - along * dy);
}

} // namespace

Picture::Picture(int width, int height)
    : m_width(width), m_height(height), m_stride(static_cast<int>(Quill::surfaceStride(width))),
      m_bytes(static_cast<std::size_t>(m_stride) * static_cast<std::size_t>(height), 0) {}

void Picture::draw(Quill::RasterEngine engine, Figure figure, const std::vector<MPoint> &points) {
    const Quill::MaskSurface surface{m_bytes.data(), m_width, m_height, m_stride};
    const int count = static_cast<int>(points.size());
    if (figure == Figure::Polygon)
        fillPolygon(engine, surface, points.data(), count);
    else
        fillOutline(engine, surface, points.data(), count);
}

bool Picture::isIn(int x, int y) const {
    return Quill::pixelKey(row(y) + static_cast<std::ptrdiff_t>(x) * Quill::kBytesPerPixel) != Quill::kBackgroundKey;
}

bool Picture::hasSameRow(const Picture &other, int y) const {
    return std::memcmp(row(y), other.row(y), static_cast<std::size_t>(m_width) * Quill::kBytesPerPixel) == 0;
}

Edges::Edges(Figure figure, const std::vector<MPoint> &points) {
    constexpr int kWholePlane = 1 << 23;
    const int count = static_cast<int>(points.size());
    if (figure == Figure::Polygon)
        Quill::buildPolygon(points.data(), count, m_polyline);
    else
        Quill::buildOutline(points.data(), count, {kWholePlane, kWholePlane}, m_polyline);
}

int Edges::distance(int x, int y) const {
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < m_polyline.size(); ++i)
        nearest = std::min(nearest, distanceTo(m_polyline[i], m_polyline[(i + 1) % m_polyline.size()], x, y));
    return static_cast<int>(std::ceil(std::min(nearest, 1e9)));
}

} // namespace agreement
