// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>

#include "overlay/types/overlay_canvas.h"

namespace canvas::testing {

/// The component as a foreign caller sees it: a pointer to a table of functions, called by position, every structure as
/// an address.
class RawCanvas {
  public:
    /// Takes over one reference.
    explicit RawCanvas(void *object) : m_object(object) {}
    RawCanvas(const RawCanvas &) = delete;
    RawCanvas &operator=(const RawCanvas &) = delete;
    ~RawCanvas() { release(); }

    template <typename Result = HRESULT, typename... Arguments>
    Result call(int position, Arguments... arguments) const {
        using Function = Result(STDMETHODCALLTYPE *)(void *, Arguments...);
        void **table = nullptr;
        std::memcpy(&table, m_object, sizeof table);
        Function function = nullptr;
        std::memcpy(&function, table + position, sizeof function);
        return function(m_object, arguments...);
    }

    HRESULT queryInterface(const GUID *iid, void **object) const { return call(0, iid, object); }
    ULONG addRef() const { return call<ULONG>(1); }
    ULONG release() const { return call<ULONG>(2); }
    HRESULT setSize(UINT width, UINT height) const { return call(3, width, height, UINT{1}, UINT{1}); }
    HRESULT getBuffer(BYTE **buffer, std::uint64_t *length) const { return call(5, buffer, length); }
    HRESULT drawOutline(const MPoint *points, INT count, const OutlineStyle *style, BYTE isMask, float scale) const {
        return call(24, points, count, style, isMask, scale);
    }
    HRESULT drawMarker(const MPoint *point, UINT size, const CanvasColor *color) const {
        return call(26, point, size, color);
    }
    HRESULT drawRegion(const PixelRect *rect, const CanvasColor *border, const CanvasColor *fill) const {
        return call(27, rect, border, fill);
    }
    HRESULT clear() const { return call(29); }
    HRESULT hideAllPoints() const { return call(39); }

    void *object() const { return m_object; }

  private:
    void *m_object;
};

} // namespace canvas::testing
