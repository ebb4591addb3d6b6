// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "canvas/painter.h"
#include "canvas/surface.h"
#include "overlay/types/overlay_canvas.h"

namespace canvas {

/// The stand-alone drawing component: the interface's method table over a surface and a painter.
///
/// The buffer holds straight alpha. Drawing calls without a surface succeed and draw nothing; bad arguments are
/// E_POINTER or E_INVALIDARG and change nothing; positions that no caller uses answer E_NOTIMPL. Not thread-safe but
/// for the reference count, as the interface says.
class CanvasComponent final : public OverlayCanvas {
  public:
    /// Made with one reference, which is the caller's.
    CanvasComponent();
    CanvasComponent(const CanvasComponent &) = delete;
    CanvasComponent &operator=(const CanvasComponent &) = delete;

    /// How many components live; the library that holds them must stay as long.
    static long liveCount();

    HRESULT STDMETHODCALLTYPE QueryInterface(const GUID &iid, void **object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE SetSize(UINT width, UINT height, UINT one, UINT alsoOne) override;
    HRESULT STDMETHODCALLTYPE GetBuffer(BYTE **buffer, std::uint64_t *length) override;
    HRESULT STDMETHODCALLTYPE DrawOutline(const MPoint *points, INT count, const OutlineStyle &style, BYTE isMask,
                                          float sizeScale) override;
    HRESULT STDMETHODCALLTYPE DrawMarker(const MPoint &point, UINT size, const CanvasColor &color) override;
    HRESULT STDMETHODCALLTYPE DrawRegion(const PixelRect &rect, const CanvasColor &border,
                                         const CanvasColor &fill) override;
    HRESULT STDMETHODCALLTYPE Clear() override;
    HRESULT STDMETHODCALLTYPE HideAllPoints() override;

    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved7() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved8() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved9() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved10() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved11() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved12() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved13() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved14() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved15() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved16() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved17() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved18() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved19() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved20() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved21() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved22() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved23() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved25() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved28() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved30() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved31() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved32() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved33() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved34() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved35() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved36() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved37() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved38() override { return E_NOTIMPL; }

  private:
    ~CanvasComponent();
    void forgetDrawing();

    std::atomic<ULONG> m_references = 1;
    Surface m_surface;
    OutlinePainter m_painter;
    /// The last outline and rectangle since the last clear, for drawing them again without marks.
    Outline m_outline;
    PixelRect m_region;
    CanvasColor m_regionBorder;
    CanvasColor m_regionFill;
    bool m_hidePoints = false;
    double m_markFactor = 1; ///< of markers, by the scale of the outline since the last clear
};

/// Makes a component and asks it for an interface. E_POINTER, E_OUTOFMEMORY or E_NOINTERFACE; `*object` is null then.
HRESULT createCanvasComponent(const GUID &iid, void **object);

} // namespace canvas
