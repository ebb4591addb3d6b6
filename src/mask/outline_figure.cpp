// SPDX-License-Identifier: MIT
#include "mask/outline_figure.h"

namespace Quill {
namespace {

constexpr int kPointsPerAnchor = 3;

FixedPoint fixedPoint(const MPoint &point) {
    return {toFixed(point.x), toFixed(point.y)};
}

/// The segments that are drawn: three points each, every one ending where the next starts and the last in point 0.
struct DrawnSegments {
    const MPoint *first;
    int count;

    /// All of them, or the closing one alone when the count is no multiple of three.
    DrawnSegments(const MPoint *points, int pointCount)
        : first(pointCount % kPointsPerAnchor == 0 ? points : points + pointCount - kPointsPerAnchor),
          count(pointCount % kPointsPerAnchor == 0 ? pointCount : kPointsPerAnchor) {}
};

/// Appends the segment whose start and controls are given with its end.
void addSegment(const MPoint *segment, const MPoint &end, const FlattenClip *clip, VertexBuffer &polyline) {
    flattenSegment({fixedPoint(segment[0]), fixedPoint(segment[1]), fixedPoint(segment[2]), fixedPoint(end)}, polyline,
                   clip);
}

template <typename InRange>
bool all(const MPoint *points, int count, InRange inRange) {
    bool result = true;
    for (int i = 0; i < count; ++i)
        result &= inRange(points[i]);
    return result;
}

bool canDraw(const MPoint &point) {
    const auto inRange = [](std::int32_t value) {
        return value >= -kMaxPixelCoordinate && value <= kMaxPixelCoordinate;
    };
    bool result = inRange(point.x);
    result &= inRange(point.y);
    return result;
}

bool isWithin(const MPoint &point, const FlattenClip &clip) {
    return (point.x >= 0) & (point.y >= 0) & (point.x <= clip.width) & (point.y <= clip.height);
}

} // namespace

bool isDrawable(const MPoint *points, int count) {
    return all(points, count, canDraw);
}

bool isDrawableOutline(const MPoint *points, int count) {
    const DrawnSegments drawn(points, count);
    return isDrawable(drawn.first, drawn.count) && canDraw(points[0]);
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
    const DrawnSegments drawn(points, count);
    // An outline within the surface has no segment off it, so no segment needs to be looked at.
    const auto within = [&clip](const MPoint &point) { return isWithin(point, clip); };
    const bool isInside = all(drawn.first, drawn.count, within) && within(points[0]);
    if (!isInside && !isDrawableOutline(points, count))
        return;
    polyline.push_back(fixedPoint(*drawn.first));
    for (int i = 0; i < drawn.count; i += kPointsPerAnchor)
        addSegment(drawn.first + i, i + kPointsPerAnchor < drawn.count ? drawn.first[i + kPointsPerAnchor] : points[0],
                   isInside ? nullptr : &clip, polyline);
}

} // namespace Quill
