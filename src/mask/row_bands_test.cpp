// SPDX-License-Identifier: MIT
#include "mask/row_bands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "mask/crossings.h"
#include "mask/outline_figure.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

/// Crossings of the closed polyline on these rows, and one more a row.
std::size_t costOf(const VertexBuffer &polyline, RowRange rows) {
    auto cost = static_cast<std::size_t>(rows.end - rows.first);
    for (std::size_t i = 1; i < polyline.size(); ++i) {
        const std::int32_t from = std::clamp(rowAtOrBelow(polyline[i - 1].y), rows.first, rows.end);
        const std::int32_t to = std::clamp(rowAtOrBelow(polyline[i].y), rows.first, rows.end);
        cost += static_cast<std::size_t>(std::abs(to - from));
    }
    return cost;
}

/// Every band ends where its table is full, and no row earlier.
void expectFullBands(const VertexBuffer &polyline, RowRange rows) {
    const std::size_t most = std::max(kMostCrossings, polyline.size());
    for (RowRange band{rows.first, rows.first}; band.end < rows.end; band.first = band.end) {
        band.end = bandEnd(polyline, {band.first, rows.end});
        ASSERT_GT(band.end, band.first);
        ASSERT_LE(band.end, rows.end);
        if (band.end - band.first > 1) {
            ASSERT_LE(costOf(polyline, band), most);
        }
        if (band.end < rows.end) {
            ASSERT_GT(costOf(polyline, {band.first, band.end + 1}), most);
        }
    }
}

std::size_t bandCount(const VertexBuffer &polyline, RowRange rows) {
    std::size_t bands = 0;
    for (std::int32_t row = rows.first; row < rows.end; row = bandEnd(polyline, {row, rows.end}))
        ++bands;
    return bands;
}

VertexBuffer zigzag(int vertices, int height, unsigned seed) {
    std::mt19937 random(seed);
    VertexBuffer polyline;
    for (int i = 0; i < vertices; ++i)
        polyline.push_back({static_cast<std::int32_t>(random() % 1000) * 16,
                            static_cast<std::int32_t>(random() % static_cast<unsigned>(height)) * 16});
    closePolyline(polyline);
    return polyline;
}

TEST(RowBands, AllRowsWhenTheyFit) {
    EXPECT_EQ(bandEnd(zigzag(20, 1000, 1), {0, 1000}), 1000);
    EXPECT_EQ(bandEnd(zigzag(20, 1000, 1), {5, 5}), 5);
}

TEST(RowBands, EndWhereATableIsFull) {
    expectFullBands(zigzag(30, 1000000, 2), {0, 1000000});
    expectFullBands(zigzag(2000, 20000, 3), {0, 20000});
    expectFullBands(zigzag(2000, 20000, 4), {700, 19001});
    expectFullBands(zigzag(30000, 700, 5), {0, 700});
}

TEST(RowBands, MoreEdgesThanATableHoldsGetALargerOne) {
    const VertexBuffer polyline = zigzag(static_cast<int>(kMostCrossings) + 1000, 12, 6);
    // Every row has a third of a crossing for each edge.
    const std::int32_t end = bandEnd(polyline, {0, 12});
    EXPECT_GE(end, 2);
    EXPECT_LT(end, 12);
}

TEST(RowBands, RowsAloneFillATable) {
    const VertexBuffer polyline = zigzag(3, 100000000, 7);
    const std::size_t most = 100000000 / (kMostCrossings / 4) + 2;
    EXPECT_LE(bandCount(polyline, {0, 100000000}), most);
    EXPECT_GE(bandCount(polyline, {0, 100000000}), 100000000 / kMostCrossings);
}

/// An outline of a thousand bent segments, long and narrow: once it had more crossings than a table, bands of a few
/// dozen rows made every one of them go over all edges.
TEST(RowBands, ATallOutlineOfManyEdgesTakesFewBands) {
    constexpr int kAnchors = 1000;
    constexpr int kHeight = 400000;
    std::vector<test::XY> points;
    for (int i = 0; i < 3 * kAnchors; ++i) {
        const double angle = 2 * std::numbers::pi * i / (3 * kAnchors);
        const double wave = 1 + 0.5 * std::sin(97 * angle);
        points.push_back({static_cast<int>(41 + 40 * std::cos(angle)),
                          static_cast<int>(kHeight / 2 + wave * kHeight / 3 * std::sin(angle))});
    }
    const std::vector<MPoint> outline = test::outline(points);
    VertexBuffer polyline;
    buildOutline(outline.data(), static_cast<int>(outline.size()), {82, kHeight}, polyline);
    closePolyline(polyline);
    const std::size_t cost = costOf(polyline, {0, kHeight});
    ASSERT_GT(cost, kMostCrossings);
    const std::size_t bands = bandCount(polyline, {0, kHeight});
    EXPECT_LE(bands, 2 * cost / kMostCrossings + 1);
    EXPECT_LE(bands * polyline.size(), polyline.size() + 2 * cost) << "edges that all bands visit";
}

} // namespace
} // namespace Quill
