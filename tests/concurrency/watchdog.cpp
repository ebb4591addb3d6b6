// SPDX-License-Identifier: MIT
#include "watchdog.h"

#include <execinfo.h>
#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

struct Watchdog::Watched {
    const char *name;
    pthread_t thread;
    std::atomic<long> steps{0};
    long seen = -1;
    std::chrono::steady_clock::time_point since;
};

namespace {

void printStack(int) {
    void *frames[64];
    const int count = backtrace(frames, 64);
    backtrace_symbols_fd(frames, count, STDERR_FILENO);
}

} // namespace

Watchdog::Watchdog(std::chrono::seconds patience) : m_patience(patience) {
    std::signal(SIGUSR2, &printStack);
    m_thread = std::thread([this] { watch(); });
}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_ended.notify_all();
    m_thread.join();
    for (Watched *watched : m_watched)
        delete watched;
}

std::atomic<long> &Watchdog::enrol(const char *name) {
    auto *const watched = new Watched;
    watched->name = name;
    watched->thread = pthread_self();
    watched->since = std::chrono::steady_clock::now();
    const std::lock_guard lock(m_mutex);
    m_watched.push_back(watched);
    return watched->steps;
}

void Watchdog::watch() {
    std::unique_lock lock(m_mutex);
    while (!m_ended.wait_for(lock, std::chrono::milliseconds(200), [this] { return m_ending; })) {
        const auto now = std::chrono::steady_clock::now();
        for (Watched *watched : m_watched) {
            const long steps = watched->steps;
            if (steps < 0) // the thread has ended
                continue;
            if (steps != watched->seen) {
                watched->seen = steps;
                watched->since = now;
            } else if (now - watched->since > m_patience) {
                std::fprintf(stderr, "%s has made no progress; stacks of all threads:\n", watched->name);
                for (const Watched *other : m_watched) {
                    std::fprintf(stderr, "--- %s, %ld steps\n", other->name, other->steps.load());
                    if (other->steps >= 0)
                        pthread_kill(other->thread, SIGUSR2);
                    std::this_thread::sleep_for(std::chrono::milliseconds(300));
                }
                std::abort();
            }
        }
    }
}
