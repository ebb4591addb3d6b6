// SPDX-License-Identifier: MIT
#include "overlay/chain.h"

#include <algorithm>
#include <utility>

#include "overlay/segment_controls.h"
#include "overlay/types/placement.h"

std::int32_t wrappingSum(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t wrappingDifference(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

std::size_t wrappedIndex(std::size_t index, std::ptrdiff_t steps, std::size_t count) {
    const auto size = static_cast<std::ptrdiff_t>(count);
    return static_cast<std::size_t>(((static_cast<std::ptrdiff_t>(index) + steps) % size + size) % size);
}

bool isWithin(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1, std::int32_t tolerance) {
    const std::int64_t dx = static_cast<std::int64_t>(x0) - x1;
    const std::int64_t dy = static_cast<std::int64_t>(y0) - y1;
    return dx >= -tolerance && dx <= tolerance && dy >= -tolerance && dy <= tolerance;
}

std::size_t countAnchors(const std::vector<MPoint> &points) {
    return static_cast<std::size_t>(std::count_if(points.begin(), points.end(), isAnchor));
}

std::vector<std::size_t> anchorPositions(const std::vector<MPoint> &points) {
    std::vector<std::size_t> positions;
    for (std::size_t index = 0; index < points.size(); ++index) {
        if (isAnchor(points[index]))
            positions.push_back(index);
    }
    return positions;
}

namespace {

std::optional<std::size_t> walkToAnchor(const std::vector<MPoint> &points, std::size_t index, std::ptrdiff_t step) {
    for (std::size_t visited = 0; visited < points.size(); ++visited) {
        if (isAnchor(points[index]))
            return index;
        index = wrappedIndex(index, step, points.size());
    }
    return std::nullopt;
}

void translate(const Chain &chain, std::size_t index, std::int32_t dx, std::int32_t dy) {
    MPoint &point = chain.points[index];
    point.x = wrappingSum(point.x, dx);
    point.y = wrappingSum(point.y, dy);
    updateTwin(chain, index);
}

/// One side of an anchor that moved by (dx, dy): the arriving side (step -1) or the leaving one (step 1).
void followAnchor(const Chain &chain, std::size_t anchor, std::ptrdiff_t step, bool bent, std::int32_t dx,
                  std::int32_t dy) {
    const std::size_t near = wrappedIndex(anchor, step, chain.size());
    const std::size_t far = wrappedIndex(anchor, 2 * step, chain.size());
    const std::size_t neighbour = wrappedIndex(anchor, 3 * step, chain.size());
    // An open outline's first and last anchors have no segment on one side.
    if (!isControl(chain.points[near]) || !isControl(chain.points[far]))
        return;
    if (bent) {
        translate(chain, near, dx, dy);
        return;
    }
    const auto [quarter, threeQuarters] = straightControls(chain.points[anchor], chain.points[neighbour]);
    for (const auto &[index, placed] : {std::pair{near, quarter}, std::pair{far, threeQuarters}}) {
        chain.points[index].x = placed.x;
        chain.points[index].y = placed.y;
        updateTwin(chain, index);
    }
}

/// Sets a flag of the anchor at `index`, in both vectors.
void markBent(const Chain &chain, std::size_t index, std::uint32_t MPoint::*flag, std::uint32_t MPointF::*twinFlag) {
    if (!isAnchor(chain.points[index]))
        return;
    chain.points[index].*flag = 1;
    chain.pointsF[index].*twinFlag = 1;
}

} // namespace

std::optional<std::size_t> anchorAtOrBefore(const std::vector<MPoint> &points, std::size_t index) {
    return walkToAnchor(points, index, -1);
}

std::optional<std::size_t> anchorAtOrAfter(const std::vector<MPoint> &points, std::size_t index) {
    return walkToAnchor(points, index, 1);
}

std::optional<std::size_t> hitTestAnchor(const std::vector<MPoint> &points, std::int32_t x, std::int32_t y) {
    const auto hit = std::find_if(points.begin(), points.end(), [=](const MPoint &point) {
        return isAnchor(point) && isWithin(point.x, point.y, x, y, kHitTolerance);
    });
    if (hit == points.end())
        return std::nullopt;
    return static_cast<std::size_t>(hit - points.begin());
}

void updateTwin(const Chain &chain, std::size_t index) {
    const MPointF placed = normalisePoint(chain.points[index], chain.placement);
    chain.pointsF[index].x = placed.x;
    chain.pointsF[index].y = placed.y;
}

void moveControl(const Chain &chain, std::size_t index, std::int32_t dx, std::int32_t dy) {
    translate(chain, index, dx, dy);
    const auto neighbour = [&](std::ptrdiff_t steps) { return wrappedIndex(index, steps, chain.size()); };
    const bool leaving = isAnchor(chain.points[neighbour(-1)]);
    markBent(chain, neighbour(leaving ? -1 : -2), &MPoint::curveOut, &MPointF::curveOut);
    markBent(chain, neighbour(leaving ? 2 : 1), &MPoint::curveIn, &MPointF::curveIn);
}

void moveAnchor(const Chain &chain, std::size_t index, std::int32_t dx, std::int32_t dy) {
    translate(chain, index, dx, dy);
    followAnchor(chain, index, -1, chain.points[index].curveIn == 1, dx, dy);
    followAnchor(chain, index, 1, chain.points[index].curveOut == 1, dx, dy);
}

void placeAnchor(const Chain &chain, std::size_t index, float x, float y) {
    const MPoint &anchor = chain.points[index];
    const std::int32_t dx =
        wrappingDifference(placeCoordinate(x, chain.placement.width, chain.placement.left), anchor.x);
    const std::int32_t dy =
        wrappingDifference(placeCoordinate(y, chain.placement.height, chain.placement.top), anchor.y);
    if (dx != 0 || dy != 0)
        moveAnchor(chain, index, dx, dy);
    chain.pointsF[index].x = x;
    chain.pointsF[index].y = y;
}

void moveAll(const Chain &chain, std::int32_t dx, std::int32_t dy) {
    for (std::size_t index = 0; index < chain.size(); ++index)
        translate(chain, index, dx, dy);
}

void clampMoveToDisplay(const std::vector<MPoint> &points, std::int32_t displayWidth, std::int32_t displayHeight,
                        std::int32_t &dx, std::int32_t &dy) {
    if (points.empty())
        return;
    const auto clampAxis = [&points](std::int32_t MPoint::*axis, std::int32_t display, std::int32_t &delta) {
        const auto [least, greatest] = std::minmax_element(
            points.begin(), points.end(), [axis](const MPoint &a, const MPoint &b) { return a.*axis < b.*axis; });
        const std::int64_t low = (*least).*axis;
        const std::int64_t high = (*greatest).*axis;
        std::int64_t clamped = delta;
        if (low + clamped < 0)
            clamped = -low;
        if (high + clamped > display)
            clamped = display - high;
        delta = static_cast<std::int32_t>(static_cast<std::uint32_t>(clamped));
    };
    clampAxis(&MPoint::x, displayWidth, dx);
    clampAxis(&MPoint::y, displayHeight, dy);
}

void showHandles(std::vector<MPoint> &points, std::optional<std::size_t> index) {
    if (index && isControl(points[*index]))
        return;
    for (MPoint &point : points) {
        if (isControl(point))
            point.handleShown = 0;
    }
    if (!index)
        return;
    for (const std::ptrdiff_t side : {-1, 1}) {
        MPoint &handle = points[wrappedIndex(*index, side, points.size())];
        if (isControl(handle))
            handle.handleShown = 1;
    }
}

std::optional<OppositeHandle> oppositeHandle(const std::vector<MPoint> &points, std::size_t index) {
    if (index >= points.size() || !isControl(points[index]))
        return std::nullopt;
    for (const std::ptrdiff_t side : {1, -1}) {
        const std::size_t anchor = wrappedIndex(index, side, points.size());
        const std::size_t opposite = wrappedIndex(index, 2 * side, points.size());
        if (isAnchor(points[anchor]))
            return isControl(points[opposite]) ? std::optional(OppositeHandle{anchor, opposite}) : std::nullopt;
    }
    return std::nullopt;
}
