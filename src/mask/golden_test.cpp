// SPDX-License-Identifier: MIT
// Recorded outputs of the platform's fill and flattener, and vectors computed from its rules with exact arithmetic.

#include <gtest/gtest.h>

#include <cmath>

#include "mask/outline_figure.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::XY;

// --- polygons
// ---------------------------------------------------------------------------------------------------------

struct Polygon {
    const char *name;
    int width;
    int height;
    std::vector<XY> vertices;
    const char *rows;
};

const Polygon kPolygons[] = {
    {"rectangle", 6, 6, {{1, 1}, {4, 1}, {4, 4}, {1, 4}}, "1: 1-3; 2: 1-3; 3: 1-3"},
    {"right triangle", 6, 6, {{0, 0}, {5, 0}, {0, 5}}, "0: 0-4; 1: 0-3; 2: 0-2; 3: 0-1; 4: 0-0"},
    {"triangle, apex up", 7, 7, {{3, 0}, {6, 6}, {0, 6}}, "1: 3-3; 2: 2-3; 3: 2-4; 4: 1-4; 5: 1-5"},
    {"bow tie", 7, 7, {{0, 0}, {6, 6}, {6, 0}, {0, 6}}, "1: 0-0 5-5; 2: 0-1 4-5; 3: 0-5; 4: 0-1 4-5; 5: 0-0 5-5"},
    {"square traversed twice", 8, 8, {{1, 1}, {6, 1}, {6, 6}, {1, 6}, {1, 1}, {6, 1}, {6, 6}, {1, 6}}, ""},
    {"partly outside", 6, 6, {{-3, -2}, {8, 3}, {-1, 8}}, "0: 0-1; 1: 0-3; 2: 0-5; 3: 0-5; 4: 0-5; 5: 0-4"},
    {"sliver", 11, 3, {{0, 0}, {10, 1}, {0, 2}}, "1: 0-9"},
    {"horizontal, no area", 8, 6, {{0, 3}, {5, 3}, {2, 3}}, ""},
    {"vertical, no area", 8, 6, {{3, 0}, {3, 5}, {3, 2}}, ""},
    {"diamond", 5, 5, {{2, 1}, {3, 2}, {2, 3}, {1, 2}}, "2: 1-2"},
    {"covers all", 5, 3, {{-1, -1}, {20, -1}, {20, 20}, {-1, 20}}, "0: 0-4; 1: 0-4; 2: 0-4"},
    {"comb, two pixels wide",
     8,
     5,
     {{0, 4}, {1, 0}, {2, 4}, {3, 0}, {4, 4}, {5, 0}, {6, 4}},
     "1: 1-1 3-3 5-5; 2: 1-1 3-3 5-5; 3: 1-1 3-3 5-5"},
};

TEST(Golden, PolygonsCoverTheRecordedPixels) {
    for (const Polygon &polygon : kPolygons) {
        EXPECT_EQ(test::filledRows(test::polylineOf(polygon.vertices), polygon.width, polygon.height), polygon.rows)
            << polygon.name;
        const std::vector<XY> backwards(polygon.vertices.rbegin(), polygon.vertices.rend());
        EXPECT_EQ(test::filledRows(test::polylineOf(backwards), polygon.width, polygon.height), polygon.rows)
            << polygon.name << " backwards";
    }
}

TEST(Golden, PolygonMaskDrawsTheRecordedPixels) {
    for (const Polygon &polygon : kPolygons) {
        test::OwnedSurface surface(polygon.width, polygon.height);
        const std::vector<MPoint> points = test::outline(polygon.vertices);
        ASSERT_EQ(MaskHandler::m_fnDrawPolygonMask(points.data(), static_cast<int>(points.size()), polygon.width,
                                                   polygon.height, surface.stride, &surface.bits),
                  S_OK);
        EXPECT_EQ(surface.rows(), polygon.rows) << polygon.name;
    }
}

// --- outlines
// ---------------------------------------------------------------------------------------------------------

struct Outline {
    const char *name;
    int width;
    int height;
    std::vector<XY> points;
    std::size_t vertices;
    std::uint32_t hash;
    const char *rows;
};

const Outline kOutlines[] = {
    {"square, straight segments",
     12,
     12,
     {{2, 2}, {4, 2}, {8, 2}, {10, 2}, {10, 4}, {10, 8}, {10, 10}, {8, 10}, {4, 10}, {2, 10}, {2, 8}, {2, 4}},
     17,
     0x01bee465,
     "2: 2-9; 3: 2-9; 4: 2-9; 5: 2-9; 6: 2-9; 7: 2-9; 8: 2-9; 9: 2-9"},
    {"triangle, straight segments",
     16,
     16,
     {{2, 1}, {5, 1}, {11, 3}, {14, 4}, {11, 6}, {7, 10}, {5, 13}, {4, 10}, {2, 4}},
     13,
     0x0b132845,
     "2: 3-7; 3: 3-10; 4: 3-13; 5: 3-12; 6: 3-11; 7: 4-10; 8: 4-9; 9: 4-8; 10: 5-7; 11: 5-6; 12: 5-5"},
    {"round, 4 anchors",
     20,
     20,
     {{18, 10}, {18, 14}, {14, 18}, {10, 18}, {6, 18}, {2, 14}, {2, 10}, {2, 6}, {6, 2}, {10, 2}, {14, 2}, {18, 6}},
     17,
     0x3061c63a,
     "3: 7-13; 4: 6-14; 5: 5-15; 6: 4-16; 7: 3-17; 8: 3-17; 9: 3-17; 10: 2-17; 11: 3-17; 12: 3-17; 13: 3-17; 14: "
     "4-16; 15: 5-15; 16: 6-14; 17: 7-13"},
    {"figure of eight, 4 anchors",
     20,
     12,
     {{2, 2}, {8, 2}, {12, 10}, {18, 10}, {20, 10}, {20, 2}, {18, 2}, {12, 2}, {8, 10}, {2, 10}, {0, 10}, {0, 2}},
     25,
     0x7749d802,
     "3: 2-5 15-18; 4: 1-7 13-19; 5: 1-8 12-19; 6: 1-19; 7: 1-8 12-19; 8: 1-7 13-19; 9: 2-5 15-19"},
    {"all points equal",
     8,
     8,
     {{3, 3}, {3, 3}, {3, 3}, {3, 3}, {3, 3}, {3, 3}, {3, 3}, {3, 3}, {3, 3}},
     4,
     0x2de651c5,
     ""},
};

TEST(Golden, OutlinesFlattenToTheComputedPolylines) {
    for (const Outline &golden : kOutlines) {
        const std::vector<MPoint> points = test::outline(golden.points);
        VertexBuffer polyline;
        buildOutline(points.data(), static_cast<int>(points.size()), {golden.width, golden.height}, polyline);
        EXPECT_EQ(polyline.size(), golden.vertices) << golden.name;
        EXPECT_EQ(test::fnvOf(polyline.begin(), polyline.end()), golden.hash) << golden.name;
    }
}

TEST(Golden, OutlinesFillAndEncodeToTheComputedRows) {
    for (const Outline &golden : kOutlines) {
        const std::vector<MPoint> points = test::outline(golden.points);
        const int count = static_cast<int>(points.size());
        test::OwnedSurface surface(golden.width, golden.height);
        ASSERT_EQ(MaskHandler::m_fnFillBezierCurveMask(points.data(), count, golden.width, golden.height,
                                                       surface.stride, &surface.bits, false),
                  S_OK);
        EXPECT_EQ(surface.rows(), golden.rows) << golden.name;

        std::vector<MaskRun> runs;
        ASSERT_EQ(
            MaskHandler::ConvertPoints2Mask(points.data(), count, golden.width, golden.height, false, nullptr, &runs),
            S_OK);
        EXPECT_EQ(test::asText(runs), golden.rows) << golden.name;
        RowListMask mask{golden.width, golden.height, {}};
        ASSERT_EQ(MaskHandler::ConvertPoints2Mask(points.data(), count, &mask), S_OK);
        EXPECT_EQ(test::rowListAsText(mask.rows), golden.rows) << golden.name;
    }
}

// --- invert and exclusion
// -----------------------------------------------------------------------------------------------

// The rectangle (1,1)-(4,4) as an outline: axis-parallel segments cover exactly the polygon's pixels.
const std::vector<XY> kSquare = {{1, 1}, {1, 1}, {4, 1}, {4, 1}, {4, 1}, {4, 4},
                                 {4, 4}, {4, 4}, {1, 4}, {1, 4}, {1, 4}, {1, 1}};

std::string encodedSquare(bool invert, const std::uint8_t *exclusion) {
    const std::vector<MPoint> points = test::outline(kSquare);
    std::vector<MaskRun> runs;
    EXPECT_EQ(
        MaskHandler::ConvertPoints2Mask(points.data(), static_cast<int>(points.size()), 6, 6, invert, exclusion, &runs),
        S_OK);
    return test::asText(runs);
}

TEST(Golden, InvertedRectangle) {
    EXPECT_EQ(encodedSquare(false, nullptr), "1: 1-3; 2: 1-3; 3: 1-3");
    EXPECT_EQ(encodedSquare(true, nullptr), "0: 0-5; 1: 0-0 4-5; 2: 0-0 4-5; 3: 0-0 4-5; 4: 0-5; 5: 0-5");
}

TEST(Golden, OnlyTheByteOneExcludes) {
    std::array<std::uint8_t, 36> exclusion{};
    exclusion[2 * 6 + 2] = 1;
    exclusion[3 * 6 + 2] = 2;
    EXPECT_EQ(encodedSquare(false, exclusion.data()), "1: 1-3; 2: 1-1 3-3; 3: 1-3");
}

TEST(Golden, ExclusionAppliesToTheInvertedMaskToo) {
    std::array<std::uint8_t, 36> exclusion{};
    exclusion[0] = exclusion[5] = exclusion[2 * 6] = 1;
    EXPECT_EQ(encodedSquare(true, exclusion.data()), "0: 1-4; 1: 0-0 4-5; 2: 4-5; 3: 0-0 4-5; 4: 0-5; 5: 0-5");
}

// --- samples
// ------------------------------------------------------------------------------------------------------------

std::vector<MPoint> samplesOf(const std::vector<XY> &curve, int density) {
    std::vector<MPoint> points = test::outline(curve);
    points[0].curveOut = 1;
    points.push_back({kControlPoint, 0, 0, 0, 0, 0}); // the last point is never looked at
    SegmentSamples segments;
    EXPECT_EQ(MaskHandler::GenAllPoints(points.data(), static_cast<int>(points.size()), density, 0, &segments), S_OK);
    EXPECT_EQ(segments.size(), 1u);
    return segments.at(0);
}

std::vector<MPoint> plain(const std::vector<XY> &points) {
    std::vector<MPoint> result;
    for (const XY &point : points)
        result.push_back({0, point.x, point.y, 0, 0, 0});
    return result;
}

TEST(Golden, SamplesOfOneSegment) {
    EXPECT_TRUE(samplesOf({{2, 3}, {2, 3}, {2, 3}, {2, 3}}, 16) == plain({{2, 3}, {2, 3}}));
    EXPECT_TRUE(samplesOf({{0, 0}, {1, 0}, {3, 0}, {4, 0}}, 4) == plain({{0, 0}, {2, 0}, {4, 0}}));
    EXPECT_TRUE(samplesOf({{0, 0}, {0, 6}, {9, 6}, {9, 0}}, 8) ==
                plain({{0, 0}, {0, 1}, {0, 2}, {1, 3}, {3, 4}, {5, 5}, {6, 4}, {8, 3}, {9, 2}, {9, 1}, {9, 0}}));
    const std::vector<MPoint> fine = samplesOf({{10, 10}, {10, 10}, {10, 10}, {12, 11}}, 1920);
    ASSERT_EQ(fine.size(), 56u);
    test::Fnv hash;
    for (const MPoint &point : fine) {
        hash.add(point.x);
        hash.add(point.y);
    }
    EXPECT_EQ(hash.value(), 0x2a6c84c5u);
    EXPECT_TRUE(fine[28] == plain({{10, 10}})[0]);
    EXPECT_TRUE(fine.back() == plain({{12, 11}})[0]);
}

TEST(Golden, UsualSampleCounts) {
    // Quarter circles and a straight segment at display widths in use.
    const auto arc = [](int size) {
        return std::vector<XY>{{size, 0}, {size, size * 55 / 100}, {size * 55 / 100, size}, {0, size}};
    };
    EXPECT_EQ(samplesOf(arc(100), 1280).size(), 257u);
    EXPECT_EQ(samplesOf(arc(300), 1920).size(), 513u);
    EXPECT_EQ(samplesOf(arc(1000), 1920).size(), 1025u);
    EXPECT_EQ(samplesOf({{0, 0}, {75, 0}, {225, 0}, {300, 0}}, 1920).size(), 383u);
}

// --- recorded outputs
// ---------------------------------------------------------------------------------------------------

// The platform takes a coordinate to the nearest 1/256 pixel and then up to the next 1/16.
std::int32_t recordedFixed(double value) {
    return (static_cast<std::int32_t>(std::floor(static_cast<float>(value) * 256 + 0.5)) + 15) >> 4;
}

struct Position {
    double x;
    double y;
};

/// Flattened with flatness 1: the curve is scaled to a quarter and back.
std::vector<Position> flattenedAtOne(const std::vector<Position> &chain) {
    constexpr double kScale = 0.25;
    const auto scaled = [](const Position &p) {
        return FixedPoint{recordedFixed(p.x * kScale), recordedFixed(p.y * kScale)};
    };
    VertexBuffer vertices;
    vertices.push_back(scaled(chain[0]));
    for (std::size_t i = 0; i + 3 < chain.size(); i += 3)
        flattenSegment({scaled(chain[i]), scaled(chain[i + 1]), scaled(chain[i + 2]), scaled(chain[i + 3])}, vertices);
    std::vector<Position> result;
    for (const FixedPoint &vertex : vertices)
        result.push_back({vertex.x / (16 * kScale), vertex.y / (16 * kScale)});
    return result;
}

std::vector<Position> ellipse(double left, double top, double width, double height) {
    constexpr double kArc = 0.5522847498;
    const double rx = width / 2;
    const double ry = height / 2;
    const double cx = left + rx;
    const double cy = top + ry;
    return {{cx + rx, cy}, {cx + rx, cy + ry * kArc}, {cx + rx * kArc, cy + ry},
            {cx, cy + ry}, {cx - rx * kArc, cy + ry}, {cx - rx, cy + ry * kArc},
            {cx - rx, cy}, {cx - rx, cy - ry * kArc}, {cx - rx * kArc, cy - ry},
            {cx, cy - ry}, {cx + rx * kArc, cy - ry}, {cx + rx, cy - ry * kArc},
            {cx + rx, cy}};
}

void expectPositions(const std::vector<Position> &actual, const std::vector<Position> &expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        EXPECT_EQ(actual[i].x, expected[i].x) << i;
        EXPECT_EQ(actual[i].y, expected[i].y) << i;
    }
}

TEST(Golden, RecordedEllipses) {
    std::vector<Position> wide = flattenedAtOne(ellipse(0, 0, 100, 50));
    EXPECT_EQ(wide.size(), 25u);
    wide.resize(7);
    expectPositions(wide, {{100, 25}, {99, 30}, {96, 34.75}, {91.5, 39}, {85.5, 42.75}, {69.5, 48}, {50, 50}});

    std::vector<Position> round = flattenedAtOne(ellipse(0, 0, 100, 100));
    round.resize(9);
    expectPositions(
        round,
        {{100, 50}, {99, 60}, {96, 69.5}, {91.5, 78}, {85.5, 85.5}, {78, 91.5}, {69.5, 96}, {60, 99}, {50, 100}});

    expectPositions(flattenedAtOne(ellipse(1, 2, 3, 4)), {{4, 4}, {2.5, 6}, {1, 4}, {2.5, 2}, {4, 4}});

    std::vector<Position> mapped = ellipse(1, 2, 3, 4);
    for (Position &p : mapped)
        p = {p.x + 3 * p.y + 5, 2 * p.x + 4 * p.y + 6};
    expectPositions(flattenedAtOne(mapped), {{21, 30},
                                             {25, 34.75},
                                             {25.5, 35},
                                             {22.75, 30.75},
                                             {18, 24},
                                             {14.25, 19.25},
                                             {13.5, 19},
                                             {16.5, 23.5},
                                             {21, 30}});
}

TEST(Golden, RecordedRectanglesOffTheGrid) {
    const auto rows = [](double x, double y, double width, double height) {
        VertexBuffer polyline;
        polyline.push_back({recordedFixed(x), recordedFixed(y)});
        polyline.push_back({recordedFixed(x + width), recordedFixed(y)});
        polyline.push_back({recordedFixed(x + width), recordedFixed(y + height)});
        polyline.push_back({recordedFixed(x), recordedFixed(y + height)});
        return test::filledRows(polyline, 100, 100);
    };
    const auto rectangle = [](int x, int y, int width, int height) {
        std::vector<XY> corners{{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}};
        return test::filledRows(test::polylineOf(corners), 100, 100);
    };
    EXPECT_EQ(rows(10.2, 20.2, 30.2, 40.2), rectangle(11, 21, 30, 40));
    EXPECT_EQ(rows(10.5, 20.5, 30.5, 40.5), rectangle(11, 21, 30, 40));
    EXPECT_EQ(rows(10.6, 20.6, 30.6, 40.6), rectangle(11, 21, 31, 41));
    EXPECT_EQ(rows(10, 20, 30, 40), rectangle(10, 20, 30, 40));
}

} // namespace
} // namespace Quill
