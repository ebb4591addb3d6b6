// SPDX-License-Identifier: MIT
#pragma once

// The drawing component's interface. Its method table has 40 positions of which the editor uses eight; the others
// belong to the component. No destructor stands in the table: the component is destroyed by Release.
//
// Structures are passed by reference, which is also what the 64-bit Windows calling convention does with structures of
// these sizes passed by value, so both readings of the table are the same call.

#include "overlay/types/outline_points.h"
#include "platform/win_types.h"

/// A colour as four bytes in memory: blue, green, red, alpha (0xAARRGGBB as a little-endian 32-bit value). Straight
/// alpha.
struct CanvasColor {
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;
    std::uint8_t alpha = 0;

    /// From 0xAARRGGBB.
    static constexpr CanvasColor fromArgb(std::uint32_t argb) {
        return {static_cast<std::uint8_t>(argb), static_cast<std::uint8_t>(argb >> 8),
                static_cast<std::uint8_t>(argb >> 16), static_cast<std::uint8_t>(argb >> 24)};
    }
    friend bool operator==(const CanvasColor &, const CanvasColor &) = default;
};

/// The style record of the outline operation: stroke, fill (used when the mask flag is set), handles, and a zero.
struct OutlineStyle {
    CanvasColor stroke;
    CanvasColor fill;
    CanvasColor handle;
    std::uint32_t reserved = 0;

    friend bool operator==(const OutlineStyle &, const OutlineStyle &) = default;
};

static_assert(sizeof(CanvasColor) == 4 && sizeof(OutlineStyle) == 16);

/// Class {5C858487-D7C2-4EA5-906F-7F3E53ABDB08} of the drawing component.
inline constexpr GUID CLSID_OverlayCanvas = {
    0x5C858487, 0xD7C2, 0x4EA5, {0x90, 0x6F, 0x7F, 0x3E, 0x53, 0xAB, 0xDB, 0x08}};
/// Interface {E4CB67F2-3F13-4FB4-AD0A-18271C10FBCE}.
inline constexpr GUID IID_OverlayCanvas = {
    0xE4CB67F2, 0x3F13, 0x4FB4, {0xAD, 0x0A, 0x18, 0x27, 0x1C, 0x10, 0xFB, 0xCE}};

/// Holds the 32-bit overlay surface and draws on it. Not thread-safe: the caller serialises (m_textureLock).
struct OverlayCanvas : public IUnknown {
    /// 3: resizes the surface (pixels); the two constants are always 1.
    virtual HRESULT STDMETHODCALLTYPE SetSize(UINT width, UINT height, UINT one, UINT alsoOne) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved4() = 0;
    /// 5: address and length in bytes of the surface, rows top to bottom without padding. Stable between resizes.
    virtual HRESULT STDMETHODCALLTYPE GetBuffer(BYTE **buffer, std::uint64_t *length) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved6() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved7() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved8() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved9() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved10() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved11() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved12() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved13() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved14() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved15() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved16() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved17() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved18() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved19() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved20() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved21() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved22() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved23() = 0;
    /// 24: draws the outline, filled when `isMask` is set; `sizeScale` multiplies line widths and marks.
    virtual HRESULT STDMETHODCALLTYPE DrawOutline(const MPoint *points, INT count, const OutlineStyle &style,
                                                  BYTE isMask, float sizeScale) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved25() = 0;
    /// 26: draws a marker of `size` pixels centred on the point.
    virtual HRESULT STDMETHODCALLTYPE DrawMarker(const MPoint &point, UINT size, const CanvasColor &color) = 0;
    /// 27: draws the selection rectangle.
    virtual HRESULT STDMETHODCALLTYPE DrawRegion(const PixelRect &rect, const CanvasColor &border,
                                                 const CanvasColor &fill) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved28() = 0;
    /// 29: makes the whole surface transparent (all bytes 0).
    virtual HRESULT STDMETHODCALLTYPE Clear() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved30() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved31() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved32() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved33() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved34() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved35() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved36() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved37() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved38() = 0;
    /// 39: draws the outline without its marks until the next clear or outline.
    virtual HRESULT STDMETHODCALLTYPE HideAllPoints() = 0;

  protected:
    ~OverlayCanvas() = default;
};
