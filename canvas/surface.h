// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "canvas/pixel.h"
#include "mask/pod_buffer.h"
#include "platform/dib.h"

namespace canvas {

/// Longest side of a surface in pixels.
inline constexpr UINT kLongestSide = 32768;

/// The overlay picture: a 32-bit surface, rows top to bottom without padding, that remembers the spans it was drawn
/// upon and clears only those. Its address stays the same until the size changes.
class Surface {
  public:
    Surface() = default;
    Surface(const Surface &) = delete;
    Surface &operator=(const Surface &) = delete;

    /// Takes a size in pixels and becomes transparent. The same size keeps the memory; a size of zero holds none.
    /// E_INVALIDARG beyond kLongestSide, E_OUTOFMEMORY when there is no such memory; the surface is empty then.
    HRESULT resize(UINT width, UINT height);

    int width() const { return m_width; }
    int height() const { return m_height; }
    bool empty() const { return m_pixels == nullptr; }
    std::size_t pixelCount() const { return static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height); }
    std::size_t byteCount() const { return pixelCount() * sizeof(Pixel); }

    Pixel *row(int y) { return m_pixels + static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width); }
    Pixel *pixels() { return m_pixels; }

    /// Some neighbouring pixels.
    struct Span {
        std::uint32_t first; ///< pixels from the surface's start
        std::uint32_t count;
    };

    /// Some neighbouring pixels of a row that are about to be drawn upon, and remembered for that. Nothing else may be
    /// written, but for kSpill.
    Pixel *touch(int y, int first, int count) {
        Span *const span = roomForSpans();
        span->first = static_cast<std::uint32_t>(row(y) + first - m_pixels);
        span->count = static_cast<std::uint32_t>(count);
        setSpansEnd(span + 1);
        return m_pixels + span->first;
    }
    /// The same for up to kMostSpansAtOnce spans: where the caller writes them, before saying where they end.
    Span *roomForSpans() {
        if (m_touched.size() >= kMostSpans) {
            m_allTouched = true;
            m_touched.resize(kMostSpans);
        }
        return m_touched.end();
    }
    void setSpansEnd(const Span *end) { m_touched.setEnd(end); }
    static constexpr int kMostSpansAtOnce = 1 << 12;

    /// Pixels behind those touched that may be read, and written as they were; as many lie behind the last row. What
    /// draws in blocks needs no second way for the last one.
    static constexpr UINT kSpill = 8;

    /// How many spans are remembered, and the ones behind the first `count` of them.
    std::size_t spanCount() const { return m_touched.size(); }
    std::span<const Span> spansFrom(std::size_t count) const { return {m_touched.begin() + count, m_touched.end()}; }
    /// Whether there were more than are remembered: the whole surface counts as touched.
    bool allTouched() const { return m_allTouched; }
    /// Whether nothing has been touched since the last clear.
    bool isBlank() const { return m_touched.empty(); }

    /// Makes every pixel transparent, in proportion to what was touched.
    void clear();

  private:
    /// Half a megabyte and several times what an outline needs; more is cleared faster as a whole.
    static constexpr std::size_t kMostSpans = 1 << 16;

    void release();

    platform::Bitmap m_bitmap;
    Pixel *m_pixels = nullptr;
    int m_width = 0;
    int m_height = 0;
    Quill::PodBuffer<Span> m_touched;
    bool m_allTouched = false;
};

} // namespace canvas
