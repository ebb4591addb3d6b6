// SPDX-License-Identifier: MIT
// What a person waits for: the pointer's moves, a drag, saving and restoring. Each beside a copy of the bytes it
// touches.

#include <benchmark/benchmark.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <memory>

#include "callback/py_ref.h"
#include "overlay/orvanel.h"

/// Counted by the operators of counting_new.cpp.
extern std::atomic<long> allocations;

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr double kTurn = 6.283185307179586;

/// A closed, round outline of that many anchors.
void drawOutline(Orvanel &object, int anchors) {
    object.SetVideoCoordinate(kWidth, kHeight, 0, 0, kWidth, kHeight);
    object.SetVideoInfo(0, 0, 0, 1LL << 60);
    object.PrepareKeyframe(0);
    const auto position = [&](double step) {
        return std::pair(static_cast<int>(960 + 400 * std::cos(kTurn * step / anchors)),
                         static_cast<int>(540 + 400 * std::sin(kTurn * step / anchors)));
    };
    for (int anchor = 0; anchor < anchors; ++anchor)
        object.AddPoint(position(anchor).first, position(anchor).second);
    object.Interactive(ECS_MOUSE_DOWN, position(0).first, position(0).second);
    object.Interactive(ECS_MOUSE_UP);
}

void storeKeyFrames(Orvanel &object, int count) {
    for (int keyFrame = 0; keyFrame < count; ++keyFrame) {
        object.PrepareKeyframe(keyFrame * 40);
        object.CacheCurrentKeyframe();
    }
    object.PrepareKeyframe(count / 2 * 40);
}

/// Pointer moves that hover nothing, points and segments in turn; the list of samples is built before.
void pointerMove(benchmark::State &state) {
    Orvanel object;
    drawOutline(object, static_cast<int>(state.range(0)));
    object.Interactive(ECS_MOUSE_MOVE, 5, 5);
    long moves = 0;
    const long before = allocations;
    for (auto _ : state) {
        const double angle = static_cast<double>(moves % 997) * 0.0063;
        const double radius = 380 + 5 * static_cast<double>(moves % 9);
        object.Interactive(ECS_MOUSE_MOVE, static_cast<int>(960 + radius * std::cos(angle)),
                           static_cast<int>(540 + radius * std::sin(angle)));
        ++moves;
    }
    state.counters["allocations_a_move"] =
        static_cast<double>(allocations - before) / static_cast<double>(std::max(moves, 1L));
}
BENCHMARK(pointerMove)->Arg(24)->Arg(200)->Unit(benchmark::kMicrosecond);

/// One anchor dragged, with that many keyframes stored.
void dragAnchor(benchmark::State &state) {
    Orvanel object;
    drawOutline(object, 24);
    storeKeyFrames(object, static_cast<int>(state.range(0)));
    object.Interactive(ECS_MOUSE_MOVE, 1360, 540);
    object.Interactive(ECS_MOUSE_DOWN, 1360, 540);
    int step = 0;
    for (auto _ : state) {
        ++step;
        object.Interactive(ECS_MOUSE_MOVE, 1300 + step % 50, 540 + step % 31);
    }
}
BENCHMARK(dragAnchor)->Arg(1)->Arg(1000)->Unit(benchmark::kMicrosecond);

constexpr int kStoredKeyFrames = 1000;
constexpr int kAnchorsOf100Points = 33;
constexpr std::size_t kStoredBytes = kStoredKeyFrames * kAnchorsOf100Points * 3 * sizeof(MPointF);

void saveKeyFrames(benchmark::State &state) {
    Orvanel object;
    drawOutline(object, kAnchorsOf100Points);
    storeKeyFrames(object, kStoredKeyFrames);
    for (auto _ : state)
        const PyRef setting = PyRef::adopt(object.GetCurrentDevSetting());
    state.SetBytesProcessed(static_cast<std::int64_t>(kStoredBytes * state.iterations()));
}
BENCHMARK(saveKeyFrames)->Unit(benchmark::kMillisecond);

void restoreKeyFrames(benchmark::State &state) {
    Orvanel object;
    drawOutline(object, kAnchorsOf100Points);
    storeKeyFrames(object, kStoredKeyFrames);
    const PyRef setting = PyRef::adopt(object.GetCurrentDevSetting());
    for (auto _ : state)
        object.SetDevSetting(setting.get());
    state.SetBytesProcessed(static_cast<std::int64_t>(kStoredBytes * state.iterations()));
}
BENCHMARK(restoreKeyFrames)->Unit(benchmark::kMillisecond);

/// The floor under both: one copy of the same bytes.
void copySameBytes(benchmark::State &state) {
    const auto source = std::make_unique<char[]>(kStoredBytes);
    const auto target = std::make_unique<char[]>(kStoredBytes);
    for (auto _ : state) {
        std::memcpy(target.get(), source.get(), kStoredBytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(kStoredBytes * state.iterations()));
}
BENCHMARK(copySameBytes)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
    Py_SetPythonHome(const_cast<char *>(ORVANEL_PYTHON27_HOME));
    Py_InitializeEx(0);
    PyEval_InitThreads();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
