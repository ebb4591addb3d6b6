// SPDX-License-Identifier: MIT
// The object's questions and switches.

#include "overlay/orvanel.h"
#include "overlay/texture_lock.h"

int Orvanel::ResetDirtyFlag() {
    m_dirty = false;
    return 0;
}

int Orvanel::ResetNewMask() {
    m_newMask = false;
    return 0;
}

bool Orvanel::IsHoverControlPoint() {
    m_textureLock.refuseWhatAForkLeft();
    const std::lock_guard lock(m_hoverLock);
    return m_onKeyFrame && m_hover.type == kHoverPoint;
}

bool Orvanel::IsHoverPointInLine() {
    m_textureLock.refuseWhatAForkLeft();
    const std::lock_guard lock(m_hoverLock);
    return m_onKeyFrame && m_hover.type == kHoverLine;
}

bool Orvanel::IsHoverSelectedPointInLine() {
    const TextureLockGuard lock(m_textureLock);
    const std::lock_guard hoverLock(m_hoverLock);
    if (!m_onKeyFrame || m_selected.empty())
        return false;
    const auto line = static_cast<std::uint32_t>(m_hover.lineIndex);
    const std::uint32_t next = std::size_t{line} + 1 == m_points.size() ? 0 : line + 1;
    return isSelected(line) && isSelected(next);
}

bool Orvanel::IsNeedHandleMouseEvent() {
    m_textureLock.refuseWhatAForkLeft();
    const std::lock_guard lock(m_hoverLock);
    return !m_isMask || m_onKeyFrame;
}

bool Orvanel::SetHoverCentralPoint(bool hovered) {
    m_textureLock.refuseWhatAForkLeft();
    const std::lock_guard lock(m_stateLock);
    m_hoverCentralPoint = hovered;
    return true;
}

bool Orvanel::IsAnyPointSelected() const {
    const TextureLockGuard lock(m_textureLock);
    return !m_selected.empty();
}

bool Orvanel::IsBCPSelected() const {
    const TextureLockGuard lock(m_textureLock);
    // Hosts ask only while a point is hovered; any other index is answered as no handle.
    const auto index = static_cast<std::size_t>(m_hover.index);
    return m_hover.index >= 0 && index < m_points.size() && isControl(m_points[index]);
}

bool Orvanel::IsAnyBezierControlPointChanged() const {
    const TextureLockGuard lock(m_textureLock);
    for (const MPoint &point : m_points) {
        if (isAnchor(point) && (point.curveIn || point.curveOut))
            return true;
    }
    return false;
}
