// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>

namespace hostkit {

/// Hands things from one thread to another and holds few of them: whoever is ahead waits.
template <typename Item>
class BoundedQueue {
  public:
    explicit BoundedQueue(std::size_t capacity) : capacity_(capacity) {}

    /// Waits for room. False when the queue was stopped; the item is gone then.
    bool push(Item item) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return stopped_ || items_.size() < capacity_; });
        if (stopped_)
            return false;
        items_.push_back(std::move(item));
        changed_.notify_all();
        return true;
    }
    /// Waits for an item. False after the last one, or when the queue was stopped.
    bool pop(Item &item) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return stopped_ || ended_ || !items_.empty(); });
        if (stopped_ || items_.empty())
            return false;
        item = std::move(items_.front());
        items_.pop_front();
        changed_.notify_all();
        return true;
    }
    /// No item comes any more; those inside still do.
    void end() {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        changed_.notify_all();
    }
    /// Whoever waits is let go, now and later.
    void stop() {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        items_.clear();
        changed_.notify_all();
    }

  private:
    const std::size_t capacity_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Item> items_;
    bool ended_ = false;
    bool stopped_ = false;
};

} // namespace hostkit
