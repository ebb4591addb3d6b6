// SPDX-License-Identifier: MIT
// _watchdog: ends a process that makes no progress, for tests in Python.
//
//   arm(seconds, text)    unless this is called again within so many seconds, the text and the stacks of all threads
//                         (Python's and the native one) are written to standard error and the process aborts
//   disarm()              nothing is watched until the next arm()
//
// The interpreter lock may be what everybody waits for, so the watching thread never takes it.

#include "callback/python.h"

#include <dirent.h>
#include <execinfo.h>
#include <frameobject.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<Clock::time_point> deadline;
    std::string text;
};

/// Never destroyed: the watching thread outlives everything.
State &state() {
    static State *const only = new State;
    return *only;
}

/// Reads the thread's own frames while it stands still in this very handler; nothing is allocated.
void printPythonStack() {
    const PyThreadState *const thread = PyGILState_GetThisThreadState();
    char line[512];
    for (PyFrameObject *frame = thread ? thread->frame : nullptr; frame; frame = frame->f_back) {
        PyCodeObject *const code = frame->f_code;
        const int length =
            std::snprintf(line, sizeof line, "  %.300s:%d in %.100s\n", PyString_AS_STRING(code->co_filename),
                          PyCode_Addr2Line(code, frame->f_lasti), PyString_AS_STRING(code->co_name));
        if (length > 0 && write(STDERR_FILENO, line, static_cast<std::size_t>(length)) < 0)
            return;
    }
}

void printStack(int) {
    printPythonStack();
    void *frames[64];
    backtrace_symbols_fd(frames, backtrace(frames, 64), STDERR_FILENO);
}

std::vector<pid_t> threadsOfProcess() {
    std::vector<pid_t> threads;
    if (DIR *const folder = opendir("/proc/self/task")) {
        while (const dirent *const item = readdir(folder))
            if (const int thread = std::atoi(item->d_name))
                threads.push_back(thread);
        closedir(folder);
    }
    return threads;
}

[[noreturn]] void printAllAndAbort(const std::string &text) {
    std::fprintf(stderr, "%s: no progress; the stacks of all threads:\n", text.c_str());
    const auto self = static_cast<pid_t>(syscall(SYS_gettid));
    for (const pid_t thread : threadsOfProcess()) {
        if (thread == self)
            continue;
        std::fprintf(stderr, "--- thread %d\n", static_cast<int>(thread));
        syscall(SYS_tgkill, getpid(), thread, SIGUSR2);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }
    std::abort();
}

void watch() {
    State &watched = state();
    std::unique_lock lock(watched.mutex);
    for (;;) {
        if (!watched.deadline)
            watched.changed.wait(lock);
        else if (watched.changed.wait_until(lock, *watched.deadline) == std::cv_status::timeout && watched.deadline &&
                 Clock::now() >= *watched.deadline)
            printAllAndAbort(watched.text);
    }
}

PyObject *arm(PyObject *, PyObject *arguments) {
    double seconds = 0;
    const char *text = nullptr;
    if (!PyArg_ParseTuple(arguments, "ds", &seconds, &text))
        return nullptr;
    static bool isWatching = false;
    if (!isWatching) {
        isWatching = true;
        // The first one loads a library, which a signal handler may not.
        void *frame[1];
        backtrace(frame, 1);
        std::signal(SIGUSR2, &printStack);
        std::thread(&watch).detach();
    }
    {
        const std::lock_guard lock(state().mutex);
        state().deadline =
            Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
        state().text = text;
    }
    state().changed.notify_all();
    Py_RETURN_NONE;
}

PyObject *disarm(PyObject *, PyObject *) {
    const std::lock_guard lock(state().mutex);
    state().deadline.reset();
    Py_RETURN_NONE;
}

PyMethodDef methods[] = {
    {"arm", arm, METH_VARARGS, nullptr}, {"disarm", disarm, METH_NOARGS, nullptr}, {nullptr, nullptr, 0, nullptr}};

} // namespace

PyMODINIT_FUNC init_watchdog() {
    Py_InitModule("_watchdog", methods);
}
