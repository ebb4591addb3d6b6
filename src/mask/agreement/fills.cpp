// SPDX-License-Identifier: MIT
// Fills of random figures, small and up to 8K, inside of the surface, across its edges and wholly outside.

#include <algorithm>

#include "mask/agreement/findings.h"
#include "mask/agreement/picture.h"
#include "mask/random_outline_test.h"

namespace agreement {
namespace {

using Quill::RasterEngine;
using Quill::test::OutlineKind;
using Quill::test::Random;

struct Kind {
    const char *name;
    Figure figure;
    OutlineKind outline;
    bool exact; ///< straight edges only, or nothing to be seen: no tolerance
};

constexpr Kind kKinds[] = {
    {"polygons", Figure::Polygon, OutlineKind::Beyond, true},
    {"axis-parallel outlines", Figure::Outline, OutlineKind::Grid, true},
    {"straight segments", Figure::Outline, OutlineKind::Straight, false},
    {"smooth curves", Figure::Outline, OutlineKind::Smooth, false},
    {"wild curves", Figure::Outline, OutlineKind::Wild, false},
    {"tiny curves", Figure::Outline, OutlineKind::Tiny, false},
    {"curves partly outside", Figure::Outline, OutlineKind::Beyond, false},
    {"curves wholly outside", Figure::Outline, OutlineKind::Outside, true},
};

struct Size {
    int width;
    int height;
};

/// What displays have, and what is long and narrow.
constexpr Size kLargeSizes[] = {{1920, 1080}, {3840, 2160}, {7680, 4320}, {8192, 67}, {67, 8192}};

/// Distances take time in proportion to edges and pixels; this many tell enough of one picture.
constexpr std::size_t kMeasuredPixels = 500;

struct Tally {
    std::size_t compared = 0;
    std::size_t differing = 0;
    std::size_t pixels = 0;
    int farthest = 0; ///< from an edge of the figure
    int stray = 0;    ///< pictures with a pixel beyond the tolerance
};

class Comparison {
  public:
    Comparison(const Options &options, Findings &findings) : m_options(options), m_findings(findings) {}

    void compare(const Kind &kind, const Size &size, const std::vector<MPoint> &points, int number, Tally &tally) {
        Picture portable(size.width, size.height);
        Picture native(size.width, size.height);
        portable.draw(RasterEngine::Portable, kind.figure, points);
        native.draw(RasterEngine::Native, kind.figure, points);
        const Edges edges(kind.figure, points);
        std::size_t pixels = 0;
        int farthest = 0;
        for (int y = 0; y < size.height; ++y) {
            if (portable.hasSameRow(native, y))
                continue;
            for (int x = 0; x < size.width; ++x) {
                if (portable.isIn(x, y) == native.isIn(x, y))
                    continue;
                if (pixels++ >= kMeasuredPixels)
                    continue;
                const int distance = edges.distance(x, y);
                farthest = std::max(farthest, distance);
                if (pixels == 1)
                    m_findings.place(kind.name,
                                     describe(number, size, points.size(), x, y, native.isIn(x, y), distance));
            }
        }
        ++tally.compared;
        tally.differing += pixels > 0;
        tally.stray += farthest > m_options.tolerance;
        tally.farthest = std::max(tally.farthest, farthest);
        tally.pixels += pixels;
    }

    void addSection(const std::string &name, const Tally &tally, bool exact) {
        std::string detail;
        if (tally.pixels > 0)
            detail = std::to_string(tally.pixels) + " pixels, up to " + std::to_string(tally.farthest) +
                     " from an edge, " + std::to_string(tally.stray) + " pictures beyond the tolerance";
        m_stray += tally.stray;
        m_findings.add({name, tally.compared, tally.differing, detail, exact ? tally.pixels == 0 : true});
    }

    void finish() {
        const bool held = m_stray <= m_options.stray;
        m_findings.add({"pictures beyond the tolerance", static_cast<std::size_t>(m_options.stray),
                        static_cast<std::size_t>(m_stray), "(may be, are)", held});
    }

  private:
    static std::string describe(int number, const Size &size, std::size_t points, int x, int y, bool isNative,
                                int distance) {
        return "picture " + std::to_string(number) + " (" + std::to_string(size.width) + " x " +
               std::to_string(size.height) + ", " + std::to_string(points) + " points): first at (" +
               std::to_string(x) + ", " + std::to_string(y) + "), " + (isNative ? "native" : "portable") + " only, " +
               std::to_string(distance) + " from an edge";
    }

    const Options &m_options;
    Findings &m_findings;
    int m_stray = 0;
};

} // namespace

void compareFills(const Options &options, Findings &findings) {
    Comparison comparison(options, findings);
    Tally small[std::size(kKinds)];
    Tally large[std::size(kKinds)];
    Random random(options.seed);
    for (int i = 0; i < options.count; ++i) {
        const std::size_t kind = static_cast<std::size_t>(i) % std::size(kKinds);
        const Size size = {random.between(8, 200), random.between(8, 160)};
        const int anchors = random.oneIn(10) ? random.between(3, 60) : random.between(3, 12);
        comparison.compare(kKinds[kind], size,
                           Quill::test::randomOutline(random, kKinds[kind].outline, anchors, size.width, size.height),
                           i, small[kind]);
    }
    for (int i = 0; i < options.large; ++i) {
        const auto number = static_cast<std::size_t>(i);
        const std::size_t kind = number % std::size(kKinds);
        const Size size = kLargeSizes[number % std::size(kLargeSizes)];
        const int anchors = random.between(3, 40);
        comparison.compare(kKinds[kind], size,
                           Quill::test::randomOutline(random, kKinds[kind].outline, anchors, size.width, size.height),
                           i, large[kind]);
    }
    for (std::size_t kind = 0; kind < std::size(kKinds); ++kind)
        comparison.addSection(kKinds[kind].name, small[kind], kKinds[kind].exact);
    for (std::size_t kind = 0; kind < std::size(kKinds); ++kind)
        comparison.addSection(std::string(kKinds[kind].name) + ", up to 8K", large[kind], kKinds[kind].exact);
    comparison.finish();
}

} // namespace agreement
