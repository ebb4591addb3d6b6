// SPDX-License-Identifier: MIT
// What a rendered frame pays for the overlay: a refresh when the outline has moved, against one memcpy of the same
// bytes in the same run, and a refresh when nothing has changed. The device moves no pixels of its own when a picture
// was written as a whole, so what is measured is the refresh.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <vector>

#include "platform/com_pointer.h"
#include "platform/reentrant_lock.h"
#include "support/preview.h"
#include "texture/py_map_wrapper.h"

namespace {

/// An overlay whose outline moves: some rows of its picture change.
class MovingOverlay final : public OverlaySource {
  public:
    MovingOverlay(UINT width, UINT height) : m_rowBytes(std::size_t{width} * 4), m_picture(m_rowBytes * height, 1) {}

    void move() {
        const std::size_t rows = m_picture.size() / m_rowBytes;
        m_row = (m_row + 37) % (rows - 16);
        std::memset(m_picture.data() + m_row * m_rowBytes, static_cast<int>(++m_shade & 0xff), 16 * m_rowBytes);
        m_dirty = true;
    }
    const std::vector<BYTE> &picture() const { return m_picture; }

    void lockTexture() override { m_lock.lock(); }
    bool tryLockTexture(std::uint32_t milliseconds) override {
        return m_lock.try_lock_for(std::chrono::milliseconds(milliseconds));
    }
    void unlockTexture() override { m_lock.unlock(); }
    bool isVisible() const override { return true; }
    bool isPreviewMode() const override { return false; }
    UINT bufferLength() const override { return static_cast<UINT>(m_picture.size()); }
    bool isDirty() const override { return m_dirty; }
    void resetDirtyFlag() override { m_dirty = false; }
    LONGLONG closestKeyFramePosition(LONGLONG duration, IVideoTextureSyncer *) const override { return duration; }
    const BYTE *prepareKeyframe(LONGLONG, bool) override { return m_picture.data(); }

  private:
    platform::ReentrantLock m_lock;
    std::size_t m_rowBytes;
    std::vector<BYTE> m_picture;
    std::size_t m_row = 0;
    unsigned int m_shade = 0;
    bool m_dirty = false;
};

/// A map with textures of that size, as a renderer holds it.
struct Preview {
    Preview(UINT width, UINT height) : overlay(width, height), map(new PyMapWrapper) {
        map->AddRef();
        created = map->Create(width, height, nullptr, renderer.host.get()) == 1;
        map->SetOwner(&overlay);
        map->SetSyncer(&syncer);
    }

    const Renderer renderer;
    MovingOverlay overlay;
    StillSyncer syncer;
    const platform::ComPointer<PyMapWrapper> map;
    bool created = false;
};

void refreshMoved(benchmark::State &state) {
    Preview preview(static_cast<UINT>(state.range(0)), static_cast<UINT>(state.range(1)));
    const std::vector<BYTE> &picture = preview.overlay.picture();
    std::vector<BYTE> copy(picture.size(), 2);
    if (!preview.created)
        state.SkipWithError("the map has no textures");
    UINT counter = preview.map->UpdateCounter();
    preview.overlay.move();
    counter = preview.map->UpdateCounter(); // both buffers of the texture have been touched now
    std::vector<double> refreshes;
    std::vector<double> copies;
    for (auto _ : state) {
        preview.overlay.move();
        const auto start = Clock::now();
        const UINT now = preview.map->UpdateCounter();
        refreshes.push_back(secondsSince(start));
        state.SetIterationTime(refreshes.back());
        if (now != ++counter)
            state.SkipWithError("a refresh copied nothing");
        preview.overlay.move();
        const auto copyStart = Clock::now();
        std::memcpy(copy.data(), picture.data(), picture.size());
        benchmark::ClobberMemory();
        copies.push_back(secondsSince(copyStart));
    }
    state.counters["memcpy_ms"] = 1e3 * median(copies);
    state.counters["refresh_ms"] = 1e3 * median(refreshes);
    state.counters["times_memcpy"] = median(refreshes) / median(copies);
    state.SetBytesProcessed(static_cast<std::int64_t>(picture.size()) * state.iterations());
}
BENCHMARK(refreshMoved)
    ->Args({1920, 1080})
    ->Args({3840, 2160})
    ->Args({7680, 4320})
    ->ArgNames({"width", "height"})
    ->UseManualTime()
    ->MinTime(1.0)
    ->Unit(benchmark::kMillisecond);

void refreshUnchanged(benchmark::State &state) {
    Preview preview(static_cast<UINT>(state.range(0)), static_cast<UINT>(state.range(1)));
    const UINT counter = preview.map->UpdateCounter();
    for (auto _ : state)
        benchmark::DoNotOptimize(preview.map->UpdateCounter());
    if (preview.map->UpdateCounter() != counter)
        state.SkipWithError("a refresh copied");
}
BENCHMARK(refreshUnchanged)
    ->Args({1920, 1080})
    ->Args({3840, 2160})
    ->Args({7680, 4320})
    ->ArgNames({"width", "height"})
    ->Unit(benchmark::kNanosecond);

} // namespace

int main(int argc, char **argv) {
    return runAsRenderer(argc, argv);
}
