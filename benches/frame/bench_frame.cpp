// SPDX-License-Identifier: MIT
// What a rendered frame pays for the overlay: a refresh when the outline has moved, against one memcpy of the same
// bytes in the same run, and a refresh when nothing has changed. The device moves no pixels of its own when a picture
// was written as a whole, so what is measured is the refresh.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <vector>

#include "callback/interpreter_gate.h"
#include "callback/python.h"
#include "platform/com_pointer.h"
#include "platform/reentrant_lock.h"
#include "software_d3d9/device.h"
#include "texture/py_map_wrapper.h"
#include "texture/testing/python_host.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

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

class StillSyncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override { return 40; }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 0; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG duration) override { return duration; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return true; }
};

/// A map with textures of that size, as a renderer holds it.
struct Preview {
    Preview(UINT width, UINT height) : overlay(width, height), map(new PyMapWrapper) {
        map->AddRef();
        created = map->Create(width, height, nullptr, renderer.get()) == 1;
        map->SetOwner(&overlay);
        map->SetSyncer(&syncer);
    }

    const platform::ComPointer<software_d3d9::Device> device{software_d3d9::Device::make()};
    const CObjectExtractor extractor;
    const PythonHostObject renderer{
        {"GetRenderName", PythonHostObject::value("'D3D9'")},
        {"GetD3D", PythonHostObject::pointer(device->direct3D())},
        {"GetD3DDevice", PythonHostObject::pointer(static_cast<IDirect3DDevice9 *>(device.get()))}};
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
    Py_SetPythonHome(const_cast<char *>(ORVANEL_PYTHON27_HOME));
    Py_InitializeEx(0);
    PyObject *const watch = watchInterpreter();
    if (!watch)
        return 1;
    // The renderer's thread holds no interpreter lock.
    PyThreadState *const saved = PyEval_SaveThread();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    PyEval_RestoreThread(saved);
    Py_DECREF(watch);
    return 0;
}
