// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "overlay/testing/bare_canvas.h"
#include "platform/com.h"
#include "texture/testing/frame_watch.h"

/// A drawing component whose pictures tell when they were drawn: every pixel carries the number of the drawing. A
/// surface that has been cleared and not drawn on says so as well.
///
/// A picture with two numbers was copied in the middle of a drawing, and a cleared one between its two halves.
class StampingCanvas final : public BareCanvas {
  public:
    static constexpr std::uint32_t kCleared = FrameWatch::kCleared;

    /// What all of them share.
    struct Stamps {
        std::atomic<std::uint32_t> last{0};     ///< the number of the last drawing
        std::atomic<std::uint64_t> overlaps{0}; ///< operations that began before another one was through
        std::atomic<int> canvases{0};           ///< that exist
    };
    static Stamps &stamps() {
        static Stamps all;
        return all;
    }

    /// Makes these canvases what every object constructed in a scope draws on.
    class Registration {
      public:
        Registration() : m_previous(platform::registerClassFactory(CLSID_OverlayCanvas, &create)) {}
        ~Registration() { platform::registerClassFactory(CLSID_OverlayCanvas, m_previous); }
        Registration(const Registration &) = delete;
        Registration &operator=(const Registration &) = delete;

      private:
        static HRESULT create(const GUID &, void **object) {
            *object = static_cast<OverlayCanvas *>(new StampingCanvas);
            return S_OK;
        }

        platform::ClassFactory m_previous;
    };

    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE SetSize(UINT width, UINT height, UINT, UINT) override {
        const Alone alone(*this);
        m_pixels.assign(std::size_t{width} * height, 0);
        // The old memory is gone at once: whoever still reads it is found out.
        m_pixels.shrink_to_fit();
        stamp(kCleared);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetBuffer(BYTE **buffer, std::uint64_t *length) override {
        const Alone alone(*this);
        *buffer = reinterpret_cast<BYTE *>(m_pixels.data());
        *length = m_pixels.size() * sizeof m_pixels[0];
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clear() override {
        const Alone alone(*this);
        stamp(kCleared);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DrawOutline(const MPoint *, INT, const OutlineStyle &, BYTE, float) override {
        const Alone alone(*this);
        stamp(0);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DrawMarker(const MPoint &, UINT, const CanvasColor &) override { return mark(); }
    HRESULT STDMETHODCALLTYPE DrawRegion(const PixelRect &, const CanvasColor &, const CanvasColor &) override {
        return mark();
    }
    HRESULT STDMETHODCALLTYPE HideAllPoints() override { return mark(); }

  private:
    /// Notices two threads in the canvas at once, which nothing in it is made for.
    class Alone {
      public:
        explicit Alone(StampingCanvas &canvas) : m_canvas(canvas) { stamps().overlaps += m_canvas.m_entered++ != 0; }
        ~Alone() { --m_canvas.m_entered; }
        Alone(const Alone &) = delete;
        Alone &operator=(const Alone &) = delete;

      private:
        StampingCanvas &m_canvas;
    };

    StampingCanvas() { ++stamps().canvases; }
    ~StampingCanvas() { --stamps().canvases; }

    HRESULT unexpected() override { return E_NOTIMPL; }
    void stamp(std::uint32_t flags) {
        const std::uint32_t number = ++stamps().last | flags;
        for (std::uint32_t &pixel : m_pixels)
            pixel = number;
    }
    /// Marks belong to the drawing before them.
    HRESULT mark() {
        const Alone alone(*this);
        return S_OK;
    }

    std::vector<std::uint32_t> m_pixels;
    std::atomic<int> m_entered{0};
    std::atomic<ULONG> m_references{1};
};
