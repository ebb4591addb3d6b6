// SPDX-License-Identifier: MIT
#include "hostkit/frame_clock.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "hostkit/video_syncer.h"

namespace hostkit {
namespace {

/// Presentation times of a clip at the rate, cut to whole milliseconds as Matroska stores them.
std::vector<long long> millisecondPositions(int numerator, int denominator, int frames, long long first = 0) {
    std::vector<long long> positions;
    for (long long frame = 0; frame < frames; ++frame)
        positions.push_back((first + frame * 1000 * denominator / numerator) * (FrameClock::kUnitsPerSecond / 1000));
    return positions;
}

TEST(FrameClock, FrameNumberOfEveryFramesTimeIsThatFrame) {
    const struct {
        int numerator, denominator;
    } rates[] = {{24, 1}, {25, 1}, {30, 1}, {24000, 1001}, {30000, 1001}, {60000, 1001}, {15, 2}, {1, 1}, {240, 1}};
    for (const auto &rate : rates) {
        const FrameClock clock(rate.numerator, rate.denominator,
                               millisecondPositions(rate.numerator, rate.denominator, 5000));
        ASSERT_TRUE(clock.isConstant());
        for (long long frame = 0; frame < 5000; ++frame) {
            ASSERT_EQ(clock.frameAt(clock.startOf(frame)), frame) << rate.numerator << "/" << rate.denominator;
            ASSERT_EQ(clock.frameAt(clock.startOf(frame) - 1), frame - 1) << rate.numerator << "/" << rate.denominator;
        }
    }
}

TEST(FrameClock, TimesAtTwentyNineNinetySeven) {
    const FrameClock clock(30000, 1001, millisecondPositions(30000, 1001, 30001));
    EXPECT_EQ(clock.startOf(0), 0);
    EXPECT_EQ(clock.startOf(1), 333667);          // 333666.67
    EXPECT_EQ(clock.startOf(2), 667334);          // 667333.33
    EXPECT_EQ(clock.startOf(3), 1001000);         // exactly
    EXPECT_EQ(clock.startOf(30000), 10010000000); // 1001 s: no drift
    EXPECT_EQ(clock.end(), 10010333667);
}

TEST(FrameClock, FirstPositionIsTheZero) {
    const FrameClock clock(24, 1, millisecondPositions(24, 1, 10, 3));
    EXPECT_TRUE(clock.isConstant());
    EXPECT_EQ(clock.startOf(0), 0);
    EXPECT_EQ(clock.startOf(9), 3750000);
}

TEST(FrameClock, BeforeTheFirstFrameAndFromTheEndOn) {
    const FrameClock clock(25, 1, millisecondPositions(25, 1, 2));
    EXPECT_EQ(clock.frameAt(-1), -1);
    EXPECT_EQ(clock.frameAt(799999), 1);
    EXPECT_EQ(clock.frameAt(800000), 2);
    EXPECT_EQ(clock.frameAt(1LL << 62), 2);
    EXPECT_THROW(clock.startOf(2), std::invalid_argument);
    EXPECT_THROW(clock.startOf(-1), std::invalid_argument);
}

TEST(FrameClock, VariableTimesAreKept) {
    const FrameClock clock(25, 1, {0, 400000, 2000000, 2400000});
    EXPECT_FALSE(clock.isConstant());
    EXPECT_EQ(clock.startOf(2), 2000000);
    EXPECT_EQ(clock.frameAt(1999999), 1);
    EXPECT_EQ(clock.end(), 2800000);
}

TEST(FrameClock, RepeatedTimesStillGiveEveryFrameOneOfItsOwn) {
    const FrameClock clock(25, 1, {0, 5000000, 5000000, 4000000});
    for (long long frame = 0; frame < 4; ++frame)
        EXPECT_EQ(clock.frameAt(clock.startOf(frame)), frame);
}

TEST(FrameClock, RefusesNothingToCount) {
    EXPECT_THROW(FrameClock(25, 1, {}), std::invalid_argument);
    EXPECT_THROW(FrameClock(0, 1, {0}), std::invalid_argument);
    EXPECT_THROW(FrameClock(25, 0, {0}), std::invalid_argument);
}

TEST(VideoSyncer, ToleranceReachesTheFramesLastUnit) {
    VideoSyncer syncer(FrameClock(30000, 1001, millisecondPositions(30000, 1001, 100)));
    for (const LONGLONG time : {0LL, 100000LL, 333666LL, 333667LL, 500000LL}) {
        const LONGLONG last = time + syncer.GetTolerance(time);
        EXPECT_EQ(syncer.GetFrameNumber(last), syncer.GetFrameNumber(time)) << time;
        EXPECT_EQ(syncer.GetFrameNumber(last + 1), syncer.GetFrameNumber(time) + 1) << time;
    }
}

TEST(VideoSyncer, IsReachedThroughTheInterface) {
    VideoSyncer syncer(FrameClock(25, 1, millisecondPositions(25, 1, 10)));
    IVideoTextureSyncer &asHostSees = syncer;
    syncer.setVideoTime(1234567);
    EXPECT_EQ(asHostSees.GetVideoTime(), 1234567);
    EXPECT_EQ(asHostSees.GetFrameNumber(1234567), 3);
    EXPECT_TRUE(asHostSees.IsRefreshAllowed());
    syncer.setRefreshAllowed(false);
    EXPECT_FALSE(asHostSees.IsRefreshAllowed());
    EXPECT_EQ(asHostSees.GetTolerance(-5), 0);
    EXPECT_EQ(asHostSees.GetTolerance(1LL << 60), 0);
}

} // namespace
} // namespace hostkit
