// SPDX-License-Identifier: MIT
// The end of a Python 2.7 interpreter, as seen by threads that deliver events.
//
// Py_Finalize runs on one thread and holds the interpreter lock nearly all the time: it calls the exit functions with
// the interpreter intact, then clears `initialized`, tears the modules down, forgets the thread states, and last calls
// what Py_AtExit was given. It never gives the lock back. A thread that asks for the lock too late waits for ever, and
// one that asks while thread states go away crashes. So every thread that comes without the lock passes a gate, and the
// interpreter's end closes it and waits, with the lock released, until those inside are out:
//
//   exit function     the regular way; whatever was registered after the module still gets its events
//   death of a capsule in the module's dictionary, for a program that has put its own sys.exitfunc over all others. The
//                     last reference goes with the table of extension modules, when thread states still exist.
//   Py_IsInitialized  answers for a program whose interpreter the module was never imported into
//
// A thread that holds the lock needs no gate: it is the one that ends the interpreter, or the end waits for it anyway.
// The one that ends it keeps the lock once `initialized` is cleared and the gate is closed, also where it waits:
// threads of scripts that got it then would run in modules without names, on thread states that are about to be freed.
// Rejected: the flag alone, which leaves the moment between the test and the lock; a lock held across deliveries, which
// callables that call back in would take in the wrong order.

#include "callback/interpreter_gate.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <utility>

#include "callback/python.h"
#include "platform/fork.h"

namespace {

/// How long the interpreter's end waits for a callable that does not return.
constexpr std::chrono::seconds kPatience{5};

struct Gate {
    std::mutex mutex;
    std::condition_variable left;
    bool closed = false;
    int inside = 0;
    unsigned countedIn = 0; ///< platform::forkCount() of `inside`
};

/// Never destroyed, since threads may stand at it while the process ends, and made without an allocation, which could
/// fail on a thread that nobody answers for.
Gate &gate() noexcept {
    alignas(Gate) static unsigned char memory[sizeof(Gate)];
    static Gate *const instance = [] {
        Gate *const made = new (memory) Gate;
        platform::holdAcrossForks(made->mutex);
        return made;
    }();
    return *instance;
}

/// How often the calling thread stands inside; the end must not wait for itself.
thread_local int insideHere = 0;

/// After a fork only the thread that forked is there. Under the mutex.
void forgetThreadsOfOtherProcesses() {
    if (std::exchange(gate().countedIn, platform::forkCount()) != platform::forkCount())
        gate().inside = insideHere;
}

bool isClosed() {
    const std::lock_guard lock(gate().mutex);
    return gate().closed;
}

void closeGate() {
    std::unique_lock lock(gate().mutex);
    forgetThreadsOfOtherProcesses();
    gate().closed = true;
    gate().left.wait_for(lock, kPatience, [] { return gate().inside == insideHere; });
}

void closeGateReleasingLock() {
    PyThreadState *const saved = PyEval_SaveThread();
    closeGate();
    PyEval_RestoreThread(saved);
}

PyObject *onExit(PyObject *, PyObject *) {
    closeGateReleasingLock();
    Py_RETURN_NONE;
}

/// Lets the lock go only if there was no exit function: the interpreter is in pieces by now.
void onCapsuleDeath(PyObject *) {
    if (!isClosed())
        closeGateReleasingLock();
}

void onInterpreterGone() {
    const std::lock_guard lock(gate().mutex);
    gate().closed = true;
}

PyMethodDef exitMethod = {"closeGate", onExit, METH_NOARGS, nullptr};

/// An interpreter without its library has no atexit; the capsule does for it.
void registerExitFunction() {
    PyObject *const module = PyImport_ImportModule("atexit");
    PyObject *const function = module ? PyCFunction_New(&exitMethod, nullptr) : nullptr;
    PyObject *const result =
        function ? PyObject_CallMethod(module, const_cast<char *>("register"), const_cast<char *>("O"), function)
                 : nullptr;
    if (!result)
        PyErr_Clear();
    Py_XDECREF(result);
    Py_XDECREF(function);
    Py_XDECREF(module);
}

} // namespace

PyObject *watchInterpreter() {
    // Without this the lock does not exist until some script imports `thread`, and the worker would run beside Python.
    PyEval_InitThreads();
    registerExitFunction();
    Py_AtExit(onInterpreterGone);
    PyObject *const capsule = PyCapsule_New(&gate(), nullptr, onCapsuleDeath);
    if (capsule) {
        const std::lock_guard lock(gate().mutex);
        gate().closed = false;
    }
    return capsule;
}

bool interpreterIsEnding() {
    return isClosed() || !Py_IsInitialized();
}

bool interpreterKeepsItsLock() {
    return !Py_IsInitialized() && isClosed();
}

bool enterInterpreter() {
    const std::lock_guard lock(gate().mutex);
    if (gate().closed || !Py_IsInitialized())
        return false;
    forgetThreadsOfOtherProcesses();
    ++gate().inside;
    ++insideHere;
    return true;
}

void leaveInterpreter() {
    const std::lock_guard lock(gate().mutex);
    forgetThreadsOfOtherProcesses();
    --gate().inside;
    --insideHere;
    gate().left.notify_all();
}
