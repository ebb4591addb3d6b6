// SPDX-License-Identifier: MIT
#include "canvas/area_fill.h"

#include <algorithm>

#include "mask/fill.h"

namespace canvas {
namespace {

/// Lays a colour over the spans of a sweep (mask/sweep.h). Nothing is collected: the sink is its own cursor.
class TintSink {
  public:
    TintSink(Surface &surface, Pixel color) : m_surface(surface), m_color(color), m_blank(surface.isBlank()) {}

    void emptyRows(Quill::RowRange) {}
    TintSink &open(std::size_t, std::size_t) { return *this; }
    void close(const TintSink &) {}
    void beginRow(std::int32_t row) { m_row = row; }
    void span(std::int32_t first, std::int32_t end) {
        Pixel *const pixels = m_surface.touch(m_row, first, end - first);
        if (m_blank)
            std::fill_n(pixels, end - first, m_color);
        else
            std::transform(pixels, pixels + (end - first), pixels,
                           [this](Pixel below) { return over(below, m_color); });
    }
    void spanOrNone(std::int32_t first, std::int32_t end) {
        if (first != end)
            span(first, end);
    }
    void endRow() {}

  private:
    Surface &m_surface;
    Pixel m_color;
    bool m_blank; ///< nothing lies below
    std::int32_t m_row = 0;
};

} // namespace

bool AreaFill::fill(Surface &surface, std::span<const MPoint> points, Pixel color) {
    const auto count = static_cast<int>(points.size());
    if (count < Quill::kMinOutlinePoints || count % 3 != 0 || alphaOf(color) == 0 || surface.empty())
        return false;
    Quill::buildOutline(points.data(), count, {surface.width(), surface.height()}, m_scratch.polyline);
    if (m_scratch.polyline.empty())
        return false;
    TintSink sink(surface, color);
    Quill::sweepPolyline(m_scratch, surface.width(), surface.height(), sink);
    return true;
}

} // namespace canvas
