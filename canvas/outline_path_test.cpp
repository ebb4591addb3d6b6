// SPDX-License-Identifier: MIT
#include "canvas/outline_path.h"

#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "mask/outline_figure.h"

namespace {

using canvas::flattenOutline;
using canvas::OutlinePath;

std::vector<MPoint> chain(std::mt19937 &random, std::size_t count, int extent) {
    std::uniform_int_distribution<int> coordinate(0, extent - 1);
    std::vector<MPoint> points(count);
    for (std::size_t i = 0; i < count; ++i) {
        points[i].type = i % 3 == 0 ? kAnchorPoint : kControlPoint;
        points[i].x = coordinate(random);
        points[i].y = coordinate(random);
    }
    return points;
}

std::vector<Quill::FixedPoint> vertices(const Quill::VertexBuffer &buffer) {
    return {buffer.begin(), buffer.end()};
}

TEST(OutlinePath, HasTheMasksVertices) {
    std::mt19937 random(8);
    for (int round = 0; round < 50; ++round) {
        const auto points = chain(random, static_cast<std::size_t>(9 + 3 * (round % 6)), 200);
        OutlinePath path;
        flattenOutline(points, 200, 200, 9, path);
        EXPECT_TRUE(path.closed);
        Quill::VertexBuffer expected;
        Quill::buildOutline(points.data(), static_cast<int>(points.size()), {200, 200}, expected);
        EXPECT_EQ(vertices(path.vertices), vertices(expected));
    }
}

TEST(OutlinePath, OpenChainsEndAtTheirLastAnchor) {
    std::mt19937 random(9);
    const auto points = chain(random, 10, 100);
    OutlinePath path;
    flattenOutline(points, 100, 100, 4, path);
    EXPECT_FALSE(path.closed);
    EXPECT_EQ(path.vertices[0], (Quill::FixedPoint{16 * points[0].x, 16 * points[0].y}));
    EXPECT_EQ(path.vertices.back(), (Quill::FixedPoint{16 * points[9].x, 16 * points[9].y}));

    // Controls after the last anchor belong to no segment.
    OutlinePath longer;
    auto more = points;
    more.push_back(points[1]);
    flattenOutline(more, 100, 100, 4, longer);
    EXPECT_EQ(vertices(longer.vertices), vertices(path.vertices));
}

TEST(OutlinePath, FewestPoints) {
    std::mt19937 random(10);
    OutlinePath path;
    flattenOutline({}, 100, 100, 4, path);
    EXPECT_TRUE(path.vertices.empty());
    EXPECT_FALSE(path.closed);
    flattenOutline(chain(random, 1, 100), 100, 100, 4, path);
    EXPECT_EQ(path.vertices.size(), 1U);
    flattenOutline(chain(random, 2, 100), 100, 100, 4, path);
    EXPECT_EQ(path.vertices.size(), 1U);
    flattenOutline(chain(random, 3, 100), 100, 100, 4, path);
    EXPECT_TRUE(path.closed) << "one anchor and a segment back to it";
}

TEST(OutlinePath, ExtremeCoordinatesCostLittle) {
    constexpr int kLow = std::numeric_limits<std::int32_t>::min();
    constexpr int kHigh = std::numeric_limits<std::int32_t>::max();
    std::vector<MPoint> points(12);
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i].x = i % 2 ? kLow : kHigh;
        points[i].y = i % 3 ? kHigh : kLow;
    }
    OutlinePath path;
    flattenOutline(points, 1920, 1080, 9, path);
    EXPECT_LT(path.vertices.size(), 100000U);
    EXPECT_EQ(path.vertices[0], (Quill::FixedPoint{16 * 8388607, -16 * 8388607}));
}

TEST(OutlinePath, HandlesBelongToTheirAnchors) {
    EXPECT_EQ(canvas::anchorOfControl(1, 12), 0U);
    EXPECT_EQ(canvas::anchorOfControl(2, 12), 3U);
    EXPECT_EQ(canvas::anchorOfControl(10, 12), 9U);
    EXPECT_EQ(canvas::anchorOfControl(11, 12), 0U) << "a closed chain's last control arrives at the first anchor";
    EXPECT_EQ(canvas::anchorOfControl(2, 4), 3U);
    EXPECT_GE(canvas::anchorOfControl(8, 8), 8U) << "no anchor follows";
}

} // namespace
