// SPDX-License-Identifier: MIT
#include "overlay/line_samples.h"

#include <algorithm>

#include "overlay/chain.h"

void LineSamples::rebuild(const std::vector<MPoint> &outline, int density, int height) {
    const HRESULT result = Quill::MaskHandler::GenAllPoints(outline.data(), static_cast<int>(outline.size()), density,
                                                            height, &m_segments);
    // An outline of one point has no segment and is refused: what was sampled last stays, as the sampler leaves it.
    if (result == E_FAIL)
        return;
    if (FAILED(result))
        m_segments.clear();
    m_bounds.clear();
    for (const std::vector<MPoint> &segment : m_segments) {
        if (segment.empty()) {
            m_bounds.push_back({1, 1, 0, 0});
            continue;
        }
        Bounds bounds = {segment[0].x, segment[0].y, segment[0].x, segment[0].y};
        for (const MPoint &sample : segment) {
            bounds.left = std::min(bounds.left, sample.x);
            bounds.top = std::min(bounds.top, sample.y);
            bounds.right = std::max(bounds.right, sample.x);
            bounds.bottom = std::max(bounds.bottom, sample.y);
        }
        m_bounds.push_back(bounds);
    }
}

std::optional<LineSamples::Hit> LineSamples::find(std::int32_t x, std::int32_t y, std::int32_t tolerance) const {
    for (std::size_t segment = m_segments.size(); segment-- > 0;) {
        const Bounds &bounds = m_bounds[segment];
        if (std::int64_t{x} < std::int64_t{bounds.left} - tolerance ||
            std::int64_t{x} > std::int64_t{bounds.right} + tolerance ||
            std::int64_t{y} < std::int64_t{bounds.top} - tolerance ||
            std::int64_t{y} > std::int64_t{bounds.bottom} + tolerance)
            continue;
        for (const MPoint &sample : m_segments[segment]) {
            if (isWithin(sample.x, sample.y, x, y, tolerance))
                return Hit{static_cast<std::int32_t>(segment), sample};
        }
    }
    return std::nullopt;
}
