// SPDX-License-Identifier: MIT
// Keyframe records at their limits: sizes that do not fit 16 bits, keyframes of one and the same time.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "callback/py_ref.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "overlay/testing/python_environment.h"
#include "overlay/testing/recording_canvas.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

class KeyframeRecord : public testing::Test {
  protected:
    KeyframeRecord() { object.SetVideoCoordinate(200, 100, 0, 0, 200, 100); }

    std::vector<MPointF> shown() {
        std::vector<MPointF> result;
        const PyRef bytes = PyRef::adopt(object.GetCurrentPoints());
        readPointBytes(bytes.get(), result);
        return result;
    }

    /// Three points; those of the second kind differ from the first kind's in the x of one.
    static Quill::KeyFrameMaskInfo record(std::int64_t duration, float middle) {
        Quill::KeyFrameMaskInfo made;
        made.duration = duration;
        made.pointsF = {{kAnchorPoint, 0.25F, 0.5F, 0, 0, 0},
                        {kControlPoint, middle, 0.5F, 0, 0, 0},
                        {kControlPoint, 0.75F, 0.25F, 0, 0, 0}};
        return made;
    }

    RecordingCanvas canvas;
    CanvasForTest registration{&canvas};
    Orvanel object;
};

TEST_F(KeyframeRecord, SizeOfTheDisplayIsCutTo16Bits) {
    object.SetVideoCoordinate(65536 + 7, 2 * 65536 + 3, 0, 0, 10, 10);
    const std::unique_ptr<Quill::KeyFrameMaskInfo> filled(object.GetKeyFrameMaskInfo(1));
    EXPECT_EQ(filled->maskWidth, 7);
    EXPECT_EQ(filled->maskHeight, 3);
    Quill::KeyFrameMaskInfo placed = record(1, 0.5F);
    object.UpdateKeyFrameInSize(&placed);
    EXPECT_EQ(placed.maskWidth, 7);
    EXPECT_EQ(placed.maskHeight, 3);
    object.SetVideoCoordinate(65536, 65535, 0, 0, 10, 11);
    object.UpdateKeyFrameInSize(&placed);
    EXPECT_EQ(placed.maskWidth, 0);
    EXPECT_EQ(placed.maskHeight, 65535);
}

TEST_F(KeyframeRecord, BetweenEqualTimesTheSecondIsTheEarlierAndTheDivisionIsCarriedOut) {
    Quill::KeyFrameMaskInfo first = record(10, 0.5F);
    Quill::KeyFrameMaskInfo second = record(10, 0.25F);
    second.pointsF[2].curveIn = 1;
    for (const std::int64_t duration : {std::int64_t{20}, std::int64_t{0}}) {
        EXPECT_EQ(object.DrawSpecificKeyFrame(&first, &second, duration), 0);
        const std::vector<MPointF> points = shown();
        ASSERT_EQ(points.size(), 3U);
        EXPECT_EQ(points[0], second.pointsF[0]) << "the same in both: copied";
        EXPECT_EQ(points[2], second.pointsF[2]) << "flags are the earlier one's";
        // From 0.25 to 0.5 in no time.
        EXPECT_TRUE(std::isinf(points[1].x)) << points[1].x;
        EXPECT_EQ(points[1].x > 0, duration > 10);
        // No distance by an infinite factor.
        EXPECT_TRUE(std::isnan(points[1].y)) << points[1].y;
    }
}

TEST_F(KeyframeRecord, AtTheVeryTimeOfTwoThatAreEqualNoughtIsDividedByNought) {
    Quill::KeyFrameMaskInfo first = record(10, 0.5F);
    Quill::KeyFrameMaskInfo second = record(10, 0.25F);
    EXPECT_EQ(object.DrawSpecificKeyFrame(&first, &second, 10), 0);
    const std::vector<MPointF> points = shown();
    ASSERT_EQ(points.size(), 3U);
    EXPECT_EQ(points[0], second.pointsF[0]);
    EXPECT_TRUE(std::isnan(points[1].x));
    EXPECT_TRUE(std::isnan(points[1].y));
    EXPECT_TRUE(object.IsMask());
    EXPECT_TRUE(object.IsDirty());
}

} // namespace
