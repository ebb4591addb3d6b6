// SPDX-License-Identifier: MIT
// The operations of chain.h that change the number of points.

#include <algorithm>
#include <array>
#include <tuple>

#include "overlay/chain.h"
#include "overlay/segment_controls.h"
#include "overlay/types/placement.h"

namespace {

/// There is room.
void insertRun(const Chain &chain, std::size_t position, const InsertedRun &run) {
    std::array<MPointF, std::tuple_size_v<InsertedRun>> twins;
    std::transform(run.begin(), run.end(), twins.begin(),
                   [&chain](const MPoint &point) { return normalisePoint(point, chain.placement); });
    const auto offset = static_cast<std::ptrdiff_t>(position);
    chain.points.insert(chain.points.begin() + offset, run.begin(), run.end());
    chain.pointsF.insert(chain.pointsF.begin() + offset, twins.begin(), twins.end());
}

void erase(const Chain &chain, std::size_t position, std::size_t count) {
    const auto first = static_cast<std::ptrdiff_t>(position);
    const auto last = static_cast<std::ptrdiff_t>(position + count);
    chain.points.erase(chain.points.begin() + first, chain.points.begin() + last);
    chain.pointsF.erase(chain.pointsF.begin() + first, chain.pointsF.begin() + last);
}

/// Number of control points that directly follow `index` without wrapping.
std::size_t controlsAfter(const std::vector<MPoint> &points, std::size_t index) {
    const auto first = points.begin() + static_cast<std::ptrdiff_t>(index) + 1;
    return static_cast<std::size_t>(std::find_if_not(first, points.end(), isControl) - first);
}

/// Appends an anchor or a handle together with its twin. There is room.
void append(const Chain &chain, const MPoint &point) {
    chain.points.push_back(point);
    chain.pointsF.push_back(normalisePoint(point, chain.placement));
}

void appendStraightControls(const Chain &chain, const MPoint &from, const MPoint &to) {
    const auto [quarter, threeQuarters] = straightControls(from, to);
    append(chain, quarter);
    append(chain, threeQuarters);
}

/// Makes a chain of some of its anchors, in any order. The control points between two that were neighbours stay;
/// straight ones arise between others.
void rebuild(const Chain &chain, const std::vector<std::size_t> &kept) {
    std::vector<MPoint> points;
    std::vector<MPointF> pointsF;
    const Chain rebuilt = {points, pointsF, chain.placement};
    std::size_t most = 0;
    for (const std::size_t anchor : kept)
        most += 1 + std::max<std::size_t>(2, controlsAfter(chain.points, anchor));
    makeRoom(rebuilt, most);
    const bool closed = isClosed(chain);
    for (std::size_t position = 0; position < kept.size(); ++position) {
        const std::size_t anchor = kept[position];
        points.push_back(chain.points[anchor]);
        pointsF.push_back(chain.pointsF[anchor]);
        const bool isLast = position + 1 == kept.size();
        if (isLast && !closed)
            break;
        const std::size_t next = kept[isLast ? 0 : position + 1];
        const std::size_t controls = controlsAfter(chain.points, anchor);
        if (kept.size() > 1 && wrappedIndex(anchor, static_cast<std::ptrdiff_t>(controls) + 1, chain.size()) == next) {
            for (std::size_t index = anchor + 1; index <= anchor + controls; ++index) {
                points.push_back(chain.points[index]);
                pointsF.push_back(chain.pointsF[index]);
            }
            continue;
        }
        points.back().curveOut = pointsF.back().curveOut = 0;
        appendStraightControls(rebuilt, chain.points[anchor], chain.points[next]);
        chain.points[next].curveIn = chain.pointsF[next].curveIn = 0;
        if (isLast)
            points.front().curveIn = pointsF.front().curveIn = 0;
    }
    chain.points = std::move(points);
    chain.pointsF = std::move(pointsF);
}

} // namespace

void makeRoom(const Chain &chain, std::size_t count) {
    const auto grow = [wanted = chain.size() + count](auto &points) {
        // Twice as much, so that appending point by point stays linear.
        if (points.capacity() < wanted)
            points.reserve(std::max(wanted, 2 * points.capacity()));
    };
    grow(chain.points);
    grow(chain.pointsF);
}

bool isClosed(const Chain &chain) {
    return !chain.points.empty() && isControl(chain.points.back());
}

void appendAnchor(const Chain &chain, std::int32_t x, std::int32_t y) {
    makeRoom(chain, kMostPointsAdded);
    const MPoint anchor = {kAnchorPoint, x, y, 0, 0, 0};
    const bool closed = isClosed(chain);
    if (closed) {
        // The closing segment leads to the new anchor from here on, and another one leads back from it.
        const std::size_t last = anchorAtOrBefore(chain.points, chain.size() - 1).value_or(0);
        erase(chain, last + 1, controlsAfter(chain.points, last));
        chain.points[last].curveOut = chain.pointsF[last].curveOut = 0;
    }
    if (!chain.points.empty())
        appendStraightControls(chain, chain.points.back(), anchor);
    append(chain, anchor);
    if (closed)
        closeChain(chain);
}

void closeChain(const Chain &chain) {
    const auto first = chain.points.empty() ? std::nullopt : anchorAtOrAfter(chain.points, 0);
    if (!first)
        return;
    makeRoom(chain, 2);
    const std::size_t last = *anchorAtOrBefore(chain.points, chain.size() - 1);
    erase(chain, last + 1, controlsAfter(chain.points, last));
    const MPoint from = chain.points[last];
    const MPoint to = chain.points[*first];
    appendStraightControls(chain, from, to);
    chain.points[*first].curveIn = 0;
    chain.pointsF[*first].curveIn = 0;
}

bool insertPoint(const Chain &chain, const MPoint &point, std::size_t index) {
    if (chain.points.empty())
        return false;
    const std::size_t count = chain.size();
    const std::size_t start =
        isAnchor(chain.points[index % count]) ? wrappedIndex(index % count, -1, count) : index % count;
    const auto found = anchorAtOrBefore(chain.points, start);
    if (!found)
        return false;
    makeRoom(chain, kMostPointsAdded);
    const std::size_t begin = *found;
    erase(chain, begin + 1, std::min<std::size_t>(2, controlsAfter(chain.points, begin)));
    const std::size_t end = wrappedIndex(begin, 1, chain.size());
    const std::size_t before = *anchorAtOrBefore(chain.points, wrappedIndex(begin, -1, chain.size()));
    const std::size_t after = *anchorAtOrAfter(chain.points, wrappedIndex(end, 1, chain.size()));
    const SegmentNeighbours segment = {chain.points[before], chain.points[begin], chain.points[end],
                                       chain.points[after]};
    insertRun(chain, begin + 1, insertedRun(point, segment));
    return true;
}

void removeAnchors(const Chain &chain, const std::vector<unsigned int> &selected) {
    std::vector<bool> removed(chain.size(), false);
    for (const unsigned int index : selected) {
        if (index < chain.size())
            removed[index] = true;
    }
    std::vector<std::size_t> kept = anchorPositions(chain.points);
    std::erase_if(kept, [&removed](std::size_t index) { return removed[index]; });
    rebuild(chain, kept);
}

void reorderAnchors(const Chain &chain, const std::vector<std::uint32_t> &order) {
    const std::vector<std::size_t> positions = anchorPositions(chain.points);
    std::vector<std::size_t> kept;
    kept.reserve(order.size());
    for (const std::uint32_t number : order)
        kept.push_back(positions[number]);
    rebuild(chain, kept);
}

void removeLastAnchor(const Chain &chain) {
    const std::size_t count = std::min<std::size_t>(3, chain.size());
    erase(chain, chain.size() - count, count);
}
