// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

namespace platform {

/// A lock that its owner may take again. Unlocking without owning it does nothing: foreign callers reach `unlock`
/// directly, and an unbalanced call of theirs must not corrupt the lock.
class ReentrantLock {
  public:
    void lock() {
        lockBy([this] {
            m_mutex.lock();
            return true;
        });
    }
    bool try_lock() {
        return lockBy([this] { return m_mutex.try_lock(); });
    }
    template <typename Rep, typename Period>
    bool try_lock_for(const std::chrono::duration<Rep, Period> &duration) {
        return lockBy([&] {
#ifdef __SANITIZE_THREAD__
            // The library's wait on the monotonic clock is a call that this sanitizer does not follow.
            return m_mutex.try_lock_until(std::chrono::system_clock::now() + duration);
#else
            return m_mutex.try_lock_for(duration);
#endif
        });
    }
    void unlock() {
        if (!isOwned() || --m_depth != 0)
            return;
        m_owner.store(std::thread::id(), std::memory_order_relaxed);
        m_mutex.unlock();
    }
    /// Gives up every hold of the calling thread, for a wait during which others must get on; how many there were.
    int releaseAll() {
        const int depth = isOwned() ? m_depth : 0;
        for (int hold = 0; hold < depth; ++hold)
            unlock();
        return depth;
    }
    /// Ends every hold of a thread that is ending, on that thread: some systems have taken its identity away by then.
    void abandon() {
        m_depth = 0;
        m_owner.store(std::thread::id(), std::memory_order_relaxed);
        m_mutex.unlock();
    }
    /// Whether the calling thread holds the lock.
    bool isOwned() const {
        return m_owner.load(std::memory_order_relaxed) == std::this_thread::get_id();
    }

  private:
    template <typename Attempt>
    bool lockBy(Attempt attempt) {
        if (isOwned())
            ++m_depth;
        else if (attempt())
            entered();
        else
            return false;
        return true;
    }
    void entered() {
        m_owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
        m_depth = 1;
    }

    std::timed_mutex m_mutex;
    std::atomic<std::thread::id> m_owner{};
    int m_depth = 0; ///< guarded by m_mutex
};

} // namespace platform
