// SPDX-License-Identifier: MIT
// Sampling of anything: bounded lists, curves that start and end where they should and stay near their control points.
//
// Input: flags (bits 0-1 coordinates), density (32 bits), then points with their flags.

#include <algorithm>

#include "byte_reader.h"
#include "mask/flatten.h"
#include "mask/mask_handler.h"

namespace {

/// Most points that sampling lists for one segment: two sweeps of a line, or a curve.
constexpr std::size_t kMostSamples = 600000;

/// Few where a single line may list half a million points.
constexpr std::size_t mostPoints(fuzz::Coordinates kind) {
    return kind == fuzz::Coordinates::Any ? 5 : 24;
}

/// Samples lie in the box of the control points, but for rounding and for what short arithmetic drops of extreme
/// curves.
void requireNear(const std::vector<MPoint> &samples, const MPoint *const (&controls)[4], int density) {
    const std::int64_t slack = 1 + 10 / std::max(std::min(density, 10), 1);
    const auto [lowX, highX] = std::minmax({controls[0]->x, controls[1]->x, controls[2]->x, controls[3]->x});
    const auto [lowY, highY] = std::minmax({controls[0]->y, controls[1]->y, controls[2]->y, controls[3]->y});
    for (const MPoint &sample : samples)
        fuzz::require(sample.x >= lowX - slack && sample.x <= highX + slack && sample.y >= lowY - slack &&
                      sample.y <= highY + slack);
    fuzz::require(samples.front().x == controls[0]->x && samples.front().y == controls[0]->y);
    fuzz::require(std::abs(std::int64_t{samples.back().x} - controls[3]->x) <= slack &&
                  std::abs(std::int64_t{samples.back().y} - controls[3]->y) <= slack);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::ByteReader bytes(data, size);
    const auto flags = bytes.take<std::uint8_t>();
    const auto density = bytes.take<std::int32_t>();
    const auto kind = static_cast<fuzz::Coordinates>(flags % 4 % 3);
    const auto points = fuzz::takePoints(bytes, kind, mostPoints(kind), true);
    const int count = static_cast<int>(points.size());

    Quill::SegmentSamples segments;
    const HRESULT result = Quill::MaskHandler::GenAllPoints(points.data(), count, density, 0, &segments);
    fuzz::require(result == (points.empty() ? E_POINTER : count < 2 ? E_FAIL : S_OK));
    for (const auto &samples : segments)
        fuzz::require(samples.size() < kMostSamples);

    // The first curve, when the chain is well formed that far.
    if (kind != fuzz::Coordinates::Any && count >= 5 && !segments.empty() && points[0].type == kAnchorPoint &&
        points[0].curveOut != 0) {
        const MPoint *const controls[4] = {&points[0], &points[1], &points[2], &points[3]};
        requireNear(segments[0], controls, density);
    }
    return 0;
}
