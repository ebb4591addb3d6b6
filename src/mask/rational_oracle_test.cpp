// SPDX-License-Identifier: MIT
// The scan converter against the definition of inside, in exact rational arithmetic, pixel by pixel: the number of
// edges that the row meets at or left of the pixel is odd.

#include <gtest/gtest.h>

#include "mask/outline_figure.h"
#include "mask/random_outline_test.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::OutlineKind;
using test::Random;

/// Whether the closed polyline covers the pixel. Vertices in units; exact while coordinates stay below 2^27.
bool covers(const VertexBuffer &polyline, std::int64_t column, std::int64_t row) {
    const std::int64_t x = column * kUnitsPerPixel;
    const std::int64_t y = row * kUnitsPerPixel;
    bool inside = false;
    const FixedPoint *a = &polyline.back();
    for (const FixedPoint &b : polyline) {
        if ((a->y <= y) != (b.y <= y)) {
            const FixedPoint &top = a->y <= y ? *a : b;
            const FixedPoint &bottom = a->y <= y ? b : *a;
            const std::int64_t dx = std::int64_t{bottom.x} - top.x;
            const std::int64_t dy = std::int64_t{bottom.y} - top.y;
            // top.x + (y - top.y) dx / dy <= x, multiplied by dy > 0
            inside ^= (y - top.y) * dx <= (x - top.x) * dy;
        }
        a = &b;
    }
    return inside;
}

class BitmapSink {
  public:
    class Cursor {
      public:
        explicit Cursor(BitmapSink &sink) : m_sink(&sink) {}
        void beginRow(std::int32_t row) { m_start = static_cast<std::size_t>(row) * m_sink->m_width; }
        void span(std::int32_t first, std::int32_t end) {
            for (std::int32_t column = first; column < end; ++column)
                ++m_sink->pixels[m_start + static_cast<std::size_t>(column)];
        }
        void spanOrNone(std::int32_t first, std::int32_t end) { span(first, end); }
        void endRow() {}

      private:
        BitmapSink *m_sink;
        std::size_t m_start = 0;
    };

    BitmapSink(int width, int height)
        : pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0),
          m_width(static_cast<std::size_t>(width)) {}

    void emptyRows(RowRange) {}
    Cursor open(std::size_t, std::size_t) { return Cursor(*this); }
    void close(const Cursor &) {}

    std::vector<std::uint8_t> pixels;

  private:
    std::size_t m_width;
};

void expectExact(RasterScratch &scratch, int width, int height, int number) {
    BitmapSink sink(width, height);
    sweepPolyline(scratch, width, height, sink);
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            const auto index =
                static_cast<std::size_t>(row) * static_cast<std::size_t>(width) + static_cast<std::size_t>(column);
            ASSERT_EQ(sink.pixels[index], covers(scratch.polyline, column, row) ? 1 : 0)
                << "case " << number << ", pixel " << column << "," << row;
        }
}

TEST(RationalOracle, PolygonsOnWholePixels) {
    Random random(1);
    RasterScratch scratch;
    for (int i = 0, count = test::iterations(3000); i < count && !HasFatalFailure(); ++i) {
        const int width = random.between(1, 40);
        const int height = random.between(1, 40);
        const auto kind = static_cast<OutlineKind>(random.between(0, test::kOutlineKinds - 1));
        const std::vector<MPoint> points = test::randomOutline(random, kind, random.between(1, 8), width, height);
        buildPolygon(points.data(), static_cast<int>(points.size()), scratch.polyline);
        if (!scratch.polyline.empty())
            expectExact(scratch, width, height, i);
    }
}

TEST(RationalOracle, PolygonsOnSixteenths) {
    Random random(2);
    RasterScratch scratch;
    for (int i = 0, count = test::iterations(3000); i < count && !HasFatalFailure(); ++i) {
        const int width = random.between(1, 30);
        const int height = random.between(1, 30);
        // Small reaches make vertices fall on rows and columns, where the rules about edges are decided.
        const int reach = 1 << random.between(3, 12);
        scratch.polyline.clear();
        for (int j = random.between(1, 20); j > 0; --j) {
            const int x = random.between(-reach, reach) + 8 * width;
            scratch.polyline.push_back({x, random.between(-reach, reach) + 8 * height});
        }
        expectExact(scratch, width, height, i);
    }
}

TEST(RationalOracle, FlattenedOutlines) {
    Random random(3);
    RasterScratch scratch;
    for (int i = 0, count = test::iterations(600); i < count && !HasFatalFailure(); ++i) {
        const int width = random.between(1, 60);
        const int height = random.between(1, 60);
        const auto kind = static_cast<OutlineKind>(random.between(0, test::kOutlineKinds - 1));
        const std::vector<MPoint> points = test::randomOutline(random, kind, random.between(3, 10), width, height);
        buildOutline(points.data(), static_cast<int>(points.size()), {width, height}, scratch.polyline);
        if (!scratch.polyline.empty())
            expectExact(scratch, width, height, i);
    }
}

TEST(RationalOracle, EdgesOfManyRowsAtEverySlope) {
    // Long edges are where an error that adds up from row to row would show.
    Random random(4);
    RasterScratch scratch;
    for (int i = 0, count = test::iterations(60); i < count && !HasFatalFailure(); ++i) {
        const int height = random.between(2000, 4200);
        const int width = 1 << random.between(1, 6);
        scratch.polyline.clear();
        for (int j = 0; j < 3; ++j) {
            const int x = random.between(-16, 16 * width + 16);
            scratch.polyline.push_back({x, random.between(-64, 16 * height + 64)});
        }
        expectExact(scratch, width, height, i);
    }
}

TEST(RationalOracle, FigureOfMoreCrossingsThanOneBandHolds) {
    Random random(5);
    RasterScratch scratch;
    constexpr int kHeight = 1500;
    for (int i = 0; i < 1000; ++i) {
        const int x = random.between(-160, 400);
        scratch.polyline.push_back({x, i % 2 == 0 ? random.between(-99, 99) : random.between(23900, 24100)});
    }
    ASSERT_GT(scratch.polyline.size() * kHeight, kCrossingsPerBand);
    expectExact(scratch, 12, kHeight, 0);
}

} // namespace
} // namespace Quill
