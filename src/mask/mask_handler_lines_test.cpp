// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "mask/raster_support_test.h"

namespace Quill {
namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

MPoint at(int x, int y) {
    return {0, x, y, 0, 0, 0};
}

/// A picture of 32-bit pixels that notices writes before its first and after its last row.
class Picture {
  public:
    Picture(int width, int height) : m_width(width), m_height(height), m_pixels(count()) {}

    HRESULT drawLine(const MPoint &first, const MPoint &second) {
        const std::uint32_t ink = 1;
        return MaskHandler::m_fnDrawLine(first, second, m_pixels.data() + kGuard * m_width, &m_width, &ink);
    }

    std::vector<std::pair<int, int>> inked() const {
        std::vector<std::pair<int, int>> points;
        for (std::size_t i = 0; i < m_pixels.size(); ++i)
            if (m_pixels[i] != 0)
                points.emplace_back(static_cast<int>(i) % m_width, static_cast<int>(i) / m_width - kGuard);
        return points;
    }

  private:
    static constexpr int kGuard = 4;
    std::size_t count() const {
        return static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height + 2 * kGuard);
    }

    int m_width;
    int m_height;
    std::vector<std::uint32_t> m_pixels;
};

std::vector<std::pair<int, int>> listLine(const MPoint &first, const MPoint &second) {
    std::vector<MPoint> points;
    EXPECT_EQ(MaskHandler::m_fnGetLinePoints(first, second, 0, &points), S_OK);
    std::vector<std::pair<int, int>> result;
    for (const MPoint &point : points)
        result.emplace_back(point.x, point.y);
    return result;
}

using Points = std::vector<std::pair<int, int>>;

TEST(Lines, DrawLineFromAPointToItselfWritesNoPixel) {
    Picture picture(8, 8);
    EXPECT_EQ(picture.drawLine(at(3, 3), at(3, 3)), S_OK);
    EXPECT_EQ(picture.inked(), Points{});
}

TEST(Lines, GetLinePointsFromAPointToItselfYieldsExactlyThatPoint) {
    const MPoint point{1, 5, 6, 7, 8, 9};
    std::vector<MPoint> points;
    EXPECT_EQ(MaskHandler::m_fnGetLinePoints(point, point, 0, &points), S_OK);
    EXPECT_TRUE(points == std::vector<MPoint>{point});
}

TEST(Lines, DiagonalIsWrittenByBothSweeps) {
    Picture picture(8, 8);
    EXPECT_EQ(picture.drawLine(at(0, 0), at(3, 3)), S_OK);
    EXPECT_EQ(picture.inked(), (Points{{0, 0}, {1, 1}, {2, 2}, {3, 3}}));
    EXPECT_EQ(listLine(at(0, 0), at(3, 3)), (Points{{0, 0}, {1, 1}, {2, 2}, {3, 3}, {0, 0}, {1, 1}, {2, 2}, {3, 3}}));
}

TEST(Lines, VerticalLineYieldsOnePointOfTheColumnSweepThenTheColumn) {
    EXPECT_EQ(listLine(at(2, 1), at(2, 4)), (Points{{2, 4}, {2, 1}, {2, 2}, {2, 3}, {2, 4}}));
    Picture picture(8, 8);
    picture.drawLine(at(2, 1), at(2, 4));
    EXPECT_EQ(picture.inked(), (Points{{2, 1}, {2, 2}, {2, 3}, {2, 4}}));
}

TEST(Lines, HorizontalLineYieldsTheRowThenItsFirstPoint) {
    EXPECT_EQ(listLine(at(4, 2), at(1, 2)), (Points{{1, 2}, {2, 2}, {3, 2}, {4, 2}, {4, 2}}));
}

TEST(Lines, SweepsAreInIncreasingOrderWhicheverWayTheLineRuns) {
    const Points forward = listLine(at(0, 0), at(2, 5));
    EXPECT_EQ(forward, (Points{{0, 0}, {1, 3}, {2, 5}, {0, 0}, {0, 1}, {1, 2}, {1, 3}, {2, 4}, {2, 5}}));
    EXPECT_EQ(listLine(at(2, 5), at(0, 0)), forward);
}

TEST(Lines, HalvesRoundUpWhenPositiveAndTowardZeroWhenNegative) {
    EXPECT_EQ(listLine(at(0, 0), at(2, 1))[1], std::make_pair(1, 1));
    EXPECT_EQ(listLine(at(0, 0), at(-2, -1))[1], std::make_pair(-1, 0));
}

TEST(Lines, PointsAreAppendedAndCarryNothingButTheirPlace) {
    std::vector<MPoint> points{at(9, 9)};
    MaskHandler::m_fnGetLinePoints({1, 0, 0, 1, 1, 1}, {1, 1, 0, 1, 1, 1}, 77, &points);
    EXPECT_TRUE(points == (std::vector<MPoint>{at(9, 9), at(0, 0), at(1, 0), at(0, 0)}));
}

TEST(Lines, SteepLineStaysInItsBufferWhereSinglePrecisionLeavesIt) {
    // y = 8000 x - 64000000 at x = 8000 is off by whole rows in single precision.
    Picture picture(8002, 8001);
    EXPECT_EQ(picture.drawLine(at(8000, 0), at(8001, 8000)), S_OK);
    for (const auto &[x, y] : picture.inked()) {
        EXPECT_GE(y, 0);
        EXPECT_LE(y, 8000);
    }
}

TEST(Lines, HostileLinesListOnlyWhatASurfaceCouldShow) {
    std::vector<MPoint> points;
    EXPECT_EQ(MaskHandler::m_fnGetLinePoints(at(kLowest, kLowest), at(kHighest, kHighest), 0, &points), S_OK);
    EXPECT_LT(points.size(), 600000u);
    points.clear();
    EXPECT_EQ(MaskHandler::m_fnGetLinePoints(at(10, 20), at(kLowest, kLowest), 0, &points), S_OK);
    EXPECT_LT(points.size(), 300000u);
    points.clear();
    EXPECT_EQ(MaskHandler::m_fnGetLinePoints(at(kHighest - 1, 3), at(kHighest, 5), 0, &points), S_OK);
    EXPECT_EQ(points.size(), 3u);
    Picture picture(8, 8);
    EXPECT_EQ(picture.drawLine(at(kLowest, -5), at(kHighest, -1)), S_OK);
    EXPECT_EQ(picture.inked(), Points{});
}

TEST(Lines, NullPointersAreNamedInTheLog) {
    const std::uint32_t ink = 1;
    const int pitch = 4;
    const auto lines = test::loggedLines([&] {
        EXPECT_EQ(MaskHandler::m_fnClear(nullptr, 1, 1, 4, &ink), E_POINTER);
        EXPECT_EQ(MaskHandler::m_fnDrawLine(at(0, 0), at(0, 0), nullptr, &pitch, &ink), E_POINTER);
        EXPECT_EQ(MaskHandler::m_fnGetLinePoints(at(0, 0), at(0, 0), 0, nullptr), E_POINTER);
    });
    EXPECT_EQ(lines, (std::vector<std::string>{"Quill::MaskHandler::m_fnClear Null Pointer : buffer",
                                               "Quill::MaskHandler::m_fnDrawLine Null Pointer : buffer",
                                               "Quill::MaskHandler::m_fnGetLinePoints Null Pointer : points"}));
}

TEST(Clear, FillsEveryRow) {
    std::vector<std::uint32_t> pixels(12, 0);
    const std::uint32_t value = 0x11223344;
    EXPECT_EQ(MaskHandler::m_fnClear(pixels.data(), 4, 3, 16, &value), S_OK);
    EXPECT_EQ(pixels, std::vector<std::uint32_t>(12, value));
}

TEST(Clear, PitchThatIsNoMultipleOfFourFillsWholePixelsAndCopiesThePitch) {
    // Row 0 has 10 / 4 = 2 pixels; each later row starts 8 bytes on and is 10 bytes long.
    std::vector<std::uint32_t> pixels(8, 0xEEEEEEEE);
    const std::uint32_t value = 0x11223344;
    EXPECT_EQ(MaskHandler::m_fnClear(pixels.data(), 2, 3, 10, &value), S_OK);
    EXPECT_EQ(pixels, (std::vector<std::uint32_t>{value, value, value, value, value, value, 0xEEEE3344, 0xEEEEEEEE}));
}

TEST(Clear, OneRowOrNoneTouchesTheFirstRowOnly) {
    for (const int height : {1, 0, -3}) {
        std::vector<std::uint32_t> pixels(4, 0);
        const std::uint32_t value = 7;
        EXPECT_EQ(MaskHandler::m_fnClear(pixels.data(), 2, height, 8, &value), S_OK);
        EXPECT_EQ(pixels, (std::vector<std::uint32_t>{7, 7, 0, 0}));
    }
}

TEST(Clear, PitchBelowAPixelFillsNothing) {
    std::vector<std::uint32_t> pixels(4, 5);
    const std::uint32_t value = 7;
    for (const int pitch : {3, 0, -8})
        EXPECT_EQ(MaskHandler::m_fnClear(pixels.data(), 2, 2, pitch, &value), S_OK);
    EXPECT_EQ(pixels, std::vector<std::uint32_t>(4, 5));
}

} // namespace
} // namespace Quill
