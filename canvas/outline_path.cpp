// SPDX-License-Identifier: MIT
#include "canvas/outline_path.h"

#include <algorithm>

namespace canvas {
namespace {

constexpr std::size_t kStride = 3; // points an anchor

std::int32_t limited(std::int32_t pixel) {
    return std::clamp(pixel, -Quill::kMaxPixelCoordinate, Quill::kMaxPixelCoordinate);
}

Quill::FixedPoint toFixedPoint(const MPoint &point) {
    return {Quill::toFixed(limited(point.x)), Quill::toFixed(limited(point.y))};
}

} // namespace

void flattenOutline(std::span<const MPoint> points, int width, int height, int margin, OutlinePath &path) {
    path.vertices.clear();
    path.closed = !points.empty() && points.size() % kStride == 0;
    if (points.empty())
        return;

    // The flattener culls against a surface that starts at the origin; moving the chain by the margin changes no
    // vertex.
    const Quill::FlattenClip clip = {width + 2 * margin, height + 2 * margin};
    const std::int32_t shift = Quill::toFixed(margin);
    const auto shifted = [shift](const MPoint &point) {
        const Quill::FixedPoint fixed = toFixedPoint(point);
        return Quill::FixedPoint{fixed.x + shift, fixed.y + shift};
    };
    path.vertices.push_back(shifted(points[0]));
    for (std::size_t i = 0; i + kStride - 1 < points.size(); i += kStride) {
        const std::size_t next = i + kStride < points.size() ? i + kStride : 0;
        if (next != 0 || path.closed)
            Quill::flattenSegment(
                {shifted(points[i]), shifted(points[i + 1]), shifted(points[i + 2]), shifted(points[next])},
                path.vertices, &clip);
    }
    for (Quill::FixedPoint &vertex : path.vertices) {
        vertex.x -= shift;
        vertex.y -= shift;
    }
}

std::size_t anchorOfControl(std::size_t control, std::size_t count) {
    if (control % kStride == 1)
        return control - 1;
    const std::size_t next = control + 1;
    return next == count ? 0 : next;
}

} // namespace canvas
