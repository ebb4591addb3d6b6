// SPDX-License-Identifier: MIT
// Operations whose memory runs out: whatever they leave undone, the two vectors of every outline stay equally long.

#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "callback/py_ref.h"
#include "overlay/chain.h"
#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"
#include "overlay/testing/recording_canvas.h"
#include "overlay/types/placement.h"
#include "platform/testing/failing_new.h"

class OrvanelInspector {
  public:
    /// The live outline and every keyframe.
    static void expectEvenChains(const Orvanel &object) {
        EXPECT_EQ(object.m_points.size(), object.m_pointsF.size());
        for (const auto &keyFrame : object.m_keyFrames) {
            EXPECT_EQ(keyFrame.record->points.size(), keyFrame.record->pointsF.size());
            EXPECT_EQ(keyFrame.record->duration, keyFrame.duration);
        }
    }
    static HRESULT insertInto(Orvanel &object, std::int32_t line) {
        return object.AddPointInLine({kHoverLine, CONST_DEFAULT_IDX, line, {kAnchorPoint, 44, 55, 0, 0, 0}});
    }
};

namespace {

constexpr int kMostAllocations = 40;

/// Whether memory ran out.
bool failing(int allocation, const std::function<void()> &act) {
    const platform::FailingNew failing(allocation);
    try {
        act();
    } catch (const std::bad_alloc &) {
        return true;
    }
    return false;
}

constexpr PixelRect kRect = {0, 0, 400, 300};

/// A chain without any room to spare.
struct TightChain {
    explicit TightChain(bool closed) {
        const Chain chain = {points, pointsF, kRect};
        for (int corner = 0; corner < 4; ++corner)
            appendAnchor(chain, 100 * (corner % 2), 60 * corner);
        if (closed)
            closeChain(chain);
        points.shrink_to_fit();
        pointsF.shrink_to_fit();
    }
    std::vector<MPoint> points;
    std::vector<MPointF> pointsF;
};

void expectAllOrNothing(bool closed, const std::function<void(const Chain &)> &act) {
    int failures = 0;
    for (int allocation = 0; allocation < kMostAllocations; ++allocation) {
        TightChain tight(closed);
        const TightChain before = tight;
        tight.points.shrink_to_fit();
        tight.pointsF.shrink_to_fit();
        const bool failed = failing(allocation, [&] { act({tight.points, tight.pointsF, kRect}); });
        failures += failed;
        ASSERT_EQ(tight.points.size(), tight.pointsF.size()) << allocation;
        if (failed) {
            EXPECT_EQ(tight.points, before.points) << allocation;
            EXPECT_EQ(tight.pointsF, before.pointsF) << allocation;
        }
    }
    EXPECT_GT(failures, 0);
    EXPECT_LT(failures, kMostAllocations);
}

TEST(ChainWithoutMemory, AppendsAllOrNothing) {
    for (const bool closed : {false, true})
        expectAllOrNothing(closed, [](const Chain &chain) { appendAnchor(chain, 7, 8); });
}

TEST(ChainWithoutMemory, ClosesAllOrNothing) {
    expectAllOrNothing(false, [](const Chain &chain) { closeChain(chain); });
}

TEST(ChainWithoutMemory, InsertsAllOrNothing) {
    for (const bool closed : {false, true})
        expectAllOrNothing(closed, [](const Chain &chain) { insertPoint(chain, {kAnchorPoint, 30, 40, 0, 0, 0}, 4); });
    const std::vector<Insertion> several(3, {{kAnchorPoint, 30, 40, 0, 0, 0}, 4});
    for (const bool closed : {false, true})
        expectAllOrNothing(closed, [&](const Chain &chain) { insertPoints(chain, several); });
}

TEST(ChainWithoutMemory, RemovesAllOrNothing) {
    expectAllOrNothing(true, [](const Chain &chain) { removeAnchors(chain, {3}); });
    expectAllOrNothing(true, [](const Chain &chain) { reorderAnchors(chain, {2, 0, 1, 3}); });
}

class ObjectWithoutMemory : public testing::Test {
  protected:
    /// An object with a closed outline of four anchors and two keyframes.
    struct Edited {
        Edited() {
            object.SetVideoCoordinate(400, 300, 0, 0, 400, 300);
            object.SetVideoInfo(0, 0, 0, 1000);
            object.PrepareKeyframe(0);
            for (const auto &[x, y] : {std::pair{100, 100}, {200, 100}, {200, 200}, {100, 200}, {100, 100}}) {
                object.Interactive(ECS_MOUSE_DOWN, x, y);
                object.Interactive(ECS_MOUSE_UP);
            }
            object.PrepareKeyframe(10);
            object.CacheCurrentKeyframe();
        }
        Orvanel object;
    };

    static void expectEvenChains(const std::function<void(Orvanel &)> &act) {
        for (int allocation = 0; allocation < kMostAllocations; ++allocation) {
            Edited edited;
            failing(allocation, [&] { act(edited.object); });
            OrvanelInspector::expectEvenChains(edited.object);
            // And it goes on working.
            edited.object.PrepareKeyframe(0);
            OrvanelInspector::insertInto(edited.object, 0);
            edited.object.AddPoint(3, 4);
            OrvanelInspector::expectEvenChains(edited.object);
        }
    }

    RecordingCanvas canvas;
    CanvasForTest registration{&canvas};
};

TEST_F(ObjectWithoutMemory, AddsPoints) {
    expectEvenChains([](Orvanel &object) { object.AddPoint(5, 6); });
    expectEvenChains([](Orvanel &object) { OrvanelInspector::insertInto(object, 3); });
    expectEvenChains([](Orvanel &object) {
        object.ClearPointsAndKeyFrame();
        for (int point = 0; point < 9; ++point)
            object.Interactive(ECS_MOUSE_DOWN, 30 * point, 20 * (point % 3));
    });
}

TEST_F(ObjectWithoutMemory, DeletesPoints) {
    expectEvenChains([](Orvanel &object) {
        object.Interactive(ECS_MOUSE_MOVE, 200, 100);
        object.Interactive(ECS_MOUSE_DOWN, 200, 100);
        object.Interactive(ECS_DELETE);
    });
}

TEST_F(ObjectWithoutMemory, StoresAndShowsKeyframes) {
    Quill::KeyFrameMaskInfo larger;
    larger.duration = 77;
    larger.pointsF.resize(300);
    expectEvenChains([&](Orvanel &object) {
        object.DrawExistKeyFrame(&larger);
        object.PrepareKeyframe(20);
        object.CacheCurrentKeyframe();
        object.Convert2Mask(true);
        delete object.GetKeyFrameMaskInfo(3);
    });
    expectEvenChains([](Orvanel &object) { object.PrepareKeyframe(5); });
}

TEST_F(ObjectWithoutMemory, ShowsARecordWhoseTwoVectorsDiffer) {
    Edited edited;
    Quill::KeyFrameMaskInfo uneven;
    uneven.placement = kRect;
    uneven.maskBuffer.resize(2);
    uneven.points.resize(3);
    uneven.pointsF.resize(12);
    edited.object.DrawExistKeyFrame(&uneven);
    OrvanelInspector::expectEvenChains(edited.object);
}

TEST_F(ObjectWithoutMemory, RestoresASettingOrNothing) {
    const PyRef setting = PyRef::adopt([] {
        Edited saved;
        return saved.object.GetCurrentDevSetting();
    }());
    expectEvenChains([&](Orvanel &object) {
        object.SetDevSetting(setting.get());
        const PyRef again = PyRef::adopt(object.GetCurrentDevSetting());
        EXPECT_TRUE(again.get());
    });
}

} // namespace
