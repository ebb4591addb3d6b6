// SPDX-License-Identifier: MIT
// The platform's rasterizer through the routines that use it. Figures with straight edges only: there every version of
// it draws the same pixels. What curves do is raster_agreement's business.

#include <gtest/gtest.h>

#include "mask/encode.h"
#include "mask/fill.h"
#include "mask/random_outline_test.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::OutlineKind;
using test::Random;

TEST(NativeEngine, FillsPolygonsAsThePortableOneDoes) {
    Random random(1);
    for (int i = 0, count = test::iterations(200); i < count; ++i) {
        const auto points = test::randomOutline(random, OutlineKind::Wild, random.between(1, 6), 60, 40);
        test::OwnedSurface native(60, 40);
        test::OwnedSurface portable(60, 40);
        const auto surface = [](test::OwnedSurface &s) { return MaskSurface{s.bits, s.width, s.height, s.stride}; };
        fillPolygon(RasterEngine::Native, surface(native), points.data(), static_cast<int>(points.size()));
        fillPolygon(RasterEngine::Portable, surface(portable), points.data(), static_cast<int>(points.size()));
        ASSERT_EQ(native.rows(), portable.rows()) << "case " << i;
    }
}

TEST(NativeEngine, EncodersReadTheSurfaceItFilled) {
    Random random(2);
    RasterScratch native;
    RasterScratch portable;
    for (int i = 0, count = test::iterations(100); i < count; ++i) {
        const auto points = test::randomOutline(random, OutlineKind::Grid, random.between(3, 8), 60, 40);
        const auto exclusion = test::randomExclusion(random, 60, 40);
        const EncodeJob job{points.data(),
                            static_cast<int>(points.size()),
                            60,
                            40,
                            random.oneIn(2),
                            random.oneIn(2) ? exclusion.data() : nullptr};
        const auto &a = encodeRuns({native, EncodeRoute::Surface, RasterEngine::Native}, job);
        const auto &b = encodeRuns({portable, EncodeRoute::Direct, RasterEngine::Portable}, job);
        ASSERT_TRUE(std::equal(a.begin(), a.end(), b.begin(), b.end())) << "case " << i;
    }
}

TEST(NativeEngine, CoordinateBeyondTheRangeDrawsNothing) {
    test::OwnedSurface surface(8, 8);
    const auto points = test::outline({{1, 1}, {kMaxPixelCoordinate + 1, 1}, {5, 5}});
    fillPolygon(RasterEngine::Native, {surface.bits, 8, 8, surface.stride}, points.data(), 3);
    EXPECT_EQ(surface.rows(), "");
}

} // namespace
} // namespace Quill
