// SPDX-License-Identifier: MIT
#include "canvas/stroke_segment.h"

#include <cmath>
#include <utility>

namespace canvas {
namespace {

// Up to this turn (cosine of 0.3 radians) a mitre is within a hundredth of the reach of the rounded corner, and
// StrokeJoint's limits hold: kLean is the tangent of half the turn.
constexpr double kSmoothTurn = 0.955;

// Liang and Barsky: the part of a line, as fractions of its length, with low <= value <= high on one axis.
bool clipAxis(double origin, double delta, double low, double high, double &enter, double &leave) {
    if (delta == 0)
        return origin >= low && origin <= high;
    double first = (low - origin) / delta;
    double last = (high - origin) / delta;
    if (first > last)
        std::swap(first, last);
    enter = std::max(enter, first);
    leave = std::min(leave, last);
    return enter <= leave;
}

} // namespace

StrokeSegment::StrokeSegment(const Position &first, const Position &last) : from(first), to(last) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = std::sqrt(dx * dx + dy * dy);
    along = {dx / length, dy / length};
}

bool StrokeSegment::clip(const Extent &extent) {
    const Position whole = from;
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    double enter = 0;
    double leave = 1;
    if (!clipAxis(whole.x, dx, extent.low.x, extent.high.x, enter, leave) ||
        !clipAxis(whole.y, dy, extent.low.y, extent.high.y, enter, leave))
        return false;
    if (enter > 0)
        from = {whole.x + enter * dx, whole.y + enter * dy};
    if (leave < 1)
        to = {whole.x + leave * dx, whole.y + leave * dy};
    return true;
}

StrokeJoint::StrokeJoint(const StrokeSegment &first, const StrokeSegment &second)
    : endOfFirst(first.along), startOfSecond(second.along),
      isSharp(first.along.x * second.along.x + first.along.y * second.along.y < kSmoothTurn) {
    if (!isSharp)
        endOfFirst = startOfSecond = {first.along.x + second.along.x, first.along.y + second.along.y};
}

} // namespace canvas
