// SPDX-License-Identifier: MIT
#include "mask/mask_encoder.h"

#include <gtest/gtest.h>

#include "mask/raster_support_test.h"

namespace Quill {
namespace {

std::vector<MPoint> square() {
    return OutlineBuilder(1, 1).lineTo(4, 1).lineTo(4, 4).lineTo(1, 4).close();
}

std::string text(std::span<const MaskRun> runs) {
    return test::asText({runs.begin(), runs.end()});
}

TEST(OutlineBuilder, ClosesByAStraightSegmentOrByTheLast) {
    const std::vector<MPoint> open = OutlineBuilder(0, 0).lineTo(8, 0).lineTo(8, 4).close();
    ASSERT_EQ(open.size(), 9u);
    EXPECT_TRUE(open[1] == (MPoint{kControlPoint, 2, 0, 0, 0, 0}));
    EXPECT_TRUE(open[7] == (MPoint{kControlPoint, 6, 3, 0, 0, 0}));
    EXPECT_TRUE(open[8] == (MPoint{kControlPoint, 2, 1, 0, 0, 0}));

    const std::vector<MPoint> closed = OutlineBuilder(0, 0).lineTo(8, 0).lineTo(8, 4).curveTo(7, 4, 1, 3, 0, 0).close();
    ASSERT_EQ(closed.size(), 9u);
    EXPECT_TRUE(closed[0] == (MPoint{kAnchorPoint, 0, 0, 1, 0, 0})); // reached by a curve
    EXPECT_TRUE(closed[6] == (MPoint{kAnchorPoint, 8, 4, 0, 1, 0}));
    EXPECT_TRUE(closed[8] == (MPoint{kControlPoint, 1, 3, 0, 0, 0}));
}

TEST(MaskEncoder, ThreeEncodingsOfASquare) {
    MaskEncoder encoder(6, 5);
    EXPECT_EQ(text(encoder.runs(square())), "1: 1-3; 2: 1-3; 3: 1-3");
    const auto rows = encoder.rowList(square());
    EXPECT_EQ(std::vector<std::uint16_t>(rows.begin(), rows.end()),
              (std::vector<std::uint16_t>{0, 2, 1, 3, 2, 1, 3, 2, 1, 3, 0}));
    const auto fractions = encoder.fractions(square());
    ASSERT_EQ(fractions.size(), 3u);
    EXPECT_EQ(fractions[1], (MaskRunF{1.0F / 6, 2.0F / 5, 3.0F / 6}));
}

TEST(MaskEncoder, InvertsExcludesAndResizes) {
    MaskEncoder encoder(6, 3);
    encoder.invert(true);
    EXPECT_EQ(text(encoder.runs(square())), "0: 0-5; 1: 0-0 4-5; 2: 0-0 4-5");
    std::vector<std::uint8_t> map(18, 0);
    map[3] = 1;
    encoder.exclude(map.data());
    EXPECT_EQ(text(encoder.runs(square())), "0: 0-2 4-5; 1: 0-0 4-5; 2: 0-0 4-5");
    encoder.exclude(nullptr);
    encoder.resize(3, 2);
    EXPECT_EQ(text(encoder.runs(square())), "0: 0-2; 1: 0-0");
}

TEST(MaskEncoder, TooFewAnchorsAreAnEmptyMask) {
    MaskEncoder encoder(3, 2);
    const std::vector<MPoint> line = OutlineBuilder(0, 0).lineTo(2, 2).close();
    EXPECT_TRUE(encoder.runs(line).empty());
    EXPECT_TRUE(encoder.runs({}).empty());
    EXPECT_EQ(encoder.rowList(line).size(), 2u);
    encoder.invert(true);
    EXPECT_EQ(text(encoder.runs({})), "0: 0-2; 1: 0-2");
}

} // namespace
} // namespace Quill
