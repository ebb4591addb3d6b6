// SPDX-License-Identifier: MIT
#include "hostkit/yuv_overlay.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "hostkit/testing/test_frame.h"

namespace hostkit {
namespace {

/// Evenly grey.
TestFrame greyFrame(int width, int height, int shift) {
    TestFrame frame(width, height, shift, shift, 8);
    frame.fill(90, 128, 128);
    return frame;
}

/// Blue, green, red, alpha.
void mark(std::vector<BYTE> &overlay, int width, int x, int y, const BYTE (&color)[4]) {
    std::copy_n(color, 4, overlay.begin() + (y * width + x) * 4);
}

constexpr BYTE kRed[4] = {0, 0, 255, 255};
constexpr BYTE kHalfWhite[4] = {255, 255, 255, 128};

TEST(YuvOverlay, FullAlphaIsTheMarksOwnColour) {
    TestFrame frame = greyFrame(37, 9, 0);
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
    TestFrame frame = greyFrame(8, 2, 0);
    std::vector<BYTE> overlay(8 * 2 * 4);
    mark(overlay, 8, 3, 1, kHalfWhite);
    compositeOverlay(frame.planes, overlay.data(), 32);
    EXPECT_NEAR(frame.get(0, 3, 1), 90 + (235 - 90) * 128 / 255.0, 0.5);
    EXPECT_EQ(frame.get(1, 3, 1), 128);
}

TEST(YuvOverlay, AColourSampleIsTheMeanOfItsPixels) {
    for (const int width : {16, 17}) {
        TestFrame frame = greyFrame(width, 3, 1);
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
    TestFrame frame = greyFrame(8, 8, 1);
    frame.planes.interlaced = true;
    std::vector<BYTE> overlay(8 * 8 * 4);
    mark(overlay, 8, 4, 2, kRed);
    compositeOverlay(frame.planes, overlay.data(), 32);
    // Rows 0 and 2 are the first field's first two.
    EXPECT_EQ(frame.get(2, 2, 0), 128 + 112 / 4);
    EXPECT_EQ(frame.get(2, 2, 1), 128);
}

TEST(YuvOverlay, BlocksOfOneColourAreAsTheirPixels) {
    constexpr int kWidth = 48, kHeight = 6;
    for (const int shift : {0, 1})
        for (int alpha = 1; alpha < 256; alpha += 2) {
            const BYTE ink[4] = {static_cast<BYTE>(3 * alpha), 40, static_cast<BYTE>(255 - alpha),
                                 static_cast<BYTE>(alpha)};
            std::vector<BYTE> overlay(kWidth * kHeight * 4);
            for (int y = 0; y < kHeight; ++y)
                for (int x = 0; x < kWidth; ++x)
                    mark(overlay, kWidth, x, y, ink);
            // Two times the same noise.
            TestFrame blocks(kWidth, kHeight, shift, shift, 8), pixels(kWidth, kHeight, shift, shift, 8);
            compositeOverlay(blocks.planes, overlay.data(), kWidth * 4);
            // Another first column, and no block is of one colour.
            for (int y = 0; y < kHeight; ++y)
                for (int x = 0; x < kWidth; x += 16)
                    overlay[static_cast<std::size_t>((y * kWidth + x) * 4)] ^= 1;
            compositeOverlay(pixels.planes, overlay.data(), kWidth * 4);
            for (int y = 0; y < kHeight; ++y)
                for (int x = 0; x < kWidth; ++x) {
                    if (x % 16 > 1) {
                        EXPECT_EQ(blocks.get(0, x, y), pixels.get(0, x, y));
                        EXPECT_EQ(blocks.get(1, x >> shift, y >> shift), pixels.get(1, x >> shift, y >> shift));
                        EXPECT_EQ(blocks.get(2, x >> shift, y >> shift), pixels.get(2, x >> shift, y >> shift));
                    }
                }
        }
}

TEST(YuvOverlay, WhatIsTransparentHasNoColour) {
    constexpr BYTE kUnseen[4] = {10, 200, 30, 0};
    TestFrame frame = greyFrame(32, 2, 1);
    std::vector<BYTE> overlay(32 * 2 * 4);
    for (int x = 0; x < 31; ++x)
        mark(overlay, 32, x, 1, kUnseen);
    mark(overlay, 32, 31, 1, kRed);
    compositeOverlay(frame.planes, overlay.data(), 32 * 4);
    for (int x = 0; x < 31; ++x)
        EXPECT_EQ(frame.get(0, x, 1), 90);
    for (int x = 0; x < 15; ++x)
        EXPECT_EQ(frame.get(2, x, 0), 128);
    EXPECT_EQ(frame.get(2, 15, 0), 128 + 112 / 4);
}

} // namespace
} // namespace hostkit
