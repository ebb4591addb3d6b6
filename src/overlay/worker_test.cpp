// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "callback/py_locks.h"
#include "overlay/orvanel.h"
#include "overlay/testing/python_environment.h"
#include "overlay/testing/recording_canvas.h"
#include "platform/event.h"

namespace {

struct Delivery {
    Orvanel *object = nullptr;
    void (*act)(Orvanel *) = nullptr;
    std::thread::id thread;
    std::atomic<int> count{0};
    int depth = 0; ///< guarded by the interpreter lock
    platform::Event arrived{platform::Event::Reset::Automatic, false};
};

PyObject *receive(PyObject *self, PyObject *) {
    auto *const delivery = static_cast<Delivery *>(PyCapsule_GetPointer(self, nullptr));
    delivery->thread = std::this_thread::get_id();
    ++delivery->count;
    ++delivery->depth;
    if (delivery->act)
        delivery->act(delivery->object);
    if (--delivery->depth == 0)
        delivery->arrived.set();
    Py_INCREF(Py_None);
    return Py_None;
}

PyMethodDef receiveMethod = {"receive", &receive, METH_VARARGS, nullptr};

class WorkerThread : public testing::Test {
  protected:
    WorkerThread()
        : capsule(PyRef::adopt(PyCapsule_New(&delivery, nullptr, nullptr))),
          callable(PyRef::adopt(PyCFunction_New(&receiveMethod, capsule.get()))), object(new Orvanel) {
        delivery.object = object.get();
        object->SetCallbackFunc(callable.get());
    }

    /// Draws a keyframe, which wakes the worker, and waits for what it delivers.
    bool drawAndWait() {
        Quill::KeyFrameMaskInfo record;
        object->DrawExistKeyFrame(&record);
        return waitForDelivery();
    }
    bool waitForDelivery() {
        const PyAllowThreads allowThreads;
        return delivery.arrived.wait(20000);
    }

    /// After a delivery the worker asks whether to stop, then waits; only then does an end wake it for a last event.
    static void letTheWorkerWait() {
        const PyAllowThreads allowThreads;
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }

    RecordingCanvas canvas;
    CanvasForTest registration{&canvas};
    Delivery delivery;
    PyRef capsule;
    PyRef callable;
    std::unique_ptr<Orvanel> object;
};

TEST_F(WorkerThread, DeliversDrawnKeyframesOnItsOwnThread) {
    ASSERT_TRUE(drawAndWait());
    EXPECT_NE(delivery.thread, std::this_thread::get_id());
    EXPECT_EQ(delivery.count, 1);
}

TEST_F(WorkerThread, DeliversOnceMoreWhenTheObjectEnds) {
    ASSERT_TRUE(drawAndWait());
    letTheWorkerWait();
    object->Uninitialize();
    EXPECT_EQ(delivery.count, 2);
    object->Uninitialize(); // returns at once: the worker has ended
    EXPECT_EQ(delivery.count, 2);
}

TEST_F(WorkerThread, AnObjectMayEndBeforeItsWorkerHasBegun) {
    object.reset();
    EXPECT_LE(delivery.count, 1);
}

TEST_F(WorkerThread, EndsWhileTheHostHoldsTheTextureLock) {
    ASSERT_TRUE(drawAndWait());
    letTheWorkerWait();
    delivery.act = [](Orvanel *called) { called->ReDraw(); }; // wants the lock
    object->LockTexture();
    object->Uninitialize();
    object->UnlockTexture();
    EXPECT_EQ(delivery.count, 2);
}

TEST_F(WorkerThread, ADeliveryMayEndTheObject) {
    delivery.act = [](Orvanel *called) {
        called->Uninitialize();
        called->Uninitialize();
    };
    ASSERT_TRUE(drawAndWait());
    object->Uninitialize();
    EXPECT_EQ(delivery.count, 1);
}

TEST_F(WorkerThread, ADeliveryMayEditTheObject) {
    // The point's own event arrives inside the first delivery and adds no further point.
    delivery.act = [](Orvanel *called) {
        const PyRef points = PyRef::adopt(called->GetCurrentPoints());
        if (points.get() == Py_None)
            called->AddPoint(3, 4);
    };
    ASSERT_TRUE(drawAndWait());
    EXPECT_EQ(delivery.count, 2);
    const PyRef points = PyRef::adopt(object->GetCurrentPoints());
    ASSERT_TRUE(PyString_Check(points.get()));
    EXPECT_EQ(PyString_GET_SIZE(points.get()), 24);
}

} // namespace
