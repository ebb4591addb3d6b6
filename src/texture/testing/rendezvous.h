// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>

/// Holds a thread at a place of the test's choosing until the test lets it go on.
class Rendezvous {
  public:
    /// Called by the thread that is to be held.
    void arriveAndWait() {
        std::unique_lock lock(m_mutex);
        m_arrived = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_released; });
    }
    void waitForArrival() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_arrived; });
    }
    void release() {
        const std::lock_guard lock(m_mutex);
        m_released = true;
        m_changed.notify_all();
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_arrived = false;
    bool m_released = false;
};

/// Whether a call that must block still does. Can err only towards true, on a machine that is very busy.
template <typename Result>
bool isStillRunning(const std::future<Result> &call) {
    return call.wait_for(std::chrono::milliseconds(30)) == std::future_status::timeout;
}
