// SPDX-License-Identifier: MIT
#include "hostkit/grade.h"

#include <cmath>
#include <stdexcept>

#include <gtest/gtest.h>

namespace hostkit {
namespace {

Mask fullMask(int width, int height) {
    Mask mask(width, height);
    mask.invert();
    return mask;
}

Image onePixel(std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
    Image image(1, 1);
    image.fill(blue, green, red);
    return image;
}

TEST(Grade, NothingChangesWithoutAGrade) {
    Image image(256, 1);
    for (int x = 0; x < 256; ++x) {
        std::uint8_t *pixel = image.row(0) + x * 4;
        pixel[0] = static_cast<std::uint8_t>(x);
        pixel[1] = static_cast<std::uint8_t>(255 - x);
        pixel[2] = static_cast<std::uint8_t>(x * 7);
    }
    const std::string before = image.bytes();
    Grade(0, 1).applyInside(image, fullMask(256, 1));
    EXPECT_EQ(image.bytes(), before);
}

TEST(Grade, OneStopDoublesTheLight) {
    Image image = onePixel(100, 100, 100);
    Grade(1, 1).applyInside(image, fullMask(1, 1));
    // 100 * 2^(1/2.4), all channels alike
    EXPECT_EQ(image.pixel(0, 0), 0xFF858585U);
    EXPECT_EQ(std::lround(100 * std::pow(2, 1 / 2.4)), 0x85);
}

TEST(Grade, ZeroSaturationIsTheLuminance) {
    Image image = onePixel(0, 255, 0);
    Grade(0, 0).applyInside(image, fullMask(1, 1));
    const auto grey = static_cast<std::uint32_t>(std::lround(255 * std::pow(0.7152, 1 / 2.4)));
    EXPECT_EQ(image.pixel(0, 0), 0xFF000000U | grey << 16 | grey << 8 | grey);
}

TEST(Grade, GreyStaysGreyAtAnySaturation) {
    for (int code = 0; code < 256; ++code) {
        const auto value = static_cast<std::uint8_t>(code);
        Image image = onePixel(value, value, value);
        const std::uint32_t before = image.pixel(0, 0);
        Grade(0, 3).applyInside(image, fullMask(1, 1));
        EXPECT_EQ(image.pixel(0, 0), before);
    }
}

TEST(Grade, OutsideOfTheMaskNothingIsTouched) {
    Image image(2, 1);
    image.fill(10, 20, 30);
    Mask mask(2, 1);
    mask.row(0)[1] = 255;
    Grade(2, 1).applyInside(image, mask);
    EXPECT_EQ(image.pixel(0, 0), 0xFF1E140AU);
    EXPECT_NE(image.pixel(1, 0), 0xFF1E140AU);
}

TEST(Grade, HalfCoverageMixesLight) {
    Image image = onePixel(100, 100, 100);
    Mask mask(1, 1);
    mask.row(0)[0] = 128;
    Grade(1, 1).applyInside(image, mask);
    const double light = std::pow(100 / 255.0, 2.4);
    const auto code = static_cast<std::uint32_t>(std::lround(255 * std::pow(light * (1 + 128 / 255.0), 1 / 2.4)));
    EXPECT_EQ(image.pixel(0, 0) & 0xFF, code);
}

TEST(Grade, LightBeyondTheDisplayIsClipped) {
    Image image = onePixel(200, 100, 255);
    Grade(16, 16).applyInside(image, fullMask(1, 1));
    EXPECT_EQ(image.pixel(0, 0) >> 16 & 0xFF, 0xFFU);
}

TEST(Grade, RefusesWhatIsNoGrade) {
    EXPECT_THROW(Grade(std::nan(""), 1), std::invalid_argument);
    EXPECT_THROW(Grade(17, 1), std::invalid_argument);
    EXPECT_THROW(Grade(0, -0.1), std::invalid_argument);
    Image image(2, 2);
    EXPECT_THROW(Grade(0, 1).applyInside(image, Mask(3, 2)), std::invalid_argument);
}

} // namespace
} // namespace hostkit
