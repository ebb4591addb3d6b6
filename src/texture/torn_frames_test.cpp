// SPDX-License-Identifier: MIT
// A renderer at full speed against a host that edits, resizes, makes maps anew, closes its syncer and destroys the
// overlay.
//
// Every picture that the overlay draws carries one number in all of its pixels. The renderer reads each frame back: all
// pixels must carry the same number, a number never goes back within one map, and none was drawn after the frame.
// ORVANEL_LONG_TESTS=1 makes a minute of it.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "callback/py_locks.h"
#include "platform/reentrant_lock.h"
#include "texture/py_map_wrapper.h"
#include "texture/testing/device_fixture.h"
#include "texture/testing/frame_watch.h"
#include "texture/testing/running_syncer.h"

namespace {

/// An overlay whose pictures carry numbers.
class NumberedOverlay final : public OverlaySource {
  public:
    explicit NumberedOverlay(std::atomic<std::uint32_t> &numbers) : m_numbers(numbers) {}

    void lockTexture() override { m_lock.lock(); }
    bool tryLockTexture(std::uint32_t milliseconds) override {
        return m_lock.try_lock_for(std::chrono::milliseconds(milliseconds));
    }
    void unlockTexture() override { m_lock.unlock(); }
    bool isVisible() const override { return true; }
    bool isPreviewMode() const override { return false; }
    UINT bufferLength() const override { return static_cast<UINT>(m_picture.size() * 4); }
    bool isDirty() const override { return m_dirty; }
    void resetDirtyFlag() override { m_dirty = false; }
    LONGLONG closestKeyFramePosition(LONGLONG duration, IVideoTextureSyncer *syncer) const override {
        return syncer->GetFrameNumber(duration);
    }
    const BYTE *prepareKeyframe(LONGLONG, bool) override { return reinterpret_cast<const BYTE *>(m_picture.data()); }

    /// What an edit does: draws the next picture, pixel by pixel, under the lock.
    void edit() {
        const std::lock_guard lock(m_lock);
        draw();
    }
    void resize(UINT width, UINT height) {
        const std::lock_guard lock(m_lock);
        m_picture.assign(std::size_t{width} * height, 0);
        m_picture.shrink_to_fit();
        draw();
    }

  private:
    void draw() {
        const std::uint32_t number = ++m_numbers;
        for (std::uint32_t &pixel : m_picture)
            pixel = number;
        m_dirty = true;
    }

    std::atomic<std::uint32_t> &m_numbers;
    platform::ReentrantLock m_lock;
    std::vector<std::uint32_t> m_picture; ///< guarded by m_lock
    std::atomic<bool> m_dirty{false};
};

class TornFrames : public DeviceFixture {
  protected:
    static software_d3d9::DeviceOptions poisoning() {
        software_d3d9::DeviceOptions options;
        options.poisonsDiscarded = true;
        return options;
    }
    TornFrames() : DeviceFixture(poisoning()) {}

    // --- The host's Python side ---

    UINT pick(UINT lowest, UINT highest) { return std::uniform_int_distribution<UINT>(lowest, highest)(random); }

    void createMap() {
        const UINT width = pick(8, 127);
        const UINT height = pick(8, 67);
        overlay->resize(width, height);
        endMap();
        auto fresh = makeMap<PyMapWrapper>();
        EXPECT_EQ(1, fresh->Create(width, height, windowProvider.get(), renderer.get()));
        fresh->SetOwner(overlay.get());
        fresh->SetSyncer(syncer.get());
        watch.show(share(fresh.get()));
        map = std::move(fresh);
    }
    void endMap() {
        if (!map)
            return;
        map->Stop();
        map->Join(platform::kInfinite);
        map.reset();
    }
    void closeSyncer() {
        {
            // As an entry of the scripting interface does, with the interpreter lock held.
            const PyGILGuard interpreter;
            map->SetSyncer(nullptr);
        }
        syncer = std::make_unique<RunningSyncer>();
        map->SetSyncer(syncer.get());
    }
    void destroyOverlay() {
        endMap();
        overlay = std::make_unique<NumberedOverlay>(numbers);
        createMap();
    }
    void endMapWithTheTextureLock() {
        overlay->lockTexture();
        endMap();
        overlay->unlockTexture();
        createMap();
    }

    void hostStep() {
        switch (pick(0, 63)) {
        case 0:
            return createMap();
        case 1:
            return destroyOverlay();
        case 2:
            return endMapWithTheTextureLock();
        case 3:
        case 4:
            return closeSyncer();
        case 5:
            return overlay->resize(pick(8, 127), pick(8, 67));
        default:
            return overlay->edit();
        }
    }

    std::mt19937 random{20260501};
    std::atomic<std::uint32_t> numbers{0};
    FrameWatch watch{*device.get(), numbers};
    std::unique_ptr<NumberedOverlay> overlay = std::make_unique<NumberedOverlay>(numbers);
    std::unique_ptr<RunningSyncer> syncer = std::make_unique<RunningSyncer>();
    platform::ComPointer<PyMapWrapper> map;
};

TEST_F(TornFrames, EveryFrameIsWhole) {
    const bool isLong = std::getenv("ORVANEL_LONG_TESTS") != nullptr;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(isLong ? 60 : 0);
    createMap();
    std::atomic<long> rounds{0};
    std::thread rendering([&] { watch.run(rounds); });
    long steps = 0;
    // Long enough for the renderer to have seen something on any machine, or for the time that was asked for.
    while (std::chrono::steady_clock::now() < end || steps < 2000 || watch.changes() < 100) {
        hostStep();
        ++steps;
        // A lock is not fair to those who wait: an editor who never pauses would keep the renderer out.
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    watch.stop();
    rendering.join();
    endMap();
    watch.show({});
    watch.expectNothingWrong();
    if (isLong)
        watch.print(steps);
}

} // namespace
