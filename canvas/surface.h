// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

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

    /// Some neighbouring pixels that are about to be drawn upon, and remembered for that. Nothing else may be written.
    /// Throws std::bad_alloc.
    Pixel *touch(int y, int first, int count) {
        Pixel *const pixels = row(y) + first;
        if (m_touched.size() < kMostSpans)
            m_touched.push_back({static_cast<std::uint32_t>(pixels - m_pixels), static_cast<std::uint32_t>(count)});
        else
            m_allTouched = true;
        return pixels;
    }

    /// Whether nothing has been touched since the last clear.
    bool isBlank() const { return m_touched.empty(); }

    /// Makes every pixel transparent, in proportion to what was touched.
    void clear();

  private:
    struct Span {
        std::uint32_t first; ///< pixels from the surface's start
        std::uint32_t count;
    };
    /// Half a megabyte and fifty times what an outline needs; more is cleared faster as a whole.
    static constexpr std::size_t kMostSpans = 1 << 16;

    void release();

    platform::Bitmap m_bitmap;
    Pixel *m_pixels = nullptr;
    int m_width = 0;
    int m_height = 0;
    Quill::PodBuffer<Span> m_touched;
    bool m_allTouched = false; ///< more was touched than is remembered
};

} // namespace canvas
