// SPDX-License-Identifier: MIT
#include "mask/outline_figure.h"

namespace Quill {
namespace {

constexpr int kPointsPerAnchor = 3;

FixedPoint fixedPoint(const MPoint &point) {
    return {toFixed(point.x), toFixed(point.y)};
}

/// Appends the segment from `points[start]` whose end point is `end`.
void addSegment(const MPoint *points, int start, const MPoint &end, const FlattenClip *clip, VertexBuffer &polyline) {
    const MPoint *segment = points + start;
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
    return inRange(point.x) & inRange(point.y);
}

bool isWithin(const MPoint &point, const FlattenClip &clip) {
    return (point.x >= 0) & (point.y >= 0) & (point.x <= clip.width) & (point.y <= clip.height);
}

} // namespace

bool isDrawable(const MPoint *points, int count) {
    return all(points, count, canDraw);
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
    const bool isChain = count % kPointsPerAnchor == 0;
    if (!isChain && !canDraw(points[0]))
        return;
    const MPoint *first = isChain ? points : points + closing;
    const int used = isChain ? count : kPointsPerAnchor;
    // An outline within the surface has no segment off it, so no segment needs to be looked at.
    const FlattenClip *toTest = nullptr;
    if (!all(first, used, [&clip](const MPoint &point) { return isWithin(point, clip); })) {
        if (!isDrawable(first, used))
            return;
        toTest = &clip;
    }
    polyline.push_back(fixedPoint(*first));
    if (isChain)
        for (int i = 0; i < closing; i += kPointsPerAnchor)
            addSegment(points, i, points[i + kPointsPerAnchor], toTest, polyline);
    addSegment(points, closing, points[0], toTest, polyline);
}

} // namespace Quill
