// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "fitting/pixel.h"
#include "mask/mask_handler.h"

namespace fitting {

/// A part of a mask in pixels of it.
struct Window {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool contains(int x, int y) const { return x >= left && y >= top && x - left < width && y - top < height; }
};

/// One bit a pixel over a window of a mask; outside of it every pixel is clear. A shape is cheap to work on however
/// large the mask around it is, and sixty-four pixels at a time.
class BitPicture {
  public:
    explicit BitPicture(const Window &window);

    const Window &window() const { return m_window; }
    /// Words of a row; bit b of word w is column left + 64 w + b, and bits past the window are clear.
    std::size_t wordsPerRow() const { return m_wordsPerRow; }
    /// A row of the window, counted from its top.
    std::span<std::uint64_t> row(int line) { return {m_words.data() + offset(line), m_wordsPerRow}; }
    std::span<const std::uint64_t> row(int line) const { return {m_words.data() + offset(line), m_wordsPerRow}; }

    /// For any pixel of the mask, or beyond.
    bool test(int x, int y) const {
        if (!m_window.contains(x, y))
            return false;
        const auto column = static_cast<std::size_t>(x - m_window.left);
        return (m_words[offset(y - m_window.top) + column / 64] >> (column % 64) & 1) != 0;
    }
    /// Sets `count` pixels from (x, y) to the right, all inside of the window.
    void setRange(int x, int y, int count);
    /// Bits of a row's last word that lie inside of the window.
    std::uint64_t lastWordMask() const;

  private:
    std::size_t offset(int line) const { return static_cast<std::size_t>(line) * m_wordsPerRow; }

    Window m_window;
    std::size_t m_wordsPerRow;
    std::vector<std::uint64_t> m_words;
};

/// Calls `visit(x, y)` for every pixel that is set, rows from the top, columns from the left.
template <typename Visit>
void forEachPixel(const BitPicture &picture, Visit visit);

/// The mask of a run list. Its window holds every pixel that is set and, where the mask goes on, one more all round.
/// Nothing when no pixel is set, and for sizes that are not positive or exceed 2^31 - 1 pixels. A run that begins left
/// of the mask and is longer than its width goes on in the next row.
std::optional<BitPicture> decodeRuns(std::span<const Quill::MaskRunF> runs, int width, int height);

/// The mean of all pixels that are set, of which there is at least one; means are truncated.
Pixel centroidOf(const BitPicture &picture);

} // namespace fitting

template <typename Visit>
void fitting::forEachPixel(const BitPicture &picture, Visit visit) {
    for (int line = 0; line < picture.window().height; ++line) {
        int x = picture.window().left;
        for (std::uint64_t word : picture.row(line)) {
            for (; word != 0; word &= word - 1)
                visit(x + std::countr_zero(word), picture.window().top + line);
            x += 64;
        }
    }
}
