// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace canvas {

/// Which blocks of a picture have been drawn upon: one bit for some neighbouring pixels of a row. Marking is a bit or two
/// whatever was marked before, the memory is fixed, and walking the marked blocks costs in proportion to the ink; lists of
/// spans would grow with every overlap.
template <int BlockPixels>
class TouchedBlocks {
  public:
    static constexpr int kBlockPixels = BlockPixels;

    /// Unmarks everything and takes a new size in pixels.
    void resize(int width, int height) {
        m_wordsPerRow = (width + kPixelsPerWord - 1) / kPixelsPerWord;
        m_words.assign(static_cast<std::size_t>(m_wordsPerRow) * static_cast<std::size_t>(height), 0);
        m_firstRow = height;
        m_endRow = 0;
    }

    bool empty() const { return m_endRow == 0; }

    /// Marks of one row.
    class Row {
      public:
        explicit Row(std::uint64_t *words) : m_words(words) {}

        /// Marks pixels [first, end); first < end, both within the width.
        void mark(int first, int end) const {
            const auto firstBlock = static_cast<unsigned>(first) / kBlockPixels;
            const auto lastBlock = static_cast<unsigned>(end - 1) / kBlockPixels;
            std::uint64_t *const firstWord = m_words + firstBlock / 64;
            std::uint64_t *const lastWord = m_words + lastBlock / 64;
            const std::uint64_t head = ~std::uint64_t{0} << firstBlock % 64;
            const std::uint64_t tail = ~std::uint64_t{0} >> (63 - lastBlock % 64);
            if (firstWord == lastWord) {
                *firstWord |= head & tail;
                return;
            }
            *firstWord |= head;
            std::fill(firstWord + 1, lastWord, ~std::uint64_t{0});
            *lastWord |= tail;
        }

      private:
        std::uint64_t *m_words;
    };

    /// The marks of a row that is about to be marked.
    Row touchRow(int row) {
        m_firstRow = std::min(m_firstRow, row);
        m_endRow = std::max(m_endRow, row + 1);
        return Row(rowWords(row));
    }

    /// Calls visit(row, firstPixel, endPixel) for every maximal stretch of marked blocks within a word, top to bottom, left
    /// to right, and unmarks it. The end may lie past the width by less than a block.
    template <typename Visit>
    void drain(Visit visit) {
        for (int row = m_firstRow; row < m_endRow; ++row) {
            std::uint64_t *const words = rowWords(row);
            for (int index = 0; index < m_wordsPerRow; ++index) {
                std::uint64_t word = words[index];
                if (word == 0)
                    continue;
                words[index] = 0;
                while (word != 0) {
                    const int first = std::countr_zero(word);
                    const int length = std::countr_one(word >> first);
                    const int pixel = (index * 64 + first) * kBlockPixels;
                    visit(row, pixel, pixel + length * kBlockPixels);
                    if (first + length == 64)
                        break;
                    word &= ~std::uint64_t{0} << (first + length);
                }
            }
        }
        m_firstRow = m_wordsPerRow ? static_cast<int>(m_words.size() / static_cast<std::size_t>(m_wordsPerRow)) : 0;
        m_endRow = 0;
    }

  private:
    static constexpr int kPixelsPerWord = 64 * kBlockPixels;

    std::uint64_t *rowWords(int row) {
        return m_words.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(m_wordsPerRow);
    }

    std::vector<std::uint64_t> m_words;
    int m_wordsPerRow = 0;
    int m_firstRow = 0; ///< rows outside [m_firstRow, m_endRow) are unmarked
    int m_endRow = 0;
};

} // namespace canvas
