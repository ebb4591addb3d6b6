// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "mask/counting_allocator_test.h"
#include "mask/lanes.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

KeyFrameMaskInfo keyframe(std::int64_t duration, const std::vector<std::pair<float, float>> &places) {
    KeyFrameMaskInfo record;
    record.duration = duration;
    for (const auto &[x, y] : places) {
        MPointF point;
        point.type = record.pointsF.size() % 3 == 0 ? kAnchorPoint : kControlPoint;
        point.x = x;
        point.y = y;
        record.pointsF.push_back(point);
    }
    record.placement = {0, 0, 100, 50};
    return record;
}

KeyFrameMaskInfo between(const KeyFrameMaskInfo &key1, const KeyFrameMaskInfo &key2, std::int64_t duration) {
    KeyFrameMaskInfo dest;
    dest.duration = duration;
    dest.placement = {10, 20, 200, 100};
    EXPECT_EQ(MaskHandler::CalcKeyFrame(key1, key2, dest, false), S_OK);
    return dest;
}

TEST(CalcKeyFrame, DestinationAtTheFirstKeyframeReproducesItExactly) {
    const auto key1 = keyframe(1000, {{0.1F, 0.7F}, {0.3333333F, 0.9F}});
    const auto key2 = keyframe(1033, {{0.77F, 0.123F}, {0.2F, 0.4F}});
    EXPECT_TRUE(between(key1, key2, 1000).pointsF == key1.pointsF);
}

TEST(CalcKeyFrame, DestinationAtTheSecondKeyframeIsTheFirstPlusTheDifference) {
    const auto key1 = keyframe(0, {{0.1F, 0.7F}});
    const auto key2 = keyframe(40, {{1e-7F, 0.3F}});
    const auto dest = between(key1, key2, 40);
    EXPECT_EQ(dest.pointsF[0].x, 0.1F + (1e-7F - 0.1F)); // not 1e-7
    EXPECT_NE(dest.pointsF[0].x, 1e-7F);
}

TEST(CalcKeyFrame, PointsThatDidNotMoveAreCopied) {
    const auto key1 = keyframe(0, {{0.5F, 0.5F}, {0.5F, 0.5F}});
    const auto key2 = keyframe(10, {{0.5F + 6e-8F, 0.5F}, {0.5F, 0.6F}});
    const auto dest = between(key1, key2, 1000000);
    EXPECT_EQ(dest.pointsF[0].x, 0.5F);
    EXPECT_EQ(dest.pointsF[1].x, 0.5F); // recomputed, with a difference of nothing
    EXPECT_GT(dest.pointsF[1].y, 100.0F);
}

TEST(CalcKeyFrame, FirstKeyframeWithoutPointsGivesAnEmptyDestinationAndMask) {
    KeyFrameMaskInfo dest;
    dest.points.resize(4);
    dest.pointsF.resize(4);
    dest.maskWidth = dest.maskHeight = 8;
    dest.maskBuffer = {1, 2, 3};
    EXPECT_EQ(MaskHandler::CalcKeyFrame(keyframe(0, {}), keyframe(9, {{1, 1}}), dest, true), S_OK);
    EXPECT_TRUE(dest.points.empty());
    EXPECT_TRUE(dest.pointsF.empty());
    EXPECT_TRUE(dest.maskBuffer.empty());
}

TEST(CalcKeyFrame, DurationsOutsideExtrapolateAlongTheSameLine) {
    const auto key1 = keyframe(100, {{0.5F, 0.5F}});
    const auto key2 = keyframe(200, {{0.625F, 0.25F}});
    EXPECT_EQ(between(key1, key2, 0).pointsF[0].x, 0.375F);
    EXPECT_EQ(between(key1, key2, 0).pointsF[0].y, 0.75F);
    EXPECT_EQ(between(key1, key2, 400).pointsF[0].x, 0.875F);
}

TEST(CalcKeyFrame, PixelsFollowTheDestinationsOwnPlacement) {
    const auto key1 = keyframe(0, {{0.25F, 0.5F}, {-0.101F, 0.5F}});
    const auto dest = between(key1, key1, 0);
    EXPECT_TRUE(dest.points[0] == (MPoint{kAnchorPoint, 60, 70, 0, 0, 0}));
    // -20.2 + 10 = -10.2, and a half more truncates to -9: toward zero, not down.
    EXPECT_TRUE(dest.points[1] == (MPoint{kControlPoint, -9, 70, 0, 0, 0}));
}

TEST(CalcKeyFrame, FlagsComeFromTheFirstKeyframeAndHandlesAreHidden) {
    auto key1 = keyframe(0, {{0.25F, 0.5F}});
    auto key2 = keyframe(10, {{0.5F, 0.5F}});
    key1.pointsF[0] = {kControlPoint, 0.25F, 0.5F, 3, 4, 1};
    key2.pointsF[0] = {kAnchorPoint, 0.5F, 0.5F, 8, 9, 1};
    const auto dest = between(key1, key2, 5);
    EXPECT_TRUE(dest.pointsF[0] == (MPointF{kControlPoint, 0.375F, 0.5F, 3, 4, 0}));
    EXPECT_TRUE(dest.points[0] == (MPoint{kControlPoint, 85, 70, 3, 4, 0}));
}

TEST(CalcKeyFrame, ShorterSecondKeyframeLeavesTheRestWhereTheFirstHasIt) {
    const auto key1 = keyframe(0, {{0.5F, 0.5F}, {0.25F, 0.125F}, {kInfinity, 0.75F}});
    const auto key2 = keyframe(10, {{0.75F, 0.5F}});
    const auto dest = between(key1, key2, 5);
    ASSERT_EQ(dest.pointsF.size(), 3u);
    EXPECT_EQ(dest.pointsF[0].x, 0.625F);
    EXPECT_TRUE(dest.pointsF[1] == key1.pointsF[1]);
    EXPECT_TRUE(dest.pointsF[2] == key1.pointsF[2]);
    EXPECT_EQ(dest.points.size(), 3u);
}

TEST(CalcKeyFrame, EqualDurationsMakeMovedPointsInfiniteOrNaN) {
    const auto key1 = keyframe(7, {{0.5F, 0.5F}, {0.25F, 0.25F}});
    const auto key2 = keyframe(7, {{0.75F, 0.25F}, {0.25F, 0.25F}});
    const auto later = between(key1, key2, 8);
    EXPECT_EQ(later.pointsF[0].x, kInfinity);
    EXPECT_EQ(later.pointsF[0].y, -kInfinity);
    EXPECT_TRUE(later.pointsF[1] == key1.pointsF[1]);
    EXPECT_EQ(between(key1, key2, 6).pointsF[0].x, -kInfinity);
    const auto same = between(key1, key2, 7);
    EXPECT_TRUE(std::isnan(same.pointsF[0].x));
    EXPECT_EQ(same.points[0].x, std::numeric_limits<std::int32_t>::min());
}

TEST(CalcKeyFrame, EqualDurationsGiveTheNaNOfADivision) {
    const volatile double zero = 0;
    const double quotient = zero / zero;
    const auto same = between(keyframe(7, {{0.5F, 0.5F}}), keyframe(7, {{0.75F, 0.25F}}), 7);
    EXPECT_EQ(std::signbit(same.pointsF[0].x), std::signbit(quotient));
    EXPECT_EQ(std::signbit(same.pointsF[0].y), std::signbit(quotient));
#if ORVANEL_MASK_SSE2
    EXPECT_EQ(std::bit_cast<std::uint32_t>(same.pointsF[0].x), 0xFFC00000U);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(same.pointsF[0].y), 0xFFC00000U);
#endif
}

TEST(CalcKeyFrame, ItsStatusIsSuccessAlsoWhenMemoryRunsOut) {
    const std::vector<std::pair<float, float>> many(4000, {0.5F, 0.5F});
    const auto key = keyframe(0, many);
    for (const std::size_t granted : {std::size_t{0}, std::size_t{50000}, kUnlimited}) {
        KeyFrameMaskInfo dest = keyframe(3, {{0.25F, 0.25F}});
        dest.points.resize(1);
        dest.maskWidth = dest.maskHeight = 4;
        largestGranted = granted;
        const HRESULT result = MaskHandler::CalcKeyFrame(key, key, dest, true);
        largestGranted = kUnlimited;
        EXPECT_EQ(result, S_OK);
        EXPECT_EQ(dest.points.size(), dest.pointsF.size());
        EXPECT_EQ(dest.points.size(), granted == kUnlimited ? 4000U : 1U);
    }
}

TEST(CalcKeyFrame, DestinationMayBeOneOfTheKeyframes) {
    const auto key1 = keyframe(0, {{0.5F, 0.5F}, {0.25F, 0.125F}});
    const auto key2 = keyframe(10, {{0.75F, 0.5F}, {0.5F, 0.5F}});
    auto first = key1;
    first.duration = 0;
    EXPECT_EQ(MaskHandler::CalcKeyFrame(first, key2, first, false), S_OK);
    EXPECT_TRUE(first.pointsF == key1.pointsF);
    auto second = key2;
    EXPECT_EQ(MaskHandler::CalcKeyFrame(key1, second, second, false), S_OK);
    EXPECT_TRUE(second.pointsF == key2.pointsF);
}

TEST(CalcKeyFrame, LogsTheThreeDurationsAndTheCount) {
    const auto lines = test::loggedLines([] {
        between(keyframe(-5, {{0, 0}, {1, 1}}), keyframe(1LL << 40, {{0, 0}, {1, 1}}), 3);
    });
    EXPECT_EQ(lines, (std::vector<std::string>{"[CalcKeyFrame] Key1-duration=-5, Key2-duration=1099511627776, "
                                               "Dest-duration=3, point size=2"}));
}

TEST(CalcKeyFrame, MaskIsTheRowListLowByteFirst) {
    std::vector<std::pair<float, float>> square;
    for (const auto &[x, y] : std::vector<std::pair<float, float>>{{1, 1}, {3, 1}, {3, 3}, {1, 3}})
        square.insert(square.end(), 3, {x / 4, y / 4});
    auto key = keyframe(0, square);
    // Controls on the anchors: the leaving one on its own, the arriving one on the next.
    for (std::size_t i = 0; i < 12; i += 3)
        key.pointsF[i + 2] = {kControlPoint, key.pointsF[(i + 3) % 12].x, key.pointsF[(i + 3) % 12].y, 0, 0, 0};
    KeyFrameMaskInfo dest;
    dest.placement = {0, 0, 4, 4};
    dest.maskWidth = 600;
    dest.maskHeight = 5;
    EXPECT_EQ(MaskHandler::CalcKeyFrame(key, key, dest, true), S_OK);
    EXPECT_EQ(dest.maskBuffer, (std::vector<std::uint8_t>{0, 0, 2, 0, 1, 0, 2, 0, 2, 0, 1, 0, 2, 0, 0, 0, 0, 0}));
}

} // namespace
} // namespace Quill
