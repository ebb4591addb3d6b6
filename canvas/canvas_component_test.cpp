// SPDX-License-Identifier: MIT
#include "canvas/canvas_component.h"

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "canvas/testing/raw_canvas.h"
#include "canvas/testing/scenes.h"

namespace {

using canvas::CanvasComponent;
using canvas::testing::kEditorStyle;

constexpr GUID kUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr GUID kStranger = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr CanvasColor kWhite = CanvasColor::fromArgb(0xFFFFFFFF);

/// A new component, by its table.
class RawCanvas : public canvas::testing::RawCanvas {
  public:
    RawCanvas() : canvas::testing::RawCanvas(create()) {}

  private:
    static void *create() {
        void *object = nullptr;
        EXPECT_EQ(canvas::createCanvasComponent(IID_OverlayCanvas, &object), S_OK);
        return object;
    }
};

std::vector<std::uint32_t> pixelsOf(const RawCanvas &canvas) {
    BYTE *buffer = nullptr;
    std::uint64_t length = 0;
    if (FAILED(canvas.getBuffer(&buffer, &length)))
        return {};
    std::vector<std::uint32_t> pixels(length / 4);
    std::memcpy(pixels.data(), buffer, length);
    return pixels;
}

bool isTransparent(const RawCanvas &canvas) {
    const auto pixels = pixelsOf(canvas);
    return std::all_of(pixels.begin(), pixels.end(), [](std::uint32_t pixel) { return pixel == 0; });
}

TEST(CanvasComponent, CountsReferencesAndGoesWithTheLast) {
    const long before = CanvasComponent::liveCount();
    {
        const RawCanvas canvas;
        EXPECT_EQ(CanvasComponent::liveCount(), before + 1);
        EXPECT_EQ(canvas.addRef(), 2U);
        EXPECT_EQ(canvas.release(), 1U);
    }
    EXPECT_EQ(CanvasComponent::liveCount(), before);
}

TEST(CanvasComponent, AnswersForItsTwoInterfaces) {
    const RawCanvas canvas;
    for (const GUID &iid : {kUnknown, IID_OverlayCanvas}) {
        void *object = nullptr;
        ASSERT_EQ(canvas.queryInterface(&iid, &object), S_OK);
        EXPECT_EQ(object, canvas.object());
        EXPECT_EQ(canvas.release(), 1U);
    }
    void *object = &object;
    EXPECT_EQ(canvas.queryInterface(&kStranger, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(canvas.queryInterface(&kUnknown, nullptr), E_POINTER);
    EXPECT_EQ(canvas.queryInterface(nullptr, &object), E_POINTER);
    EXPECT_EQ(canvas.addRef(), 2U);
    EXPECT_EQ(canvas.release(), 1U);
}

TEST(CanvasComponent, CreationChecksItsArguments) {
    const long before = CanvasComponent::liveCount();
    EXPECT_EQ(canvas::createCanvasComponent(IID_OverlayCanvas, nullptr), E_POINTER);
    void *object = &object;
    EXPECT_EQ(canvas::createCanvasComponent(kStranger, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(CanvasComponent::liveCount(), before);
}

TEST(CanvasComponent, UnusedPositionsAnswerAndDrawNothing) {
    const RawCanvas canvas;
    ASSERT_EQ(canvas.setSize(16, 16), S_OK);
    for (int position = 3; position < 40; ++position) {
        if (position == 3 || position == 5 || position == 24 || position == 26 || position == 27 || position == 29 ||
            position == 39)
            continue;
        EXPECT_EQ(canvas.call(position), E_NOTIMPL) << position;
    }
    EXPECT_TRUE(isTransparent(canvas));
}

TEST(CanvasComponent, PositionsOfTheTableDoWhatTheySay) {
    const RawCanvas canvas;
    ASSERT_EQ(canvas.setSize(64, 48), S_OK);
    BYTE *buffer = nullptr;
    std::uint64_t length = 0;
    ASSERT_EQ(canvas.getBuffer(&buffer, &length), S_OK);
    EXPECT_EQ(length, 64U * 48 * 4);
    const auto pixel = [&](int x, int y) { return pixelsOf(canvas)[static_cast<std::size_t>(y * 64 + x)]; };

    MPoint point;
    point.x = 20;
    point.y = 10;
    EXPECT_EQ(canvas.drawMarker(&point, 3, &kWhite), S_OK);
    EXPECT_EQ(pixel(21, 11), 0xFFFFFFFF);
    EXPECT_EQ(pixel(22, 10), 0U);

    const PixelRect rect = {30, 20, 10, 10};
    const CanvasColor border = CanvasColor::fromArgb(0xFF257BC9);
    const CanvasColor fill = CanvasColor::fromArgb(0x8065A5E2);
    EXPECT_EQ(canvas.drawRegion(&rect, &border, &fill), S_OK);
    EXPECT_EQ(pixel(30, 25), 0xFF257BC9);
    EXPECT_EQ(pixel(35, 25), 0x8065A5E2);

    EXPECT_EQ(canvas.clear(), S_OK);
    EXPECT_TRUE(isTransparent(canvas));

    const auto points = canvas::testing::blob(5, 32, 24, 15);
    EXPECT_EQ(canvas.drawOutline(points.data(), 15, &kEditorStyle, 1, 1.0F), S_OK);
    EXPECT_EQ(pixel(32, 24), 0x7D000078U);
    EXPECT_EQ(pixel(points[0].x, points[0].y), 0xFF00A5E2);
    EXPECT_EQ(canvas.hideAllPoints(), S_OK);
    BYTE *same = nullptr;
    ASSERT_EQ(canvas.getBuffer(&same, &length), S_OK);
    EXPECT_EQ(same, buffer) << "drawing does not move the buffer";
}

TEST(CanvasComponent, HidingPointsLastsUntilTheNextClearOrOutline) {
    canvas::testing::Scene scene;
    scene.points = canvas::testing::blob(5, 80, 60, 40);
    canvas::testing::showAllHandles(scene.points);
    scene.isMask = true;
    scene.selected = {0, 3};
    scene.band = {10, 10, 30, 30};
    scene.hidePoints = true;
    const auto hidden = canvas::testing::render(scene);

    const RawCanvas canvas;
    ASSERT_EQ(canvas.setSize(scene.width, scene.height), S_OK);
    auto &component = *static_cast<OverlayCanvas *>(canvas.object());
    canvas::testing::redraw(component, scene);
    EXPECT_EQ(pixelsOf(canvas), hidden.pixels);

    // Nothing of the marks is left, and none can be added.
    scene.hidePoints = false;
    const auto withMarks = canvas::testing::render(scene);
    EXPECT_NE(withMarks.pixels, hidden.pixels);
    EXPECT_EQ(canvas.drawMarker(&scene.points[0], 9, &kWhite), S_OK);
    EXPECT_EQ(canvas.hideAllPoints(), S_OK);
    EXPECT_EQ(pixelsOf(canvas), hidden.pixels);

    canvas::testing::redraw(component, scene);
    EXPECT_EQ(pixelsOf(canvas), withMarks.pixels) << "a clear ends it";
    EXPECT_EQ(canvas.hideAllPoints(), S_OK);
    EXPECT_EQ(canvas.drawOutline(scene.points.data(), 15, &kEditorStyle, 0, 1), S_OK);
    EXPECT_EQ(canvas.drawMarker(&scene.points[6], 9, &kWhite), S_OK);
    EXPECT_EQ(pixelsOf(canvas)[static_cast<std::size_t>(scene.points[6].y) * scene.width +
                               static_cast<std::size_t>(scene.points[6].x)],
              0xFFFFFFFF)
        << "an outline ends it";
}

TEST(CanvasComponent, HidingPointsWithNothingDrawn) {
    const RawCanvas canvas;
    EXPECT_EQ(canvas.hideAllPoints(), S_OK);
    ASSERT_EQ(canvas.setSize(16, 16), S_OK);
    EXPECT_EQ(canvas.hideAllPoints(), S_OK);
    EXPECT_TRUE(isTransparent(canvas));
}

TEST(CanvasComponent, WithoutASurfaceDrawingSucceedsAndTheBufferFails) {
    const RawCanvas canvas;
    BYTE *buffer = reinterpret_cast<BYTE *>(&buffer);
    std::uint64_t length = 1;
    EXPECT_EQ(canvas.getBuffer(&buffer, &length), E_FAIL);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(length, 0U);
    const auto points = canvas::testing::blob(5, 32, 24, 15);
    const PixelRect rect = {1, 1, 5, 5};
    EXPECT_EQ(canvas.drawOutline(points.data(), 15, &kEditorStyle, 1, 1), S_OK);
    EXPECT_EQ(canvas.drawMarker(&points[0], 9, &kWhite), S_OK);
    EXPECT_EQ(canvas.drawRegion(&rect, &kWhite, &kWhite), S_OK);
    EXPECT_EQ(canvas.clear(), S_OK);
}

TEST(CanvasComponent, NullArgumentsAreRefusedAndChangeNothing) {
    const RawCanvas canvas;
    ASSERT_EQ(canvas.setSize(32, 32), S_OK);
    BYTE *buffer = nullptr;
    std::uint64_t length = 0;
    const MPoint point = {};
    const PixelRect rect = {1, 1, 5, 5};
    EXPECT_EQ(canvas.getBuffer(nullptr, &length), E_POINTER);
    EXPECT_EQ(canvas.getBuffer(&buffer, nullptr), E_POINTER);
    EXPECT_EQ(canvas.drawOutline(nullptr, 3, &kEditorStyle, 0, 1), E_POINTER);
    EXPECT_EQ(canvas.drawOutline(&point, 1, nullptr, 0, 1), E_POINTER);
    EXPECT_EQ(canvas.drawMarker(nullptr, 9, &kWhite), E_POINTER);
    EXPECT_EQ(canvas.drawMarker(&point, 9, nullptr), E_POINTER);
    EXPECT_EQ(canvas.drawRegion(nullptr, &kWhite, &kWhite), E_POINTER);
    EXPECT_EQ(canvas.drawRegion(&rect, nullptr, &kWhite), E_POINTER);
    EXPECT_EQ(canvas.drawRegion(&rect, &kWhite, nullptr), E_POINTER);
    EXPECT_TRUE(isTransparent(canvas));
}

TEST(CanvasComponent, CountsAndScalesAreChecked) {
    const RawCanvas canvas;
    ASSERT_EQ(canvas.setSize(64, 64), S_OK);
    const auto points = canvas::testing::blob(5, 32, 32, 20);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(canvas.drawOutline(nullptr, 0, &kEditorStyle, 1, 1), S_OK) << "nothing to draw";
    EXPECT_EQ(canvas.drawOutline(points.data(), 0, &kEditorStyle, 1, 1), S_OK);
    EXPECT_EQ(canvas.drawOutline(points.data(), -1, &kEditorStyle, 1, 1), E_INVALIDARG);
    EXPECT_EQ(canvas.drawOutline(points.data(), std::numeric_limits<INT>::min(), &kEditorStyle, 1, 1), E_INVALIDARG);
    EXPECT_EQ(canvas.drawOutline(points.data(), 15, &kEditorStyle, 1, nan), E_INVALIDARG);
    EXPECT_TRUE(isTransparent(canvas));

    const auto drawnAt = [&](float scale) {
        canvas.clear();
        EXPECT_EQ(canvas.drawOutline(points.data(), 15, &kEditorStyle, 1, scale), S_OK);
        return pixelsOf(canvas);
    };
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(drawnAt(infinity), drawnAt(6)) << "scales end at 6";
    EXPECT_EQ(drawnAt(100), drawnAt(6));
    EXPECT_EQ(drawnAt(-infinity), drawnAt(0.5F)) << "and at one half";
    EXPECT_EQ(drawnAt(0), drawnAt(0.5F));
    EXPECT_NE(drawnAt(4), drawnAt(6));
    EXPECT_NE(drawnAt(4), drawnAt(0.5F));
}

TEST(CanvasComponent, EveryCountOfPointsIsDrawn) {
    const RawCanvas canvas;
    ASSERT_EQ(canvas.setSize(64, 64), S_OK);
    auto points = canvas::testing::blob(5, 32, 32, 20);
    canvas::testing::showAllHandles(points);
    for (INT count = 1; count <= 15; ++count) {
        canvas.clear();
        EXPECT_EQ(canvas.drawOutline(points.data(), count, &kEditorStyle, 1, 1), S_OK);
        EXPECT_EQ(pixelsOf(canvas)[static_cast<std::size_t>(points[0].y * 64 + points[0].x)], 0xFF00A5E2) << count;
    }
}

TEST(CanvasComponent, SizesFromNothingToTheLargest) {
    const RawCanvas canvas;
    BYTE *buffer = nullptr;
    std::uint64_t length = 0;
    const auto points = canvas::testing::blob(5, 8000, 200, 8000);
    for (const auto &[width, height] : {std::pair(1U, 1U), {16384U, 1U}, {1U, 16384U}, {2U, 3U}, {16384U, 512U}}) {
        ASSERT_EQ(canvas.setSize(width, height), S_OK);
        ASSERT_EQ(canvas.getBuffer(&buffer, &length), S_OK);
        EXPECT_EQ(length, std::uint64_t{4} * width * height);
        EXPECT_EQ(canvas.drawOutline(points.data(), 15, &kEditorStyle, 1, 4), S_OK);
        buffer[length - 1] = buffer[length - 1];
        EXPECT_EQ(canvas.clear(), S_OK);
        EXPECT_TRUE(isTransparent(canvas)) << width << " x " << height;
    }
    EXPECT_EQ(canvas.setSize(16384, 16384), S_OK) << "a gigabyte that nobody touches";
    EXPECT_EQ(canvas.drawOutline(points.data(), 15, &kEditorStyle, 0, 1), S_OK);
    EXPECT_EQ(canvas.clear(), S_OK);
    for (const auto &[width, height] : {std::pair(0U, 0U), {0U, 5U}, {5U, 0U}}) {
        EXPECT_EQ(canvas.setSize(width, height), S_OK);
        EXPECT_EQ(canvas.getBuffer(&buffer, &length), E_FAIL);
    }
    EXPECT_LT(canvas.setSize(0xFFFFFFFF, 0xFFFFFFFF), 0);
    EXPECT_EQ(canvas.getBuffer(&buffer, &length), E_FAIL);
}

TEST(CanvasComponent, HostileCoordinates) {
    std::mt19937 random(12);
    constexpr std::int32_t kExtremes[] = {std::numeric_limits<std::int32_t>::min(),
                                          std::numeric_limits<std::int32_t>::max(),
                                          0,
                                          -1,
                                          40,
                                          8388607,
                                          -8388608,
                                          1 << 30};
    const RawCanvas canvas;
    ASSERT_EQ(canvas.setSize(61, 43), S_OK);
    const int rounds = canvas::testing::longTests() ? 20000 : 400;
    for (int round = 0; round < rounds; ++round) {
        std::vector<MPoint> points(random() % 40);
        for (MPoint &point : points) {
            point.type = static_cast<std::uint32_t>(random());
            point.x = kExtremes[random() % 8];
            point.y = kExtremes[random() % 8];
            point.handleShown = static_cast<std::uint32_t>(random() % 3);
        }
        const auto scale = static_cast<float>(random() % 9) / 2;
        EXPECT_EQ(
            canvas.drawOutline(points.data(), static_cast<INT>(points.size()), &kEditorStyle, round % 2 == 0, scale),
            S_OK);
        const PixelRect rect = {kExtremes[random() % 8], kExtremes[random() % 8], kExtremes[random() % 8],
                                kExtremes[random() % 8]};
        EXPECT_EQ(canvas.drawRegion(&rect, &kWhite, &kEditorStyle.fill), S_OK);
        if (!points.empty()) {
            EXPECT_EQ(canvas.drawMarker(&points[0], static_cast<UINT>(kExtremes[random() % 8]), &kWhite), S_OK);
        }
        if (round % 5 == 0) {
            EXPECT_EQ(canvas.hideAllPoints(), S_OK);
        }
        EXPECT_EQ(canvas.clear(), S_OK);
        ASSERT_TRUE(isTransparent(canvas));
    }
}

} // namespace
