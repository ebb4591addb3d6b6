// SPDX-License-Identifier: MIT
// Drawing the overlay through the drawing component: outline, hover mark, selection.
//
// Without a component nothing is drawn: the object then answers as if everything were invisible.
//
// The component gets copies. It may take structures by value, for which the calling convention passes an address: what
// it then takes for a parameter of its own, and may write to, would be this object's.

#include "overlay/orvanel.h"

#include "callback/py_locks.h"
#include "callback/python.h"
#include "overlay/texture_lock.h"
#include "overlay/worth_letting_go.h"
#include "platform/png_file.h"
#include "support/diag_log.h"

namespace {

constexpr CanvasColor kMarkerBlack = CanvasColor::fromArgb(0xFF000000);
constexpr CanvasColor kMarkerCyan = CanvasColor::fromArgb(0xFF4AE1E1);
constexpr CanvasColor kRegionBorder = CanvasColor::fromArgb(0xFF257BC9);
constexpr CanvasColor kRegionFill = CanvasColor::fromArgb(0x8065A5E2);
constexpr OutlineStyle kOutlineStyle = {CanvasColor::fromArgb(0xFF00A5E2), CanvasColor::fromArgb(0x7D000078),
                                        CanvasColor::fromArgb(0xFF65A5E2), 0};

} // namespace

void Orvanel::ReDraw() {
    DiagLogPrint("Orvanel::ReDraw() enter\n");
    const TextureLockGuard lock(m_textureLock);
    drawCurrentPicture(m_isMask);
    DiagLogPrint("Orvanel::ReDraw() end\n");
}

void Orvanel::drawCurrentPicture(bool isMask) {
    if (!m_canvas)
        return;
    const PyAllowThreads allowThreads(isLargePicture());
    m_canvas->Clear();
    if (!m_points.empty()) {
        m_canvasPoints = m_points;
        OutlineStyle style = kOutlineStyle;
        m_canvas->DrawOutline(m_canvasPoints.data(), static_cast<INT>(m_canvasPoints.size()), style, isMask,
                              m_sizeScaler);
    }
    DrawHoverPoint();
    DrawSelectedRegion();
}

void Orvanel::clearSurface() {
    const PyAllowThreads allowThreads(isLargePicture());
    if (m_canvas)
        m_canvas->Clear();
}

/// Whether others should get on while it is drawn. They wait for m_textureLock without the interpreter lock, so that
/// one can be had again inside of it.
bool Orvanel::isLargePicture() const {
    return m_bufferLen >= kPictureWorthLettingGo;
}

void Orvanel::drawMarker(MPoint point, MarkSizes::Mark mark, CanvasColor color) const {
    if (m_canvas)
        m_canvas->DrawMarker(point, m_markSizes[mark], color);
}

void Orvanel::DrawHoverPoint() {
    const TextureLockGuard lock(m_textureLock);
    {
        const std::lock_guard stateLock(m_stateLock);
        if (m_hoverCentralPoint)
            return;
    }
    if (m_hover.type == kHoverPoint) {
        const auto index = static_cast<std::size_t>(m_hover.index);
        if (m_hover.index < 0 || index >= m_points.size())
            return;
        drawMarker(m_points[index], MarkSizes::HoverOuter, kMarkerCyan);
        drawMarker(m_points[index], MarkSizes::HoverInner, kMarkerBlack);
    } else if (m_hover.type == kHoverLine) {
        drawMarker(m_hover.point, MarkSizes::LineOuter, kMarkerBlack);
        drawMarker(m_hover.point, MarkSizes::LineMiddle, kMarkerCyan);
        drawMarker(m_hover.point, MarkSizes::LineInner, kMarkerBlack);
    }
}

void Orvanel::DrawSelectedRegion() const {
    const TextureLockGuard lock(m_textureLock);
    if (m_canvas && m_band.width != 0 && m_band.height != 0) {
        PixelRect band = m_band;
        CanvasColor border = kRegionBorder;
        CanvasColor fill = kRegionFill;
        m_canvas->DrawRegion(band, border, fill);
    }
    for (const unsigned int index : m_selected) {
        if (index >= m_points.size())
            continue;
        drawMarker(m_points[index], MarkSizes::SelectedOuter, kMarkerBlack);
        drawMarker(m_points[index], MarkSizes::SelectedInner, kMarkerCyan);
    }
}

void Orvanel::HideAllPoints() {
    const TextureLockGuard lock(m_textureLock);
    const PyAllowThreads allowThreads(isLargePicture());
    if (m_canvas)
        m_canvas->HideAllPoints();
}

BYTE *Orvanel::QueryBuffer() const {
    const TextureLockGuard lock(m_textureLock);
    BYTE *buffer = nullptr;
    std::uint64_t length = 0;
    if (!m_canvas || FAILED(m_canvas->GetBuffer(&buffer, &length)))
        return nullptr;
    return buffer;
}

PyObject *Orvanel::GetDirtyRect() const {
    PixelRect rect;
    {
        const TextureLockGuard lock(m_textureLock);
        rect = m_dirtyRect;
    }
    return Py_BuildValue("iiii", rect.left, rect.top, rect.width, rect.height);
}
