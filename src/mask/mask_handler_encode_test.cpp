// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "mask/encode.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::XY;

// Axis-parallel outlines: they cover exactly the pixels of their polygon.
std::vector<MPoint> rectangle(int left, int top, int right, int bottom) {
    const XY a{left, top};
    const XY b{right, top};
    const XY c{right, bottom};
    const XY d{left, bottom};
    return test::outline({a, a, b, b, b, c, c, c, d, d, d, a});
}

HRESULT encode(const std::vector<MPoint> &points, int width, int height, bool invert, const std::uint8_t *exclusion,
               std::vector<MaskRun> &runs) {
    return MaskHandler::ConvertPoints2Mask(points.data(), static_cast<int>(points.size()), width, height, invert,
                                           exclusion, &runs);
}

HRESULT encode(const std::vector<MPoint> &points, RowListMask &mask) {
    return MaskHandler::ConvertPoints2Mask(points.data(), static_cast<int>(points.size()), &mask);
}

HRESULT encode(const std::vector<MPoint> &points, int originX, int originY, int width, int height, bool invert,
               std::vector<MaskRunF> &runs) {
    return MaskHandler::ConvertPoints2MaskUS(points.data(), static_cast<int>(points.size()), originX, originY, width,
                                             height, invert, nullptr, &runs);
}

const char *const kEnter = "Quill::MaskHandler::ConvertPoints2Mask() enter";
const char *const kFillEnter = "Quill::MaskHandler::m_fnFillBezierCurveMask() enter";
const char *const kFillEnd = "Quill::MaskHandler::m_fnFillBezierCurveMask() end";
const char *const kEnd = "Quill::MaskHandler::ConvertPoints2Mask() end";
const char *const kEnterUS = "Quill::MaskHandler::ConvertPoints2MaskUS() enter";
const char *const kEndUS = "Quill::MaskHandler::ConvertPoints2MaskUS() end";

TEST(Encode, EightPointsAreRefusedAndTheOutputStaysAsItWas) {
    std::vector<MPoint> points = rectangle(1, 1, 4, 4);
    points.resize(8);
    std::vector<MaskRun> runs{{1, 2, 3}};
    RowListMask mask{6, 6, {9}};
    std::vector<MaskRunF> fractions{{1, 2, 3}};
    const auto lines = test::loggedLines([&] {
        EXPECT_EQ(encode(points, 6, 6, false, nullptr, runs), E_FAIL);
        EXPECT_EQ(encode(points, mask), E_FAIL);
        EXPECT_EQ(encode(points, 0, 0, 6, 6, false, fractions), E_FAIL);
    });
    EXPECT_EQ(runs, (std::vector<MaskRun>{{1, 2, 3}}));
    EXPECT_EQ(mask.rows, std::vector<std::uint16_t>{9});
    EXPECT_EQ(fractions, (std::vector<MaskRunF>{{1, 2, 3}}));
    EXPECT_EQ(lines, (std::vector<std::string>{kEnter, kEnter, kEnterUS}));
}

TEST(Encode, NullPointsAndNullOutputsAreRefused) {
    const std::vector<MPoint> points = rectangle(1, 1, 4, 4);
    std::vector<MaskRun> runs{{1, 2, 3}};
    EXPECT_EQ(MaskHandler::ConvertPoints2Mask(nullptr, 12, 6, 6, false, nullptr, &runs), E_FAIL);
    EXPECT_EQ(runs.size(), 1u);
    EXPECT_EQ(MaskHandler::ConvertPoints2Mask(points.data(), 12, 6, 6, false, nullptr, nullptr), E_FAIL);
    EXPECT_EQ(MaskHandler::ConvertPoints2Mask(points.data(), 12, nullptr), E_FAIL);
    EXPECT_EQ(MaskHandler::ConvertPoints2MaskUS(points.data(), 12, 0, 0, 6, 6, false, nullptr, nullptr), E_FAIL);
    EXPECT_EQ(MaskHandler::ConvertPoints2MaskUS(points.data(), -1, 0, 0, 6, 6, false, nullptr, nullptr), E_FAIL);
}

TEST(Encode, TheFillsTraceStandsBetweenTheEncodersOwnLines) {
    const std::vector<MPoint> points = rectangle(1, 1, 4, 4);
    std::vector<MaskRun> runs;
    RowListMask mask{6, 6, {}};
    std::vector<MaskRunF> fractions;
    const auto lines = test::loggedLines([&] {
        encode(points, 6, 6, false, nullptr, runs);
        encode(points, mask);
        encode(points, 0, 0, 6, 6, false, fractions);
    });
    EXPECT_EQ(lines, (std::vector<std::string>{kEnter, kFillEnter, kFillEnd, kEnd, kEnter, kFillEnter, kFillEnd, kEnd,
                                               kEnterUS, kFillEnter, kFillEnd, kEndUS}));
}

TEST(Encode, MaskOfEmptyRowsIsHeightZeroesInTheRowList) {
    RowListMask mask{6, 5, {1, 2, 3}};
    EXPECT_EQ(encode(rectangle(20, 20, 30, 30), mask), S_OK);
    EXPECT_EQ(mask.rows, std::vector<std::uint16_t>(5, 0));
}

TEST(Encode, RunAtTheRightEdgeIsClosedThere) {
    const std::vector<MPoint> points = rectangle(3, 1, 40, 3);
    RowListMask mask{6, 4, {}};
    EXPECT_EQ(encode(points, mask), S_OK);
    EXPECT_EQ(mask.rows, (std::vector<std::uint16_t>{0, 2, 3, 5, 2, 3, 5, 0}));
    std::vector<MaskRun> runs;
    EXPECT_EQ(encode(points, 6, 4, false, nullptr, runs), S_OK);
    EXPECT_EQ(runs, (std::vector<MaskRun>{{3, 1, 3}, {3, 2, 3}}));
}

TEST(Encode, InvertedMaskIsTheBackground) {
    std::vector<MaskRun> runs;
    EXPECT_EQ(encode(rectangle(1, 1, 4, 2), 6, 3, true, nullptr, runs), S_OK);
    EXPECT_EQ(runs, (std::vector<MaskRun>{{0, 0, 6}, {0, 1, 1}, {4, 1, 2}, {0, 2, 6}}));
}

TEST(Encode, ExclusionByteOfOneSplitsARunInTwo) {
    std::vector<std::uint8_t> exclusion(6 * 3, 0);
    exclusion[6 + 2] = 1;
    exclusion[6 + 3] = 255;
    std::vector<MaskRun> runs;
    EXPECT_EQ(encode(rectangle(1, 1, 5, 2), 6, 3, false, exclusion.data(), runs), S_OK);
    EXPECT_EQ(runs, (std::vector<MaskRun>{{1, 1, 1}, {3, 1, 2}}));
}

TEST(Encode, NormalisedRunsAreMeasuredFromTheOrigin) {
    std::vector<MaskRunF> runs;
    EXPECT_EQ(encode(rectangle(2, 1, 5, 2), 0, 0, 7, 3, false, runs), S_OK);
    EXPECT_EQ(runs, (std::vector<MaskRunF>{{2.0F / 7.0F, 1.0F / 3.0F, 3.0F / 7.0F}}));
    EXPECT_EQ(encode(rectangle(2, 1, 5, 2), 4, -2, 7, 3, false, runs), S_OK);
    EXPECT_EQ(runs, (std::vector<MaskRunF>{{-2.0F / 7.0F, 3.0F / 3.0F, 3.0F / 7.0F}}));
    EXPECT_EQ(encode(rectangle(2, 1, 5, 2), std::numeric_limits<int>::min(), 0, 7, 3, false, runs), S_OK);
    EXPECT_EQ(runs.size(), 1u);
}

TEST(Encode, OutputIsReplacedAndRoomIsReservedForTwoEntriesARow) {
    std::vector<MaskRun> runs(1000);
    EXPECT_EQ(encode(rectangle(1, 1, 4, 2), 6, 50, false, nullptr, runs), S_OK);
    EXPECT_EQ(runs.size(), 1u);
    std::vector<MaskRun> fresh;
    EXPECT_EQ(encode(rectangle(1, 1, 4, 2), 6, 50, false, nullptr, fresh), S_OK);
    EXPECT_GE(fresh.capacity(), 100u);
}

// --- sizes at the limits
// ------------------------------------------------------------------------------------------------

TEST(EncodeLimits, SizesThatAreNotPositiveGiveEmptyMasks) {
    const std::vector<MPoint> points = rectangle(-4, -4, 4, 4);
    constexpr int kLowest = std::numeric_limits<int>::min();
    for (const XY size : {XY{0, 0}, XY{0, 6}, XY{6, 0}, XY{-6, 6}, XY{6, -6}, XY{kLowest, kLowest}, XY{6, kLowest}})
        for (const bool invert : {false, true}) {
            std::vector<MaskRun> runs{{1, 1, 1}};
            EXPECT_EQ(encode(points, size.x, size.y, invert, nullptr, runs), S_OK);
            EXPECT_TRUE(runs.empty()) << size.x << " x " << size.y;
            std::vector<MaskRunF> fractions{{1, 1, 1}};
            EXPECT_EQ(encode(points, 0, 0, size.x, size.y, invert, fractions), S_OK);
            EXPECT_TRUE(fractions.empty()) << size.x << " x " << size.y;
            RowListMask mask{size.x, size.y, {7}};
            EXPECT_EQ(encode(points, mask), S_OK);
            EXPECT_EQ(mask.rows, std::vector<std::uint16_t>(static_cast<std::size_t>(std::max(size.y, 0)), 0));
        }
}

TEST(EncodeLimits, MasksAre65535PixelsWideAtMost) {
    std::vector<MaskRun> runs;
    EXPECT_EQ(encode(rectangle(0, 0, 65535, 1), 65535, 2, false, nullptr, runs), S_OK);
    EXPECT_EQ(runs, (std::vector<MaskRun>{{0, 0, 65535}}));
    EXPECT_EQ(encode(rectangle(65534, 0, 65535, 1), 65535, 2, true, nullptr, runs), S_OK);
    EXPECT_EQ(runs, (std::vector<MaskRun>{{0, 0, 65534}, {0, 1, 65535}}));
    // The columns that a run cannot name are left out, whichever route.
    for (const EncodeRoute route : {EncodeRoute::Direct, EncodeRoute::Surface}) {
        RasterScratch scratch;
        const std::vector<MPoint> points = rectangle(65530, 0, 70000, 1);
        const EncodeJob job{points.data(), static_cast<int>(points.size()), 70001, 1};
        const auto &wide = encodeRuns({scratch, route, RasterEngine::Portable}, job);
        ASSERT_EQ(wide.size(), 1u);
        EXPECT_EQ(wide[0], (MaskRun{65530, 0, 5}));
    }
}

TEST(EncodeLimits, SurfaceAboveTwoGigabytesIsAllBackground) {
    std::vector<MaskRun> runs;
    const std::vector<MPoint> points = rectangle(1, 1, 60000, 60000);
    EXPECT_EQ(encode(points, 65535, 65535, false, nullptr, runs), S_OK);
    EXPECT_TRUE(runs.empty());
    EXPECT_EQ(encode(points, 65535, 65535, true, nullptr, runs), S_OK);
    ASSERT_EQ(runs.size(), 65535u);
    EXPECT_EQ(runs[60000], (MaskRun{0, 60000, 65535}));
    // The largest that can be made: 65532 bytes a row.
    static_assert(canMakeSurface(21844, 32769) && !canMakeSurface(21844, 32771));
}

TEST(EncodeLimits, RowsBeyond65535WrapAsSixteenBitValues) {
    std::vector<MaskRun> runs;
    EXPECT_EQ(encode(rectangle(0, 65537, 1, 65538), 2, 65540, false, nullptr, runs), S_OK);
    EXPECT_EQ(runs, (std::vector<MaskRun>{{0, 1, 1}}));
}

TEST(EncodeLimits, EveryCountAboveEightIsTaken) {
    std::vector<MPoint> points;
    for (int i = 0; i < 40; ++i)
        points.push_back({0, i * 7 % 20, i * 11 % 20, 0, 0, 0});
    for (int count = 9; count <= 40; ++count) {
        std::vector<MaskRun> runs;
        EXPECT_EQ(MaskHandler::ConvertPoints2Mask(points.data(), count, 20, 20, false, nullptr, &runs), S_OK);
    }
}

TEST(EncodeLimits, CoordinatesAtTheIntegerLimitsGiveAnEmptyMask) {
    for (const int value :
         {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), kMaxPixelCoordinate + 1}) {
        std::vector<MPoint> points = rectangle(1, 1, 4, 4);
        points[7].x = value;
        std::vector<MaskRun> runs{{1, 1, 1}};
        EXPECT_EQ(encode(points, 6, 6, false, nullptr, runs), S_OK);
        EXPECT_TRUE(runs.empty());
        EXPECT_EQ(encode(points, 6, 2, true, nullptr, runs), S_OK);
        EXPECT_EQ(runs, (std::vector<MaskRun>{{0, 0, 6}, {0, 1, 6}}));
    }
}

} // namespace
} // namespace Quill
