// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::OwnedSurface;
using test::XY;

const std::vector<XY> kBowTie = {{0, 0}, {6, 6}, {6, 0}, {0, 6}};
const std::vector<XY> kNinePoints = {{1, 1}, {1, 1}, {5, 1}, {5, 1}, {5, 1}, {5, 5}, {5, 5}, {5, 5}, {1, 1}};

HRESULT drawPolygon(const std::vector<XY> &vertices, OwnedSurface &surface) {
    const std::vector<MPoint> points = test::outline(vertices);
    return MaskHandler::m_fnDrawPolygonMask(points.data(), static_cast<int>(points.size()), surface.width,
                                            surface.height, surface.stride, &surface.bits);
}

HRESULT fillOutlineOn(const std::vector<MPoint> &points, OwnedSurface &surface) {
    return MaskHandler::m_fnFillBezierCurveMask(points.data(), static_cast<int>(points.size()), surface.width,
                                                surface.height, surface.stride, &surface.bits, false);
}

TEST(Surface, StrideIsThreeBytesAPixelRoundedUpToFour) {
    EXPECT_EQ(surfaceStride(5), 16);
    EXPECT_EQ(surfaceStride(4), 12);
    for (int width = 1; width < 40; ++width)
        EXPECT_EQ(surfaceStride(width), 3 * width + (4 - 3 * width % 4) % 4);
}

TEST(Surface, BackgroundKeyComesFromTheClearColour) {
    const std::uint8_t background[3] = {0, 0, 0};
    const std::uint8_t filled[3] = {0xFF, 0, 0};
    EXPECT_EQ(pixelKey(background), kBackgroundKey);
    EXPECT_EQ(pixelKey(kClearColour), kBackgroundKey);
    EXPECT_EQ(pixelKey(filled), pixelKey(kFillColour));
}

TEST(PolygonMask, FigureOfEightLeavesUnfilledOnlyWhatEvenOddSays) {
    OwnedSurface surface(7, 7);
    EXPECT_EQ(drawPolygon(kBowTie, surface), S_OK);
    EXPECT_EQ(surface.rows(), "1: 0-0 5-5; 2: 0-1 4-5; 3: 0-5; 4: 0-1 4-5; 5: 0-0 5-5");

    // Two overlapping loops in one polygon: the overlap cancels.
    OwnedSurface loops(8, 4);
    EXPECT_EQ(drawPolygon({{0, 0}, {5, 0}, {5, 3}, {0, 3}, {0, 0}, {3, 0}, {8, 0}, {8, 3}, {3, 3}, {3, 0}}, loops),
              S_OK);
    EXPECT_EQ(loops.rows(), "0: 0-2 5-7; 1: 0-2 5-7; 2: 0-2 5-7");
}

TEST(PolygonMask, TwoPointsAreRefusedAndLeaveTheBufferUntouched) {
    OwnedSurface surface(7, 7);
    const std::vector<std::uint8_t> before = surface.bytes;
    const auto lines = test::loggedLines([&] { EXPECT_EQ(drawPolygon({{0, 0}, {6, 6}}, surface), E_FAIL); });
    EXPECT_EQ(surface.bytes, before);
    EXPECT_EQ(lines, (std::vector<std::string>{"Quill::MaskHandler::m_fnDrawPolygonMask() enter"}));
}

TEST(PolygonMask, TracesEnterAndEndAndNamesNullPointers) {
    OwnedSurface surface(4, 4);
    const std::vector<MPoint> points = test::outline(kBowTie);
    std::uint8_t *none = nullptr;
    const auto lines = test::loggedLines([&] {
        EXPECT_EQ(drawPolygon(kBowTie, surface), S_OK);
        EXPECT_EQ(MaskHandler::m_fnDrawPolygonMask(nullptr, 4, 4, 4, 12, &surface.bits), E_POINTER);
        EXPECT_EQ(MaskHandler::m_fnDrawPolygonMask(points.data(), 4, 4, 4, 12, &none), E_POINTER);
        EXPECT_EQ(MaskHandler::m_fnDrawPolygonMask(points.data(), 2, 4, 4, 12, nullptr), E_POINTER);
    });
    EXPECT_EQ(lines, (std::vector<std::string>{"Quill::MaskHandler::m_fnDrawPolygonMask() enter",
                                               "Quill::MaskHandler::m_fnDrawPolygonMask() end",
                                               "Quill::MaskHandler::m_fnDrawPolygonMask() enter",
                                               "Quill::MaskHandler::m_fnDrawPolygonMask Null Pointer : points",
                                               "Quill::MaskHandler::m_fnDrawPolygonMask() enter",
                                               "Quill::MaskHandler::m_fnDrawPolygonMask Null Pointer : buffer",
                                               "Quill::MaskHandler::m_fnDrawPolygonMask() enter",
                                               "Quill::MaskHandler::m_fnDrawPolygonMask Null Pointer : buffer"}));
}

TEST(PolygonMask, WritesThreeExactBytesAPixelAndNothingBetweenRows) {
    OwnedSurface surface(3, 2);
    EXPECT_EQ(drawPolygon({{1, 0}, {2, 0}, {2, 2}, {1, 2}}, surface), S_OK);
    const std::vector<std::uint8_t> row{0, 0, 0, 0xFF, 0, 0, 0, 0, 0, 0xAA, 0xAA, 0xAA};
    std::vector<std::uint8_t> expected = row;
    expected.insert(expected.end(), row.begin(), row.end());
    EXPECT_EQ(surface.bytes, expected);
}

TEST(PolygonMask, SurfaceThatCannotBeMadeIsLeftAlone) {
    OwnedSurface surface(8, 8);
    const std::vector<std::uint8_t> before = surface.bytes;
    const std::vector<MPoint> points = test::outline(kBowTie);
    const auto draw = [&](int width, int height, int stride) {
        EXPECT_EQ(MaskHandler::m_fnDrawPolygonMask(points.data(), 4, width, height, stride, &surface.bits), S_OK);
        EXPECT_EQ(surface.bytes, before) << width << " x " << height << ", " << stride;
    };
    draw(0, 8, 24);
    draw(8, 0, 24);
    draw(-8, 8, 24);
    draw(8, -8, 24);
    draw(7, 8, 23);               // no multiple of four
    draw(8, 8, 20);               // does not hold a row
    draw(8, 8, -24);              // runs out of the buffer
    draw(1 << 20, 2048, 3 << 20); // 6 GiB
}

TEST(BezierFill, EightPointsAreRefusedAndLeaveTheBufferUntouched) {
    OwnedSurface surface(8, 8);
    const std::vector<std::uint8_t> before = surface.bytes;
    std::vector<MPoint> points = test::outline(kNinePoints);
    points.pop_back();
    EXPECT_EQ(fillOutlineOn(points, surface), E_FAIL);
    EXPECT_EQ(surface.bytes, before);
}

TEST(BezierFill, TracesEnterAndEndAndNamesNullPointers) {
    OwnedSurface surface(8, 8);
    const std::vector<MPoint> points = test::outline(kNinePoints);
    std::uint8_t *none = nullptr;
    const auto lines = test::loggedLines([&] {
        EXPECT_EQ(fillOutlineOn(points, surface), S_OK);
        EXPECT_EQ(MaskHandler::m_fnFillBezierCurveMask(nullptr, 9, 8, 8, 24, &surface.bits, false), E_POINTER);
        EXPECT_EQ(MaskHandler::m_fnFillBezierCurveMask(points.data(), 8, 8, 8, 24, &none, false), E_POINTER);
    });
    EXPECT_EQ(lines, (std::vector<std::string>{"Quill::MaskHandler::m_fnFillBezierCurveMask() enter",
                                               "Quill::MaskHandler::m_fnFillBezierCurveMask() end",
                                               "Quill::MaskHandler::m_fnFillBezierCurveMask() enter",
                                               "Quill::MaskHandler::m_fnFillBezierCurveMask Null Pointer : points",
                                               "Quill::MaskHandler::m_fnFillBezierCurveMask() enter",
                                               "Quill::MaskHandler::m_fnFillBezierCurveMask Null Pointer : buffer"}));
}

TEST(BezierFill, CountThatIsNoMultipleOfThreeFillsTheClosingSegmentAgainstItsChord) {
    // Ten points: the segment starts at point 7 and ends at point 0.
    const std::vector<XY> ten = {{2, 2},   {90, 90}, {90, 90}, {90, 90}, {90, 90},
                                 {90, 90}, {90, 90}, {18, 2},  {18, 18}, {2, 18}};
    OwnedSurface partial(24, 24);
    EXPECT_EQ(fillOutlineOn(test::outline(ten), partial), S_OK);

    const std::vector<XY> closed = {{18, 2}, {18, 18}, {2, 18}, {2, 2}, {2, 2}, {2, 2}, {2, 2}, {2, 2}, {18, 2}};
    OwnedSurface expected(24, 24);
    EXPECT_EQ(fillOutlineOn(test::outline(closed), expected), S_OK);
    EXPECT_EQ(partial.rows(), expected.rows());
    EXPECT_NE(partial.rows(), "");
}

TEST(BezierFill, CoordinateBeyondTheRangeDrawsNothing) {
    for (const int coordinate : {kMaxPixelCoordinate + 1, -kMaxPixelCoordinate - 1, std::numeric_limits<int>::min(),
                                 std::numeric_limits<int>::max()}) {
        OwnedSurface surface(8, 8);
        std::vector<MPoint> points = test::outline(kNinePoints);
        points[4].y = coordinate;
        EXPECT_EQ(fillOutlineOn(points, surface), S_OK);
        EXPECT_EQ(surface.rows(), "") << coordinate;
    }
}

TEST(BezierFill, CoordinatesAtTheEndOfTheRangeAreDrawn) {
    constexpr int kFar = kMaxPixelCoordinate;
    OwnedSurface surface(4, 2);
    EXPECT_EQ(fillOutlineOn(test::outline({{-kFar, -kFar},
                                           {-kFar, -kFar},
                                           {kFar, -kFar},
                                           {kFar, -kFar},
                                           {kFar, -kFar},
                                           {kFar, kFar},
                                           {kFar, kFar},
                                           {kFar, kFar},
                                           {-kFar, kFar},
                                           {-kFar, kFar},
                                           {-kFar, kFar},
                                           {-kFar, -kFar}}),
                            surface),
              S_OK);
    EXPECT_EQ(surface.rows(), "0: 0-3; 1: 0-3");
}

} // namespace
} // namespace Quill
