// SPDX-License-Identifier: MIT
#include "overlay/line_samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "overlay/chain.h"

namespace {

std::vector<MPoint> triangle() {
    std::vector<MPoint> points;
    std::vector<MPointF> pointsF;
    const PixelRect placement = {0, 0, 100, 100};
    const Chain chain = {points, pointsF, placement};
    for (const auto &[x, y] : {std::pair{100, 100}, {300, 100}, {300, 300}})
        appendAnchor(chain, x, y);
    closeChain(chain);
    return points;
}

TEST(LineSamples, FindsTheSegmentAndItsFirstSampleWithinReach) {
    LineSamples samples;
    samples.rebuild(triangle(), 640, 360);
    const auto hit = samples.find(200, 110, 10);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->segment, 0);
    EXPECT_EQ(hit->sample.x, 190);
    EXPECT_EQ(hit->sample.y, 100);
    EXPECT_FALSE(samples.find(200, 111, 10));
}

TEST(LineSamples, OfTwoSegmentsTheHigherNumberedWins) {
    LineSamples samples;
    samples.rebuild(triangle(), 640, 360);
    EXPECT_EQ(samples.find(300, 100, 10)->segment, 1);
    EXPECT_EQ(samples.find(300, 300, 10)->segment, 2);
    EXPECT_EQ(samples.find(100, 100, 10)->segment, 2);
}

TEST(LineSamples, ARefusedOutlineLeavesNothingToHover) {
    LineSamples samples;
    samples.rebuild(triangle(), 640, 360);
    samples.rebuild({}, 640, 360);
    EXPECT_FALSE(samples.find(200, 100, 10));
}

TEST(LineSamples, FarAwayPointersAreNoOverflow) {
    LineSamples samples;
    samples.rebuild(triangle(), 640, 360);
    EXPECT_FALSE(samples.find(INT32_MAX, INT32_MIN, 10));
    EXPECT_FALSE(samples.find(INT32_MIN, INT32_MAX, 10));
}

/// What listing all points of all segments finds.
std::optional<LineSamples::Hit> plainFind(const Quill::SegmentSamples &segments, std::int32_t x, std::int32_t y,
                                          std::int32_t tolerance) {
    for (std::size_t segment = segments.size(); segment-- > 0;)
        for (const MPoint &sample : segments[segment])
            if (isWithin(sample.x, sample.y, x, y, tolerance))
                return LineSamples::Hit{static_cast<std::int32_t>(segment), sample};
    return std::nullopt;
}

class RandomOutlines {
  public:
    explicit RandomOutlines(unsigned seed) : m_random(seed) {}

    int between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    bool oneIn(int count) { return between(1, count) == 1; }

    /// Straight and bent segments; some with handles far out, some of one point, some without any layout.
    std::vector<MPoint> outline(int anchors, int extent) {
        const bool hasLayout = !oneIn(5);
        const auto count = static_cast<std::size_t>(3 * anchors - (oneIn(4) ? 2 : 0));
        std::vector<MPoint> points(count);
        for (std::size_t index = 0; index < count; ++index) {
            MPoint &point = points[index];
            const bool isAnchor = hasLayout ? index % 3 == 0 : oneIn(2);
            point.type = isAnchor ? kAnchorPoint : kControlPoint;
            const int reach = !isAnchor && oneIn(6) ? 4 * extent : extent;
            point.x = between(-reach / 4, reach);
            point.y = between(-reach / 4, reach);
            if (index > 0 && oneIn(8))
                point.x = points[index - 1].x + between(0, 1);
            if (index > 0 && oneIn(8))
                point.y = points[index - 1].y + between(0, 1);
            point.curveIn = oneIn(2);
            point.curveOut = oneIn(2);
            point.handleShown = oneIn(3);
        }
        return points;
    }

  private:
    std::mt19937 m_random;
};

void expectThePlainWay(LineSamples &samples, const std::vector<MPoint> &outline, int density, RandomOutlines &random,
                       int pointers) {
    Quill::SegmentSamples all;
    ASSERT_EQ(Quill::MaskHandler::GenAllPoints(outline.data(), static_cast<int>(outline.size()), density, 0, &all),
              S_OK);
    samples.rebuild(outline, density, 0);
    for (int pointer = 0; pointer < pointers; ++pointer) {
        // Beside some sample, to the pixel where it begins to count, or anywhere.
        MPoint at = outline[static_cast<std::size_t>(random.between(0, static_cast<int>(outline.size()) - 1))];
        const auto &list =
            all.empty() ? outline : all[static_cast<std::size_t>(random.between(0, static_cast<int>(all.size()) - 1))];
        if (!list.empty() && !random.oneIn(5))
            at = list[static_cast<std::size_t>(random.between(0, static_cast<int>(list.size()) - 1))];
        const std::int32_t tolerance = random.oneIn(4) ? random.between(0, 3) : 10;
        const std::int32_t x = wrappingSum(at.x, random.between(-tolerance - 2, tolerance + 2));
        const std::int32_t y = wrappingSum(at.y, random.between(-tolerance - 2, tolerance + 2));
        const auto plain = plainFind(all, x, y, tolerance);
        const auto found = samples.find(x, y, tolerance);
        ASSERT_EQ(found.has_value(), plain.has_value()) << x << ", " << y << " density " << density;
        if (plain) {
            ASSERT_EQ(found->segment, plain->segment) << x << ", " << y << " density " << density;
            ASSERT_EQ(found->sample, plain->sample) << x << ", " << y << " density " << density;
        }
    }
}

TEST(LineSamples, FindsWhatListingEveryPointFinds) {
    RandomOutlines random(1);
    LineSamples samples;
    constexpr int kDensities[] = {-1, 0, 1, 2, 16, 150, 640, 1920, 7680, 100000};
    for (int round = 0; round < 200 && !testing::Test::HasFatalFailure(); ++round) {
        const int density = kDensities[random.between(0, 9)];
        const int extent = density > 8000 ? 60 : (random.oneIn(5) ? 5000 : 400);
        expectThePlainWay(samples, random.outline(random.between(2, 9), extent), density, random, 150);
    }
}

TEST(LineSamples, FindsItOnSegmentsWithHandlesFarOut) {
    // The flattener's coarse arithmetic ends beside the end point here, and leaves the box of the control points.
    RandomOutlines random(2);
    LineSamples samples;
    for (int round = 0; round < 100 && !testing::Test::HasFatalFailure(); ++round) {
        std::vector<MPoint> outline = random.outline(3, random.between(1, 4) * 1000);
        for (MPoint &point : outline)
            point.curveIn = point.curveOut = 1;
        expectThePlainWay(samples, outline, random.between(1, 3), random, 200);
    }
}

TEST(LineSamples, FindsItAtAnyCoordinates) {
    RandomOutlines random(3);
    LineSamples samples;
    constexpr std::int32_t kExtremes[] = {INT32_MIN, INT32_MIN + 5, -8388608, -131073,  131072,
                                          131080,    8388607,       1 << 30,  INT32_MAX};
    for (int round = 0; round < 12 && !testing::Test::HasFatalFailure(); ++round) {
        std::vector<MPoint> outline = random.outline(3, 300);
        for (int changed = 0; changed < 2; ++changed) {
            MPoint &point = outline[static_cast<std::size_t>(random.between(0, static_cast<int>(outline.size()) - 1))];
            (random.oneIn(2) ? point.x : point.y) = kExtremes[random.between(0, 8)];
        }
        expectThePlainWay(samples, outline, 640, random, 60);
    }
}

/// A round outline of bent segments over a whole 8K display, and a pointer that goes over all of it.
TEST(LineSamples, KeepsLittleHoweverLargeTheOutline) {
    constexpr int kAnchors = 1000;
    std::vector<MPoint> outline(3 * kAnchors);
    for (std::size_t index = 0; index < outline.size(); ++index) {
        const double angle = 2 * std::numbers::pi * static_cast<double>(index) / (3.0 * kAnchors);
        const double wave = 1 + 0.4 * std::sin(131 * angle);
        outline[index].type = index % 3 == 0 ? kAnchorPoint : kControlPoint;
        outline[index].x = static_cast<std::int32_t>(3840 + 2700 * wave * std::cos(angle));
        outline[index].y = static_cast<std::int32_t>(2160 + 1500 * wave * std::sin(angle));
        outline[index].curveIn = outline[index].curveOut = 1;
    }
    LineSamples samples;
    samples.rebuild(outline, 7680, 4320);
    EXPECT_EQ(samples.madeSamples(), 0U) << "nothing is sampled before the pointer comes near";
    EXPECT_FALSE(samples.find(3840, 2160, 10));
    EXPECT_EQ(samples.madeSamples(), 0U) << "nor far from every segment";

    Quill::SegmentSamples all;
    ASSERT_EQ(Quill::MaskHandler::GenAllPoints(outline.data(), 3 * kAnchors, 7680, 4320, &all), S_OK);
    std::uint64_t total = 0;
    std::size_t longest = 0;
    for (const auto &list : all) {
        total += list.size();
        longest = std::max(longest, list.size());
    }
    std::size_t most = 0;
    for (int y = 0; y < 4320; y += 15)
        for (int x = 0; x < 7680; x += 15) {
            samples.find(x, y, 10);
            most = std::max(most, samples.keptSamples());
        }
    EXPECT_LE(most, LineSamples::kMostKept + longest);
    constexpr std::size_t kBytesKept = 8; // of a sample
    EXPECT_LT(10 * most * kBytesKept, total * sizeof(MPoint));
    // Every segment once for its parts, and again a few times as the pointer passes it row by row.
    EXPECT_LT(samples.madeSamples(), 40 * total);
}

TEST(LineSamples, FindsTheSameWhenListsHaveToGo) {
    // Long segments beside one another on a large display: more than all that is kept.
    constexpr int kAnchors = 60;
    std::vector<MPoint> outline(3 * kAnchors);
    for (std::size_t index = 0; index < outline.size(); ++index) {
        outline[index].type = index % 3 == 0 ? kAnchorPoint : kControlPoint;
        outline[index].x = static_cast<std::int32_t>(index * 40);
        outline[index].y = index % 6 < 3 ? static_cast<std::int32_t>(index % 3) * 900 : 7000;
        outline[index].curveIn = outline[index].curveOut = 1;
    }
    LineSamples samples;
    RandomOutlines random(4);
    expectThePlainWay(samples, outline, 7680, random, 400);
    expectThePlainWay(samples, outline, 7680, random, 400);
    EXPECT_LE(samples.keptSamples(), LineSamples::kMostKept + 20000);
    EXPECT_GT(samples.keptSamples(), LineSamples::kMostKept / 2);
}

TEST(LineSamples, StraightSegmentsAreNeverListed) {
    LineSamples samples;
    samples.rebuild(triangle(), 7680, 4320);
    EXPECT_TRUE(samples.find(200, 100, 10));
    EXPECT_EQ(samples.madeSamples(), 0U);
}

} // namespace
