// SPDX-License-Identifier: MIT
#include "fitting/border.h"

#include <bit>
#include <new>

namespace fitting {
namespace {

/// Five-pixel crosses all of whose pixels are inside are not border, nor are those with none: what lies between is.
/// With a bit a pixel that is a handful of operations for sixty-four of them.
BitPicture bandOf(const BitPicture &mask) {
    BitPicture band(mask.window());
    const std::size_t words = mask.wordsPerRow();
    const std::vector<std::uint64_t> none(words);
    for (int line = 0; line < mask.window().height; ++line) {
        const std::span<const std::uint64_t> above = line > 0 ? mask.row(line - 1) : std::span(none);
        const std::span<const std::uint64_t> below =
            line + 1 < mask.window().height ? mask.row(line + 1) : std::span(none);
        const std::span<const std::uint64_t> here = mask.row(line);
        const std::span<std::uint64_t> result = band.row(line);
        for (std::size_t word = 0; word < words; ++word) {
            const std::uint64_t left = here[word] << 1 | (word > 0 ? here[word - 1] >> 63 : 0);
            const std::uint64_t right = here[word] >> 1 | (word + 1 < words ? here[word + 1] << 63 : 0);
            const std::uint64_t some = here[word] | left | right | above[word] | below[word];
            const std::uint64_t all = here[word] & left & right & above[word] & below[word];
            result[word] = some & ~all;
        }
        result.back() &= mask.lastWordMask();
    }
    return band;
}

} // namespace

Border::Border(const BitPicture &mask) : m_image(bandOf(mask)) {
    std::size_t count = 0;
    m_before.reserve(m_image.wordsPerRow() * static_cast<std::size_t>(m_image.window().height));
    for (int line = 0; line < m_image.window().height; ++line) {
        for (const std::uint64_t word : m_image.row(line)) {
            m_before.push_back(static_cast<std::uint32_t>(count));
            // Most words are empty, and counting bits is a call on processors without an instruction for it.
            count += word == 0 ? 0 : static_cast<std::size_t>(std::popcount(word));
            if (count > kMostPixels)
                throw std::bad_alloc();
        }
    }
    m_pixels.reserve(count);
    forEachPixel(m_image, [this](int x, int y) { m_pixels.push_back({x, y}); });
}

std::optional<std::uint32_t> Border::indexOf(const Pixel &pixel) const {
    if (!contains(pixel))
        return std::nullopt;
    const int line = pixel.y - m_image.window().top;
    const auto column = static_cast<std::size_t>(pixel.x - m_image.window().left);
    const std::uint64_t before = m_image.row(line)[column / 64] & ((1ULL << (column % 64)) - 1);
    return m_before[static_cast<std::size_t>(line) * m_image.wordsPerRow() + column / 64] +
           static_cast<std::uint32_t>(std::popcount(before));
}

ExtremeTable findExtremes(std::span<const Pixel> border) {
    struct Direction {
        std::size_t entry;
        int x, y; ///< the outermost pixel has the largest x * pixel.x + y * pixel.y
        bool lastWins;
    };
    static constexpr Direction kDirections[] = {
        {8, 0, 1, false}, {4, -1, 0, false}, {3, 1, -1, false}, {9, 1, 1, false},
        {2, 0, -1, true}, {6, 1, 0, true},   {7, -1, 1, true},  {1, -1, -1, true},
    };
    ExtremeTable table{};
    for (const Direction &direction : kDirections) {
        const auto key = [&direction](const Pixel &pixel) {
            return std::int64_t{direction.x} * pixel.x + std::int64_t{direction.y} * pixel.y;
        };
        Pixel best = border.front();
        for (const Pixel &pixel : border) {
            if (key(pixel) > key(best) || (direction.lastWins && key(pixel) == key(best)))
                best = pixel;
        }
        table[direction.entry] = best;
    }
    return table;
}

} // namespace fitting
