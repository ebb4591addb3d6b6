// SPDX-License-Identifier: MIT
// Ending a texture map while a renderer refreshes it, its own or another object's. A deadlock shows as a test that the
// runner ends.

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"
#include "platform/event.h"
#include "texture/allocator.h"
#include "texture/testing/rendezvous.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

class IdleSyncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override { return 0; }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 0; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG) override { return 0; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return true; }
};

class TextureMapUnderLock : public testing::Test {
  protected:
    TextureMapUnderLock() {
        object.SetVideoCoordinate(64, 32, 0, 0, 64, 32);
        EXPECT_EQ(1, object.Create(nullptr, nullptr, &syncer));
    }
    /// A host locked the texture; its renderer waits for the lock in the middle of a refresh.
    std::future<UINT> lockAndRefresh() {
        object.LockTexture();
        loom::IAllocator *const map = object.GetAllocator();
        map->AddRef();
        auto refresh = std::async(std::launch::async, [map] {
            const UINT counter = map->UpdateCounter();
            map->Release();
            return counter;
        });
        EXPECT_EQ(std::future_status::timeout, refresh.wait_for(std::chrono::milliseconds(30)));
        return refresh;
    }

    Orvanel object;
    IdleSyncer syncer;
};

TEST_F(TextureMapUnderLock, CreateReplacesTheMap) {
    auto refresh = lockAndRefresh();
    EXPECT_EQ(1, object.Create(nullptr, nullptr, &syncer));
    EXPECT_EQ(0u, refresh.get());
    object.UnlockTexture();
    // Without a canvas there is no picture; the new map gets the lock all the same.
    EXPECT_EQ(0u, object.GetAllocator()->UpdateCounter());
}

TEST_F(TextureMapUnderLock, SyncerCloses) {
    auto refresh = lockAndRefresh();
    object.VideoTextureSyncerClosed();
    object.UnlockTexture();
    EXPECT_EQ(0u, refresh.get());
}

TEST_F(TextureMapUnderLock, UninitializeEndsTheMap) {
    auto refresh = lockAndRefresh();
    EXPECT_EQ(0, object.Uninitialize());
    EXPECT_EQ(0u, refresh.get());
    EXPECT_EQ(nullptr, object.GetAllocator());
    object.UnlockTexture();
}

// --- Two objects and the one event that their maps share by name ---

/// Can hold a refresh in the middle.
class HoldingSyncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override {
        if (isHolding.exchange(false))
            held.arriveAndWait();
        return ++m_time;
    }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 0; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG time) override { return time; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return true; }

    std::atomic<bool> isHolding{false};
    Rendezvous held;

  private:
    std::atomic<LONGLONG> m_time{0};
};

/// An object with a map of its own and a renderer that refreshes it.
struct Shown {
    Shown() {
        object.SetVideoCoordinate(64, 32, 0, 0, 64, 32);
        create();
    }
    void create() { EXPECT_EQ(1, object.Create(nullptr, nullptr, &syncer)); }
    /// One refresh on a thread of its own.
    std::future<void> refresh() {
        loom::IAllocator *const map = object.GetAllocator();
        map->AddRef();
        return std::async(std::launch::async, [map] {
            map->UpdateCounter();
            map->Release();
        });
    }
    /// Everything that waits for refreshes of this object.
    void endInEveryWay() {
        create();
        refresh().get();
        object.VideoTextureSyncerClosed();
        create();
        refresh().get();
        object.Uninitialize();
    }

    HoldingSyncer syncer;
    Orvanel object;
};

TEST(TwoObjects, OneWhoseRefreshHangsHoldsTheOtherUpInNothing) {
    platform::Event event("PyMapWrapper_UpdateEvt", platform::Event::Reset::Manual, true);
    auto hanging = std::make_unique<Shown>();
    hanging->syncer.isHolding = true;
    auto refresh = hanging->refresh();
    hanging->syncer.held.waitForArrival();
    EXPECT_FALSE(event.isSignalled());
    Shown().endInEveryWay();
    // The other one's refreshes have set the event, but this object's has not ended: it is still waited for.
    EXPECT_TRUE(event.isSignalled());
    auto ending = std::async(std::launch::async, [&] { hanging->object.Uninitialize(); });
    EXPECT_TRUE(isStillRunning(ending));
    hanging->syncer.held.release();
    ending.get();
    refresh.get();
    EXPECT_TRUE(event.isSignalled());
}

TEST(TwoObjects, BothEndMapsWhileBothAreRefreshedAtFullSpeed) {
    const auto renderAndRecreate = [] {
        Shown shown;
        for (int round = 0; round < 50; ++round) {
            loom::IAllocator *const map = shown.object.GetAllocator();
            map->AddRef();
            std::atomic<bool> done{false};
            std::thread renderer([&] {
                while (!done)
                    map->UpdateCounter();
                map->Release();
            });
            shown.object.ForceUpdateFrame();
            shown.create();
            if (round % 2 == 0)
                shown.object.VideoTextureSyncerClosed();
            done = true;
            renderer.join();
        }
        shown.object.Uninitialize();
    };
    auto first = std::async(std::launch::async, renderAndRecreate);
    renderAndRecreate();
    first.get();
}

} // namespace
