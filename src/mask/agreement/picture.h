// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mask/fill.h"

namespace agreement {

enum class Figure { Polygon, Outline };

/// One picture of 24-bit pixels.
class Picture {
  public:
    Picture(int width, int height);

    void draw(Quill::RasterEngine engine, Figure figure, const std::vector<MPoint> &points);
    bool isIn(int x, int y) const;
    bool hasSameRow(const Picture &other, int y) const;

  private:
    const std::uint8_t *row(int y) const { return m_bytes.data() + static_cast<std::ptrdiff_t>(y) * m_stride; }

    int m_width;
    int m_height;
    int m_stride;
    std::vector<std::uint8_t> m_bytes;
};

/// The figure's edges, flattened as if nothing of it were off the surface. Distances are taken from them and not from
/// the pixels of a mask, where two edges that enclose no pixel leave no trace.
class Edges {
  public:
    Edges(Figure figure, const std::vector<MPoint> &points);

    /// Pixels from the position (x, y) to the nearest edge, rounded up.
    int distance(int x, int y) const;

  private:
    Quill::VertexBuffer m_polyline;
};

} // namespace agreement
