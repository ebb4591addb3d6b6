// SPDX-License-Identifier: MIT
#pragma once

// Figures to pixels of the 24-bit surface.

#include "mask/outline_figure.h"
#include "mask/raster_engine.h"
#include "mask/row_bands.h"
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
    for (RowRange band{touched.first, touched.first}; band.end < touched.end; band.first = band.end) {
        band.end = bandEnd(scratch.polyline, {band.first, touched.end});
        scratch.table.build(scratch.polyline, box, band);
        sweep(scratch.table, width, scratch.buffers, sink);
    }
    sink.emptyRows({touched.end, height});
}

} // namespace Quill
