// SPDX-License-Identifier: MIT
// The line that is drawn and the mask that is made of it agree to a pixel.

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "canvas/testing/scenes.h"
#include "mask/mask_handler.h"
#include "mask/raster_engine.h"

namespace {

struct Place {
    double x;
    double y;
};

constexpr int kWidth = 220;
constexpr int kHeight = 200;

// Where the mask begins and ends: the middles of the sides between a pixel inside and one outside.
std::vector<Place> maskBorder(const std::vector<MPoint> &points) {
    const Quill::RasterEngineOverride portable(Quill::RasterEngine::Portable);
    std::vector<Quill::MaskRun> runs;
    EXPECT_EQ(Quill::MaskHandler::ConvertPoints2Mask(points.data(), static_cast<int>(points.size()), kWidth, kHeight,
                                                     false, nullptr, &runs),
              S_OK);
    std::vector<char> mask(kWidth * kHeight, 0);
    for (const Quill::MaskRun &run : runs)
        std::fill_n(mask.begin() + run.row * kWidth + run.column, run.length, 1);
    std::vector<Place> border;
    for (int y = 0; y + 1 < kHeight; ++y)
        for (int x = 0; x + 1 < kWidth; ++x) {
            const char here = mask[static_cast<std::size_t>(y * kWidth + x)];
            if (here != mask[static_cast<std::size_t>(y * kWidth + x + 1)])
                border.push_back({x + 0.5, static_cast<double>(y)});
            if (here != mask[static_cast<std::size_t>((y + 1) * kWidth + x)])
                border.push_back({static_cast<double>(x), y + 0.5});
        }
    return border;
}

// The centre of the stroke: the pixels that the core covers whole. At scale 1 those are the ones within a quarter of a
// pixel of its line, at scale 2 the ones within a pixel.
std::vector<Place> strokeCentre(const std::vector<MPoint> &points, float scale) {
    canvas::testing::Scene scene;
    scene.width = kWidth;
    scene.height = kHeight;
    scene.points = points;
    scene.scale = scale;
    scene.hidePoints = true;
    const auto picture = canvas::testing::render(scene);
    const auto &stroke = canvas::testing::kEditorStyle.stroke;
    const std::uint32_t core =
        0xFF000000U | static_cast<std::uint32_t>(stroke.red << 16 | stroke.green << 8 | stroke.blue);
    std::vector<Place> centre;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            if (picture.pixels[static_cast<std::size_t>(y * kWidth + x)] == core)
                centre.push_back({static_cast<double>(x), static_cast<double>(y)});
    return centre;
}

double farthest(const std::vector<Place> &from, const std::vector<Place> &to) {
    double worst = 0;
    for (const Place &place : from) {
        double nearest = 1e9;
        for (const Place &other : to)
            nearest = std::min(nearest, std::hypot(place.x - other.x, place.y - other.y));
        worst = std::max(worst, nearest);
    }
    return worst;
}

TEST(MaskAgreement, StrokeCentreAndMaskBorderLieWithinAPixel) {
    double worst = 0;
    for (int i = 0; i < 12; ++i) {
        const auto points = canvas::testing::blob(3 + i, 100 + i, 98, 60 + 2 * i, 0.03 * (i % 7));
        const auto border = maskBorder(points);
        const auto centre = strokeCentre(points, 1);
        ASSERT_GT(border.size(), 200U);
        ASSERT_GT(centre.size(), 80U);
        const double fromCentre = farthest(centre, border);
        EXPECT_LE(fromCentre, 1.0) << i;
        // The line may run between two rows of pixels for a while, so the other way needs the wider stroke.
        const double fromBorder = farthest(border, strokeCentre(points, 2));
        EXPECT_LE(fromBorder, 1.0) << i;
        worst = std::max({worst, fromCentre, fromBorder});
    }
    RecordProperty("worst_pixels", std::to_string(worst));
}

} // namespace
