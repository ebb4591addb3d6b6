// SPDX-License-Identifier: MIT
#include "fitting/bit_picture.h"

#include <algorithm>
#include <limits>

#include "fitting/run_span.h"

namespace fitting {
namespace {

/// Calls `draw(x, y, count)` for each row that a span lies in.
template <typename Draw>
void forEachRow(const RunSpan &span, int width, Draw draw) {
    for (std::int64_t at = span.offset; at < span.end();) {
        const auto x = static_cast<int>(at % width);
        const std::int64_t count = std::min<std::int64_t>(span.end() - at, width - x);
        draw(x, static_cast<int>(at / width), static_cast<int>(count));
        at += count;
    }
}

/// The smallest window around all spans, one pixel larger on each side that the mask leaves room on.
std::optional<Window> windowAround(std::span<const RunSpan> spans, int width, int height) {
    int left = width;
    int right = 0;
    int top = height;
    int bottom = 0;
    for (const RunSpan &span : spans) {
        if (span.length == 0)
            continue;
        const auto first = static_cast<int>(span.offset / width);
        const auto last = static_cast<int>((span.end() - 1) / width);
        const bool oneRow = first == last;
        left = std::min(left, oneRow ? static_cast<int>(span.offset % width) : 0);
        right = std::max(right, oneRow ? static_cast<int>((span.end() - 1) % width) : width - 1);
        top = std::min(top, first);
        bottom = std::max(bottom, last);
    }
    if (top > bottom)
        return std::nullopt;
    left = std::max(left - 1, 0);
    top = std::max(top - 1, 0);
    right = std::min(right, width - 2) + 1;
    bottom = std::min(bottom, height - 2) + 1;
    return Window{left, top, right - left + 1, bottom - top + 1};
}

constexpr std::uint64_t lowBits(int count) {
    return count >= 64 ? ~0ULL : (1ULL << count) - 1;
}

} // namespace

BitPicture::BitPicture(const Window &window)
    : m_window(window), m_wordsPerRow((static_cast<std::size_t>(window.width) + 63) / 64),
      m_words(m_wordsPerRow * static_cast<std::size_t>(window.height)) {}

void BitPicture::setRange(int x, int y, int count) {
    std::uint64_t *const words = m_words.data() + offset(y - m_window.top);
    int column = x - m_window.left;
    while (count > 0) {
        const int bit = column % 64;
        const int taken = std::min(count, 64 - bit);
        words[column / 64] |= lowBits(taken) << bit;
        column += taken;
        count -= taken;
    }
}

std::uint64_t BitPicture::lastWordMask() const {
    return lowBits((m_window.width - 1) % 64 + 1);
}

std::optional<BitPicture> decodeRuns(std::span<const Quill::MaskRunF> runs, int width, int height) {
    if (width < 1 || height < 1 || std::int64_t{width} * height > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    std::vector<RunSpan> spans;
    spans.reserve(runs.size());
    for (const Quill::MaskRunF &run : runs)
        spans.push_back(spanOfRun(run, width, height, LeftOverhang::RunsOn));
    const std::optional<Window> window = windowAround(spans, width, height);
    if (!window)
        return std::nullopt;
    std::optional<BitPicture> picture(*window);
    for (const RunSpan &span : spans)
        forEachRow(span, width, [&](int x, int y, int count) { picture->setRange(x, y, count); });
    return picture;
}

Pixel centroidOf(const BitPicture &picture) {
    std::int64_t sumX = 0;
    std::int64_t sumY = 0;
    std::int64_t count = 0;
    for (int line = 0; line < picture.window().height; ++line) {
        std::int64_t inRow = 0;
        std::int64_t column = picture.window().left;
        for (std::uint64_t word : picture.row(line)) {
            // Run by run: a word inside of a shape is one.
            for (std::int64_t first = column; word != 0;) {
                const int gap = std::countr_zero(word);
                const int length = std::countr_one(word >> gap);
                sumX += length * (first + gap) + length * (length - 1) / 2;
                inRow += length;
                if (gap + length == 64)
                    break;
                word >>= gap + length;
                first += gap + length;
            }
            column += 64;
        }
        sumY += inRow * (picture.window().top + line);
        count += inRow;
    }
    return {static_cast<std::int32_t>(sumX / count), static_cast<std::int32_t>(sumY / count)};
}

} // namespace fitting
