// SPDX-License-Identifier: MIT
// The whole object under a renderer at full speed: edited, resized, its map made anew, its syncer closed, uninitialised
// and destroyed, over and over. What reaches the screen has to be one drawing, whole, and never an older one than was
// shown before. ORVANEL_LONG_TESTS=1 runs it for a minute.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <thread>
#include <utility>

#include "callback/py_locks.h"
#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"
#include "stamping_canvas.h"
#include "texture/testing/device_fixture.h"
#include "texture/testing/frame_watch.h"
#include "texture/testing/running_syncer.h"
#include "watchdog.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

class TornOverlay : public DeviceFixture {
  protected:
    static software_d3d9::DeviceOptions poisoning() {
        software_d3d9::DeviceOptions options;
        options.poisonsDiscarded = true;
        return options;
    }
    TornOverlay() : DeviceFixture(poisoning()) {}

    // --- The Python thread, with the interpreter lock held as in every entry ---

    int pick(int least, int greatest) { return std::uniform_int_distribution(least, greatest)(random); }

    /// Another object with a closed outline, a keyframe at time 0 and a map.
    void makeObject() {
        object = std::make_unique<Orvanel>();
        object->SetCallbackFunc(events.callable());
        object->SetVideoInfo(0, 0, 0, std::int64_t{1} << 60);
        setSize();
        object->PrepareKeyframe(0, 0);
        for (const auto &[x, y] : {std::pair{10, 10}, {width - 10, 12}, {width / 2, height - 10}, {10, 10}}) {
            object->Interactive(ECS_MOUSE_MOVE, x, y);
            object->Interactive(ECS_MOUSE_DOWN, x, y);
            object->Interactive(ECS_MOUSE_UP);
        }
        EXPECT_TRUE(object->IsMask());
        createMap();
    }
    void setSize() {
        width = pick(48, 127);
        height = pick(48, 79);
        object->SetVideoCoordinate(width, height, 0, 0, width, height);
    }
    void createMap() {
        EXPECT_EQ(1, object->Create(windowProvider.get(), renderer.get(), syncer.get()));
        watch.show(share(object->GetAllocator()));
    }
    void closeSyncer() {
        object->VideoTextureSyncerClosed();
        syncer = std::make_unique<RunningSyncer>();
        if (pick(0, 1) == 1)
            object->ForceUpdateFrame();
        createMap();
    }
    void replaceObject() {
        if (pick(0, 1) == 1)
            object->Uninitialize();
        object.reset();
        events.take();
        makeObject();
    }
    void drag() {
        object->Interactive(ECS_MOUSE_MOVE, pick(0, width), pick(0, height));
        object->Interactive(ECS_MOUSE_DOWN, pick(0, width), pick(0, height));
        for (int step = 0; step < 3; ++step)
            object->Interactive(ECS_MOUSE_MOVE, pick(0, width), pick(0, height));
        object->Interactive(ECS_MOUSE_UP);
    }

    void step() {
        switch (pick(0, 63)) {
        case 0:
            return replaceObject();
        case 1:
        case 2:
            return createMap();
        case 3:
        case 4:
            return closeSyncer();
        case 5:
        case 6:
            setSize();
            if (pick(0, 3) != 0)
                createMap();
            return;
        case 7:
            object->VideoTextureSyncerClosed();
            return;
        case 8:
            object->CacheCurrentKeyframe();
            return;
        case 9:
            object->SetSizeScaler(static_cast<float>(pick(1, 4)));
            return;
        case 10:
            object->ForceUpdateFrame();
            return;
        case 11:
            object->LockTexture();
            object->PrepareKeyframe(pick(0, 1000), 1);
            object->UnlockTexture();
            return;
        case 12:
            object->SelectAllPoints();
            object->MoveAllPoints(pick(-3, 3), pick(-3, 3));
            return;
        default:
            return drag();
        }
    }

    StampingCanvas::Registration registration;
    std::mt19937 random{20260701};
    int width = 0;
    int height = 0;
    EventList events;
    std::unique_ptr<RunningSyncer> syncer = std::make_unique<RunningSyncer>();
    std::unique_ptr<Orvanel> object;
    FrameWatch watch{*device.get(), StampingCanvas::stamps().last};
};

TEST_F(TornOverlay, EveryFrameIsOneWholeDrawing) {
    const bool isLong = std::getenv("ORVANEL_LONG_TESTS") != nullptr;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(isLong ? 60 : 2);
    makeObject();
    Watchdog watchdog(std::chrono::seconds(60));
    std::atomic<long> &steps = watchdog.enrol("editor");
    std::thread rendering([&] {
        std::atomic<long> &rendered = watchdog.enrol("renderer");
        watch.run(rendered);
        rendered = -1;
    });
    // For the time that was asked for, and until the renderer has seen something on any machine.
    while (std::chrono::steady_clock::now() < end || watch.changes() < 100) {
        step();
        ++steps;
        const PyAllowThreads allowThreads;
        // A lock is not fair to those who wait: an editor who never pauses would keep the renderer out.
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    watch.stop();
    {
        const PyAllowThreads allowThreads;
        rendering.join();
    }
    if (isLong)
        watch.print(steps);
    steps = -1;
    watch.show({});
    object.reset();
    watch.expectNothingWrong();
    EXPECT_EQ(0u, StampingCanvas::stamps().overlaps);
    EXPECT_EQ(0, StampingCanvas::stamps().canvases);
    EXPECT_FALSE(events.take().empty());
}

} // namespace
