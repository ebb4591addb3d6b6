// SPDX-License-Identifier: MIT
#include "hostkit/composite.h"

#include <random>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

namespace hostkit {
namespace {

TEST(Composite, StraightAlphaToTheNearestInteger) {
    std::mt19937 random(20240607);
    for (const int width : {1, 2, 3, 8, 17}) {
        const int height = 5;
        Image frame(width, height);
        std::vector<BYTE> overlay(static_cast<std::size_t>(width * height * 4));
        for (std::size_t i = 0; i < overlay.size(); ++i) {
            overlay[i] = static_cast<BYTE>(random());
            // Every third pixel is transparent, as most of an overlay is.
            if (i / 4 % 3 == 0)
                overlay[i] = 0;
        }
        for (int y = 0; y < height; ++y)
            for (int i = 0; i < width * 4; ++i)
                frame.row(y)[i] = static_cast<std::uint8_t>(random());
        const Image before = frame;
        compositeOverlay(frame, overlay.data(), overlay.size());
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                for (int channel = 0; channel < 3; ++channel) {
                    const BYTE *source = overlay.data() + (y * width + x) * 4;
                    const double share = source[3] / 255.0;
                    const double exact = source[channel] * share + before.row(y)[x * 4 + channel] * (1 - share);
                    EXPECT_NEAR(frame.row(y)[x * 4 + channel], exact, 0.51);
                }
    }
}

TEST(Composite, ColourUnderZeroAlphaIsIgnored) {
    Image frame(1, 1);
    const BYTE overlay[] = {255, 255, 255, 0};
    compositeOverlay(frame, overlay, sizeof overlay);
    EXPECT_EQ(frame.pixel(0, 0), 0xFF000000U);
}

TEST(Composite, RefusesAnOverlayOfAnotherSize) {
    Image frame(2, 2);
    const BYTE overlay[16] = {};
    EXPECT_THROW(compositeOverlay(frame, overlay, 12), std::invalid_argument);
    EXPECT_THROW(compositeOverlay(frame, nullptr, 16), std::invalid_argument);
    EXPECT_NO_THROW(compositeOverlay(frame, overlay, 16));
}

TEST(Composite, TintMixesByCoverage) {
    Image image(2, 1);
    Mask mask(2, 1);
    mask.row(0)[1] = 255;
    tint(image, mask, 0, 100, 200, 0.5);
    EXPECT_EQ(image.pixel(0, 0), 0xFF000000U);
    EXPECT_EQ(image.pixel(1, 0), 0xFF643200U);
}

} // namespace
} // namespace hostkit
