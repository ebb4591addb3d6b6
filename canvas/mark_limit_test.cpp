// SPDX-License-Identifier: MIT
// Marks are clamped as the outline's scale is: what a redraw costs does not follow a size scale that nobody can see.

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "canvas/canvas_component.h"
#include "canvas/look.h"
#include "canvas/testing/raw_canvas.h"
#include "canvas/testing/scenes.h"

namespace {

using canvas::testing::kEditorStyle;

constexpr int kSide = 400;
constexpr CanvasColor kBlack = CanvasColor::fromArgb(0xFF000000);
constexpr CanvasColor kCyan = CanvasColor::fromArgb(0xFF4AE1E1);

class MarkLimit : public ::testing::Test {
  protected:
    MarkLimit() : m_canvas(create()) { EXPECT_EQ(m_canvas.setSize(kSide, kSide), S_OK); }

    /// Clears, and draws an outline of one point far out of sight at a scale.
    void beginAt(float scale) {
        MPoint hidden;
        hidden.x = -100000;
        m_canvas.clear();
        EXPECT_EQ(m_canvas.drawOutline(&hidden, 1, &kEditorStyle, 0, scale), S_OK);
    }
    /// Draws a selected point's two markers as the editor does: base sizes times the scale, halves rounded up.
    void drawSelectedAt(float scale) {
        const auto size = [scale](double base) {
            return static_cast<UINT>(
                std::clamp(std::floor(base * static_cast<double>(scale) + 0.5), 0.0, 4294967295.0));
        };
        draw(size(9), kBlack);
        draw(size(7), kCyan);
    }
    void draw(UINT size, const CanvasColor &color) {
        MPoint point;
        point.x = kSide / 2;
        point.y = kSide / 2;
        EXPECT_EQ(m_canvas.drawMarker(&point, size, &color), S_OK);
    }
    std::vector<std::uint32_t> pixels() const {
        BYTE *buffer = nullptr;
        std::uint64_t length = 0;
        EXPECT_EQ(m_canvas.getBuffer(&buffer, &length), S_OK);
        std::vector<std::uint32_t> copy(length / 4);
        std::memcpy(copy.data(), buffer, length);
        return copy;
    }
    std::ptrdiff_t inked() const {
        const auto all = pixels();
        return std::count_if(all.begin(), all.end(), [](std::uint32_t pixel) { return pixel != 0; });
    }
    std::vector<std::uint32_t> selectedAt(float scale) {
        beginAt(scale);
        drawSelectedAt(scale);
        return pixels();
    }

  private:
    static void *create() {
        void *object = nullptr;
        EXPECT_EQ(canvas::createCanvasComponent(IID_OverlayCanvas, &object), S_OK);
        return object;
    }
    canvas::testing::RawCanvas m_canvas;
};

TEST_F(MarkLimit, BeyondTheLargestScaleMarksLookAsAtTheLargest) {
    const auto largest = selectedAt(canvas::kLargestScale);
    EXPECT_EQ(inked(), 55 * 55) << "54 pixels about a middle one";
    for (const float scale : {7.0F, 8.0F, 16.0F, 256.0F, 4096.0F, 1e6F})
        EXPECT_EQ(selectedAt(scale), largest) << scale;
}

TEST_F(MarkLimit, BelowTheSmallestScaleMarksGrowToIt) {
    const auto smallest = selectedAt(canvas::kSmallestScale);
    EXPECT_EQ(selectedAt(0.25F).size(), smallest.size());
    beginAt(0.25F);
    draw(2, kBlack);
    const auto doubled = pixels();
    beginAt(canvas::kSmallestScale);
    draw(4, kBlack);
    EXPECT_EQ(doubled, pixels());
}

TEST_F(MarkLimit, WithinTheScalesSizesAreTheCallers) {
    for (const float scale : {0.5F, 1.0F, 1.5F, 4.0F}) {
        beginAt(scale);
        draw(21, kBlack);
        EXPECT_EQ(inked(), 21 * 21) << scale;
    }
}

TEST_F(MarkLimit, NoSizeCostsMoreThanTheLargestMark) {
    const std::ptrdiff_t most = (canvas::kLargestMark + 1) * (canvas::kLargestMark + 1);
    for (const float scale : {0.0F, -1.0F, 0.5F, 1.0F, 256.0F, std::numeric_limits<float>::infinity()})
        for (const UINT size : {65U, 300U, 2304U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            beginAt(scale);
            draw(size, kBlack);
            EXPECT_LE(inked(), most) << scale << " " << size;
            EXPECT_GT(inked(), 0) << scale << " " << size;
        }
}

TEST_F(MarkLimit, AScaleLastsUntilTheNextClear) {
    beginAt(256);
    beginAt(1);
    draw(9, kBlack);
    EXPECT_EQ(inked(), 9 * 9);
}

} // namespace
