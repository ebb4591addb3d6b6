// SPDX-License-Identifier: MIT
// The press of the mouse button: drawing and closing an outline, picking, inserting, starting a rubber band.

#include <cstdlib>

#include "overlay/orvanel.h"

namespace {

/// The fewest points of an open outline that a press on its first anchor closes: three anchors.
constexpr std::size_t kFewestPointsToClose = 7;

HoverPoint overPoint(std::size_t index) {
    return {kHoverPoint, static_cast<std::int32_t>(index), CONST_DEFAULT_IDX, {}};
}

/// A press with the shift key down continues horizontally or vertically from the last point; a tie is vertical.
MPoint snapToAxis(const MPoint &position, const MPoint &last) {
    const std::int64_t dx = std::llabs(static_cast<std::int64_t>(last.x) - position.x);
    const std::int64_t dy = std::llabs(static_cast<std::int64_t>(last.y) - position.y);
    MPoint snapped = position;
    if (dx > dy)
        snapped.y = last.y;
    else
        snapped.x = last.x;
    return snapped;
}

} // namespace

HRESULT Orvanel::handlePress(const MPoint &position) {
    m_mouseDown = true;
    if (!m_isMask)
        return pressWhileDrawing(position);
    if (m_hover.type == kHoverLine)
        return pressOnSegment(position);
    if (m_hover.type == kHoverPoint && m_hover.index >= 0 && static_cast<std::size_t>(m_hover.index) < m_points.size())
        return pressOnPoint();
    return pressOnNothing(position);
}

HRESULT Orvanel::pressWhileDrawing(const MPoint &position) {
    const bool closes =
        m_points.size() >= kFewestPointsToClose && hitTestAnchor(m_points, position.x, position.y) == 0U;
    if (!closes) {
        const bool snaps = m_shiftPressed && !m_points.empty();
        const MPoint anchor = snaps ? snapToAxis(position, m_points.back()) : position;
        AddPoint(anchor.x, anchor.y);
        return S_OK;
    }
    closeChain(liveChain());
    const bool announces = Convert2Mask(true) == S_OK;
    setHover(overPoint(0));
    if (!announces) {
        // Keyframes that exist already were refreshed instead: the host knows this mask.
        m_pointsMoved = true;
        return S_OK;
    }
    raise(m_newMask ? ECB_MASK_UPDATE : ECB_MASK_CREATE);
    m_newMask = true;
    return S_OK;
}

HRESULT Orvanel::pressOnSegment(const MPoint &position) {
    if (IsHoverSelectedPointInLine()) {
        // Both ends are selected: the drag that follows moves the selection.
        m_pointsMoved = true;
        m_dirty = true;
        return S_OK;
    }
    AddPointInLine(m_hover);
    if (const auto hit = hitTestAnchor(m_points, position.x, position.y)) {
        setHover(overPoint(*hit));
        m_selected.assign(1, static_cast<unsigned int>(*hit));
        showHandles(m_points, hit);
    } else {
        setHover({});
    }
    m_pointsMoved = true;
    markEdited();
    return S_OK;
}

HRESULT Orvanel::pressOnPoint() {
    const auto index = static_cast<std::uint32_t>(m_hover.index);
    if (!isSelected(index)) {
        clearDragBookkeeping();
        m_selected.assign(1, index);
        showHandles(m_points, index);
    }
    if (m_selected.size() == 1)
        saveOppositeHandle(index);
    m_pointsMoved = true;
    markEdited();
    return S_OK;
}

HRESULT Orvanel::pressOnNothing(const MPoint &position) {
    m_band = {};
    m_selected.clear();
    m_press = position;
    showHandles(m_points, std::nullopt);
    return S_OK;
}
