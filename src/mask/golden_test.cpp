// SPDX-License-Identifier: MIT
// The portable engine against the golden vectors.

#include <gtest/gtest.h>

#include <cmath>

#include "mask/golden_vectors_test.h"
#include "mask/outline_figure.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::Position;
using test::XY;

TEST(Golden, PolygonsCoverTheRecordedPixels) {
    for (const test::GoldenPolygon &polygon : test::goldenPolygons()) {
        EXPECT_EQ(test::filledRows(test::polylineOf(polygon.vertices), polygon.width, polygon.height), polygon.rows)
            << polygon.name;
        const std::vector<XY> backwards(polygon.vertices.rbegin(), polygon.vertices.rend());
        EXPECT_EQ(test::filledRows(test::polylineOf(backwards), polygon.width, polygon.height), polygon.rows)
            << polygon.name << " backwards";
    }
}

TEST(Golden, PolygonMaskDrawsTheRecordedPixels) {
    for (const test::GoldenPolygon &polygon : test::goldenPolygons()) {
        test::OwnedSurface surface(polygon.width, polygon.height);
        const std::vector<MPoint> points = test::outline(polygon.vertices);
        ASSERT_EQ(MaskHandler::m_fnDrawPolygonMask(points.data(), static_cast<int>(points.size()), polygon.width,
                                                   polygon.height, surface.stride, &surface.bits),
                  S_OK);
        EXPECT_EQ(surface.rows(), polygon.rows) << polygon.name;
    }
}

TEST(Golden, OutlinesFlattenToTheComputedPolylines) {
    for (const test::GoldenOutline &golden : test::goldenOutlines()) {
        const std::vector<MPoint> points = test::outline(golden.points);
        VertexBuffer polyline;
        buildOutline(points.data(), static_cast<int>(points.size()), {golden.width, golden.height}, polyline);
        EXPECT_EQ(polyline.size(), golden.vertices) << golden.name;
        EXPECT_EQ(test::fnvOf(polyline.begin(), polyline.end()), golden.hash) << golden.name;
    }
}

TEST(Golden, OutlinesFillAndEncodeToTheComputedRows) {
    for (const test::GoldenOutline &golden : test::goldenOutlines()) {
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
    for (const test::GoldenSamples &golden : test::goldenSamples())
        EXPECT_TRUE(samplesOf(golden.controls, golden.density) == plain(golden.samples)) << golden.name;
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

TEST(Golden, RecordedEllipses) {
    for (const test::RecordedChain &recorded : test::recordedChains()) {
        std::vector<Position> vertices = flattenedAtOne(recorded.chain);
        EXPECT_EQ(vertices.size(), recorded.count) << recorded.name;
        vertices.resize(recorded.first.size());
        EXPECT_TRUE(vertices == recorded.first) << recorded.name;
    }
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
