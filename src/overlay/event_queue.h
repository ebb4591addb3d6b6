// SPDX-License-Identifier: MIT
#pragma once

#include <thread>
#include <utility>
#include <vector>

#include "overlay/types/outline_points.h"

/// Collects the events that an object raises on one thread while the scope lasts, so that they can be delivered after
/// the texture lock has been left. Scopes nest: the innermost one collects.
///
/// Under the object's texture lock, like every use of `current`. Not a thread_local variable: finding one takes a
/// module that is loaded late longer than all of this.
class EventQueue {
  public:
    /// `current` is the object's innermost queue, or null. Events go to the end of `events`.
    EventQueue(EventQueue *&current, std::vector<ECallBack_State> &events)
        : m_current(current), m_outer(std::exchange(current, this)), m_events(events) {}
    ~EventQueue() { m_current = m_outer; }
    EventQueue(const EventQueue &) = delete;
    EventQueue &operator=(const EventQueue &) = delete;

    /// Whether the calling thread is the one it collects for. Another one may own the lock while that one waits.
    bool isOfThisThread() const { return m_thread == std::this_thread::get_id(); }
    void push(ECallBack_State state) { m_events.push_back(state); }

  private:
    EventQueue *&m_current;
    EventQueue *m_outer;
    std::vector<ECallBack_State> &m_events;
    std::thread::id m_thread = std::this_thread::get_id();
};
