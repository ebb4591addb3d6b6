// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// Watches threads that must make progress. When one stops for too long every thread's stack is printed and the process
/// ends: a deadlock then shows where it stands.
class Watchdog {
  public:
    explicit Watchdog(std::chrono::seconds patience);
    ~Watchdog();
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

    /// Enrols the calling thread under a name; the counter returned is its sign of life, to be increased by each step.
    std::atomic<long> &enrol(const char *name);

  private:
    struct Watched;
    void watch();

    std::chrono::seconds m_patience;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_ending = false;
    std::vector<Watched *> m_watched;
    std::thread m_thread;
};
