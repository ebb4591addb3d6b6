// SPDX-License-Identifier: MIT
#include "canvas/stroker.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "canvas/stroke_block.h"
#include "platform/prefetch.h"

// Strokes by distance. Every pixel near a line gets a byte that says how near it is, the maximum over all lines that
// reach it, and a palette turns the bytes into pixels. Coverage, dark edge and core are functions of the distance
// alone, so one pass draws what otherwise takes two strokes.
//
// The distance from a straight line is linear along a row: one multiplication for a row's span and additions from there
// on, eight pixels at a time in 16 bits. A segment's body is the part of its strip between the bisectors at its two
// joints, so that smooth joints need no extra work and hardly a pixel is computed twice; only where the line turns
// sharply, or ends, a dot with the true distance from the vertex rounds the corner. Setting up is done in double
// precision, which is the same everywhere; the rest is integers.
//
// The picture is drawn in bands of rows, each first in nearness and then in pixels, so that the nearness of only one
// band exists, whatever the surface's size. The spans that a band's lines reach are the surface's own, which remembers
// them for its next clear; painting takes the nearness away from them, so that a pixel reached twice is painted once.
//
// Rejected: filling the stroke's outline as a polygon (a general rasterizer sorts what is known here beforehand, and
// edge and core are two of them); blending every segment straight into the surface (joints and crossings are blended
// twice); sorting the spans of a row and painting them in one go (half of the time went into the sorting and the
// branches of every way that spans may overlap); the distance from the segment itself, with a square root for every
// pixel (several times the work for the same picture).

namespace canvas {
namespace {

constexpr std::int32_t kNone = -1;
// A quarter of a megabyte of nearness, half of a common second-level cache. Lower bands spend more time on bodies that
// reach from one into the next, higher ones gain nothing.
constexpr int kMostBandPixels = 1 << 18;
// Spans between asking for pixels and painting them. Not many: the rows of a 4K picture share few places in the nearest
// cache.
constexpr std::ptrdiff_t kSpansAhead = 8;

} // namespace

void Stroker::begin(Surface &surface, const StrokeLook &look) {
    m_surface = &surface;
    m_reach = static_cast<double>(look.reach());
    m_stepsPerPixel = look.stepsPerPixel();
    m_dotPattern.setLook(m_reach, m_stepsPerPixel);
    const double margin = m_reach + 2;
    m_sight = {{-margin, -margin}, {surface.width() - 1 + margin, surface.height() - 1 + margin}};

    const int mostRows = std::min(surface.height(), Surface::kMostSpansAtOnce);
    m_bandRows = std::clamp(kMostBandPixels / std::max(1, surface.width()), 1, std::max(1, mostRows));
    const auto bandPixels = static_cast<std::size_t>(m_bandRows) * static_cast<std::size_t>(surface.width());
    if (m_nearness.size() < bandPixels + kBlock)
        m_nearness.assign(bandPixels + kBlock, 0);
    m_bands.assign(static_cast<std::size_t>((surface.height() + m_bandRows - 1) / m_bandRows), kNone);
    m_bodies.clear();
    m_dots.clear();
}

void Stroker::addPolyline(std::span<const Position> positions, bool closed) {
    if (positions.empty())
        return;
    // Repeated positions have no direction between them and are passed over.
    m_segments.clear();
    for (std::size_t i = 1; i < positions.size(); ++i)
        if (positions[i] != positions[i - 1])
            m_segments.emplace_back(positions[i - 1], positions[i]);
    if (m_segments.empty()) {
        addDot(positions[0]);
        return;
    }

    const StrokeSegment &first = m_segments.front();
    const StrokeSegment &last = m_segments.back();
    Direction start = first.along;
    Direction end = last.along;
    if (closed && m_segments.size() > 1) {
        const StrokeJoint closing = join(last, first);
        start = closing.startOfSecond;
        end = closing.endOfFirst;
    } else {
        addDot(first.from);
        addDot(last.to);
    }
    for (std::size_t i = 0; i + 1 < m_segments.size(); ++i) {
        const StrokeJoint joint = join(m_segments[i], m_segments[i + 1]);
        addBody(m_segments[i], start, joint.endOfFirst);
        start = joint.startOfSecond;
    }
    addBody(last, start, end);
}

StrokeJoint Stroker::join(const StrokeSegment &first, const StrokeSegment &second) {
    const StrokeJoint joint(first, second);
    if (joint.isSharp)
        addDot(second.from);
    return joint;
}

void Stroker::addLine(const Position &from, const Position &to, double hidden) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    if (dx * dx + dy * dy > 4 * hidden * hidden) {
        const StrokeSegment segment(from, to);
        addBody(segment, segment.along, segment.along, hidden);
    }
}

void Stroker::addBody(const StrokeSegment &segment, const Direction &start, const Direction &end, double hidden) {
    const auto add = [this](const StrokeBody &body) {
        m_bodies.emplace_back(body, m_reach, m_stepsPerPixel, m_surface->height());
        link(static_cast<std::int32_t>(m_bodies.size() - 1));
    };
    if (m_sight.holds(segment.from) && m_sight.holds(segment.to)) {
        add({segment, start, end, hidden});
    } else {
        // What is cut at the sides is out of sight, so a straight cut does.
        StrokeSegment visible = segment;
        if (visible.clip(m_sight))
            add({visible, visible.from == segment.from ? start : segment.along,
                 visible.to == segment.to ? end : segment.along});
    }
}

void Stroker::addDot(const Position &centre) {
    if (m_sight.holds(centre))
        m_dots.push_back(centre);
}

// Puts a body into the list of the band that its next row lies in.
void Stroker::link(std::int32_t index) {
    Body &body = m_bodies[static_cast<std::size_t>(index)];
    if (!body.rows.done())
        body.next = std::exchange(m_bands[static_cast<std::size_t>(body.rows.row() / m_bandRows)], index);
}

void Stroker::paint(const StrokePalette &palette) {
    const int width = m_surface->width();
    Band band = {};
    for (const std::int32_t firstBody : m_bands) {
        band.endRow = std::min(band.firstRow + m_bandRows, m_surface->height());
        const std::size_t spansBefore = m_surface->spanCount();
        raiseBodies(band, firstBody);
        for (const Position &dot : m_dots)
            raiseDot(band, dot);
        const Surface::Span all = {band.start, static_cast<std::uint32_t>((band.endRow - band.firstRow) * width)};
        if (m_surface->allTouched())
            paintSpans(band, {&all, 1}, palette);
        else
            paintSpans(band, m_surface->spansFrom(spansBefore), palette);
        band.start += all.count;
        band.firstRow = band.endRow;
    }
}

// Raises the band's pixels to their nearness, and leaves what goes on below to the next one.
void Stroker::raiseBodies(const Band &band, std::int32_t firstBody) {
    const int width = m_surface->width();
    std::uint8_t *const nearness = m_nearness.data();
    for (std::int32_t i = firstBody; i != kNone;) {
        Body &body = m_bodies[static_cast<std::size_t>(i)];
        const std::int32_t step = body.rows.perColumn();
        Surface::Span *span = m_surface->roomForSpans();
        body.rows.visit(band.endRow, width, [&](int row, int first, int end, std::int32_t distance) {
            const auto place = static_cast<std::uint32_t>((row - band.firstRow) * width + first);
            *span++ = {band.start + place, static_cast<std::uint32_t>(end - first)};
            raiseNearness(nearness + place, distance, step, end - first);
        });
        m_surface->setSpansEnd(span);
        link(std::exchange(i, body.next));
    }
}

void Stroker::raiseDot(const Band &band, const Position &centre) {
    if (centre.y + m_reach < band.firstRow || centre.y - m_reach >= band.endRow)
        return;
    m_dotPattern.setCentre(centre);
    const int left = m_dotPattern.left();
    const int top = m_dotPattern.top();
    const int side = m_dotPattern.side();
    const int first = std::max(left, 0);
    const int count = std::min(left + side, m_surface->width()) - first;
    if (count <= 0)
        return;
    for (int row = std::max(top, band.firstRow); row < std::min(top + side, band.endRow); ++row) {
        m_surface->touch(row, first, count);
        const std::uint8_t *const source = m_dotPattern.row(row - top) + (first - left);
        std::uint8_t *const target = m_nearness.data() + ((row - band.firstRow) * m_surface->width() + first);
        std::transform(source, source + count, target, target,
                       [](std::uint8_t a, std::uint8_t b) { return std::max(a, b); });
    }
}

// Turns the nearness of a band's spans into pixels.
void Stroker::paintSpans(const Band &band, std::span<const Surface::Span> spans, const StrokePalette &palette) {
    std::uint8_t *const nearness = m_nearness.data();
    Pixel *const pixels = m_surface->pixels() + band.start;
    const Surface::Span *const spansEnd = spans.data() + spans.size();
    for (const Surface::Span &span : spans) {
        if (spansEnd - &span > kSpansAhead)
            platform::prefetch(pixels + ((&span)[kSpansAhead].first - band.start) + kBlock / 2);
        const std::size_t first = span.first - band.start;
        for (std::size_t place = first; place < first + span.count; place += kBlock)
            if (const BlockNearness block = takeBlock(nearness + place))
                paintBlock(pixels + place, block, palette);
    }
}

} // namespace canvas
