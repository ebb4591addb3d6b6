// SPDX-License-Identifier: MIT
// Adding, moving and selecting points of the live outline.

#include <cmath>

#include "overlay/orvanel.h"
#include "overlay/texture_lock.h"
#include "overlay/types/placement.h"

namespace {

/// Where a point lies between two others on one axis: |(p - q) / (r - q)|, 0 when both coincide.
double fractionBetween(std::int32_t p, std::int32_t q, std::int32_t r) {
    if (r == q)
        return 0;
    return std::fabs((static_cast<double>(p) - q) / (static_cast<double>(r) - q));
}

std::int32_t pointBetween(std::int32_t previous, std::int32_t next, double fraction) {
    return truncateToInt32(previous + (static_cast<double>(next) - previous) * fraction + 0.5);
}

} // namespace

HRESULT Orvanel::AddPoint(INT x, INT y) {
    bool hasCanvas = false;
    {
        const TextureLockGuard lock(m_textureLock);
        appendAnchor(liveChain(), x, y);
        hasCanvas = static_cast<bool>(m_canvas);
        if (hasCanvas)
            markEdited();
    }
    if (hasCanvas)
        raise(ECB_POINT_ADD);
    // A failure in every case: the result has never carried a meaning, and hosts ignore it.
    return E_FAIL;
}

HRESULT Orvanel::AddPointInLine(const HoverPoint &hover) {
    {
        const TextureLockGuard lock(m_textureLock);
        if (hover.lineIndex < 0 || static_cast<std::size_t>(hover.lineIndex) >= m_points.size())
            return E_FAIL;
        const std::size_t position = static_cast<std::size_t>(hover.lineIndex) + 1;
        // Room first: a keyframe that went without the point would not match the others any more.
        for (const KeyFrame &keyFrame : m_keyFrames)
            makeRoom(chainOf(*keyFrame.record), kMostPointsAdded);
        // By value: the caller may pass m_hover itself.
        MPoint inserted = hover.point;
        if (!insertPoint(liveChain(), inserted, position))
            return E_FAIL;
        m_geometryChanged = true;

        const MPoint &current = m_points[position];
        const MPoint &previous = m_points[wrappedIndex(position, -1, m_points.size())];
        const MPoint &next = m_points[wrappedIndex(position, 1, m_points.size())];
        const double fractionX = fractionBetween(current.x, previous.x, next.x);
        const double fractionY = fractionBetween(current.y, previous.y, next.y);
        for (const KeyFrame &keyFrame : m_keyFrames) {
            const std::vector<MPoint> &points = keyFrame.record->points;
            // A record that is too short for the position has no such segment and keeps its points.
            if (position > points.size())
                continue;
            const MPoint &before = points[wrappedIndex(position, -1, points.size())];
            const MPoint &after = points[wrappedIndex(position, 0, points.size())];
            inserted.x = pointBetween(before.x, after.x, fractionX);
            inserted.y = pointBetween(before.y, after.y, fractionY);
            insertPoint(chainOf(*keyFrame.record), inserted, position);
            resetMask(*keyFrame.record);
        }
        Convert2Mask(false);
        markEdited();
    }
    raise(ECB_POINT_ADD);
    return S_OK;
}

int Orvanel::HitTestPoint(const MPoint &position) const {
    const TextureLockGuard lock(m_textureLock);
    const auto hit = hitTestAnchor(m_points, position.x, position.y);
    return hit ? static_cast<int>(*hit) : CONST_DEFAULT_IDX;
}

int Orvanel::SelectAllPoints() {
    const TextureLockGuard lock(m_textureLock);
    m_selected.clear();
    for (std::size_t index = 0; index < m_points.size(); ++index) {
        if (isAnchor(m_points[index]))
            m_selected.push_back(static_cast<unsigned int>(index));
    }
    markEdited();
    return 0;
}

void Orvanel::clampMove(INT &dx, INT &dy) const {
    clampMoveToDisplay(m_points, static_cast<std::int32_t>(m_displayWidth), static_cast<std::int32_t>(m_displayHeight),
                       dx, dy);
}

int Orvanel::MoveAllPoints(INT dx, INT dy) {
    const TextureLockGuard lock(m_textureLock);
    if ((dx == 0 && dy == 0) || m_points.empty())
        return 0;
    clampMove(dx, dy);
    if (dx == 0 && dy == 0)
        return 0;
    moveAll(liveChain(), dx, dy);
    Convert2Mask(false);
    markEdited();
    return 0;
}

HRESULT Orvanel::MovePoints(const std::vector<unsigned int> &indices, INT x, INT y) {
    const TextureLockGuard lock(m_textureLock);
    MPoint reference;
    if (m_hover.type == kHoverPoint && m_hover.index >= 0 &&
        static_cast<std::size_t>(m_hover.index) < m_points.size()) {
        reference = m_points[static_cast<std::size_t>(m_hover.index)];
    } else if (m_hover.type == kHoverLine) {
        const std::lock_guard hoverLock(m_hoverLock);
        reference = m_hover.point;
        m_hover.point.x = x;
        m_hover.point.y = y;
    } else {
        return E_FAIL;
    }
    INT dx = wrappingDifference(x, reference.x);
    INT dy = wrappingDifference(y, reference.y);
    m_pointsMoved = true;
    if (indices.size() == m_points.size()) {
        clampMove(dx, dy);
        if (dx == 0 && dy == 0)
            return S_OK;
    }
    const Chain chain = liveChain();
    for (const unsigned int index : indices) {
        if (index >= m_points.size())
            continue;
        if (isAnchor(m_points[index]))
            moveAnchor(chain, index, dx, dy);
        else if (indices.size() == 1 && isControl(m_points[index]))
            moveControl(chain, index, dx, dy);
    }
    Convert2Mask(false);
    return S_OK;
}
