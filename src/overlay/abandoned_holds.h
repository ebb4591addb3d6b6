// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "platform/event.h"
#include "platform/fork.h"

/// Holds of the host's on an object's texture that ended with their threads.
///
/// A thread that ends can do next to nothing: it may run under the loader's lock, it has no interpreter lock, and
/// nobody may be kept waiting by it. So it counts what it leaves and sets an event. The object, which each hold kept in
/// use, learns of it at its next deletion. One that was deleted before, and of which nobody may ask anything any more,
/// has a thread of its own wait for the event (Orvanel::Destroy).
///
/// Rejected: the interpreter's pending calls and whichever entry comes next. Both would destroy the object, and wait
/// for its worker, on a thread that holds who knows what the worker's callable waits for.
///
/// Shared, since the object may go as soon as the last hold is counted.
class AbandonedHolds {
  public:
    /// On the thread that ends.
    void add(int holds) {
        m_count += holds;
        // A fork may have left the event in any state, and the thread that waits for it behind.
        if (m_madeIn == platform::forkCount())
            m_changed.set();
    }
    /// How many there are since the last question.
    int take() { return m_count.exchange(0); }

    /// Until there are some, or wake() was called.
    void wait() { m_changed.wait(platform::kInfinite); }
    void wake() { m_changed.set(); }

    // Guarded by the interpreter lock.
    bool isWaitedFor = false;
    bool isObjectGone = false;

  private:
    std::atomic<int> m_count{0};
    platform::Event m_changed{platform::Event::Reset::Automatic, false};
    const unsigned m_madeIn = platform::forkCount();
};
