// SPDX-License-Identifier: MIT
// One object, five kinds of threads at once: an editor, a renderer, two that call entries at random, the object's own
// worker, and callbacks that call back. Nothing may race, hang or crash. ORVANEL_LONG_TESTS=1 runs it for a minute.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>
#include <vector>

#include "callback/py_locks.h"
#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"
#include "texture/allocator.h"
#include "watchdog.h"

namespace {

const auto *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

using Random = std::mt19937;

int pick(Random &random, int least, int greatest) {
    return std::uniform_int_distribution(least, greatest)(random);
}

std::chrono::milliseconds duration() {
    return std::getenv("ORVANEL_LONG_TESTS") ? std::chrono::seconds(60) : std::chrono::seconds(2);
}

/// 25 frames a second in milliseconds.
class SteadySyncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override { return m_time += 7; }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 40; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG time) override { return time / 40; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return true; }

  private:
    std::atomic<LONGLONG> m_time{0};
};

/// A gesture or a key over a 320 x 180 display.
void editOnce(Orvanel &object, Random &random) {
    const auto press = [&](int x, int y) {
        object.Interactive(ECS_MOUSE_MOVE, x, y);
        object.Interactive(ECS_MOUSE_DOWN, x, y);
    };
    switch (pick(random, 0, 9)) {
    case 0:
        if (pick(random, 0, 9) == 0)
            object.Interactive(ECS_DELETE);
        break;
    case 1:
        object.Interactive(ECS_DELETE_LAST_POINT);
        break;
    case 2: // a closed outline
        for (const auto &[x, y] : {std::pair{30, 30}, {150, 40}, {140, 150}, {40, 140}, {30, 30}}) {
            press(x, y);
            object.Interactive(ECS_MOUSE_UP);
        }
        break;
    default: // a drag
        press(pick(random, 0, 320), pick(random, 0, 180));
        object.SetShiftPressed(pick(random, 0, 1) == 1);
        for (int step = 0; step < 3; ++step)
            object.Interactive(ECS_MOUSE_MOVE, pick(random, 0, 320), pick(random, 0, 180));
        object.Interactive(ECS_MOUSE_UP);
    }
}

/// One entry with the interpreter lock held, as the scripting interface calls it.
void callOnce(Orvanel &object, Random &random, IVideoTextureSyncer &syncer) {
    const auto use = [](PyObject *result) { Py_XDECREF(result); };
    const LONGLONG time = pick(random, 0, 40) * 25;
    switch (pick(random, 0, 26)) {
    // clang-format off
    case 0: use(object.GetCurrentPoints()); break;
    case 1: use(object.GetCurrentDevSetting()); break;
    case 2: use(object.GetKeyFrameDurationList()); break;
    case 3: use(object.GetDirtyRect()); break;
    case 4: use(object.GetCentroidUS()); break;
    case 5: object.UpdateCentroid(); break;
    case 6: object.SetVideoCoordinate(320 + pick(random, 0, 1) * 64, 180, 0, 0, 320, 180); break;
    case 7: object.PrepareKeyframe(time, 1); break;
    case 8: object.CacheCurrentKeyframe(); break;
    case 9: object.RemoveSpecificKeyFrame(time); break;
    case 10: object.RemoveTrialingKeyFrames(time + 800); break;
    case 11: object.MoveAllPoints(pick(random, -3, 3), pick(random, -3, 3)); break;
    case 12: object.SelectAllPoints(); break;
    case 13: object.Convert2Mask(pick(random, 0, 1) == 1); break;
    case 14: object.IsHoverControlPoint(); object.IsHoverPointInLine(); object.IsHoverSelectedPointInLine(); break;
    case 15: object.IsNeedHandleMouseEvent(); object.IsBCPSelected(); object.IsAnyBezierControlPointChanged(); break;
    case 16: object.ReDraw(); break;
    case 17: object.DrawHoverPoint(); object.DrawSelectedRegion(); break;
    case 18: object.SetSizeScaler(static_cast<float>(pick(random, 1, 4))); break;
    case 19: object.ForceUpdateFrame(); break;
    case 20: object.GetClosestKeyFramePos(time, &syncer); break;
    case 21: delete object.GetKeyFrameMaskInfo(time); break;
    case 22: object.SetPreviewMode(pick(random, 0, 1) == 1); object.SetHide(pick(random, 0, 1) == 1); break;
    case 23: object.SetVideoInfo(0, 0, 0, 2000); object.ResetDirtyFlag(); object.ResetNewMask(); break;
    // clang-format on
    case 24: {
        const PyRef setting = PyRef::adopt(object.GetCurrentDevSetting());
        object.SetDevSetting(setting.get());
        break;
    }
    case 25:
        object.LockTexture();
        use(object.GetCurrentPoints());
        object.UnlockTexture();
        break;
    default: {
        const PyRef size = PyRef::adopt(Py_BuildValue("(ii)", 320, 180));
        PyObject *const runs = object.Convert2SelectionLineUS(size.get());
        if (runs != Py_None) // a short outline's None comes without a reference
            use(runs);
    }
    }
}

struct CallingBack {
    Orvanel *object;
    SteadySyncer *syncer;
    std::atomic<long> received{0};
    std::atomic<int> depth{0};
};

PyObject *callBack(PyObject *self, PyObject *) {
    auto *const state = static_cast<CallingBack *>(PyCapsule_GetPointer(self, nullptr));
    const long number = ++state->received;
    // Not for ever: a callback that edits raises events itself.
    if (++state->depth <= 3) {
        Random random(static_cast<unsigned>(number));
        callOnce(*state->object, random, *state->syncer);
        if (number % 5 == 0)
            editOnce(*state->object, random);
    }
    --state->depth;
    Py_INCREF(Py_None);
    return Py_None;
}

PyMethodDef callBackMethod = {"callBack", &callBack, METH_VARARGS, nullptr};

TEST(OverlayThreads, EverybodyAtOnce) {
    SteadySyncer syncer;
    Orvanel object;
    CallingBack state = {&object, &syncer};
    const PyRef capsule = PyRef::adopt(PyCapsule_New(&state, nullptr, nullptr));
    const PyRef callable = PyRef::adopt(PyCFunction_New(&callBackMethod, capsule.get()));
    object.SetVideoCoordinate(320, 180, 0, 0, 320, 180);
    object.SetVideoInfo(0, 0, 0, 2000);
    object.SetCallbackFunc(callable.get());
    ASSERT_EQ(object.Create(nullptr, nullptr, &syncer), 1);
    loom::IAllocator *const map = object.GetAllocator();

    Watchdog watchdog(std::chrono::seconds(60));
    std::atomic<bool> ending{false};
    std::vector<std::thread> threads;
    std::array<std::atomic<long>, 4> steps{};
    const auto start = [&](std::size_t slot, const char *name, auto step) {
        threads.emplace_back([&, slot, name, step] {
            std::atomic<long> &signOfLife = watchdog.enrol(name);
            Random random(static_cast<unsigned>(slot + 1));
            while (!ending) {
                step(random);
                signOfLife = ++steps[slot];
                // A lock is not fair to those who wait: whoever never pauses keeps the others out.
                std::this_thread::sleep_for(std::chrono::microseconds(20));
            }
            signOfLife = -1;
        });
    };
    start(0, "editor", [&](Random &random) {
        const PyGILGuard lock;
        editOnce(object, random);
    });
    start(1, "renderer", [&](Random &random) {
        map->UpdateCounter();
        const auto locked = [](auto entry) {
            const PyGILGuard lock;
            entry();
        };
        locked([&] { object.LockTexture(); });
        const BYTE *const buffer = object.PrepareKeyframe(pick(random, 0, 1000), 1);
        const std::vector<BYTE> copy(buffer, buffer + object.GetBufferLen());
        locked([&] { object.UnlockTexture(); });
        EXPECT_FALSE(copy.empty());
    });
    for (const std::size_t slot : {2U, 3U})
        start(slot, "entries", [&](Random &random) {
            const PyGILGuard lock;
            callOnce(object, random, syncer);
        });
    {
        const PyAllowThreads allowThreads;
        std::this_thread::sleep_for(duration());
        // However slow the machine is, until everybody has had a share; the watchdog ends what never gets one.
        while (state.received == 0 || std::ranges::any_of(steps, [](const auto &count) { return count <= 10; }))
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        ending = true;
        for (std::thread &thread : threads)
            thread.join();
    }
    object.Uninitialize();
    object.SetCallbackFunc(nullptr);
}

} // namespace
