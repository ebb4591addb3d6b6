// SPDX-License-Identifier: MIT
#include "hostkit/yuv_overlay.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace hostkit {
namespace {

struct Frame {
    std::vector<std::uint8_t> memory[3];
    Planes planes;

    Frame(int width, int height, int shift) {
        planes.width = width;
        planes.height = height;
        planes.shiftX = planes.shiftY = shift;
        const std::uint8_t grey[] = {90, 128, 128};
        for (int i = 0; i < 3; ++i) {
            const int columns = i == 0 ? width : planes.chromaWidth();
            memory[i].assign(static_cast<std::size_t>(columns * (i == 0 ? height : planes.chromaHeight())), grey[i]);
            planes.data[i] = memory[i].data();
            planes.stride[i] = columns;
        }
    }
    int get(int plane, int x, int y) const { return planes.data[plane][y * planes.stride[plane] + x]; }
};

/// Blue, green, red, alpha.
void mark(std::vector<BYTE> &overlay, int width, int x, int y, const BYTE (&color)[4]) {
    std::copy_n(color, 4, overlay.begin() + (y * width + x) * 4);
}

constexpr BYTE kRed[4] = {0, 0, 255, 255};
constexpr BYTE kHalfWhite[4] = {255, 255, 255, 128};

TEST(YuvOverlay, FullAlphaIsTheMarksOwnColour) {
    Frame frame(37, 9, 0);
    std::vector<BYTE> overlay(37 * 9 * 4);
    mark(overlay, 37, 36, 8, kRed);
    compositeOverlay(frame.planes, overlay.data(), 37 * 4);
    // BT.709's red.
    EXPECT_EQ(frame.get(0, 36, 8), 63);
    EXPECT_EQ(frame.get(1, 36, 8), 102);
    EXPECT_EQ(frame.get(2, 36, 8), 240);
    EXPECT_EQ(frame.get(0, 35, 8), 90);
    EXPECT_EQ(frame.get(2, 35, 8), 128);
}

TEST(YuvOverlay, AlphaMixesCodes) {
    Frame frame(8, 2, 0);
    std::vector<BYTE> overlay(8 * 2 * 4);
    mark(overlay, 8, 3, 1, kHalfWhite);
    compositeOverlay(frame.planes, overlay.data(), 32);
    EXPECT_NEAR(frame.get(0, 3, 1), 90 + (235 - 90) * 128 / 255.0, 0.5);
    EXPECT_EQ(frame.get(1, 3, 1), 128);
}

TEST(YuvOverlay, AColourSampleIsTheMeanOfItsPixels) {
    for (const int width : {16, 17}) {
        Frame frame(width, 3, 1);
        std::vector<BYTE> overlay(static_cast<std::size_t>(width * 3 * 4));
        mark(overlay, width, 0, 0, kRed);
        // The last sample of an odd picture stands for one pixel.
        mark(overlay, width, width - 1, 2, kRed);
        compositeOverlay(frame.planes, overlay.data(), static_cast<std::size_t>(width) * 4);
        EXPECT_EQ(frame.get(2, 0, 0), 128 + 112 / 4);
        EXPECT_EQ(frame.get(2, (width - 1) / 2, 1), width % 2 == 1 ? 240 : 128 + 112 / 2);
        EXPECT_EQ(frame.get(2, 1, 0), 128);
        EXPECT_EQ(frame.get(0, 1, 0), 90);
    }
}

TEST(YuvOverlay, FieldsHaveColoursOfTheirOwn) {
    Frame frame(8, 8, 1);
    frame.planes.interlaced = true;
    std::vector<BYTE> overlay(8 * 8 * 4);
    mark(overlay, 8, 4, 2, kRed);
    compositeOverlay(frame.planes, overlay.data(), 32);
    // Rows 0 and 2 are the first field's first two.
    EXPECT_EQ(frame.get(2, 2, 0), 128 + 112 / 4);
    EXPECT_EQ(frame.get(2, 2, 1), 128);
}

} // namespace
} // namespace hostkit
