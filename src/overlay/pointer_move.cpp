// SPDX-License-Identifier: MIT
// Movements of the pointer: hovering, dragging, the rubber band.

#include <algorithm>

#include "overlay/orvanel.h"

namespace {

/// The rectangle spanned by two corners.
PixelRect spanned(const MPoint &a, const MPoint &b) {
    const std::int32_t left = std::min(a.x, b.x);
    const std::int32_t top = std::min(a.y, b.y);
    return {left, top, wrappingDifference(std::max(a.x, b.x), left), wrappingDifference(std::max(a.y, b.y), top)};
}

/// Half-open on both axes.
bool contains(const PixelRect &rect, const MPoint &point) {
    const std::int64_t x = std::int64_t{point.x} - rect.left;
    const std::int64_t y = std::int64_t{point.y} - rect.top;
    return x >= 0 && x < rect.width && y >= 0 && y < rect.height;
}

} // namespace

HRESULT Orvanel::handleMove(const MPoint &position) {
    if (m_isMask && m_geometryChanged && !m_pointsMoved && !m_points.empty()) {
        m_lineSamples.rebuild(m_points, static_cast<int>(m_displayWidth), static_cast<int>(m_displayHeight));
        m_geometryChanged = false;
    }
    if (!m_isMask)
        hoverWhileDrawing(position);
    else if (m_mouseDown)
        dragTo(position);
    else
        trackHover(position);
    return S_OK;
}

void Orvanel::hoverWhileDrawing(const MPoint &position) {
    if (m_hover.type == kHoverLine)
        setHover({});
    // Only the first anchor answers: a press on it closes the outline.
    if (hitTestAnchor(m_points, position.x, position.y) == 0U) {
        if (m_hover.type == kHoverPoint && m_hover.index == 0)
            return;
        setHover({kHoverPoint, 0, CONST_DEFAULT_IDX, {}});
        m_dirty = true;
    } else if (m_hover.type == kHoverPoint) {
        setHover({});
        m_dirty = true;
    }
}

void Orvanel::dragTo(const MPoint &position) {
    if (m_pointsMoved) {
        MovePoints(m_selected, position.x, position.y);
        if (m_shiftPressed && m_selected.size() == 1)
            mirrorOppositeHandle(TwinUpdate::WithCurveFlags);
        m_dragged = true;
    } else {
        m_band = spanned(m_press, position);
        m_selected.clear();
        for (std::size_t index = 0; index < m_points.size(); ++index) {
            if (isAnchor(m_points[index]) && contains(m_band, m_points[index]))
                m_selected.push_back(static_cast<unsigned int>(index));
        }
    }
    markEdited();
}

void Orvanel::trackHover(const MPoint &position) {
    const auto hovered = std::find_if(m_points.begin(), m_points.end(), [&](const MPoint &point) {
        const bool pickable = isAnchor(point) || (isControl(point) && point.handleShown);
        return pickable && isWithin(point.x, point.y, position.x, position.y, kHitTolerance);
    });
    if (hovered != m_points.end()) {
        const auto index = static_cast<std::int32_t>(hovered - m_points.begin());
        if (m_hover.type == kHoverPoint && m_hover.index == index)
            return;
        setHover({kHoverPoint, index, CONST_DEFAULT_IDX, {}});
        m_dirty = true;
        return;
    }
    if (const auto hit = m_lineSamples.find(position.x, position.y, kHitTolerance)) {
        setHover({kHoverLine, CONST_DEFAULT_IDX, 3 * hit->segment, hit->sample});
        m_dirty = true;
        return;
    }
    if (m_hover.type != kHoverNothing) {
        setHover({});
        markWholeSurfaceDirty();
    }
}
