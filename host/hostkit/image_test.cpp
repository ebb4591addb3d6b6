// SPDX-License-Identifier: MIT
#include "hostkit/image.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "hostkit/text.h"

namespace hostkit {
namespace {

TEST(Image, IsBlackAtFirstAndCopiesByValue) {
    Image image(3, 2);
    EXPECT_EQ(image.pixel(2, 1), 0xFF000000U);
    Image copy = image;
    copy.fill(1, 2, 3);
    EXPECT_EQ(image.pixel(0, 0), 0xFF000000U);
    EXPECT_EQ(copy.pixel(0, 0), 0xFF030201U);
    EXPECT_EQ(copy.bytes().size(), 3U * 2U * 4U);
}

TEST(Image, PasteIsCutOffAtEveryEdge) {
    Image image(4, 4);
    Image white(3, 3);
    white.fill(255, 255, 255);
    image.paste(white, -2, -2);
    image.paste(white, 3, 3);
    image.paste(white, 10, 0);
    image.paste(white, 0, -10);
    int lit = 0;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            lit += image.pixel(x, y) == 0xFFFFFFFFU;
    EXPECT_EQ(lit, 2);
    EXPECT_EQ(image.pixel(0, 0), 0xFFFFFFFFU);
    EXPECT_EQ(image.pixel(3, 3), 0xFFFFFFFFU);
}

TEST(Image, SizesAreChecked) {
    EXPECT_THROW(Image(0, 1), std::invalid_argument);
    EXPECT_THROW(Image(1, 40000), std::invalid_argument);
    EXPECT_THROW(Image(2, 2).pixel(2, 0), std::invalid_argument);
}

TEST(Text, DrawsInsideItsBoxOnly) {
    Image image(60, 20);
    drawText(image, 3, 4, "Ab?~", 2, 0x102030);
    int ink = 0;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 60; ++x)
            if (image.pixel(x, y) != 0xFF000000U) {
                ++ink;
                EXPECT_EQ(image.pixel(x, y), 0xFF102030U);
                EXPECT_TRUE(x >= 3 && x < 3 + textWidth("Ab?~", 2) && y >= 4 && y < 4 + textHeight(2));
            }
    EXPECT_GT(ink, 100);
    drawText(image, -7, 15, "cut off", 3, 0xFFFFFF);
}

} // namespace
} // namespace hostkit
