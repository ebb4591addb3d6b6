// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "callback/py_locks.h"
#include "overlay/testing/bare_canvas.h"
#include "platform/com.h"

/// A drawing component that writes down what it is asked for, one line a call.
class RecordingCanvas final : public BareCanvas {
  public:
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    HRESULT STDMETHODCALLTYPE SetSize(UINT width, UINT height, UINT one, UINT alsoOne) override {
        note("size", width, height, one, alsoOne);
        return sizeResult;
    }
    HRESULT STDMETHODCALLTYPE GetBuffer(BYTE **buffer, std::uint64_t *length) override {
        *buffer = pixels.data();
        *length = pixels.size();
        return bufferResult;
    }
    HRESULT STDMETHODCALLTYPE DrawOutline(const MPoint *points, INT count, const OutlineStyle &style, BYTE isMask,
                                          float sizeScale) override {
        note("outline", count, argb(style.stroke), argb(style.fill), argb(style.handle), style.reserved,
             static_cast<int>(isMask), sizeScale);
        outline.assign(points, points + count);
        drawnWithInterpreter = holdsInterpreterLock();
        for (INT index = 0; index < count; ++index)
            scribble(points[index]);
        scribble(style);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DrawMarker(const MPoint &point, UINT size, const CanvasColor &color) override {
        note("marker", point.x, point.y, size, argb(color));
        scribble(point);
        scribble(color);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DrawRegion(const PixelRect &rect, const CanvasColor &border,
                                         const CanvasColor &fill) override {
        note("region", rect.left, rect.top, rect.width, rect.height, argb(border), argb(fill));
        scribble(rect);
        scribble(border);
        scribble(fill);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clear() override {
        note("clear");
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE HideAllPoints() override {
        note("hide");
        return S_OK;
    }

    /// The lines since the last call.
    std::vector<std::string> take() { return std::exchange(lines, {}); }

    std::vector<std::string> lines;
    std::vector<BYTE> pixels = std::vector<BYTE>(16);
    std::vector<MPoint> outline; ///< the points drawn last
    bool scribbles = false;      ///< writes over every structure it gets, as a callee may that takes them by value
    bool drawnWithInterpreter = false; ///< whether the last outline was drawn with the interpreter lock held
    HRESULT sizeResult = S_OK;
    HRESULT bufferResult = S_OK;
    ULONG references = 1;

  private:
    HRESULT unexpected() override {
        note("unexpected");
        return E_NOTIMPL;
    }
    template <typename Structure>
    void scribble(const Structure &structure) const {
        if (scribbles)
            std::memset(const_cast<void *>(static_cast<const void *>(&structure)), 0xA5, sizeof structure);
    }
    static std::string argb(const CanvasColor &color) {
        std::ostringstream text;
        text << std::hex << std::uppercase
             << ((color.alpha << 24U) | (color.red << 16U) | (color.green << 8U) | color.blue);
        return text.str();
    }
    template <typename... Arguments>
    void note(const char *name, const Arguments &...arguments) {
        std::ostringstream line;
        line << name;
        ((line << ' ' << arguments), ...);
        lines.push_back(line.str());
    }
};

/// Makes `canvas` (or, with null, no canvas at all) what every object constructed while the scope lasts draws on.
class CanvasForTest {
  public:
    explicit CanvasForTest(RecordingCanvas *canvas) {
        current() = canvas;
        m_previous = platform::registerClassFactory(CLSID_OverlayCanvas, &CanvasForTest::create);
    }
    ~CanvasForTest() { platform::registerClassFactory(CLSID_OverlayCanvas, m_previous); }
    CanvasForTest(const CanvasForTest &) = delete;
    CanvasForTest &operator=(const CanvasForTest &) = delete;

  private:
    static RecordingCanvas *&current() {
        static RecordingCanvas *canvas = nullptr;
        return canvas;
    }
    static HRESULT create(const GUID &, void **object) {
        *object = static_cast<OverlayCanvas *>(current());
        return current() ? S_OK : E_FAIL;
    }

    platform::ClassFactory m_previous;
};
