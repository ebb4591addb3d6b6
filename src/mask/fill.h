// SPDX-License-Identifier: MIT
#pragma once

// Figures to pixels of the 24-bit surface.

#include "mask/outline_figure.h"
#include "mask/raster_engine.h"
#include "mask/scratch.h"
#include "mask/surface.h"

namespace Quill {

/// Sends the rows 0 .. height - 1 of the closed polyline in `scratch` to a sink (see sweep.h), columns within 0 ..
/// width.
template <typename Sink>
void sweepPolyline(RasterScratch &scratch, std::int32_t width, std::int32_t height, Sink &sink);

/// Clears the surface and fills the closed polygon. Nothing happens on a surface that cannot be drawn on.
void fillPolygon(RasterEngine engine, const MaskSurface &surface, const MPoint *points, int count);

/// Clears the surface and fills the closed outline (see buildOutline). Needs count >= 9.
void fillOutline(RasterEngine engine, const MaskSurface &surface, const MPoint *points, int count);

/// Most crossings held at a time. A figure with more is swept in bands of rows, each small enough.
inline constexpr std::size_t kCrossingsPerBand = std::size_t{1} << 20;

template <typename Sink>
void sweepPolyline(RasterScratch &scratch, std::int32_t width, std::int32_t height, Sink &sink) {
    if (height <= 0)
        return;
    if (scratch.polyline.empty()) {
        sink.emptyRows({0, height});
        return;
    }
    closePolyline(scratch.polyline);
    const FixedBox box = boxOf(scratch.polyline);
    const RowRange touched = touchedRows(box, height);
    sink.emptyRows({0, touched.first});
    const auto bandRows = static_cast<std::int32_t>(
        std::clamp<std::size_t>(kCrossingsPerBand / scratch.polyline.size(), 1, static_cast<std::size_t>(height)));
    for (std::int32_t first = touched.first; first < touched.end; first += bandRows) {
        scratch.table.build(scratch.polyline, box, {first, std::min(touched.end - first, bandRows) + first}, width);
        sweep(scratch.table, scratch.active, sink);
    }
    sink.emptyRows({touched.end, height});
}

} // namespace Quill
