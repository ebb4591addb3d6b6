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
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "callback/py_locks.h"
#include "platform/reentrant_lock.h"
#include "texture/py_map_wrapper.h"
#include "texture/testing/device_fixture.h"

namespace {

using MapPointer = platform::ComPointer<PyMapWrapper>;

MapPointer share(const MapPointer &map) {
    if (map)
        map->AddRef();
    return MapPointer(map.get());
}

/// A clock that runs with the frames. It wants the interpreter lock now and then, as a syncer written in Python would.
class RunningSyncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override {
        const LONGLONG now = ++m_time;
        if (now % 16 == 0)
            const PyGILGuard interpreter;
        return now / 2;
    }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 0; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG duration) override { return duration; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return m_time % 7 != 0; }

  private:
    std::atomic<LONGLONG> m_time{0};
};

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

/// Where the host's Python side leaves the map for its renderer.
class MapSlot {
  public:
    void put(MapPointer map) {
        const std::lock_guard lock(m_mutex);
        std::swap(m_map, map);
    }
    MapPointer get() const {
        const std::lock_guard lock(m_mutex);
        return share(m_map);
    }

  private:
    mutable std::mutex m_mutex;
    MapPointer m_map;
};

class TornFrames : public DeviceFixture {
  protected:
    static software_d3d9::DeviceOptions poisoning() {
        software_d3d9::DeviceOptions options;
        options.poisonsDiscarded = true;
        return options;
    }
    TornFrames() : DeviceFixture(poisoning()) {}

    /// Renders until told to stop; keeps an earlier map for a while, as a host's queue of frames does.
    void render() {
        const PyMapWrapper *last = nullptr;
        std::uint32_t lastNumber = 0;
        MapPointer kept;
        for (unsigned int frame = 0; !done; ++frame) {
            const MapPointer current = slot.get();
            if (!current)
                continue;
            if (current.get() != last) {
                if (kept)
                    kept->UpdateCounter();
                kept = share(current);
                last = current.get();
                lastNumber = 0;
            }
            current->UpdateCounter();
            current->BindToStage(0);
            const software_d3d9::SharedPicture shown = device->boundPicture(0);
            if (shown && shown->width == current->Width() && shown->height == current->Height())
                lastNumber = expectWholeFrame(*shown, lastNumber);
            ++frames;
        }
    }

    /// The number of the frame, which is the last one shown or a later one. 0 is what a texture starts with.
    std::uint32_t expectWholeFrame(const software_d3d9::Picture &shown, std::uint32_t lastNumber) {
        std::uint32_t number = 0;
        std::memcpy(&number, shown.bits, sizeof number);
        for (std::uint32_t y = 0; y < shown.height; ++y)
            for (std::uint32_t x = 0; x < shown.width; ++x) {
                std::uint32_t pixel = 0;
                std::memcpy(&pixel, shown.row(y) + x * 4, sizeof pixel);
                torn += pixel != number;
            }
        backward += number < lastNumber;
        invented += number > numbers;
        distinct += number != lastNumber;
        return number;
    }

    // --- The host's Python side ---

    UINT pick(UINT lowest, UINT highest) { return std::uniform_int_distribution<UINT>(lowest, highest)(random); }

    void createMap() {
        const UINT width = pick(8, 127);
        const UINT height = pick(8, 67);
        overlay->resize(width, height);
        endMap();
        MapPointer fresh = makeMap<PyMapWrapper>();
        EXPECT_EQ(1, fresh->Create(width, height, windowProvider.get(), renderer.get()));
        fresh->SetOwner(overlay.get());
        fresh->SetSyncer(syncer.get());
        slot.put(share(fresh));
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
    std::atomic<bool> done{false};
    std::atomic<std::uint64_t> frames{0};
    std::atomic<std::uint64_t> torn{0};
    std::atomic<std::uint64_t> backward{0};
    std::atomic<std::uint64_t> invented{0};
    std::atomic<std::uint64_t> distinct{0};
    std::unique_ptr<NumberedOverlay> overlay = std::make_unique<NumberedOverlay>(numbers);
    std::unique_ptr<RunningSyncer> syncer = std::make_unique<RunningSyncer>();
    MapPointer map;
    MapSlot slot;
};

TEST_F(TornFrames, EveryFrameIsWhole) {
    const bool isLong = std::getenv("ORVANEL_LONG_TESTS") != nullptr;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(isLong ? 60 : 0);
    createMap();
    std::thread rendering([this] { render(); });
    std::uint64_t steps = 0;
    // Long enough for the renderer to have seen something on any machine, or for the time that was asked for.
    while (std::chrono::steady_clock::now() < end || steps < 2000 || distinct < 100) {
        hostStep();
        ++steps;
        // A lock is not fair to those who wait: an editor who never pauses would keep the renderer out.
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    done = true;
    rendering.join();
    endMap();
    slot.put({});
    RecordProperty("frames", std::to_string(frames));
    RecordProperty("steps", std::to_string(steps));
    EXPECT_EQ(0u, torn) << "of the pixels in " << frames << " frames";
    EXPECT_EQ(0u, backward);
    EXPECT_EQ(0u, invented);
    if (isLong)
        std::printf("%llu steps, %llu frames, %llu changes seen\n", static_cast<unsigned long long>(steps),
                    static_cast<unsigned long long>(frames.load()), static_cast<unsigned long long>(distinct.load()));
}

} // namespace
