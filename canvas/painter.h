// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "canvas/area_fill.h"
#include "canvas/marks.h"
#include "canvas/outline_path.h"
#include "canvas/stroke_palette.h"
#include "canvas/stroker.h"
#include "canvas/surface.h"
#include "overlay/types/overlay_canvas.h"

namespace canvas {

/// One outline to be drawn.
struct Outline {
    std::vector<MPoint> points;
    OutlineStyle style;
    bool isMask = false;
    float scale = 1; ///< within the limits of look.h
};

/// Draws outlines on a surface, and keeps what it prepares for that between calls.
class OutlinePainter {
  public:
    /// Draws fill and line; with `withMarks` also the shown handles and the anchors. Throws std::bad_alloc.
    void paint(Surface &surface, const Outline &outline, bool withMarks);
    /// Draws one mark. Throws std::bad_alloc.
    void paintMark(Surface &surface, const MPoint &point, std::uint32_t size, Pixel color);

  private:
    void paintLine(Surface &surface, const Outline &outline);
    void paintHandleLines(Surface &surface, const Outline &outline);
    void paintMarks(Surface &surface, const Outline &outline);

    OutlinePath m_path;
    std::vector<Position> m_positions;
    AreaFill m_fill;
    Stroker m_stroker;
    StrokePalette m_linePalette;
    StrokePalette m_handlePalette;
    MarkPainter m_marks;
};

} // namespace canvas
