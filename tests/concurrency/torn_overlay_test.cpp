// SPDX-License-Identifier: MIT
// The whole object under a renderer at full speed: edited, resized, its map made anew, its syncer closed, uninitialised
// and destroyed, over and over. What reaches the screen has to be one drawing, whole, and never an older one than was
// shown before. ORVANEL_LONG_TESTS=1 runs it for a minute.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <utility>

#include "callback/py_locks.h"
#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"
#include "stamping_canvas.h"
#include "texture/testing/device_fixture.h"
#include "watchdog.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

using MapPointer = platform::ComPointer<loom::IAllocator>;

MapPointer share(loom::IAllocator *map) {
    if (map)
        map->AddRef();
    return MapPointer(map);
}

/// 25 frames a second in milliseconds, twice for each frame. Wants the interpreter lock now and then, as one that is
/// written in Python would, and says no now and then.
class RunningSyncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override {
        const LONGLONG asked = ++m_asked;
        if (asked % 16 == 0)
            const PyGILGuard interpreter;
        return asked * 20;
    }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 39; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG time) override { return time / 40; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return m_asked % 7 != 0; }

  private:
    std::atomic<LONGLONG> m_asked{0};
};

/// Where the Python thread leaves the map for the renderer.
class MapSlot {
  public:
    void put(MapPointer map) {
        const std::lock_guard lock(m_mutex);
        std::swap(m_map, map);
    }
    MapPointer get() const {
        const std::lock_guard lock(m_mutex);
        return share(m_map.get());
    }

  private:
    mutable std::mutex m_mutex;
    MapPointer m_map;
};

class TornOverlay : public DeviceFixture {
  protected:
    static software_d3d9::DeviceOptions poisoning() {
        software_d3d9::DeviceOptions options;
        options.poisonsDiscarded = true;
        return options;
    }
    TornOverlay() : DeviceFixture(poisoning()) {}

    // --- The renderer ---

    void render(std::atomic<long> &steps) {
        const loom::IAllocator *last = nullptr;
        std::uint32_t lastNumber = 0;
        MapPointer kept;
        for (; !done; ++steps) {
            const MapPointer current = slot.get();
            if (!current)
                continue;
            if (current.get() != last) {
                // A map that the object has let go of, as it waits in a host's queue of frames.
                if (kept)
                    kept->UpdateCounter();
                kept = share(current.get());
                last = current.get();
                lastNumber = 0;
            }
            current->UpdateCounter();
            if (current->BindToStage(0) == S_OK)
                lastNumber = look(*device->boundPicture(0), lastNumber);
        }
        device->SetTexture(0, nullptr);
    }

    /// The number of the drawing that is shown; 0 is what a texture starts with.
    std::uint32_t look(const software_d3d9::Picture &shown, std::uint32_t lastNumber) {
        std::uint32_t number = 0;
        std::memcpy(&number, shown.bits, sizeof number);
        for (std::uint32_t y = 0; y < shown.height; ++y)
            for (std::uint32_t x = 0; x < shown.width; ++x) {
                std::uint32_t pixel = 0;
                std::memcpy(&pixel, shown.row(y) + x * 4, sizeof pixel);
                torn += pixel != number;
            }
        unfinished += (number & StampingCanvas::kCleared) != 0;
        number &= ~StampingCanvas::kCleared;
        backward += number < lastNumber;
        invented += number > StampingCanvas::stamps().last;
        changes += number != lastNumber;
        ++frames;
        return number;
    }

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
        slot.put(share(object->GetAllocator()));
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
    MapSlot slot;
    std::atomic<bool> done{false};
    std::atomic<std::uint64_t> frames{0};
    std::atomic<std::uint64_t> changes{0};
    std::atomic<std::uint64_t> torn{0};       ///< pixels of another drawing than their picture's first
    std::atomic<std::uint64_t> unfinished{0}; ///< frames that were cleared and not drawn
    std::atomic<std::uint64_t> backward{0};   ///< frames older than the one before
    std::atomic<std::uint64_t> invented{0};   ///< frames that nobody has drawn yet
};

TEST_F(TornOverlay, EveryFrameIsOneWholeDrawing) {
    const bool isLong = std::getenv("ORVANEL_LONG_TESTS") != nullptr;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(isLong ? 60 : 2);
    makeObject();
    Watchdog watchdog(std::chrono::seconds(60));
    std::atomic<long> &steps = watchdog.enrol("editor");
    std::thread rendering([&] {
        std::atomic<long> &rendered = watchdog.enrol("renderer");
        render(rendered);
        rendered = -1;
    });
    // For the time that was asked for, and until the renderer has seen something on any machine.
    while (std::chrono::steady_clock::now() < end || changes < 100) {
        step();
        ++steps;
        const PyAllowThreads allowThreads;
        // A lock is not fair to those who wait: an editor who never pauses would keep the renderer out.
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    done = true;
    {
        const PyAllowThreads allowThreads;
        rendering.join();
    }
    if (isLong)
        std::printf("%ld steps, %llu frames, %llu changes seen\n", steps.load(),
                    static_cast<unsigned long long>(frames.load()), static_cast<unsigned long long>(changes.load()));
    steps = -1;
    slot.put({});
    object.reset();
    EXPECT_EQ(0u, torn) << "of the pixels in " << frames << " frames";
    EXPECT_EQ(0u, unfinished) << "of " << frames << " frames";
    EXPECT_EQ(0u, backward);
    EXPECT_EQ(0u, invented);
    EXPECT_EQ(0u, StampingCanvas::stamps().overlaps);
    EXPECT_EQ(0, StampingCanvas::stamps().canvases);
    EXPECT_FALSE(events.take().empty());
}

} // namespace
