// SPDX-License-Identifier: MIT
#include "overlay/line_samples.h"

#include <algorithm>
#include <limits>

#include "mask/line_points.h"
#include "mask/outline_segments.h"
#include "mask/sample.h"
#include "mask/scratch.h"
#include "overlay/chain.h"

namespace {

std::int32_t limited(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

/// How far samples can lie beyond the box of their control points, on each axis. Two pixels are ample for what the
/// flattener rounds; a segment of at most 4096 units, which are quarters of the density's pixels, goes through its
/// coarser arithmetic, and with handles drawn out far that can miss the end by a part of the segment's own extent.
std::int64_t overshoot(std::int64_t extent, int density) {
    return 2 + std::min<std::int64_t>(extent, 4096 / std::max(density, 1) + 1);
}

} // namespace

void LineSamples::Box::add(const Position &position) {
    left = std::min(left, position.x);
    top = std::min(top, position.y);
    right = std::max(right, position.x);
    bottom = std::max(bottom, position.y);
}

bool LineSamples::Box::isNear(std::int32_t x, std::int32_t y, std::int32_t tolerance) const {
    return left <= right && std::int64_t{x} >= std::int64_t{left} - tolerance &&
           std::int64_t{x} <= std::int64_t{right} + tolerance && std::int64_t{y} >= std::int64_t{top} - tolerance &&
           std::int64_t{y} <= std::int64_t{bottom} + tolerance;
}

void LineSamples::rebuild(const std::vector<MPoint> &outline, int density, int) {
    // An outline of one point has no segment and is refused: what was there last stays, as the sampler leaves it.
    if (outline.size() == 1)
        return;
    m_outline = outline;
    m_density = density;
    m_segments.clear();
    m_parts.clear();
    m_lists.clear();
    m_free.clear();
    m_next = 0;
    m_kept = 0;
    const Quill::BorrowedScratch scratch;
    Quill::forEachSegment(
        m_outline.data(), static_cast<int>(m_outline.size()), scratch->anchors,
        [this](std::int32_t from, std::int32_t to) {
            m_segments.push_back({true, from, to, {}});
        },
        [this](std::int32_t start, std::int32_t end) { addCurve(start, end); });
}

void LineSamples::addCurve(std::int32_t start, std::int32_t end) {
    Segment segment = {false, start, end, {1, 1, 0, 0}};
    if (Quill::isWholeCurve(start, end, static_cast<int>(m_outline.size()))) {
        const auto position = [this](std::int32_t index) {
            const MPoint &point = m_outline[static_cast<std::size_t>(index)];
            return Position{point.x, point.y};
        };
        Box box = Box::around(position(start));
        for (const std::int32_t index : {start + 1, start + 2, end})
            box.add(position(index));
        const std::int64_t extent = std::max(std::int64_t{box.right} - box.left, std::int64_t{box.bottom} - box.top);
        const std::int64_t margin = overshoot(extent, m_density);
        segment.reach = {limited(box.left - margin), limited(box.top - margin), limited(box.right + margin),
                         limited(box.bottom + margin)};
    }
    m_segments.push_back(segment);
}

std::optional<LineSamples::Hit> LineSamples::find(std::int32_t x, std::int32_t y, std::int32_t tolerance) {
    for (std::size_t number = m_segments.size(); number-- > 0;) {
        if (const auto sample = firstNear(m_segments[number], x, y, tolerance))
            return Hit{static_cast<std::int32_t>(number), *sample};
    }
    return std::nullopt;
}

std::optional<MPoint> LineSamples::firstNear(Segment &segment, std::int32_t x, std::int32_t y, std::int32_t tolerance) {
    if (segment.isLine)
        return Quill::firstLinePointNear(m_outline[static_cast<std::size_t>(segment.start)],
                                         m_outline[static_cast<std::size_t>(segment.end)], x, y, tolerance);
    if (!segment.reach.isNear(x, y, tolerance) || !isPartNear(segment, x, y, tolerance))
        return std::nullopt;
    for (const Position &sample : samplesOf(segment)) {
        if (!isWithin(sample.x, sample.y, x, y, tolerance))
            continue;
        MPoint point;
        point.x = sample.x;
        point.y = sample.y;
        return point;
    }
    return std::nullopt;
}

bool LineSamples::isPartNear(const Segment &segment, std::int32_t x, std::int32_t y, std::int32_t tolerance) const {
    if (segment.parts == kNone)
        return true;
    const auto first = m_parts.begin() + segment.parts;
    return std::any_of(first, first + kParts, [=](const Box &box) { return box.isNear(x, y, tolerance); });
}

const std::vector<LineSamples::Position> &LineSamples::samplesOf(Segment &segment) {
    if (segment.list == kNone) {
        const std::size_t number = freeList();
        List &list = m_lists[number];
        sample(segment, list.samples);
        if (segment.parts == kNone)
            boxParts(segment, list.samples);
        m_free.pop_back();
        m_kept += list.samples.size();
        list.segment = static_cast<std::int32_t>(&segment - m_segments.data());
        segment.list = static_cast<std::int32_t>(number);
        makeRoom(number);
    }
    List &list = m_lists[static_cast<std::size_t>(segment.list)];
    list.isUsed = true;
    return list.samples;
}

/// A list that no segment has. It stays among the free ones until it is whole.
std::size_t LineSamples::freeList() {
    if (m_free.empty()) {
        m_free.reserve(m_lists.size() + 1);
        m_lists.emplace_back();
        m_free.push_back(m_lists.size() - 1);
    }
    return m_free.back();
}

void LineSamples::drop(List &list) {
    m_segments[static_cast<std::size_t>(list.segment)].list = kNone;
    m_kept -= list.samples.size();
    list.segment = kNone;
    std::vector<Position>().swap(list.samples);
    m_free.push_back(static_cast<std::size_t>(&list - m_lists.data()));
}

/// Drops lists in turn, those that were used since the last turn excepted, until few enough samples are kept.
void LineSamples::makeRoom(std::size_t newest) {
    while (m_kept > kMostKept && m_free.size() + 1 < m_lists.size()) {
        m_next = (m_next + 1) % m_lists.size();
        List &list = m_lists[m_next];
        if (m_next == newest || list.segment == kNone)
            continue;
        if (!list.isUsed)
            drop(list);
        list.isUsed = false;
    }
}

void LineSamples::sample(const Segment &segment, std::vector<Position> &samples) {
    const auto at = [this](std::int32_t index) { return m_outline.data() + index; };
    const MPoint *const controls[4] = {at(segment.start), at(segment.start + 1), at(segment.start + 2),
                                       at(segment.end)};
    m_points.clear();
    const Quill::BorrowedScratch scratch;
    Quill::sampleSegment(Quill::maskEngine(), controls, m_density, scratch->polyline, m_points);
    m_made += m_points.size();
    samples.clear();
    for (const MPoint &point : m_points) {
        if (samples.empty() || samples.back().x != point.x || samples.back().y != point.y)
            samples.push_back({point.x, point.y});
    }
    samples.shrink_to_fit();
}

void LineSamples::boxParts(Segment &segment, const std::vector<Position> &samples) {
    const std::size_t first = m_parts.size();
    m_parts.resize(first + kParts, {1, 1, 0, 0});
    for (std::size_t part = 0; part < kParts; ++part) {
        const std::size_t begin = samples.size() * part / kParts;
        const std::size_t end = samples.size() * (part + 1) / kParts;
        if (begin == end)
            continue;
        Box box = Box::around(samples[begin]);
        for (std::size_t index = begin + 1; index < end; ++index)
            box.add(samples[index]);
        m_parts[first + part] = box;
    }
    segment.parts = static_cast<std::int32_t>(first);
}
