// SPDX-License-Identifier: MIT
// One step of a drag as a host feels it: from the pointer's event to the texture that shows it. The outline has 24
// anchors and reaches so many percent of the way from the middle of the display to its edges; a mask is tinted all
// over.
//
// The whole step is measured as it is. Its stages are measured in steps of their own, where the drawing is asked for
// before the refresh, which then finds it done: the event, the drawing, the refresh with its one copy. Beside them a
// memcpy of the picture's bytes in the same run, into two buffers in turn as the texture's, which is what the renderer
// cannot do without.
//
// Tried, to copy only what has changed since a texture was last filled:
// - locking without discarding and copying the rows that changed: the device then keeps what it shows apart and copies
//   the whole itself. 1.2 to 1.4 times the time at 4K, the same at 8K. And the texture is agreed to be discarded, which
//   leaves nothing in it that could be kept.
// - writing rows that nothing was drawn upon without reading them: 0.6 to 0.75 of the time when four rows of five are
//   such, 0.9 when it is one of three. Not taken: the picture's memory is handed to the host, which may have drawn
//   there, and the drawing component may be anybody's.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "overlay/frame_source.h"
#include "overlay/orvanel.h"
#include "support/preview.h"
#include "texture/py_map_wrapper.h"

namespace {

constexpr int kAnchors = 24;
constexpr double kTurn = 6.283185307179586;

/// An editor with a drawn outline and a grabbed anchor, and the renderer's map of it.
class DraggedOutline {
  public:
    DraggedOutline(int width, int height, double reach)
        : m_width(width), m_height(height), m_reach(reach), m_source(m_object), m_map(new PyMapWrapper) {
        m_map->AddRef();
        m_created = m_map->Create(static_cast<UINT>(width), static_cast<UINT>(height), nullptr, m_renderer.host.get());
        m_map->SetOwner(&m_source);
        m_map->SetSyncer(&m_syncer);
        draw();
        const auto [x, y] = place(kGrabbed);
        m_object.Interactive(ECS_MOUSE_MOVE, x, y);
        m_object.Interactive(ECS_MOUSE_DOWN, x, y);
    }
    ~DraggedOutline() { m_map->SetOwner(nullptr); }
    DraggedOutline(const DraggedOutline &) = delete;
    DraggedOutline &operator=(const DraggedOutline &) = delete;

    bool isReady() const { return m_created == 1; }
    void moveOn() {
        const auto [x, y] = place(kGrabbed);
        ++m_step;
        m_object.Interactive(ECS_MOUSE_MOVE, x - m_step % 50, y + m_step % 31);
    }
    void prepare() { m_object.PrepareKeyframe(m_syncer.GetVideoTime(), 1); }
    /// False when the texture stayed as it was.
    bool refresh() { return m_map->UpdateCounter() != std::exchange(m_counter, m_counter + 1); }
    const BYTE *picture() const { return m_object.QueryBuffer(); }
    std::size_t bytes() const { return m_object.GetBufferLen(); }

  private:
    static constexpr int kGrabbed = 5;

    std::pair<int, int> place(int anchor) const {
        const double angle = kTurn * anchor / kAnchors;
        return {static_cast<int>(m_width * 0.5 * (1 + m_reach * std::cos(angle))),
                static_cast<int>(m_height * 0.5 * (1 + m_reach * std::sin(angle)))};
    }
    void draw() {
        m_object.SetVideoCoordinate(m_width, m_height, 0, 0, m_width, m_height);
        m_object.SetVideoInfo(0, 0, 0, 1LL << 60);
        prepare();
        for (int anchor = 0; anchor < kAnchors; ++anchor)
            m_object.AddPoint(place(anchor).first, place(anchor).second);
        m_object.Interactive(ECS_MOUSE_DOWN, place(0).first, place(0).second);
        m_object.Interactive(ECS_MOUSE_UP);
    }

    int m_width;
    int m_height;
    double m_reach;
    const Renderer m_renderer;
    StillSyncer m_syncer;
    Orvanel m_object;
    FrameSource m_source;
    const platform::ComPointer<PyMapWrapper> m_map;
    HRESULT m_created = 0;
    UINT m_counter = 0;
    int m_step = 0;
};

template <typename Act>
double timed(const Act &act) {
    const auto start = Clock::now();
    act();
    return secondsSince(start);
}

void dragStep(benchmark::State &state) {
    DraggedOutline outline(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                           0.01 * static_cast<double>(state.range(2)));
    if (!outline.isReady())
        state.SkipWithError("the map has no textures");
    std::vector<BYTE> buffers[2] = {std::vector<BYTE>(outline.bytes(), 1), std::vector<BYTE>(outline.bytes(), 2)};
    std::vector<double> events;
    std::vector<double> drawings;
    std::vector<double> refreshes;
    std::vector<double> steps;
    std::vector<double> copies;
    bool shown = true;
    outline.refresh();
    for (auto _ : state) {
        steps.push_back(timed([&] {
            outline.moveOn();
            shown = outline.refresh() && shown;
        }));
        state.SetIterationTime(steps.back());
        events.push_back(timed([&] { outline.moveOn(); }));
        drawings.push_back(timed([&] { outline.prepare(); }));
        refreshes.push_back(timed([&] { shown = outline.refresh() && shown; }));
        copies.push_back(timed([&] {
            std::swap(buffers[0], buffers[1]);
            std::memcpy(buffers[0].data(), outline.picture(), outline.bytes());
            benchmark::ClobberMemory();
        }));
    }
    if (!shown)
        state.SkipWithError("a refresh copied nothing");
    state.counters["event_us"] = 1e6 * median(events);
    state.counters["drawing_ms"] = 1e3 * median(drawings);
    state.counters["refresh_ms"] = 1e3 * median(refreshes);
    state.counters["memcpy_ms"] = 1e3 * median(copies);
    state.counters["step_times_memcpy"] = median(steps) / median(copies);
    state.counters["refresh_times_memcpy"] = median(refreshes) / median(copies);
}
BENCHMARK(dragStep)
    ->ArgsProduct({{1920}, {1080}, {20, 70}})
    ->ArgsProduct({{3840}, {2160}, {20, 70}})
    ->ArgsProduct({{7680}, {4320}, {20, 70}})
    ->ArgNames({"width", "height", "reach"})
    ->UseManualTime()
    ->MinTime(0.5)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
    return runAsRenderer(argc, argv);
}
