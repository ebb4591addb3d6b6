// SPDX-License-Identifier: MIT
// The shift key while a handle is dragged: the handle on the anchor's other side mirrors it, and goes back when the key
// is let go.

#include "overlay/orvanel.h"
#include "overlay/texture_lock.h"

void Orvanel::SetShiftPressed(bool pressed) {
    const TextureLockGuard lock(m_textureLock);
    if (m_shiftPressed == pressed)
        return;
    m_shiftPressed = pressed;
    if (!m_dragged || m_selected.size() != 1)
        return;
    if (pressed)
        mirrorOppositeHandle(TwinUpdate::WithCurveFlags);
    else
        restoreOppositeHandle();
    markEdited();
}

void Orvanel::saveOppositeHandle(std::uint32_t index) {
    if (const auto opposite = oppositeHandle(m_points, index))
        m_savedHandle = m_points[opposite->handle];
}

void Orvanel::mirrorOppositeHandle(TwinUpdate update) {
    const auto picked = static_cast<std::size_t>(m_hover.index);
    const auto opposite = m_hover.index < 0 ? std::nullopt : oppositeHandle(m_points, picked);
    if (!opposite)
        return;
    const MPoint &anchor = m_points[opposite->anchor];
    MPoint &handle = m_points[opposite->handle];
    handle.x = wrappingDifference(wrappingSum(anchor.x, anchor.x), m_points[picked].x);
    handle.y = wrappingDifference(wrappingSum(anchor.y, anchor.y), m_points[picked].y);
    if (update == TwinUpdate::WithCurveFlags)
        moveControl(liveChain(), opposite->handle, 0, 0);
    else
        updateTwin(liveChain(), opposite->handle);
    Convert2Mask(false);
}

void Orvanel::restoreOppositeHandle() {
    const auto opposite =
        m_hover.index < 0 ? std::nullopt : oppositeHandle(m_points, static_cast<std::size_t>(m_hover.index));
    if (!opposite)
        return;
    m_points[opposite->handle] = m_savedHandle;
    updateTwin(liveChain(), opposite->handle);
    Convert2Mask(false);
}
