// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "canvas/stroke_body.h"
#include "canvas/stroke_palette.h"
#include "canvas/surface.h"
#include "mask/pod_buffer.h"

namespace canvas {

/// Draws anti-aliased lines. Lines are collected first and painted together: where they overlap, the nearest one
/// counts, so that joints and crossings are seamless and no pixel is blended twice. Keeps its memory from one use to
/// the next.
class Stroker {
  public:
    /// Starts a collection of lines of one look for this surface.
    void begin(Surface &surface, const StrokeLook &look);
    /// A line through all positions, with round joints; `closed` joins its end, where it starts, too, and an open one
    /// has round ends. A single position is a dot.
    void addPolyline(std::span<const Position> positions, bool closed);
    /// Lays the collected lines over the surface in the palette of their look. All three throw std::bad_alloc; the
    /// surface is whole then, but part of the lines may be missing.
    void paint(const StrokePalette &palette);

  private:
    /// Some pixels of one row and how far they are from the line.
    struct Span {
        std::int32_t next; ///< index of the row's next span
        std::uint16_t first;
        std::uint16_t end;
        std::int32_t distance; ///< of the first pixel, StrokeBodyRows::kDistanceFraction bits; a dot's index
        std::int32_t step;     ///< kDotSpan for a dot
    };

    void addSegment(const StrokeBody &body);
    void keep(const StrokeBody &body);
    void addDot(const Position &centre);
    bool collectSpans(int firstRow, int endRow);
    void addBodySpans(const StrokeBody &body, int firstRow, int endRow);
    void addDotSpans(std::int32_t dot, int firstRow, int endRow);
    template <bool kOverBlank>
    void paintRows(const StrokePalette &palette);
    template <bool kOverBlank>
    void paintRow(int y, const StrokePalette &palette);
    template <bool kOverBlank>
    void paintStretch(Pixel *pixels, int count, int room, const StrokePalette &palette);
    std::size_t gatherRow(int y);
    void raiseDot(std::uint8_t *nearness, const Span &span, int y) const;
    void prefetchRow(int y);

    Surface *m_surface = nullptr;
    double m_reach = 0;
    double m_stepsPerPixel = 0; ///< of nearness

    std::vector<StrokeBody> m_bodies;
    std::vector<Position> m_dots;
    double m_top = 0; ///< the highest and the lowest row that a body's end or a dot's centre lies in
    double m_bottom = 0;
    Quill::PodBuffer<Span> m_spans;
    std::vector<std::int32_t> m_rowHeads; ///< index of each row's last span, from m_firstRow on
    int m_firstRow = 0;
    Quill::PodBuffer<Span> m_rowSpans;    ///< of one row, by first column
    std::vector<std::uint8_t> m_nearness; ///< of some neighbouring pixels; all zero in between
};

} // namespace canvas
