// SPDX-License-Identifier: MIT
#pragma once

// The segments of an outline as the sampler goes through them.

#include "mask/pod_buffer.h"
#include "overlay/types/outline_points.h"

namespace Quill {

/// Sends the segments in order, the closing one last: `line(from, to)` or `curve(start, end)`, positions in the array.
/// A curve's controls follow its start; it may run past the array's end. `anchors` is working memory.
///
/// Anchors are looked for among the first count - 1 points: the last one is, in a closed outline, the closing segment's
/// second control. Curves come from the array by position, whatever the types say.
template <typename Line, typename Curve>
void forEachSegment(const MPoint *points, int count, PodBuffer<std::int32_t> &anchors, Line line, Curve curve) {
    constexpr int kClosedFromAnchors = 3;
    anchors.clear();
    for (int i = 0; i + 1 < count; ++i)
        if (points[i].type == kAnchorPoint)
            anchors.push_back(i);
    const auto anchorCount = static_cast<int>(anchors.size());
    for (int j = 1; j < anchorCount; ++j) {
        const int from = anchors[static_cast<std::size_t>(j - 1)];
        if (points[from].curveOut != 0)
            curve(3 * (j - 1), 3 * j);
        else
            line(from, static_cast<int>(anchors[static_cast<std::size_t>(j)]));
    }
    if (anchorCount < kClosedFromAnchors)
        return;
    if (points[anchors[0]].curveIn != 0)
        curve(count - 3, 0);
    else
        line(static_cast<int>(anchors.back()), static_cast<int>(anchors[0]));
}

/// Whether a curve that forEachSegment sent lies within the array; one that does not has no points.
constexpr bool isWholeCurve(int start, int end, int count) {
    return start + 2 < count && end < count;
}

} // namespace Quill
