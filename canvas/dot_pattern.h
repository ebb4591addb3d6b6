// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "canvas/stroke_segment.h"

namespace canvas {

/// The nearness of the pixels around a dot. Dots whose centres lie alike within their pixels share it.
class DotPattern {
  public:
    /// For dots of this reach (pixels), with so many steps of nearness in a pixel. Throws std::bad_alloc.
    void setLook(double reach, double stepsPerPixel);
    /// Makes it that of a dot at `centre`.
    void setCentre(const Position &centre);

    /// Pixels of a row, and rows.
    int side() const { return m_side; }
    /// The first pixel of the first row.
    int left() const { return m_left; }
    int top() const { return m_top; }
    /// The nearness of a row's pixels.
    const std::uint8_t *row(int row) const { return m_nearness.data() + row * m_side; }

  private:
    void compute();

    double m_reach = 0;
    double m_stepsPerPixel = 0;
    Position m_fraction = kNone; ///< of the centre
    int m_side = 0;
    int m_offset = 0; ///< of the first column and row from the pixel that holds the centre
    int m_left = 0;
    int m_top = 0;
    std::vector<std::uint8_t> m_nearness;

    static constexpr Position kNone = {-1, -1};
};

} // namespace canvas
