// SPDX-License-Identifier: MIT
#include "canvas/stroker.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "canvas/stroke_block.h"
#include "platform/prefetch.h"

// Strokes by distance. Every pixel near a line gets a byte that says how near it is, the maximum over all lines that
// reach it, and a palette turns the bytes of a row into pixels. Coverage, dark edge and core are functions of the
// distance alone, so one pass draws what otherwise takes two strokes.
//
// The distance from a straight line is linear along a row: one multiplication for a row's span and additions from there
// on, eight pixels at a time in 16 bits. A segment's body is the part of its strip between the bisectors at its two
// joints, so that smooth joints need no extra work and no pixel is computed twice; only where the line turns sharply,
// or ends, a dot with the true distance from the vertex rounds the corner. Setting up is done in double precision,
// which is the same everywhere; the rest is integers.
//
// Spans are sorted into rows first and painted row by row, so that the nearness of only one row exists, in the cache,
// whatever the surface's size. Memory is in proportion to the ink; a picture with more ink than kMostSpans is painted
// in bands.
//
// Rejected: filling the stroke's outline as a polygon (a general rasterizer sorts what is known here beforehand, and
// edge and core are two of them); blending every segment straight into the surface (joints and crossings are blended
// twice); a byte a pixel for the whole surface (twice the cache misses); the distance from the segment itself, with a
// square root for every pixel (several times the work for the same picture).

namespace canvas {
namespace {

constexpr std::int32_t kNoSpan = -1;
constexpr std::int32_t kDotSpan = INT32_MIN;
// Sixteen megabytes. An outline around a 4K picture makes some ten thousand.
constexpr std::size_t kMostSpans = 1 << 20;
// Rows between asking for a row's pixels and drawing on them. Not many: the rows of a 4K picture share few places in
// the nearest cache.
constexpr int kRowsAhead = 6;

} // namespace

void Stroker::begin(Surface &surface, const StrokeLook &look) {
    m_surface = &surface;
    m_reach = static_cast<double>(look.reach());
    m_stepsPerPixel = look.stepsPerPixel();
    m_bodies.clear();
    m_dots.clear();
    m_top = std::numeric_limits<double>::max();
    m_bottom = std::numeric_limits<double>::lowest();
    const auto width = static_cast<std::size_t>(surface.width());
    if (m_nearness.size() < width + kBlock)
        m_nearness.assign(width + kBlock, 0);
}

void Stroker::addPolyline(std::span<const Position> positions, bool closed) {
    // Repeated positions have no direction between them and are passed over.
    std::size_t next = 0;
    const auto skipRepeats = [&](const Position &position) {
        while (next < positions.size() && positions[next] == position)
            ++next;
    };
    const auto join = [this](StrokeBody &before, StrokeBody &after) {
        if (!joinBodies(before, after))
            addDot(after.from);
    };
    if (positions.empty())
        return;
    skipRepeats(positions[0]);
    if (next == positions.size()) {
        addDot(positions[0]);
        return;
    }

    StrokeBody first(positions[0], positions[next]);
    StrokeBody last = first;
    bool single = true;
    skipRepeats(last.to);
    while (next < positions.size()) {
        StrokeBody body(last.to, positions[next]);
        join(last, body);
        if (single)
            first = last; // kept back: a closed line's last body changes its start
        else
            addSegment(last);
        single = false;
        last = body;
        skipRepeats(last.to);
    }
    if (closed && !single) {
        join(last, first);
    } else {
        addDot(first.from);
        addDot(last.to);
    }
    addSegment(last);
    if (!single)
        addSegment(first);
}

void Stroker::addSegment(const StrokeBody &body) {
    const double margin = m_reach + 2;
    const double right = m_surface->width() - 1 + margin;
    const double bottom = m_surface->height() - 1 + margin;
    if (body.isInside(-margin, -margin, right, bottom)) {
        keep(body);
        return;
    }
    StrokeBody visible = body;
    if (visible.clip(-margin, -margin, right, bottom))
        keep(visible);
}

void Stroker::keep(const StrokeBody &body) {
    m_bodies.push_back(body);
    m_top = std::min({m_top, body.from.y, body.to.y});
    m_bottom = std::max({m_bottom, body.from.y, body.to.y});
}

void Stroker::addDot(const Position &centre) {
    if (centre.x > -m_reach && centre.y > -m_reach && centre.x < m_surface->width() + m_reach &&
        centre.y < m_surface->height() + m_reach) {
        m_dots.push_back(centre);
        m_top = std::min(m_top, centre.y);
        m_bottom = std::max(m_bottom, centre.y);
    }
}

void Stroker::paint(const StrokePalette &palette) {
    if (m_bodies.empty() && m_dots.empty())
        return;
    if (m_surface->isBlank())
        paintRows<true>(palette);
    else
        paintRows<false>(palette);
}

template <bool kOverBlank>
void Stroker::paintRows(const StrokePalette &palette) {
    // More than a body's corners lie past its ends.
    const double past = 1.5 * m_reach + 1;
    const int top = std::max(0, static_cast<int>(std::floor(m_top - past)));
    const int bottom = std::min(m_surface->height(), static_cast<int>(std::ceil(m_bottom + past)) + 1);
    int bandHeight = bottom - top;
    for (int firstRow = top; firstRow < bottom;) {
        const int endRow = std::min(bottom, firstRow + bandHeight);
        if (!collectSpans(firstRow, endRow) && bandHeight > 1) {
            bandHeight = (bandHeight + 1) / 2;
            continue;
        }
        for (int y = firstRow; y < endRow; ++y) {
            if (y + kRowsAhead < endRow)
                prefetchRow(y + kRowsAhead);
            paintRow<kOverBlank>(y, palette);
        }
        firstRow = endRow;
    }
}

// Sorts what the lines touch into rows. False when there is more than may be kept, unless it is a single row.
bool Stroker::collectSpans(int firstRow, int endRow) {
    m_spans.clear();
    m_firstRow = firstRow;
    m_rowHeads.assign(static_cast<std::size_t>(endRow - firstRow), kNoSpan);
    const bool limited = endRow - firstRow > 1;
    for (const StrokeBody &body : m_bodies) {
        addBodySpans(body, firstRow, endRow);
        if (limited && m_spans.size() > kMostSpans)
            return false;
    }
    for (std::size_t dot = 0; dot < m_dots.size(); ++dot) {
        addDotSpans(static_cast<std::int32_t>(dot), firstRow, endRow);
        if (limited && m_spans.size() > kMostSpans)
            return false;
    }
    return true;
}

void Stroker::addBodySpans(const StrokeBody &body, int firstRow, int endRow) {
    const StrokeBodyRows rows(body, m_reach, m_stepsPerPixel, firstRow, endRow);
    if (rows.firstRow >= rows.endRow)
        return;
    Span *span = m_spans.room(static_cast<std::size_t>(rows.endRow - rows.firstRow));
    std::int32_t index = static_cast<std::int32_t>(m_spans.size());
    std::int32_t *const heads = m_rowHeads.data() - m_firstRow;
    const auto step = static_cast<std::int32_t>(rows.perColumn);
    forEachRow(rows, m_surface->width(), [&](int y, int first, int end, std::int32_t distance) {
        *span++ = {std::exchange(heads[y], index++), static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(end),
                   distance, step};
    });
    m_spans.setEnd(span);
}

void Stroker::addDotSpans(std::int32_t dot, int firstRow, int endRow) {
    const Position &centre = m_dots[static_cast<std::size_t>(dot)];
    const int top = static_cast<int>(std::max(std::ceil(centre.y - m_reach), static_cast<double>(firstRow)));
    const int bottom = static_cast<int>(std::min(std::floor(centre.y + m_reach), static_cast<double>(endRow - 1)));
    const int first = static_cast<int>(std::max(std::ceil(centre.x - m_reach), 0.0));
    const int end =
        static_cast<int>(std::min(std::floor(centre.x + m_reach) + 1, static_cast<double>(m_surface->width())));
    for (int y = top; y <= bottom && first < end; ++y) {
        std::int32_t &head = m_rowHeads[static_cast<std::size_t>(y - m_firstRow)];
        const auto index = static_cast<std::int32_t>(m_spans.size());
        m_spans.push_back({std::exchange(head, index), static_cast<std::uint16_t>(first),
                           static_cast<std::uint16_t>(end), dot, kDotSpan});
    }
}

void Stroker::prefetchRow(int y) {
    const Pixel *const pixels = m_surface->row(y);
    for (std::int32_t i = m_rowHeads[static_cast<std::size_t>(y - m_firstRow)]; i != kNoSpan;) {
        const Span &span = m_spans[static_cast<std::size_t>(i)];
        platform::prefetch(pixels + span.first);
        platform::prefetch(pixels + std::max<int>(span.end, span.first + kBlock) - 1);
        i = span.next;
    }
}

template <bool kOverBlank>
void Stroker::paintRow(int y, const StrokePalette &palette) {
    const std::int32_t head = m_rowHeads[static_cast<std::size_t>(y - m_firstRow)];
    if (head == kNoSpan)
        return;
    const int width = m_surface->width();
    std::uint8_t *const nearness = m_nearness.data();
    const auto isBlock = [width](const Span &span) {
        return span.end - span.first <= kLanes && span.first + kBlock <= width && span.step != kDotSpan;
    };
    const auto paintAsBlock = [&](const Span &span) {
        const int length = span.end - span.first;
        const BlockNearness block = firstLanes(nearnessOf(span.distance, span.step), length).packed();
        paintBlock<kOverBlank>(m_surface->touch(y, span.first, length), block, palette);
    };

    // The commonest row by far: a steep line on the way down and one on the way up. Nothing has to be sorted.
    const Span &one = m_spans[static_cast<std::size_t>(head)];
    if (one.next != kNoSpan) {
        const Span &other = m_spans[static_cast<std::size_t>(one.next)];
        if (other.next == kNoSpan && std::abs(one.first - other.first) >= kBlock && isBlock(one) && isBlock(other)) {
            paintAsBlock(one);
            paintAsBlock(other);
            return;
        }
    }

    const std::size_t count = gatherRow(y);
    const Span *const spansEnd = m_rowSpans.data() + count;
    for (const Span *span = m_rowSpans.data(); span != spansEnd;) {
        const int first = span->first;
        const bool isAlone = span + 1 == spansEnd || span[1].first >= span->end;
        if (isAlone && isBlock(*span)) {
            paintAsBlock(*span);
            ++span;
            continue;
        }
        // Spans that overlap become one stretch.
        int end = first + 1;
        do {
            std::uint8_t *const target = nearness + (span->first - first);
            if (span->step == kDotSpan)
                raiseDot(target, *span, y);
            else
                raiseNearness(target, span->distance, span->step, span->end - span->first);
            end = std::max<int>(end, span->end);
            ++span;
        } while (span != spansEnd && span->first < end);

        paintStretch<kOverBlank>(m_surface->touch(y, first, end - first), end - first, width - first, palette);
    }
}

// Lays `count` pixels of stroke over the surface and resets their nearness; `room` pixels are left in the row.
template <bool kOverBlank>
void Stroker::paintStretch(Pixel *pixels, int count, int room, const StrokePalette &palette) {
    std::uint8_t *const nearness = m_nearness.data();
    int done = 0;
    for (; done < count && done + kBlock <= room; done += kBlock)
        paintBlock<kOverBlank>(pixels + done, loadBlock(nearness + done), palette);
    for (; done < count; ++done)
        pixels[done] = palette.overAny(pixels[done], nearness[done]);
    std::memset(nearness, 0, static_cast<std::size_t>(count));
}

// Copies the spans of a row, sorted by their first columns: a handful as they come, more by the library. Returns how
// many.
std::size_t Stroker::gatherRow(int y) {
    constexpr std::ptrdiff_t kHandful = 16;
    const auto isBefore = [](const Span &a, const Span &b) { return a.first < b.first; };
    m_rowSpans.clear();
    Span *begin = m_rowSpans.room(kHandful);
    Span *end = begin;
    for (std::int32_t i = m_rowHeads[static_cast<std::size_t>(y - m_firstRow)]; i != kNoSpan;) {
        const Span &span = m_spans[static_cast<std::size_t>(i)];
        if (end - begin < kHandful) {
            Span *place = end++;
            for (; place != begin && isBefore(span, place[-1]); --place)
                place[0] = place[-1];
            *place = span;
        } else {
            m_rowSpans.setEnd(end);
            m_rowSpans.push_back(span);
            begin = m_rowSpans.begin();
            end = m_rowSpans.end();
        }
        i = span.next;
    }
    if (end - begin > kHandful)
        std::sort(begin, end, isBefore);
    return static_cast<std::size_t>(end - begin);
}

// Raises a dot's pixels to their nearness.
void Stroker::raiseDot(std::uint8_t *nearness, const Span &span, int y) const {
    const Position &centre = m_dots[static_cast<std::size_t>(span.distance)];
    const double dy = y - centre.y;
    for (int x = span.first; x < span.end; ++x, ++nearness) {
        const double dx = x - centre.x;
        const double steps = std::sqrt(dx * dx + dy * dy) * m_stepsPerPixel;
        const auto value = static_cast<std::uint8_t>(255 - static_cast<int>(std::min(steps, 255.0)));
        *nearness = std::max(*nearness, value);
    }
}

} // namespace canvas
