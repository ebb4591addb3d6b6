// SPDX-License-Identifier: MIT
#include "mask/flatten.h"

#include <gtest/gtest.h>

#include <vector>

#include "mask/golden_vectors_test.h"

namespace Quill {
namespace {

using Vertices = std::vector<FixedPoint>;

CubicControls pixels(const std::array<std::array<int, 2>, 4> &points) {
    CubicControls controls{};
    for (std::size_t i = 0; i < 4; ++i)
        controls[i] = {toFixed(points[i][0]), toFixed(points[i][1])};
    return controls;
}

Vertices flatten(const CubicControls &controls, const FlattenClip *clip = nullptr) {
    VertexBuffer buffer;
    flattenSegment(controls, buffer, clip);
    return {buffer.begin(), buffer.end()};
}

std::uint32_t fnv(const Vertices &vertices) {
    std::uint32_t hash = 0x811c9dc5;
    const auto add = [&](std::int32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            hash = (hash ^ (static_cast<std::uint32_t>(value) >> shift & 0xFF)) * 0x01000193;
    };
    for (const FixedPoint &vertex : vertices) {
        add(vertex.x);
        add(vertex.y);
    }
    return hash;
}

TEST(Flatten, ReproducesTheRecordedSegments) {
    for (const test::GoldenCurve &golden : test::goldenCurves()) {
        CubicControls controls{};
        for (std::size_t i = 0; i < controls.size(); ++i)
            controls[i] = {toFixed(golden.controls[i].x), toFixed(golden.controls[i].y)};
        EXPECT_TRUE(flatten(controls) == golden.vertices) << golden.name;
    }
}

TEST(Flatten, SegmentOf1022PixelsIsTheLargestInShortArithmetic) {
    const CubicControls widest = pixels({{{0, 0}, {300, 200}, {700, -150}, {1022, 90}}});
    ASSERT_TRUE(usesShortArithmetic(widest));
    const Vertices vertices = flatten(widest);
    ASSERT_EQ(vertices.size(), 50u);
    EXPECT_EQ(fnv(vertices), 0x0d99cc4au);
    EXPECT_TRUE(Vertices(vertices.begin(), vertices.begin() + 4) ==
                (Vertices{{226, 144}, {455, 275}, {685, 394}, {918, 501}}));
    EXPECT_TRUE(vertices[25] == (FixedPoint{9112, 293}));
    EXPECT_TRUE(vertices.back() == (FixedPoint{16352, 1440}));

    EXPECT_FALSE(usesShortArithmetic(pixels({{{0, 0}, {300, 200}, {700, -150}, {1023, 90}}})));
    EXPECT_FALSE(usesShortArithmetic(pixels({{{0, 0}, {300, -500}, {700, 523}, {900, 90}}})));
}

TEST(Flatten, LongSegmentsEndOnTheirEndPoint) {
    for (const int span : {1023, 2000, 70000, kMaxPixelCoordinate}) {
        const CubicControls controls = pixels({{{0, 0}, {span / 3, span}, {-span, span / 2}, {span, -span / 4}}});
        ASSERT_FALSE(usesShortArithmetic(controls));
        EXPECT_TRUE(flatten(controls).back() == controls[3]) << span;
    }
}

TEST(Flatten, MovingASegmentMovesItsVertices) {
    for (const int span : {40, 900, 5000}) {
        CubicControls controls = pixels({{{0, 0}, {span / 3, span}, {-span / 10, span / 2}, {span, -span / 4}}});
        const Vertices here = flatten(controls);
        for (FixedPoint &point : controls)
            point = {point.x - 1234, point.y + 77777};
        Vertices there = flatten(controls);
        for (FixedPoint &vertex : there)
            vertex = {vertex.x + 1234, vertex.y - 77777};
        EXPECT_TRUE(here == there) << span;
    }
}

TEST(Flatten, SegmentOffTheSurfaceBecomesItsChord) {
    const FlattenClip clip{100, 50};
    const CubicControls right = pixels({{{101, 10}, {140, 0}, {120, 40}, {101, 30}}});
    EXPECT_TRUE(flatten(right, &clip) == (Vertices{right[3]}));
    EXPECT_GT(flatten(right).size(), 1u);

    // The box is grown by one pixel and compared exclusively: a segment at the edge itself is still subdivided.
    const CubicControls atEdge = pixels({{{100, 10}, {140, 0}, {120, 40}, {100, 30}}});
    EXPECT_TRUE(flatten(atEdge, &clip) == flatten(atEdge));
    const CubicControls below = pixels({{{0, 51}, {10, 60}, {20, 60}, {30, 51}}});
    EXPECT_EQ(flatten(below, &clip).size(), 1u);
    const CubicControls left = pixels({{{-1, 10}, {-10, 20}, {-10, 25}, {-1, 30}}});
    EXPECT_EQ(flatten(left, &clip).size(), 1u);
}

TEST(Flatten, LargestSegmentsStayWithinBounds) {
    constexpr std::int32_t far = kMaxSegmentSpan / 2;
    const CubicControls controls{{{-far, far}, {far, -far}, {-far, -far}, {far, far}}};
    const Vertices vertices = flatten(controls);
    EXPECT_TRUE(vertices.back() == controls[3]);
    EXPECT_LT(vertices.size(), 200000u);
}

} // namespace
} // namespace Quill
