// SPDX-License-Identifier: MIT
#include "canvas/canvas_component.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "canvas/look.h"
#include "canvas/region.h"
#include "mask/no_throw.h"
#include "platform/result_of.h"

namespace canvas {
namespace {

std::atomic<long> g_live = 0;

/// What marks are multiplied with so that they keep to the limits that the outline's scale is drawn with.
double markFactor(float scale) {
    return scale > 0
               ? static_cast<double>(std::clamp(scale, kSmallestScale, kLargestScale)) / static_cast<double>(scale)
               : 1;
}

/// A marker's size as it is drawn. Never more than the largest mark: a redraw of a thousand markers has to end.
std::uint32_t drawnSize(UINT size, double factor) {
    if (size == 0)
        return 0;
    return static_cast<std::uint32_t>(
        std::clamp(std::floor(static_cast<double>(size) * factor + 0.5), 1.0, static_cast<double>(kLargestMark)));
}

bool sameGuid(const GUID &a, const GUID &b) {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}

// References come from foreign callers, who may pass anything.
template <typename T>
bool isNull(const T &reference) {
    const T *volatile const pointer = &reference;
    return pointer == nullptr;
}

} // namespace

CanvasComponent::CanvasComponent() {
    ++g_live;
}

CanvasComponent::~CanvasComponent() {
    --g_live;
}

long CanvasComponent::liveCount() {
    return g_live;
}

HRESULT CanvasComponent::QueryInterface(const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (isNull(iid))
        return E_POINTER;
    if (!sameGuid(iid, IID_OverlayCanvas) && !sameGuid(iid, IID_IUnknown))
        return E_NOINTERFACE;
    AddRef();
    *object = static_cast<OverlayCanvas *>(this);
    return S_OK;
}

ULONG CanvasComponent::AddRef() {
    return ++m_references;
}

ULONG CanvasComponent::Release() {
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT CanvasComponent::SetSize(UINT width, UINT height, UINT, UINT) {
    forgetDrawing();
    return m_surface.resize(width, height);
}

HRESULT CanvasComponent::GetBuffer(BYTE **buffer, std::uint64_t *length) {
    if (!buffer || !length)
        return E_POINTER;
    *buffer = reinterpret_cast<BYTE *>(m_surface.pixels());
    *length = m_surface.byteCount();
    return m_surface.empty() ? E_FAIL : S_OK;
}

HRESULT CanvasComponent::DrawOutline(const MPoint *points, INT count, const OutlineStyle &style, BYTE isMask,
                                     float sizeScale) {
    if (isNull(style) || (!points && count > 0))
        return E_POINTER;
    if (count < 0 || std::isnan(sizeScale))
        return E_INVALIDARG;
    m_hidePoints = false;
    return Quill::withoutThrowing([&] {
        m_outline.points.assign(points, points + count);
        m_outline.style = style;
        m_outline.isMask = isMask != 0;
        m_outline.scale = std::clamp(sizeScale, kSmallestScale, kLargestScale);
        m_markFactor = markFactor(sizeScale);
        m_painter.paint(m_surface, m_outline, true);
    });
}

HRESULT CanvasComponent::DrawMarker(const MPoint &point, UINT size, const CanvasColor &color) {
    if (isNull(point) || isNull(color))
        return E_POINTER;
    if (m_hidePoints)
        return S_OK;
    return Quill::withoutThrowing(
        [&] { m_painter.paintMark(m_surface, point, drawnSize(size, m_markFactor), toPixel(color)); });
}

HRESULT CanvasComponent::DrawRegion(const PixelRect &rect, const CanvasColor &border, const CanvasColor &fill) {
    if (isNull(rect) || isNull(border) || isNull(fill))
        return E_POINTER;
    m_region = rect;
    m_regionBorder = border;
    m_regionFill = fill;
    return Quill::withoutThrowing([&] { paintRegion(m_surface, rect, toPixel(border), toPixel(fill)); });
}

HRESULT CanvasComponent::Clear() {
    forgetDrawing();
    m_surface.clear();
    return S_OK;
}

HRESULT CanvasComponent::HideAllPoints() {
    m_hidePoints = true;
    m_surface.clear();
    return Quill::withoutThrowing([&] {
        m_painter.paint(m_surface, m_outline, false);
        paintRegion(m_surface, m_region, toPixel(m_regionBorder), toPixel(m_regionFill));
    });
}

void CanvasComponent::forgetDrawing() {
    m_outline.points.clear();
    m_region = PixelRect();
    m_hidePoints = false;
    m_markFactor = 1;
}

HRESULT createCanvasComponent(const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    return platform::resultOf([&] {
        auto *const component = new CanvasComponent;
        const HRESULT result = component->QueryInterface(iid, object);
        component->Release();
        return result;
    });
}

} // namespace canvas
