// SPDX-License-Identifier: MIT
#include "mask/sample.h"

#include <algorithm>

#include "mask/outline_figure.h"
#include "platform/native_raster.h"

// The platform flattens to a flatness f by scaling the curve by 0.25 / f, running the fill's flattener (tolerance a
// quarter of a pixel) and scaling back. With f = 1 / d the scaled curve in sixteenths has the control points 4 d x,
// integers again, so the whole of it is exact here: the unit of a vertex is 1 / (4 d) pixel.

namespace Quill {
namespace {

using Controls = const MPoint *const (&)[4];

MPoint sampleAt(std::int32_t x, std::int32_t y) {
    MPoint sample;
    sample.x = x;
    sample.y = y;
    return sample;
}

/// Largest distance of a control point from the start, on either axis, pixels.
std::int64_t extentFromStart(Controls controls) {
    std::int64_t extent = 0;
    for (const MPoint *point : controls)
        extent = std::max({extent, std::abs(std::int64_t{point->x} - controls[0]->x),
                           std::abs(std::int64_t{point->y} - controls[0]->y)});
    return extent;
}

/// Relative to the start, so that the extent of the segment alone decides what fits.
void samplePortably(Controls controls, int density, VertexBuffer &scratch, std::vector<MPoint> &samples) {
    const MPoint &start = *controls[0];
    std::int64_t scale = std::int64_t{4} * density;
    // Control points lie within twice the extent of one another. A segment too large for its density is sampled at half
    // of it, a quarter ...: still thousands of points to the pixel's fraction, and their number stays bounded.
    while (2 * extentFromStart(controls) * scale > kMaxSegmentSpan)
        scale /= 2;
    CubicControls scaled{};
    for (std::size_t i = 0; i < scaled.size(); ++i)
        scaled[i] = {static_cast<std::int32_t>((std::int64_t{controls[i]->x} - start.x) * scale),
                     static_cast<std::int32_t>((std::int64_t{controls[i]->y} - start.y) * scale)};
    scratch.clear();
    flattenSegment(scaled, scratch);
    const auto toPixel = [scale](std::int32_t origin, std::int32_t units) {
        const std::int64_t doubled = 2 * std::int64_t{units} + scale; // floor(units / scale + 1/2)
        const std::int64_t divisor = 2 * scale;
        return static_cast<std::int32_t>(origin + doubled / divisor - (doubled % divisor < 0));
    };
    samples.reserve(samples.size() + scratch.size() + 1);
    samples.push_back(sampleAt(start.x, start.y));
    for (const FixedPoint &vertex : scratch)
        samples.push_back(sampleAt(toPixel(start.x, vertex.x), toPixel(start.y, vertex.y)));
}

bool sampleNatively(Controls controls, int density, std::vector<MPoint> &samples) {
    platform::PixelPoint native[4];
    for (int i = 0; i < 4; ++i)
        native[i] = {controls[i]->x, controls[i]->y};
    std::vector<platform::PixelPoint> points;
    if (!platform::nativeFlattenBezier(native, 1.0F / static_cast<float>(density), points))
        return false;
    for (const platform::PixelPoint &point : points)
        samples.push_back(sampleAt(point.x, point.y));
    return true;
}

} // namespace

void sampleSegment(RasterEngine engine, Controls controls, int density, VertexBuffer &scratch,
                   std::vector<MPoint> &samples) {
    const bool drawable =
        std::all_of(std::begin(controls), std::end(controls), [](const MPoint *point) { return isDrawable(point, 1); });
    // No display size yet, or coordinates that nothing draws: the ends are all there is to say.
    if (density < 1 || !drawable) {
        samples.push_back(sampleAt(controls[0]->x, controls[0]->y));
        samples.push_back(sampleAt(controls[3]->x, controls[3]->y));
        return;
    }
    if (engine == RasterEngine::Native && sampleNatively(controls, density, samples))
        return;
    samplePortably(controls, density, scratch, samples);
}

} // namespace Quill
