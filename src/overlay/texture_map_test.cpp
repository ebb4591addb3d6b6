// SPDX-License-Identifier: MIT
// Ending a texture map while a renderer refreshes it. A deadlock shows as a test that the runner ends.

#include <chrono>
#include <future>

#include <gtest/gtest.h>

#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"
#include "texture/allocator.h"

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

} // namespace
