// SPDX-License-Identifier: MIT
#pragma once

// Recorded outputs of the platform's fill and flattener, and vectors computed from its rules with exact arithmetic:
// what the tests hold the portable engine to, and what raster_agreement asks of a real machine.

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "mask/flatten.h"
#include "mask/raster_support_test.h"

namespace Quill::test {

struct GoldenPolygon {
    const char *name;
    int width;
    int height;
    std::vector<XY> vertices;
    const char *rows; ///< as filledRows() writes them
};

/// Three points an anchor.
struct GoldenOutline {
    const char *name;
    int width;
    int height;
    std::vector<XY> points;
    std::size_t vertices; ///< of the polyline
    std::uint32_t hash;   ///< of the polyline, FNV-1a
    const char *rows;
};

/// One segment as a fill flattens it: pixel controls, vertices in sixteenths after the start.
struct GoldenCurve {
    const char *name;
    std::vector<XY> controls;
    std::vector<FixedPoint> vertices;
};

/// One segment as it is sampled for a density.
struct GoldenSamples {
    const char *name;
    std::vector<XY> controls;
    int density;
    std::vector<XY> samples;
};

struct Position {
    double x;
    double y;

    friend bool operator==(const Position &, const Position &) = default;
};

/// A chain of segments, flattened with flatness 1: the first of its vertices, start included, and the number of all.
struct RecordedChain {
    const char *name;
    std::vector<Position> chain;
    std::vector<Position> first;
    std::size_t count;
};

std::span<const GoldenPolygon> goldenPolygons();
std::span<const GoldenOutline> goldenOutlines();
std::span<const GoldenCurve> goldenCurves();
std::span<const GoldenSamples> goldenSamples();
std::span<const RecordedChain> recordedChains();

} // namespace Quill::test
