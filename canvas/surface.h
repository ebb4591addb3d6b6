// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

#include "canvas/pixel.h"
#include "canvas/touched_blocks.h"
#include "platform/win_types.h"

namespace canvas {

/// Longest side of a surface in pixels.
inline constexpr UINT kLongestSide = 32768;

/// The overlay picture: a 32-bit surface, rows top to bottom without padding, that remembers where it has been drawn upon
/// and clears only that. Its address stays the same until the size changes.
class Surface {
  public:
    Surface() = default;
    Surface(const Surface &) = delete;
    Surface &operator=(const Surface &) = delete;
    ~Surface();

    /// Takes a size in pixels and becomes transparent. The same size keeps the memory; a size of zero holds none.
    /// E_INVALIDARG beyond kLongestSide, E_OUTOFMEMORY when there is no such memory; the surface is empty then.
    HRESULT resize(UINT width, UINT height);

    int width() const { return m_width; }
    int height() const { return m_height; }
    bool empty() const { return m_pixels == nullptr; }
    std::size_t byteCount() const {
        return static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height) * sizeof(Pixel);
    }

    Pixel *row(int y) { return m_pixels + static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width); }
    Pixel *pixels() { return m_pixels; }

    using TouchedRow = TouchedBlocks<16>::Row; // blocks of one cache line

    /// Where to say which pixels of a row are about to be drawn upon.
    TouchedRow touchRow(int y) { return m_touched.touchRow(y); }
    /// Says it for pixels [first, end) of a row; first < end, both within the width.
    void touch(int y, int first, int end) { touchRow(y).mark(first, end); }

    /// Whether nothing has been touched since the last clear.
    bool isBlank() const { return m_touched.empty(); }

    /// Makes every pixel transparent, in proportion to what was touched.
    void clear();

  private:
    void release();

    HBITMAP m_bitmap = nullptr;
    Pixel *m_pixels = nullptr;
    int m_width = 0;
    int m_height = 0;
    TouchedBlocks<16> m_touched;
};

} // namespace canvas
