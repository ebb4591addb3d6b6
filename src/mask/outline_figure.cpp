// SPDX-License-Identifier: MIT
#include "mask/outline_figure.h"

namespace Quill {
namespace {

constexpr int kPointsPerAnchor = 3;

FixedPoint fixedPoint(const MPoint &point) {
    return {toFixed(point.x), toFixed(point.y)};
}

/// Appends the segment from `points[start]` whose end point is `end`.
void addSegment(const MPoint *points, int start, const MPoint &end, const FlattenClip &clip, VertexBuffer &polyline) {
    const MPoint *segment = points + start;
    flattenSegment({fixedPoint(segment[0]), fixedPoint(segment[1]), fixedPoint(segment[2]), fixedPoint(end)}, polyline,
                   &clip);
}

bool isDrawable(const MPoint &point) {
    const auto inRange = [](std::int32_t value) {
        return value >= -kMaxPixelCoordinate && value <= kMaxPixelCoordinate;
    };
    return inRange(point.x) && inRange(point.y);
}

} // namespace

bool isDrawable(const MPoint *points, int count) {
    bool drawable = true;
    for (int i = 0; i < count; ++i)
        drawable &= isDrawable(points[i]);
    return drawable;
}

void buildPolygon(const MPoint *points, int count, VertexBuffer &polyline) {
    polyline.clear();
    if (!isDrawable(points, count))
        return;
    for (int i = 0; i < count; ++i)
        polyline.push_back(fixedPoint(points[i]));
}

void buildOutline(const MPoint *points, int count, const FlattenClip &clip, VertexBuffer &polyline) {
    polyline.clear();
    const int closing = count - kPointsPerAnchor;
    if (count % kPointsPerAnchor != 0) {
        if (!isDrawable(points[0]) || !isDrawable(points + closing, kPointsPerAnchor))
            return;
        polyline.push_back(fixedPoint(points[closing]));
    } else {
        if (!isDrawable(points, count))
            return;
        polyline.push_back(fixedPoint(points[0]));
        for (int i = 0; i < closing; i += kPointsPerAnchor)
            addSegment(points, i, points[i + kPointsPerAnchor], clip, polyline);
    }
    addSegment(points, closing, points[0], clip, polyline);
}

} // namespace Quill
