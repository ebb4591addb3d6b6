// SPDX-License-Identifier: MIT
// Random segments: flattened as a fill does it, vertex by vertex, and sampled as the pointer's hovering has it.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "mask/agreement/findings.h"
#include "mask/random_outline_test.h"
#include "mask/sample.h"
#include "platform/native_raster.h"

namespace agreement {
namespace {

using Quill::RasterEngine;
using Quill::test::Random;

constexpr float kFillFlatness = 0.25F;
constexpr int kDensities[] = {640, 1280, 1920, 3840, 7680};

/// Beyond this product of density and coordinate the platform's own numbers overflow.
constexpr std::int64_t kLargestScaled = (std::int64_t{1} << 25) - 1;

std::vector<MPoint> randomSegment(Random &random, int extent) {
    std::vector<MPoint> points(4);
    for (MPoint &point : points) {
        point.x = random.between(0, extent);
        point.y = random.between(0, extent);
    }
    return points;
}

void compareVertices(const Options &options, Findings &findings) {
    Random random(options.seed + 1);
    Section section{"vertices of flattened segments", 0, 0, "", true};
    for (int i = 0; i < options.curves; ++i) {
        constexpr int kExtents[] = {8, 60, 400, 1022, 2000, 7680};
        const std::vector<MPoint> points = randomSegment(random, kExtents[i % 6]);
        std::vector<platform::PathPosition> chain;
        Quill::CubicControls controls{};
        for (std::size_t at = 0; at < points.size(); ++at) {
            chain.push_back({static_cast<float>(points[at].x), static_cast<float>(points[at].y)});
            controls[at] = {Quill::toFixed(points[at].x), Quill::toFixed(points[at].y)};
        }
        std::vector<platform::PathPosition> native;
        Quill::VertexBuffer portable;
        portable.push_back(controls[0]);
        Quill::flattenSegment(controls, portable);
        const bool flattened = platform::nativeFlattenChain(chain, kFillFlatness, native);
        ++section.compared;
        const bool same = flattened && std::equal(native.begin(), native.end(), portable.begin(), portable.end(),
                                                  [](const platform::PathPosition &a, const Quill::FixedPoint &b) {
                                                      return a.x * Quill::kUnitsPerPixel == static_cast<float>(b.x) &&
                                                             a.y * Quill::kUnitsPerPixel == static_cast<float>(b.y);
                                                  });
        if (same)
            continue;
        ++section.differing;
        findings.place(section.name.c_str(), "segment " + std::to_string(i) + ": " + std::to_string(native.size()) +
                                                 " native vertices, " + std::to_string(portable.size()) + " portable");
    }
    section.held = section.differing == 0;
    findings.add(section);
}

struct SampleTally {
    Section section{"sampled segments", 0, 0, "", true};
    std::size_t otherCounts = 0;
    std::size_t points = 0;
    std::size_t pointsOff = 0;
    int farthest = 0;
};

void compareSamples(const std::vector<MPoint> &points, int density, SampleTally &tally) {
    const MPoint *const controls[4] = {&points[0], &points[1], &points[2], &points[3]};
    Quill::VertexBuffer scratch;
    std::vector<MPoint> portable;
    std::vector<MPoint> native;
    Quill::sampleSegment(RasterEngine::Portable, controls, density, scratch, portable);
    Quill::sampleSegment(RasterEngine::Native, controls, density, scratch, native);
    ++tally.section.compared;
    tally.points += portable.size();
    if (portable.size() != native.size()) {
        ++tally.section.differing;
        ++tally.otherCounts;
        return;
    }
    std::size_t off = 0;
    for (std::size_t at = 0; at < portable.size(); ++at) {
        const int distance = std::max(std::abs(portable[at].x - native[at].x), std::abs(portable[at].y - native[at].y));
        off += distance > 0;
        tally.farthest = std::max(tally.farthest, distance);
    }
    tally.pointsOff += off;
    tally.section.differing += off > 0;
}

/// The platform samples through single-precision numbers whose order nobody knows: ties of half a pixel may fall either
/// way, and one curve in hundreds may get another number of points.
void compareSampling(const Options &options, Findings &findings) {
    Random random(options.seed + 2);
    SampleTally tally;
    for (int i = 0; i < options.curves; ++i) {
        const int density = kDensities[i % 5];
        const auto reach = static_cast<int>(std::min<std::int64_t>(density, kLargestScaled / density));
        compareSamples(randomSegment(random, std::max(2, reach >> (i / 5 % 4))), density, tally);
    }
    tally.section.detail = std::to_string(tally.pointsOff) + " of " + std::to_string(tally.points) +
                           " points off, up to " + std::to_string(tally.farthest) + " pixels; " +
                           std::to_string(tally.otherCounts) + " segments of another number of points";
    tally.section.held = tally.farthest <= 1 && 100 * tally.otherCounts <= tally.section.compared &&
                         1000 * tally.pointsOff <= tally.points;
    findings.add(tally.section);
}

} // namespace

void compareCurves(const Options &options, Findings &findings) {
    const platform::PixelPoint probe[4] = {{0, 0}, {0, 6}, {9, 6}, {9, 0}};
    std::vector<platform::PixelPoint> ignored;
    if (!platform::nativeFlattenBezier(probe, 1.0F / 8, ignored)) {
        findings.note("Segments were not flattened or sampled but for the golden ones: Wine's flattener never ends.");
        return;
    }
    compareVertices(options, findings);
    compareSampling(options, findings);
}

} // namespace agreement
