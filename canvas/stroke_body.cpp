// SPDX-License-Identifier: MIT
#include "canvas/stroke_body.h"

#include <cmath>

namespace canvas {
namespace {

// Up to this turn (cosine of 0.3 radians) a mitre is within a hundredth of the reach of the rounded corner.
constexpr double kSmoothTurn = 0.955;
// How far such a joint's corners lie past the end: along the line (tangent of half the turn) and across it, in reaches.
constexpr double kJointLean = 0.16;
constexpr double kMitre = 1.02;
// Bodies overlap by this much (pixels) so that rounding leaves no pixel between two of them.
constexpr double kJointOverlap = 1.0 / 64;
// Normals are kept this far from the rows' own direction; over the longest row that moves a border by 1/300 pixel.
constexpr double kLeastNormal = 1e-7;

// Truncated; what is too large to matter is kept from overflowing.
std::int64_t toFixed(double value, int fractionBits) {
    constexpr double kLimit = 1e17;
    const double units = value * static_cast<double>(std::int64_t{1} << fractionBits);
    return static_cast<std::int64_t>(std::max(-kLimit, std::min(kLimit, units)));
}

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

double overhang(const StrokeBody &body, double reach) {
    return reach * (kMitre * std::abs(body.directionX) + kJointLean * std::abs(body.directionY)) + 1.0 / 16;
}

} // namespace

StrokeBody::StrokeBody(const Position &first, const Position &last) : from(first), to(last) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = std::sqrt(dx * dx + dy * dy);
    directionX = dx / length;
    directionY = dy / length;
    start = {from, directionX, directionY};
    end = {to, -directionX, -directionY};
}

// What is cut at the sides is out of sight, so a straight cut does.
bool StrokeBody::clip(double left, double top, double right, double bottom) {
    const Position whole = from;
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    double enter = 0;
    double leave = 1;
    if (!clipAxis(whole.x, dx, left, right, enter, leave) || !clipAxis(whole.y, dy, top, bottom, enter, leave))
        return false;
    if (enter > 0) {
        from = {whole.x + enter * dx, whole.y + enter * dy};
        start = {from, directionX, directionY};
    }
    if (leave < 1) {
        to = {whole.x + leave * dx, whole.y + leave * dy};
        end = {to, -directionX, -directionY};
    }
    return true;
}

bool joinBodies(StrokeBody &before, StrokeBody &after) {
    const double cosine = before.directionX * after.directionX + before.directionY * after.directionY;
    if (cosine < kSmoothTurn)
        return false;
    const double x = before.directionX + after.directionX;
    const double y = before.directionY + after.directionY;
    before.end = {before.to, -x, -y};
    after.start = {after.from, x, y};
    return true;
}

StrokeBodyRows::StrokeBodyRows(const StrokeBody &body, double reach, double stepsPerPixel, int first, int end) {
    const double past = overhang(body, reach);
    const double top = std::min(body.from.y, body.to.y) - past;
    const double bottom = std::max(body.from.y, body.to.y) + past;
    firstRow = std::max(first, static_cast<int>(std::ceil(top)));
    endRow = std::min(end, static_cast<int>(std::floor(bottom)) + 1);
    if (firstRow >= endRow)
        return;

    const double normalX = -body.directionY;
    const double normalY = body.directionX;
    // A half plane normal . (position - at) >= -slack, solved for the column, is a bound that moves by -normalY /
    // normalX.
    const auto awayFromRows = [](double nx) {
        return std::abs(nx) < kLeastNormal ? std::copysign(kLeastNormal, nx) : nx;
    };
    int upper = 3;
    const double sideNormal = awayFromRows(normalX);
    const double sideStep = -normalY / sideNormal;
    const double middle = body.from.x + (firstRow - body.from.y) * sideStep;
    const double halfWidth = reach / std::abs(sideNormal);
    limit(upper, sideStep, true, middle - halfWidth);
    limit(upper, sideStep, false, middle + halfWidth);
    for (const StrokeCut *const cut : {&body.start, &body.end}) {
        const double nx = awayFromRows(cut->normalX);
        const double perNormal = 1 / nx;
        const double step = -cut->normalY * perNormal;
        limit(upper, step, nx > 0, cut->at.x + (firstRow - cut->at.y) * step - kJointOverlap * perNormal);
    }
    perColumn = toFixed(normalX * stepsPerPixel, kDistanceFraction);
    perRow = toFixed(normalY * stepsPerPixel, kDistanceFraction);
    const double atFirstRow = (firstRow - body.from.y) * normalY - body.from.x * normalX;
    distance = toFixed(atFirstRow * stepsPerPixel, kDistanceFraction);
}

void StrokeBodyRows::limit(int &upper, double step, bool isLower, double column) {
    bounds[isLower ? lowerCount++ : upper--] = {toFixed(column, kColumnFraction), toFixed(step, kColumnFraction)};
}

} // namespace canvas
