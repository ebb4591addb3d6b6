// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "canvas/dot_pattern.h"
#include "canvas/stroke_palette.h"
#include "canvas/stroke_rows.h"
#include "canvas/surface.h"

namespace canvas {

/// Draws anti-aliased lines. Lines are collected first and painted together: where they overlap, the nearest one
/// counts, so that joints and crossings are seamless and no pixel is blended twice. Keeps its memory from one use to
/// the next.
class Stroker {
  public:
    /// Starts a collection of lines of one look for this surface. Throws std::bad_alloc, as addPolyline() does.
    void begin(Surface &surface, const StrokeLook &look);
    /// A line through all positions, with round joints; `closed` joins its end, where it starts, too, and an open one
    /// has round ends. A single position is a dot.
    void addPolyline(std::span<const Position> positions, bool closed);
    /// A straight line whose ends are going to be hidden: so much of it (pixels) at either end, and half its width
    /// around them, may be left out.
    void addLine(const Position &from, const Position &to, double hidden);
    /// Lays the collected lines over the surface in the palette of their look.
    void paint(const StrokePalette &palette);

  private:
    /// The rows of a segment's body, in the list of the band that holds the next one.
    struct Body {
        Body(const StrokeBody &body, double reach, double stepsPerPixel, int height)
            : rows(body, reach, stepsPerPixel, height) {}

        StrokeRows rows;
        std::int32_t next = -1;
    };
    /// Rows that are drawn together.
    struct Band {
        int firstRow;
        int endRow;
        std::uint32_t start; ///< the surface's pixels before it
    };

    StrokeJoint join(const StrokeSegment &first, const StrokeSegment &second);
    void addBody(const StrokeSegment &segment, const Direction &start, const Direction &end, double hidden = 0);
    void addDot(const Position &centre);
    void link(std::int32_t body);
    void raiseBodies(const Band &band, std::int32_t firstBody);
    void raiseDot(const Band &band, const Position &centre);
    void paintSpans(const Band &band, std::span<const Surface::Span> spans, const StrokePalette &palette);

    Surface *m_surface = nullptr;
    double m_reach = 0;
    double m_stepsPerPixel = 0; ///< of nearness
    Extent m_sight = {};        ///< ends of segments beyond it may be moved to its sides
    int m_bandRows = 0;         ///< but for the last one

    std::vector<StrokeSegment> m_segments; ///< of one line
    std::vector<Body> m_bodies;
    std::vector<std::int32_t> m_bands; ///< first body of each band's list
    std::vector<Position> m_dots;
    DotPattern m_dotPattern;
    std::vector<std::uint8_t> m_nearness; ///< of a band's pixels; all zero in between
};

} // namespace canvas
