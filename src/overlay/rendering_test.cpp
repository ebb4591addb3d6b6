// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"
#include "overlay/testing/recording_canvas.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

using Lines = std::vector<std::string>;

class Rendering : public testing::Test {
  protected:
    Rendering() {
        object.SetVideoCoordinate(200, 100, 0, 0, 200, 100);
        canvas.take();
    }

    /// Draws and closes a triangle with its first anchor at (20, 20); no events are pending on the pointer afterwards.
    void drawTriangle() {
        for (const auto &[x, y] : {std::pair{20, 20}, {120, 20}, {120, 80}, {20, 20}}) {
            object.Interactive(ECS_MOUSE_DOWN, x, y);
            object.Interactive(ECS_MOUSE_UP);
        }
        canvas.take();
    }

    RecordingCanvas canvas;
    CanvasForTest registration{&canvas};
    Orvanel object;
};

const std::string kTriangle = "outline 9 FF00A5E2 7D000078 FF65A5E2 0 1 1";

TEST_F(Rendering, EmptyOutlineRedrawsAsAClearedSurface) {
    object.ReDraw();
    EXPECT_EQ(canvas.take(), Lines{"clear"});
}

TEST_F(Rendering, OutlineComesBeforeHoverAndSelection) {
    drawTriangle(); // the press that closed it left the first anchor hovered
    object.SelectAllPoints();
    object.ReDraw();
    EXPECT_EQ(canvas.take(),
              (Lines{"clear", kTriangle, "marker 20 20 9 FF4AE1E1", "marker 20 20 3 FF000000",
                     "marker 20 20 9 FF000000", "marker 20 20 7 FF4AE1E1", "marker 120 20 9 FF000000",
                     "marker 120 20 7 FF4AE1E1", "marker 120 80 9 FF000000", "marker 120 80 7 FF4AE1E1"}));
}

TEST_F(Rendering, OpenOutlineIsDrawnWithoutTheMaskFlag) {
    object.AddPoint(10, 10);
    object.ReDraw();
    EXPECT_EQ(canvas.take(), (Lines{"clear", "outline 1 FF00A5E2 7D000078 FF65A5E2 0 0 1"}));
}

TEST_F(Rendering, HoveredLineShowsThreeMarkers) {
    drawTriangle();
    object.Interactive(ECS_MOUSE_MOVE, 70, 20);
    EXPECT_TRUE(object.IsHoverPointInLine());
    object.DrawHoverPoint();
    const Lines lines = canvas.take();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].substr(lines[0].find_last_of(' ') - 1), "9 FF000000");
    EXPECT_EQ(lines[1].substr(lines[1].find_last_of(' ') - 1), "7 FF4AE1E1");
    EXPECT_EQ(lines[2].substr(lines[2].find_last_of(' ') - 1), "3 FF000000");
}

TEST_F(Rendering, HoveredCentralPointSuppressesTheHoverMarker) {
    drawTriangle();
    object.SetHoverCentralPoint(true);
    object.DrawHoverPoint();
    EXPECT_EQ(canvas.take(), Lines{});
}

TEST_F(Rendering, SelectionRectangleNeedsWidthAndHeight) {
    drawTriangle();
    object.Interactive(ECS_MOUSE_MOVE, 180, 90); // over nothing
    object.Interactive(ECS_MOUSE_DOWN, 180, 90);
    object.Interactive(ECS_MOUSE_MOVE, 180, 10);
    object.DrawSelectedRegion();
    EXPECT_EQ(canvas.take(), Lines{});
    object.Interactive(ECS_MOUSE_MOVE, 110, 10);
    object.DrawSelectedRegion();
    EXPECT_EQ(canvas.take(),
              (Lines{"region 110 10 70 80 FF257BC9 8065A5E2", "marker 120 20 9 FF000000", "marker 120 20 7 FF4AE1E1",
                     "marker 120 80 9 FF000000", "marker 120 80 7 FF4AE1E1"}));
}

TEST_F(Rendering, AComponentThatWritesOverWhatItGetsChangesNothing) {
    drawTriangle();
    object.Interactive(ECS_MOUSE_MOVE, 180, 90); // over nothing
    object.Interactive(ECS_MOUSE_DOWN, 180, 90);
    object.Interactive(ECS_MOUSE_MOVE, 10, 10); // a rubber band over all anchors
    canvas.take();
    object.ReDraw();
    const Lines first = canvas.take();
    const std::vector<MPoint> outline = canvas.outline;
    EXPECT_EQ(first.size(), 9U) << "surface, outline, band and two marks an anchor";
    canvas.scribbles = true;
    for (int count = 0; count < 3; ++count) {
        object.ReDraw();
        EXPECT_EQ(canvas.take(), first);
        EXPECT_EQ(canvas.outline, outline);
    }
    object.Interactive(ECS_MOUSE_UP);
    object.Interactive(ECS_MOUSE_MOVE, 70, 20);
    EXPECT_TRUE(object.IsHoverPointInLine());
    canvas.take();
    object.DrawHoverPoint();
    const Lines hover = canvas.take();
    object.DrawHoverPoint();
    EXPECT_EQ(canvas.take(), hover) << "the hovered place";
}

TEST_F(Rendering, StaleSelectedIndexIsSkipped) {
    drawTriangle();
    object.SelectAllPoints();
    Quill::KeyFrameMaskInfo shorter;
    shorter.pointsF.assign(3, {});
    object.DrawExistKeyFrame(&shorter);
    canvas.take();
    object.DrawSelectedRegion();
    EXPECT_EQ(canvas.take(), (Lines{"marker 0 0 9 FF000000", "marker 0 0 7 FF4AE1E1"}));
}

TEST_F(Rendering, SizeScaleRoundsHalvesUp) {
    EXPECT_EQ(MarkSizes::scaled(1.5F).pixels, (std::array<std::uint32_t, 9>{14, 6, 14, 11, 14, 5, 14, 11, 5}));
    EXPECT_EQ(MarkSizes::scaled(0.5F).pixels, (std::array<std::uint32_t, 9>{5, 2, 5, 4, 5, 2, 5, 4, 2}));
    object.SetSizeScaler(1.5F);
    drawTriangle();
    object.ReDraw();
    EXPECT_EQ(canvas.take(), (Lines{"clear", "outline 9 FF00A5E2 7D000078 FF65A5E2 0 1 1.5", "marker 20 20 14 FF4AE1E1",
                                    "marker 20 20 5 FF000000"}));
}

TEST_F(Rendering, OthersGetTheInterpreterWhileALargePictureIsDrawn) {
    object.SetVideoInfo(0, 0, 0, 1000);
    object.PrepareKeyframe(5);
    drawTriangle();
    object.ReDraw();
    EXPECT_TRUE(canvas.drawnWithInterpreter) << "not worth it";
    object.SetVideoCoordinate(7680, 4320, 0, 0, 7680, 4320);
    object.ReDraw();
    EXPECT_FALSE(canvas.drawnWithInterpreter);
    EXPECT_TRUE(holdsInterpreterLock());
    canvas.drawnWithInterpreter = true;
    object.PrepareKeyframe(5);
    EXPECT_FALSE(canvas.drawnWithInterpreter);
    EXPECT_TRUE(holdsInterpreterLock());
}

TEST_F(Rendering, HideAllPointsIsForwarded) {
    object.HideAllPoints();
    EXPECT_EQ(canvas.take(), Lines{"hide"});
}

TEST_F(Rendering, ResetBufferAsksForTheDisplaySize) {
    EXPECT_EQ(object.ResetBuffer(), S_OK);
    EXPECT_EQ(canvas.take(), Lines{"size 200 100 1 1"});
    EXPECT_EQ(object.GetBufferLen(), 80000U);
    canvas.sizeResult = E_OUTOFMEMORY;
    EXPECT_EQ(object.ResetBuffer(), E_OUTOFMEMORY);
}

TEST_F(Rendering, BufferQueryAnswersNothingAfterAFailure) {
    EXPECT_EQ(object.QueryBuffer(), canvas.pixels.data());
    canvas.bufferResult = E_FAIL;
    EXPECT_EQ(object.QueryBuffer(), nullptr);
}

TEST_F(Rendering, AnExactKeyframeThatIsShownAlreadyIsNotDrawnAgain) {
    object.SetVideoInfo(0, 0, 0, 1000);
    object.PrepareKeyframe(5);
    drawTriangle();
    object.PrepareKeyframe(5);
    EXPECT_EQ(canvas.take().front(), "clear");
    object.PrepareKeyframe(5);
    EXPECT_EQ(canvas.take(), Lines{});
}

TEST_F(Rendering, PreviewModeLoadsAKeyframeWithoutDrawingIt) {
    object.SetVideoInfo(0, 0, 0, 1000);
    object.PrepareKeyframe(5);
    drawTriangle();
    object.SetPreviewMode(true);
    object.PrepareKeyframe(5);
    EXPECT_EQ(canvas.take(), Lines{});
}

TEST_F(Rendering, UninitializeReleasesTheCanvas) {
    EXPECT_EQ(canvas.references, 1U);
    object.Uninitialize();
    EXPECT_EQ(canvas.references, 0U);
    EXPECT_EQ(object.ResetBuffer(), E_FAIL);
    EXPECT_EQ(object.QueryBuffer(), nullptr);
    object.ReDraw();
    EXPECT_EQ(canvas.take(), Lines{});
}

TEST(RenderingWithoutCanvas, TheObjectLivesOn) {
    const CanvasForTest none(nullptr);
    Orvanel object;
    EventList events;
    object.SetCallbackFunc(events.callable());
    EXPECT_EQ(object.ResetBuffer(), E_FAIL);
    EXPECT_EQ(object.Interactive(ECS_MOUSE_DOWN, 1, 1), E_FAIL);
    EXPECT_EQ(object.AddPoint(1, 1), E_FAIL);
    EXPECT_EQ(events.take(), std::vector<int>{}); // no ECB_POINT_ADD without a canvas
    EXPECT_EQ(object.PrepareKeyframe(0), nullptr);
    object.HideAllPoints();
    object.DrawSelectedRegion();
}

} // namespace
