// SPDX-License-Identifier: MIT
// Encodings allocate once and never again, and never in proportion to the surface or to coordinates.

#include <gtest/gtest.h>

#include <limits>

#include "mask/counting_allocator_test.h"
#include "mask/random_outline_test.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::OutlineKind;
using test::Random;

/// Everything that encodes, with outputs that keep their memory.
struct Encodings {
    std::vector<MaskRun> runs;
    RowListMask mask;
    std::vector<MaskRunF> fractions;

    void encode(const std::vector<MPoint> &points, int width, int height, bool invert) {
        const int count = static_cast<int>(points.size());
        mask.width = width;
        mask.height = height;
        EXPECT_EQ(MaskHandler::ConvertPoints2Mask(points.data(), count, width, height, invert, nullptr, &runs), S_OK);
        EXPECT_EQ(MaskHandler::ConvertPoints2Mask(points.data(), count, &mask), S_OK);
        EXPECT_EQ(
            MaskHandler::ConvertPoints2MaskUS(points.data(), count, 0, 0, width, height, invert, nullptr, &fractions),
            S_OK);
    }
};

TEST(Allocation, NoneAfterTheFirstCall) {
    Random random(11);
    std::vector<std::vector<MPoint>> outlines;
    for (const auto kind : {OutlineKind::Smooth, OutlineKind::Wild, OutlineKind::Straight, OutlineKind::Beyond})
        outlines.push_back(test::randomOutline(random, kind, 24, 1920, 1080));
    Encodings encodings;
    const auto encodeAll = [&] {
        for (const auto &points : outlines)
            for (const bool invert : {false, true})
                encodings.encode(points, 1920, 1080, invert);
    };
    encodeAll();
    const std::size_t before = allocations;
    encodeAll();
    EXPECT_EQ(allocations - before, 0u);
}

TEST(Allocation, FillingASurfaceNeedsNoneAfterTheFirstCall) {
    Random random(12);
    const std::vector<MPoint> points = test::randomOutline(random, OutlineKind::Wild, 40, 300, 200);
    test::OwnedSurface surface(300, 200);
    const auto fill = [&] {
        MaskHandler::m_fnFillBezierCurveMask(points.data(), 120, 300, 200, surface.stride, &surface.bits, false);
        MaskHandler::m_fnDrawPolygonMask(points.data(), 120, 300, 200, surface.stride, &surface.bits);
    };
    fill();
    const std::size_t before = allocations;
    fill();
    EXPECT_EQ(allocations - before, 0u);
}

TEST(Allocation, SamplingNeedsNoneAfterTheFirstCallIntoTheSameLists) {
    Random random(13);
    std::vector<MPoint> points = test::randomOutline(random, OutlineKind::Smooth, 30, 1920, 1080);
    for (std::size_t i = 0; i < points.size(); i += 6)
        points[i].curveOut = points[i].curveIn = 1;
    SegmentSamples segments;
    MaskHandler::GenAllPoints(points.data(), 90, 1920, 1080, &segments);
    const std::size_t before = allocations;
    MaskHandler::GenAllPoints(points.data(), 90, 1920, 1080, &segments);
    EXPECT_EQ(allocations - before, 0u);
}

TEST(Allocation, DoesNotGrowWithTheSurfaceOrTheCoordinates) {
    Random random(14);
    const std::vector<MPoint> points = test::randomOutline(random, OutlineKind::Smooth, 24, 20000, 20000);
    const std::size_t before = allocatedBytes;
    Encodings encodings;
    encodings.encode(points, 20000, 20000, false);
    EXPECT_LT(allocatedBytes - before, 8u << 20); // the surface alone would be 1.2 GB
    std::vector<MPoint> far = test::randomOutline(random, OutlineKind::Enormous, 24, 100, 100);
    for (std::size_t i = 0; i < far.size(); i += 5)
        far[i].x = i % 2 ? 8388607 : -8388607;
    const std::size_t beforeFar = allocatedBytes;
    encodings.encode(far, 100, 100, true);
    EXPECT_LT(allocatedBytes - beforeFar, 8u << 20);
}

TEST(Allocation, MemoryRunningOutIsAResultAndNotAnException) {
    const std::vector<MPoint> points(9);
    RowListMask mask{1, 1 << 20, {1, 2, 3}};
    largestGranted = 1 << 16;
    const HRESULT refused = MaskHandler::ConvertPoints2Mask(points.data(), 9, &mask);
    largestGranted = kUnlimited;
    EXPECT_EQ(refused, E_OUTOFMEMORY);
    EXPECT_TRUE(mask.rows.empty());
    EXPECT_EQ(MaskHandler::ConvertPoints2Mask(points.data(), 9, &mask), S_OK);
    EXPECT_EQ(mask.rows.size(), std::size_t{1} << 20);
}

} // namespace
} // namespace Quill
