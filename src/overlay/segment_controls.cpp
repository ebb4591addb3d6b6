// SPDX-License-Identifier: MIT
#include "overlay/segment_controls.h"

#include "overlay/chain.h"
#include "overlay/types/placement.h"

namespace {

/// How far the handles of a point inserted on a bent segment reach, as a fraction of the neighbouring anchors'
/// distance: the tangent through the new point is parallel to the segment's chord, and the curve stays smooth.
constexpr double kSmoothing = 0.15;

/// from + trunc(factor x (b - a)) on one axis.
std::int32_t advance(std::int32_t from, double factor, std::int32_t a, std::int32_t b) {
    const double difference = static_cast<double>(b) - static_cast<double>(a);
    return wrappingSum(from, truncateToInt32(factor * difference));
}

MPoint controlAt(const MPoint &from, double factor, const MPoint &a, const MPoint &b) {
    return {kControlPoint, advance(from.x, factor, a.x, b.x), advance(from.y, factor, a.y, b.y), 0, 0, 0};
}

} // namespace

std::pair<MPoint, MPoint> straightControls(const MPoint &from, const MPoint &to) {
    return {controlAt(from, 0.25, from, to), controlAt(from, 0.75, from, to)};
}

InsertedRun insertedRun(const MPoint &point, const SegmentNeighbours &segment) {
    const auto &[before, begin, end, after] = segment;
    MPoint inserted = {point.type, point.x, point.y, point.curveIn, point.curveOut, 0};
    if (begin.curveOut == 0) {
        const auto [beginQuarter, beginThreeQuarters] = straightControls(begin, inserted);
        const auto [endQuarter, endThreeQuarters] = straightControls(inserted, end);
        return {beginQuarter, beginThreeQuarters, inserted, endQuarter, endThreeQuarters};
    }
    inserted.curveIn = inserted.curveOut = 1;
    return {controlAt(begin, kSmoothing, before, inserted), controlAt(inserted, -kSmoothing, begin, end), inserted,
            controlAt(inserted, kSmoothing, begin, end), controlAt(end, kSmoothing, after, inserted)};
}
