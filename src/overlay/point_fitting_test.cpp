// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "callback/py_ref.h"
#include "fitting/border.h"
#include "fitting/testing/drawn_mask.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "overlay/testing/python_environment.h"
#include "overlay/testing/recording_canvas.h"
#include "support/log_recorder.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

using Runs = std::vector<Quill::MaskRunF>;
using Lines = std::vector<std::string>;
using WideLines = std::vector<std::wstring>;

constexpr int kWidth = 200;
constexpr int kHeight = 100;

/// Runs of the rectangle of these columns and rows, the last ones included, in a mask of kWidth x kHeight.
Runs rectangle(int left, int top, int right, int bottom) {
    Runs runs;
    for (int y = top; y <= bottom; ++y)
        runs.push_back({static_cast<float>(left) / kWidth, static_cast<float>(y) / kHeight,
                        static_cast<float>(right - left + 1) / kWidth});
    return runs;
}

Runs disk(double x, double y, double radius) {
    Runs runs;
    for (int row = static_cast<int>(y - radius); row <= static_cast<int>(y + radius); ++row) {
        const double half = std::sqrt(std::max(0.0, radius * radius - (row - y) * (row - y)));
        runs.push_back({static_cast<float>((x - half) / kWidth), static_cast<float>(row) / kHeight,
                        static_cast<float>(2 * half / kWidth)});
    }
    return runs;
}

fitting::Border borderOf(const Runs &runs) {
    return fitting::Border(*fitting::decodeRuns(runs, kWidth, kHeight));
}

/// An object whose display and video are as large as the masks.
class PointFitting : public testing::Test {
  protected:
    PointFitting() {
        std::srand(1);
        object.SetVideoCoordinate(kWidth, kHeight, 0, 0, kWidth, kHeight);
        object.SetVideoInfo(0, 0, 0, 1000);
        object.SetCallbackFunc(events.callable());
    }

    using Places = std::vector<std::pair<int, int>>;

    void draw(const Places &places) {
        for (const auto &[x, y] : places)
            object.AddPoint(x, y);
        object.Interactive(ECS_MOUSE_DOWN, places[0].first, places[0].second);
        object.Interactive(ECS_MOUSE_UP);
        object.ResetDirtyFlag();
        events.take();
        log.clear();
    }

    /// Takes over points as they are, as a host's stored data may hold them.
    void restore(const std::vector<MPointF> &list) {
        const PyRef setting = PyRef::adopt(PyDict_New());
        Py_INCREF(Py_False);
        storeSetting(setting.get(), 0, Py_False);
        storeSetting(setting.get(), 2, buildPointBytes(list));
        object.SetDevSetting(setting.get());
    }

    void fit(const Runs &runs, int width = kWidth, int height = kHeight) {
        const PyRef list = PyRef::adopt(buildRunList(runs));
        const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", width, height));
        const PyRef pair = PyRef::adopt(Py_BuildValue("(ff)", 0.5, 0.5));
        const PyRef result = PyRef::adopt(object.AdjustPoints(pair.get(), list.get(), size.get()));
        EXPECT_EQ(result.get(), Py_None);
        EXPECT_FALSE(PyErr_Occurred());
    }

    std::vector<MPointF> points() {
        std::vector<MPointF> result;
        const PyRef bytes = PyRef::adopt(object.GetCurrentPoints());
        readPointBytes(bytes.get(), result);
        return result;
    }

    /// Anchors in display pixels.
    Places anchors() {
        Places places;
        for (const MPointF &point : points()) {
            if (point.type == kAnchorPoint)
                places.emplace_back(static_cast<int>(point.x * kWidth + 0.5F),
                                    static_cast<int>(point.y * kHeight + 0.5F));
        }
        return places;
    }

    /// Anchor, control, control, over and over.
    void expectClosedLayout() {
        const std::vector<MPointF> all = points();
        EXPECT_EQ(all.size() % 3, 0U);
        for (std::size_t index = 0; index < all.size(); ++index)
            EXPECT_EQ(all[index].type, index % 3 == 0 ? kAnchorPoint : kControlPoint) << index;
        // Pixel points are re-placed from their twins when the video rectangle changes: that must move none of them.
        Quill::KeyFrameMaskInfo *const before = object.GetKeyFrameMaskInfo(0);
        ASSERT_EQ(before->points.size(), all.size());
        for (std::size_t index = 0; index < all.size(); ++index) {
            EXPECT_EQ(before->points[index].type, all[index].type);
            EXPECT_EQ(before->points[index].curveIn, all[index].curveIn);
            EXPECT_EQ(before->points[index].curveOut, all[index].curveOut);
            EXPECT_EQ(before->points[index].x, static_cast<int>(std::floor(all[index].x * kWidth + 0.5F))) << index;
            EXPECT_EQ(before->points[index].y, static_cast<int>(std::floor(all[index].y * kHeight + 0.5F))) << index;
        }
        delete before;
    }

    WideLines wideMessages() {
        WideLines result;
        for (const std::wstring &line : log.wideLines())
            result.push_back(line.substr(10, line.size() - 11));
        return result;
    }

    LogRecorder log;
    RecordingCanvas canvas;
    CanvasForTest registration{&canvas};
    EventList events;
    Orvanel object;
};

const std::vector<std::pair<int, int>> kTriangle = {{60, 20}, {140, 50}, {60, 80}};
// Distances between neighbours stay below 14, the gap that gets an anchor.
const std::vector<std::pair<int, int>> kOnSquare = {{50, 40}, {60, 40}, {70, 40}, {70, 50},
                                                    {70, 60}, {60, 60}, {50, 60}, {50, 50}};
const Runs kSquare = rectangle(50, 40, 70, 60);

TEST_F(PointFitting, AnEmptyRunListOnlyConvertsTheOutline) {
    draw(kTriangle);
    const std::vector<MPointF> before = points();
    fit({});
    EXPECT_EQ(points(), before);
    EXPECT_TRUE(object.IsDirty());
    EXPECT_EQ(
        log.messages(),
        (Lines{"Orvanel::AdjustPoints() enter\n", "Orvanel::Convert2Mask() enter\n",
               "[Convert2Mask] MaskDataLen=0(short), BufferSize=(200,100)", "Orvanel::CacheCurrentKeyframe() enter\n",
               "Orvanel::UpdateKeyFrameInCurrent duration=-1", "Orvanel::CacheCurrentKeyframe() end\n",
               "Orvanel::Convert2Mask() end\n", "Orvanel::AdjustPoints() end\n"}));
    EXPECT_EQ(wideMessages(), WideLines{});
    EXPECT_EQ(events.take(), std::vector<int>{});
}

TEST_F(PointFitting, AMaskWithoutPixelsOnlyConvertsTheOutline) {
    draw(kTriangle);
    const std::vector<MPointF> before = points();
    fit({{0.5F, 2, 0.25F}});
    fit({{0.5F, 0.5F, 0}});
    fit(kSquare, 0, 100);
    fit(kSquare, 200, 0);
    fit(kSquare, -200, 100);
    fit(kSquare, -200, -100);
    fit(kSquare, 1 << 30, 1 << 30);
    EXPECT_EQ(points(), before);
    EXPECT_EQ(wideMessages(), WideLines{});
}

TEST_F(PointFitting, AnchorsOnTheBorderOfARectangleSkipTheBoundingBox) {
    draw(kOnSquare);
    const auto before = anchors();
    fit(kSquare);
    EXPECT_EQ(anchors(), before);
    EXPECT_EQ(wideMessages(), (WideLines{L"Orvanel::FindTargetPointsFromMask (60, 50) - (60, 50) = (0, 0)",
                                         L"Orvanel::FindTargetPointsFromMask skip bounding box finding"}));
    EXPECT_EQ(events.take(), std::vector<int>{});
    expectClosedLayout();
}

TEST_F(PointFitting, AnchorsFarApartGetOneMoreNearTheMiddle) {
    // On the border of a wide rectangle: neighbours are 15 or more apart along it, and 14 is the gap's limit.
    draw({{20, 20}, {120, 20}, {120, 34}, {20, 34}});
    fit(rectangle(20, 20, 120, 34));
    const auto fitted = anchors();
    ASSERT_EQ(fitted.size(), 6U);
    EXPECT_EQ((Places{fitted[0], fitted[2], fitted[3], fitted[5]}), (Places{{20, 20}, {120, 20}, {120, 34}, {20, 34}}));
    // Among the five border pixels nearest to the middles (70, 20) and (70, 34).
    EXPECT_LE(std::hypot(fitted[1].first - 70, fitted[1].second - 20), 1.5);
    EXPECT_LE(std::hypot(fitted[4].first - 70, fitted[4].second - 34), 1.5);
    expectClosedLayout();
}

TEST_F(PointFitting, TheClosingGapIsFilledAtTheEnd) {
    draw({{20, 20}, {30, 20}, {40, 20}, {40, 30}, {40, 40}, {40, 50}, {40, 59}});
    fit(rectangle(20, 20, 40, 60));
    const auto fitted = anchors();
    ASSERT_EQ(fitted.size(), 8U);
    // The border has no pixels around (30, 39): the nearest ones lie left and right of it.
    EXPECT_GE(std::abs(fitted[7].first - 30), 9);
    EXPECT_NEAR(fitted[7].second, 39, 3);
    expectClosedLayout();
}

TEST_F(PointFitting, AGapOfExactlyTheLimitStays) {
    // Of a mask of 50 x 50 the limit is 7 pixels; one of them is four display pixels wide and two high.
    for (const int columns : {7, 8}) {
        object.DeleteAllPoints();
        const int right = 80 + 4 * columns;
        draw({{80, 40}, {right, 40}, {right, 54}, {80, 54}});
        Runs runs;
        for (int y = 20; y <= 27; ++y)
            runs.push_back({20.0F / 50, static_cast<float>(y) / 50, static_cast<float>(columns + 1) / 50});
        fit(runs, 50, 50);
        EXPECT_EQ(anchors().size(), columns == 7 ? 4U : 6U);
    }
}

TEST_F(PointFitting, ARunInTheLastRowThatReachesTheRightEdgeIsNotPartOfTheMask) {
    draw(kTriangle);
    Runs runs = rectangle(190, 98, 199, 99);
    fit(runs);
    // Of the two rows only the upper one counts: its mean is (194, 98).
    ASSERT_FALSE(wideMessages().empty());
    EXPECT_EQ(wideMessages()[0], L"Orvanel::FindTargetPointsFromMask (194, 98) - (194, 98) = (0, 0)");
}

TEST_F(PointFitting, EveryLineOfAWholeFitInOrder) {
    draw({{50, 30}, {60, 24}, {70, 30}, {75, 50}, {60, 75}, {50, 60}});
    fit(disk(60, 50, 30));
    const Lines narrow = log.messages();
    ASSERT_EQ(narrow.size(), 10U);
    EXPECT_EQ((Lines{narrow[0], narrow[1], narrow[2], narrow[3], narrow[9]}),
              (Lines{"Orvanel::AdjustPoints() enter\n", "Orvanel::FindTargetPointsFromMask_IntersecRemoval() enter\n",
                     "Orvanel::FindTargetPointsFromMask_IntersecRemoval() end\n", "Orvanel::Convert2Mask() enter\n",
                     "Orvanel::AdjustPoints() end\n"}));
    EXPECT_EQ(wideMessages(), (WideLines{L"Orvanel::FindTargetPointsFromMask (59, 50) - (59, 50) = (0, 0)",
                                         L"Orvanel::FindTargetPointsFromMask_IntersecRemoval Ordered",
                                         L"Orvanel::FindTargetPointsFromMask 6 points not on border"}));
    expectClosedLayout();
}

TEST_F(PointFitting, ExtremePointsAreAddedAndAnnounced) {
    draw({{55, 45}, {65, 45}, {65, 55}, {55, 55}});
    fit(rectangle(50, 40, 70, 60));
    // Top, left, right and bottom come in every case; a rectangle's corners are among them or beside them.
    const auto fitted = anchors();
    const fitting::ExtremeTable extremes = fitting::findExtremes(borderOf(kSquare).pixels());
    for (const std::size_t entry : {2U, 4U, 6U, 8U})
        EXPECT_NE(std::count(fitted.begin(), fitted.end(), std::pair(extremes[entry].x, extremes[entry].y)), 0)
            << entry;
    const std::vector<int> announced = events.take();
    EXPECT_GE(announced.size(), 4U);
    EXPECT_LE(announced.size(), 8U);
    EXPECT_EQ(announced, std::vector<int>(announced.size(), ECB_POINT_ADD));
    expectClosedLayout();
}

TEST_F(PointFitting, ThreeAnchorsWithoutLongGapsGetNoExtremePoints) {
    draw({{60, 45}, {66, 50}, {60, 54}});
    fit(rectangle(58, 46, 62, 52));
    EXPECT_EQ(anchors().size(), 3U);
    EXPECT_EQ(wideMessages().back(), L"Orvanel::FindTargetPointsFromMask skip bounding box finding");
}

TEST_F(PointFitting, EveryAnchorEndsOnTheBorder) {
    const Runs runs = disk(100, 50, 38);
    const fitting::Border border = borderOf(runs);
    for (unsigned seed = 0; seed < 20; ++seed) {
        object.DeleteAllPoints();
        draw({{70, 30}, {100, 5}, {150, 20}, {130, 60}, {100, 99}, {40, 70}});
        std::srand(seed);
        fit(runs);
        for (const auto &[x, y] : anchors())
            EXPECT_TRUE(border.contains({x, y})) << x << ", " << y << ", seed " << seed;
        expectClosedLayout();
    }
}

TEST_F(PointFitting, AnchorsGoRoundTheBorder) {
    draw({{70, 30}, {130, 20}, {130, 60}, {60, 70}});
    fit(disk(100, 50, 38));
    // Round a disk's centre the angles only grow, but for the one step over the end of their range.
    const auto fitted = anchors();
    int wraps = 0;
    for (std::size_t index = 0; index < fitted.size(); ++index) {
        const auto angle = [](const std::pair<int, int> &place) {
            return std::atan2(place.second - 50.0, place.first - 100.0);
        };
        // Pixels of the band beside one another may be as much as a pixel out of order.
        wraps += angle(fitted[(index + 1) % fitted.size()]) < angle(fitted[index]) - 0.06 ? 1 : 0;
    }
    EXPECT_EQ(wraps, 1);
}

TEST_F(PointFitting, TheSameSeedGivesTheSameFit) {
    std::vector<std::vector<MPointF>> fits;
    for (const unsigned seed : {5U, 5U, 6U}) {
        object.DeleteAllPoints();
        draw({{70, 30}, {130, 20}, {130, 60}, {60, 70}});
        std::srand(seed);
        fit(disk(100, 50, 38));
        fits.push_back(points());
    }
    EXPECT_EQ(fits[0], fits[1]);
    EXPECT_NE(fits[0], fits[2]);
}

TEST_F(PointFitting, StraightSegmentsStayStraightAndBentOnesKeepTheirHandles) {
    draw({{20, 10}, {180, 10}, {180, 90}, {20, 90}});
    // Bend the segment from the first anchor to the second: its leaving handle goes down by ten.
    object.Interactive(ECS_MOUSE_MOVE, 20, 10);
    object.Interactive(ECS_MOUSE_DOWN, 20, 10);
    object.Interactive(ECS_MOUSE_UP);
    object.Interactive(ECS_MOUSE_MOVE, 60, 10);
    object.Interactive(ECS_MOUSE_DOWN, 60, 10);
    object.Interactive(ECS_MOUSE_MOVE, 60, 20);
    object.Interactive(ECS_MOUSE_UP);
    ASSERT_EQ(points()[0].curveOut, 1U);
    fit(rectangle(20, 10, 180, 90)); // on whose border every anchor lies: the order stays
    const std::vector<MPointF> fitted = points();
    EXPECT_TRUE(std::any_of(fitted.begin(), fitted.end(), [](const MPointF &point) { return point.curveOut != 0; }));
    expectClosedLayout();
    const std::vector<MPointF> all = points();
    for (std::size_t index = 0; index < all.size(); index += 3) {
        if (all[index].curveOut != 0)
            continue;
        const MPointF &next = all[(index + 3) % all.size()];
        const auto pixel = [](float value, int extent) {
            return static_cast<int>(std::floor(value * static_cast<float>(extent) + 0.5F));
        };
        const int x = pixel(all[index].x, kWidth);
        const int y = pixel(all[index].y, kHeight);
        // Measured from either end, so a pixel off at most.
        EXPECT_NEAR(pixel(all[index + 1].x, kWidth), x + (pixel(next.x, kWidth) - x) * 0.25, 1);
        EXPECT_NEAR(pixel(all[index + 1].y, kHeight), y + (pixel(next.y, kHeight) - y) * 0.25, 1);
        EXPECT_NEAR(pixel(all[index + 2].x, kWidth), x + (pixel(next.x, kWidth) - x) * 0.75, 1);
        EXPECT_NEAR(pixel(all[index + 2].y, kHeight), y + (pixel(next.y, kHeight) - y) * 0.75, 1);
    }
}

TEST_F(PointFitting, AnOpenOutlineIsClosed) {
    for (const auto &[x, y] : {std::pair{60, 20}, {140, 20}, {140, 80}, {60, 80}})
        object.AddPoint(x, y);
    ASSERT_EQ(points().size(), 10U);
    fit(disk(100, 50, 30));
    expectClosedLayout();
    EXPECT_TRUE(object.IsMask());
    EXPECT_EQ(object.Convert2Mask(false), S_OK);
}

TEST_F(PointFitting, OutlinesOfNoneOneAndTwoAnchors) {
    fit(kSquare);
    EXPECT_TRUE(points().empty());
    object.AddPoint(10, 10);
    fit(kSquare);
    ASSERT_EQ(points().size(), 1U);
    EXPECT_TRUE(borderOf(kSquare).contains({anchors()[0].first, anchors()[0].second}));
    object.AddPoint(110, 90);
    fit(kSquare);
    expectClosedLayout();
    EXPECT_GE(points().size(), 6U);
}

TEST_F(PointFitting, TheFitIsTheKeyframeOfThePresentPosition) {
    object.PrepareKeyframe(40);
    draw(kTriangle);
    fit(disk(100, 50, 30));
    const PyRef times = PyRef::adopt(object.GetKeyFrameDurationList());
    ASSERT_EQ(PyList_GET_SIZE(times.get()), 1);
    const std::vector<MPointF> fitted = points();
    object.PrepareKeyframe(41);
    object.PrepareKeyframe(40);
    EXPECT_EQ(points(), fitted);
}

TEST_F(PointFitting, WithoutACanvasNothingIsAnnounced) {
    const CanvasForTest none(nullptr);
    Orvanel bare;
    EventList silent;
    bare.SetCallbackFunc(silent.callable());
    bare.SetVideoCoordinate(kWidth, kHeight, 0, 0, kWidth, kHeight);
    for (const auto &[x, y] : {std::pair{60, 20}, {140, 20}, {140, 80}, {60, 80}})
        bare.AddPoint(x, y);
    const PyRef list = PyRef::adopt(buildRunList(disk(100, 50, 30)));
    const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", kWidth, kHeight));
    const PyRef result = PyRef::adopt(bare.AdjustPoints(size.get(), list.get(), size.get()));
    EXPECT_EQ(silent.take(), std::vector<int>{});
    EXPECT_TRUE(bare.IsMask());
}

TEST_F(PointFitting, WithoutAVideoRectangleNoAnchorIsFoundAgain) {
    draw({{60, 20}, {140, 20}, {140, 80}, {60, 80}});
    object.SetVideoCoordinate(kWidth, kHeight, 0, 0, 0, 0);
    log.clear();
    fit(disk(100, 50, 30));
    EXPECT_EQ(wideMessages()[1], L"Orvanel::FindTargetPointsFromMask_IntersecRemoval Some Points missed");
    EXPECT_EQ(points().size() % 3, 0U);
}

TEST_F(PointFitting, MoreAnchorsThanThePointsHaveRoomForAreRefused) {
    // Ten anchors and not one control point between them.
    std::vector<MPointF> list;
    for (int number = 0; number < 10; ++number)
        list.push_back({kAnchorPoint, 0.1F * static_cast<float>(number),
                        0.05F * static_cast<float>(number * number % 17), 0, 0, 0});
    restore(list);
    log.clear();
    fit(disk(100, 50, 8));
    EXPECT_EQ(wideMessages()[1], L"Orvanel::FindTargetPointsFromMask_IntersecRemoval Impossible,+ redundant points");
    const Lines narrow = log.messages();
    EXPECT_EQ(std::count(narrow.begin(), narrow.end(), "Orvanel::FindTargetPointsFromMask_IntersecRemoval() enter\n"),
              1);
    EXPECT_EQ(std::count(narrow.begin(), narrow.end(), "Orvanel::FindTargetPointsFromMask_IntersecRemoval() end\n"), 0);
}

TEST_F(PointFitting, PlacesThatAreNoNumbersAreFitted) {
    std::vector<MPointF> list;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    for (const auto &[x, y] : {std::pair{nan, nan}, {infinity, 0.5F}, {0.5F, -infinity}, {1e30F, -1e30F}}) {
        list.push_back({kAnchorPoint, x, y, 0, 0, 0});
        list.push_back({kControlPoint, x, nan, 0, 0, 0});
        list.push_back({kControlPoint, nan, y, 0, 0, 0});
    }
    restore(list);
    const Runs runs = disk(100, 50, 30);
    fit(runs);
    for (const auto &[x, y] : anchors())
        EXPECT_TRUE(borderOf(runs).contains({x, y})) << x << ", " << y;
    expectClosedLayout();
}

TEST_F(PointFitting, NanAndInfiniteRunsAreNotPartOfTheMask) {
    draw(kTriangle);
    Runs runs = kSquare;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float value : {nan, std::numeric_limits<float>::infinity(), 1e38F, -1e38F}) {
        runs.push_back({value, 0.5F, 0.5F});
        runs.push_back({0.5F, value, 0.5F});
        runs.push_back({0.5F, 0.5F, value});
    }
    fit(runs);
    EXPECT_EQ(wideMessages()[0], L"Orvanel::FindTargetPointsFromMask (60, 50) - (60, 50) = (0, 0)");
    expectClosedLayout();
}

TEST_F(PointFitting, AFitThatMovesNoAnchorLeavesTheHandles) {
    // Anchors on the border and near one another; handles finer than a pixel, bent ones and straight ones that do not
    // stand at the quarters of their segment.
    std::vector<MPointF> list;
    for (const auto &[x, y] : Places{{50, 40}, {60, 40}, {60, 50}, {50, 50}}) {
        const bool bent = x == 50;
        const auto flag = static_cast<std::uint32_t>(bent);
        list.push_back({kAnchorPoint, static_cast<float>(x) / kWidth, static_cast<float>(y) / kHeight, flag, flag, 0});
        list.push_back({kControlPoint, 0.2513F, 0.4517F, 0, 0, 0});
        list.push_back({kControlPoint, 0.2971F, 0.4339F, 0, 0, 0});
    }
    restore(list);
    fit(rectangle(50, 40, 60, 50));
    const std::vector<MPointF> fitted = points();
    ASSERT_EQ(fitted.size(), list.size());
    for (std::size_t index = 0; index < list.size(); ++index)
        EXPECT_TRUE(fitted[index] == list[index]) << index;
}

} // namespace
