// SPDX-License-Identifier: MIT
// The display surface and the video rectangle on it.

#include "callback/py_locks.h"
#include "overlay/orvanel.h"
#include "overlay/texture_lock.h"
#include "overlay/types/placement.h"
#include "support/diag_log.h"

HRESULT Orvanel::ResetBuffer() {
    const PyAllowThreads allowThreads;
    DiagLogPrint("Orvanel::ResetBuffer() enter\n");
    const TextureLockGuard lock(m_textureLock);
    if (!m_canvas)
        return E_FAIL;
    m_bufferLen = m_stride * m_displayHeight;
    const HRESULT result = m_canvas->SetSize(m_displayWidth, m_displayHeight, 1, 1);
    markEdited();
    DiagLogPrint("Orvanel::ResetBuffer() end\n");
    return result;
}

int Orvanel::SetVideoCoordinate(INT displayWidth, INT displayHeight, INT left, INT top, INT width, INT height) {
    const PyAllowThreads allowThreads;
    const TextureLockGuard lock(m_textureLock);
    const PixelRect videoRect = {left, top, width, height};
    const auto newWidth = static_cast<std::uint32_t>(displayWidth);
    const auto newHeight = static_cast<std::uint32_t>(displayHeight);
    const bool resized = newWidth != m_displayWidth || newHeight != m_displayHeight;
    if (!resized && videoRect == m_videoRect)
        return 1;
    DiagLogPrint(
        "Orvanel::SetVideoCoordinate DisplaySize=(%d,%d), Video left/top(DC)=(%d,%d), Video width/height(DC)=(%d,%d)",
        displayWidth, displayHeight, left, top, width, height);
    if (resized) {
        m_displayWidth = newWidth;
        m_displayHeight = newHeight;
        m_stride = newWidth * 4;
        m_bufferLen = m_stride * newHeight;
        ResetBuffer();
    }
    m_videoRect = videoRect;
    replaceScreenPoints();
    m_geometryChanged = true;
    markEdited();
    return 1;
}

void Orvanel::replaceScreenPoints() {
    for (std::size_t index = 0; index < m_points.size(); ++index) {
        m_points[index].x = placeCoordinate(m_pointsF[index].x, m_videoRect.width, m_videoRect.left);
        m_points[index].y = placeCoordinate(m_pointsF[index].y, m_videoRect.height, m_videoRect.top);
    }
}

int Orvanel::SetVideoInfo(LONGLONG first, LONGLONG second, LONGLONG third, LONGLONG fourth) {
    const TextureLockGuard lock(m_textureLock);
    m_videoInfo = {first, second, third, fourth};
    m_dirty = true;
    return 0;
}

void Orvanel::SetSizeScaler(float scale) {
    const TextureLockGuard lock(m_textureLock);
    m_sizeScaler = scale;
    m_markSizes = MarkSizes::scaled(scale);
}
