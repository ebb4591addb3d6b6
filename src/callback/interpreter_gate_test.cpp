// SPDX-License-Identifier: MIT
// What happens to deliveries when the interpreter ends before, while and after they are made.

#include "callback/interpreter_gate.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "callback/py_callback_wnd.h"
#include "callback/py_locks.h"
#include "callback/testing/interpreter.h"
#include "callback/testing/plain_callback.h"

namespace {

using namespace std::chrono_literals;

/// Delivers without a pause until told to stop, as a worker would.
class Worker {
  public:
    explicit Worker(const PyCallback &callback)
        : m_thread([this, &callback] {
              while (!m_stop) {
                  callback.Call("i", 1);
                  ++m_rounds;
              }
          }) {}
    ~Worker() { stop(); }
    void stop() {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
    }
    /// Waits until the worker has come round a few more times.
    void waitForRounds() const {
        const PyAllowThreads allowThreads;
        for (const long start = m_rounds; m_rounds < start + 5;)
            std::this_thread::sleep_for(1ms);
    }

  private:
    std::atomic<bool> m_stop{false};
    std::atomic<long> m_rounds{0};
    std::thread m_thread;
};

TEST(InterpreterGate, WithoutAnInterpreterNothingIsTouched) {
    EXPECT_FALSE(holdsInterpreterLock());
    EXPECT_TRUE(interpreterIsEnding());
    const PyGILGuard lock;
    EXPECT_FALSE(lock);
    const PyAllowThreads allowThreads;
    PlainCallback callback;
    callback.Call("i", 1);
}

TEST(InterpreterGate, AnObjectMayOutliveTheInterpreter) {
    auto interpreter = std::make_unique<Interpreter>();
    auto callback = std::make_unique<PlainCallbackWnd>();
    callback->SetCallback(Interpreter::value("seen.append").get());
    interpreter.reset();
    callback->Call("i", 1);
    EXPECT_EQ(callback->CallInt("i", 1), 0);
    EXPECT_EQ(callback->CallObject("i", 1), nullptr);
    const PyAllowThreads allowThreads;
    const PyGILGuard lock;
    EXPECT_FALSE(lock);
    callback.reset();
}

TEST(InterpreterGate, AWorkerThatDeliversMayOutliveTheInterpreter) {
    auto interpreter = std::make_unique<Interpreter>();
    PlainCallback callback;
    callback.SetCallback(Interpreter::value("seen.append").get());
    Worker worker(callback);
    worker.waitForRounds();
    EXPECT_GT(Interpreter::number("len(seen)"), 0);
    interpreter.reset();
    // It goes on, and every event is dropped.
    worker.waitForRounds();
}

TEST(InterpreterGate, ManyEndsWhileManyDeliver) {
    for (int round = 0; round < 20; ++round) {
        auto interpreter = std::make_unique<Interpreter>();
        PlainCallback callback;
        callback.SetCallback(Interpreter::value("seen.append").get());
        Worker first(callback);
        Worker second(callback);
        if (round % 2)
            first.waitForRounds();
        interpreter.reset();
    }
}

TEST(InterpreterGate, WhatIsDestroyedWhileTheInterpreterTakesItselfDownKeepsTheLock) {
    auto interpreter = std::make_unique<Interpreter>();
    static bool wasDestroyed, keptTheLock;
    wasDestroyed = keptTheLock = false;
    PyObject *const dying = PyCapsule_New(&wasDestroyed, nullptr, [](PyObject *) {
        const PyAllowThreads allowThreads;
        wasDestroyed = !Py_IsInitialized();
        keptTheLock = holdsInterpreterLock();
    });
    PyModule_AddObject(PyImport_AddModule("__main__"), "dying", dying);
    interpreter.reset();
    EXPECT_TRUE(wasDestroyed);
    EXPECT_TRUE(keptTheLock);
}

TEST(InterpreterGate, TheEndWaitsForACallableThatRuns) {
    auto interpreter = std::make_unique<Interpreter>();
    PlainCallback callback;
    static bool entered, returned;
    entered = returned = false;
    static PyMethodDef marks[] = {
        {"enter",
         [](PyObject *, PyObject *) {
             entered = true;
             Py_RETURN_NONE;
         },
         METH_NOARGS, nullptr},
        {"leave",
         [](PyObject *, PyObject *) {
             returned = true;
             Py_RETURN_NONE;
         },
         METH_NOARGS, nullptr},
        {nullptr, nullptr, 0, nullptr},
    };
    Py_InitModule("marks", marks);
    Interpreter::run("import marks, time\ndef slow(code):\n    marks.enter(); time.sleep(0.2); marks.leave()");
    callback.SetCallback(Interpreter::value("slow").get());
    std::thread worker([&callback] { callback.Call("i", 1); });
    while (!entered) {
        const PyAllowThreads allowThreads;
        std::this_thread::sleep_for(1ms);
    }
    interpreter.reset();
    EXPECT_TRUE(returned);
    worker.join();
}

TEST(InterpreterGate, AnExitFunctionThatHidesOursDoesNoHarm) {
    auto interpreter = std::make_unique<Interpreter>();
    PlainCallback callback;
    callback.SetCallback(Interpreter::value("seen.append").get());
    Interpreter::run("sys.exitfunc = lambda: None");
    Worker worker(callback);
    worker.waitForRounds();
    interpreter.reset();
    worker.waitForRounds();
}

TEST(InterpreterGate, EventsArriveInExitFunctionsRegisteredLaterAndNotInEarlierOnes) {
    static std::string heard;
    heard.clear();
    static PyMethodDef methods[] = {
        {"hear",
         [](PyObject *, PyObject *word) {
             heard += PyString_AsString(word);
             Py_RETURN_NONE;
         },
         METH_O, nullptr},
        {nullptr, nullptr, 0, nullptr},
    };
    static PyCallback *object;
    static PyMethodDef raiser = {"event",
                                 [](PyObject *, PyObject *) {
                                     object->Call("s", "event ");
                                     Py_RETURN_NONE;
                                 },
                                 METH_NOARGS, nullptr};

    Py_InitializeEx(0);
    PyObject *const names = PyModule_GetDict(PyImport_AddModule("__main__"));
    Py_InitModule("listener", methods);
    PyDict_SetItemString(names, "event", PyRef::adopt(PyCFunction_New(&raiser, nullptr)).get());
    Interpreter::run(
        "import atexit, listener\ndef early():\n    listener.hear('early '); event()\natexit.register(early)");
    PyDict_SetItemString(names, "watch", PyRef::adopt(watchInterpreter()).get());
    Interpreter::run("def late():\n    listener.hear('late '); event()\natexit.register(late)");
    PlainCallback callback;
    object = &callback;
    callback.SetCallback(Interpreter::value("listener.hear").get());
    Py_Finalize();
    EXPECT_EQ(heard, "late event early ");
}

TEST(InterpreterGate, AThreadWithTheLockStillGetsItWhileTheInterpreterEnds) {
    static bool held, dropped;
    held = dropped = false;
    static PyMethodDef method = {"probe",
                                 [](PyObject *, PyObject *) {
                                     const PyGILGuard lock;
                                     held = static_cast<bool>(lock);
                                     dropped = interpreterIsEnding();
                                     // The interpreter's own end goes through here when it destroys an object.
                                     const PyAllowThreads allowThreads;
                                     Py_RETURN_NONE;
                                 },
                                 METH_NOARGS, nullptr};
    auto interpreter = std::make_unique<Interpreter>();
    PyObject *const names = PyModule_GetDict(PyImport_AddModule("__main__"));
    PyDict_SetItemString(names, "probe", PyRef::adopt(PyCFunction_New(&method, nullptr)).get());
    Interpreter::run("class Last(object):\n    def __init__(self): self.probe = probe\n    def __del__(self): "
                     "self.probe()\nlast = Last()");
    interpreter.reset();
    EXPECT_TRUE(held);
    EXPECT_TRUE(dropped);
}

TEST(InterpreterGate, ANewInterpreterGetsEventsAgain) {
    PlainCallback callback;
    for (int round = 0; round < 3; ++round) {
        const Interpreter interpreter;
        callback.SetCallback(Interpreter::value("seen.append").get());
        callback.Call("i", round);
        EXPECT_EQ(Interpreter::text("seen"), "[" + std::to_string(round) + "]");
        callback.SetCallback(nullptr);
    }
}

} // namespace
