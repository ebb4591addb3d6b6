// SPDX-License-Identifier: MIT
// Draws seeded outlines with the platform's rasterizer and with the portable engine, and says how many pixels differ
// and where. For people with a real Windows machine: there the two should not differ at all.
//
//   raster_agreement [--count N] [--seed N] [--tolerance PIXELS] [--stray N]
//
// Polygons and axis-parallel outlines must agree to the pixel. Curves may differ within `tolerance` pixels of the
// figure's edges (default 0; Wine rounds the vertices of curves to whole pixels and needs 3). Exit code 0 when they do,
// 1 when they do not, 2 when the arguments make no sense or the platform has no rasterizer of its own.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "mask/fill.h"
#include "mask/outline_figure.h"
#include "mask/random_outline_test.h"
#include "platform/native_raster.h"

namespace {

using Quill::RasterEngine;
using Quill::test::OutlineKind;
using Quill::test::Random;

struct Options {
    int count = 10000;
    std::uint32_t seed = 1;
    int tolerance = 0;
    int stray = 0;
};

enum class Figure { Polygon, Outline };

struct Kind {
    const char *name;
    Figure figure;
    OutlineKind outline;
    bool exact; ///< straight edges only: no tolerance
};

constexpr Kind kKinds[] = {
    {"polygons", Figure::Polygon, OutlineKind::Beyond, true},
    {"axis-parallel outlines", Figure::Outline, OutlineKind::Grid, true},
    {"straight segments", Figure::Outline, OutlineKind::Straight, false},
    {"smooth curves", Figure::Outline, OutlineKind::Smooth, false},
    {"wild curves", Figure::Outline, OutlineKind::Wild, false},
    {"tiny curves", Figure::Outline, OutlineKind::Tiny, false},
    {"curves partly outside", Figure::Outline, OutlineKind::Beyond, false},
};

/// One picture of 24-bit pixels.
class Picture {
  public:
    Picture(int width, int height)
        : m_width(width), m_height(height), m_stride(static_cast<int>(Quill::surfaceStride(width))),
          m_bytes(static_cast<std::size_t>(m_stride) * static_cast<std::size_t>(height), 0) {}

    void draw(RasterEngine engine, Figure figure, const std::vector<MPoint> &points) {
        const Quill::MaskSurface surface{m_bytes.data(), m_width, m_height, m_stride};
        const int count = static_cast<int>(points.size());
        if (figure == Figure::Polygon)
            fillPolygon(engine, surface, points.data(), count);
        else
            fillOutline(engine, surface, points.data(), count);
    }
    bool isIn(int x, int y) const {
        return Quill::pixelKey(m_bytes.data() + static_cast<std::ptrdiff_t>(y) * m_stride +
                               static_cast<std::ptrdiff_t>(x) * Quill::kBytesPerPixel) != Quill::kBackgroundKey;
    }

  private:
    int m_width;
    int m_height;
    int m_stride;
    std::vector<std::uint8_t> m_bytes;
};

/// The figure's edges, flattened as if nothing of it were off the surface. Distances are taken from them and not from
/// the pixels of a mask, where two edges that enclose no pixel leave no trace.
class Edges {
  public:
    Edges(Figure figure, const std::vector<MPoint> &points) {
        constexpr int kWholePlane = 1 << 20;
        const int count = static_cast<int>(points.size());
        if (figure == Figure::Polygon)
            Quill::buildPolygon(points.data(), count, m_polyline);
        else
            Quill::buildOutline(points.data(), count, {kWholePlane, kWholePlane}, m_polyline);
    }

    /// Pixels from the position (x, y) to the nearest edge, rounded up.
    int distance(int x, int y) const {
        double nearest = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < m_polyline.size(); ++i)
            nearest = std::min(nearest, distanceTo(m_polyline[i], m_polyline[(i + 1) % m_polyline.size()], x, y));
        return static_cast<int>(std::ceil(nearest));
    }

  private:
    static double distanceTo(Quill::FixedPoint from, Quill::FixedPoint to, int x, int y) {
        const double dx = pixels(to.x - from.x);
        const double dy = pixels(to.y - from.y);
        const double px = x - pixels(from.x);
        const double py = y - pixels(from.y);
        const double length = dx * dx + dy * dy;
        const double along = length > 0 ? std::clamp((px * dx + py * dy) / length, 0.0, 1.0) : 0.0;
        return std::hypot(px - along * dx, py - along * dy);
    }
    static double pixels(int units) { return units / static_cast<double>(Quill::kUnitsPerPixel); }

    Quill::VertexBuffer m_polyline;
};

struct Tally {
    int compared = 0;
    int differing = 0;
    std::size_t pixels = 0;
    int farthest = 0; ///< from an edge of the figure
    int stray = 0;    ///< outlines with a pixel beyond the tolerance
};

constexpr int kPlacesPerKind = 5;

void compare(const Kind &kind, Random &random, int number, int tolerance, Tally &tally) {
    const int width = random.between(8, 200);
    const int height = random.between(8, 160);
    const int anchors = random.oneIn(10) ? random.between(3, 60) : random.between(3, 12);
    const auto points = Quill::test::randomOutline(random, kind.outline, anchors, width, height);
    Picture portable(width, height);
    Picture native(width, height);
    portable.draw(RasterEngine::Portable, kind.figure, points);
    native.draw(RasterEngine::Native, kind.figure, points);
    const Edges edges(kind.figure, points);
    std::size_t pixels = 0;
    int farthest = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            if (portable.isIn(x, y) == native.isIn(x, y))
                continue;
            const int distance = edges.distance(x, y);
            farthest = std::max(farthest, distance);
            if (pixels++ == 0 && tally.differing < kPlacesPerKind)
                std::printf("  %s, outline %d (%d x %d, %d points): first at (%d, %d), %s only, %d from an edge\n",
                            kind.name, number, width, height, static_cast<int>(points.size()), x, y,
                            native.isIn(x, y) ? "native" : "portable", distance);
        }
    ++tally.compared;
    tally.differing += pixels > 0;
    tally.stray += farthest > tolerance;
    tally.farthest = std::max(tally.farthest, farthest);
    tally.pixels += pixels;
}

bool parse(int argc, char **argv, Options &options) {
    for (int i = 1; i < argc; i += 2) {
        if (i + 1 == argc)
            return false;
        const std::string name = argv[i];
        char *end = nullptr;
        const long value = std::strtol(argv[i + 1], &end, 10);
        if (*end != '\0' || value < 0 || value > 100000000)
            return false;
        if (name == "--count")
            options.count = static_cast<int>(value);
        else if (name == "--seed")
            options.seed = static_cast<std::uint32_t>(value);
        else if (name == "--tolerance")
            options.tolerance = static_cast<int>(value);
        else if (name == "--stray")
            options.stray = static_cast<int>(value);
        else
            return false;
    }
    return true;
}

bool agree(const Options &options) {
    bool agreed = true;
    Random random(options.seed);
    Tally tallies[std::size(kKinds)];
    for (int i = 0; i < options.count; ++i) {
        const std::size_t kind = static_cast<std::size_t>(i) % std::size(kKinds);
        compare(kKinds[kind], random, i, options.tolerance, tallies[kind]);
    }
    int stray = 0;
    std::printf("%-24s %9s %9s %9s %9s %s\n", "", "outlines", "differ", "pixels", "stray", "farthest from an edge");
    for (std::size_t i = 0; i < std::size(kKinds); ++i) {
        const Tally &tally = tallies[i];
        const bool held = !kKinds[i].exact || tally.pixels == 0;
        std::printf("%-24s %9d %9d %9zu %9d %d%s\n", kKinds[i].name, tally.compared, tally.differing, tally.pixels,
                    tally.stray, tally.farthest, held ? "" : "  HAS TO BE EXACT");
        agreed = agreed && held;
        stray += tally.stray;
    }
    if (stray > options.stray) {
        std::printf("%d outlines go farther than %d pixels; %d may\n", stray, options.tolerance, options.stray);
        agreed = false;
    }
    return agreed;
}

} // namespace

int main(int argc, char **argv) {
    Options options;
    if (!parse(argc, argv, options)) {
        std::fprintf(stderr, "usage: raster_agreement [--count N] [--seed N] [--tolerance PIXELS] [--stray N]\n");
        return 2;
    }
    if (!platform::hasNativeRaster()) {
        std::fprintf(stderr, "this platform has no rasterizer of its own to compare with\n");
        return 2;
    }
    return agree(options) ? 0 : 1;
}
