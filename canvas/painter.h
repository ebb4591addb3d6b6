// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "canvas/area_fill.h"
#include "canvas/marks.h"
#include "canvas/outline_path.h"
#include "canvas/stroke.h"
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
    /// Size of the surface to be painted.
    HRESULT resize(int width, int height);

    /// Draws fill and line; with `withMarks` also the shown handles and the anchors.
    HRESULT paint(Surface &surface, const Outline &outline, bool withMarks);

  private:
    void paintLine(Surface &surface, const Outline &outline);
    void paintHandleLines(Surface &surface, const Outline &outline);
    void paintMarks(Surface &surface, const Outline &outline);

    OutlinePath m_path;
    AreaFill m_fill;
    Stroker m_stroker;
};

} // namespace canvas
