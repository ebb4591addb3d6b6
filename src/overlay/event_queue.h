// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "overlay/types/outline_points.h"

/// Collects the events that one object raises on one thread while the scope lasts, so that they can be delivered after
/// the texture lock has been left. Scopes nest: the innermost one of an object collects.
class EventQueue {
  public:
    explicit EventQueue(const void *object);
    ~EventQueue();
    EventQueue(const EventQueue &) = delete;
    EventQueue &operator=(const EventQueue &) = delete;

    /// The calling thread's queue for that object, or null: then events are delivered where they are raised.
    static EventQueue *current(const void *object);

    void push(ECallBack_State state) { m_states.push_back(state); }
    /// The events in the order raised; the queue is empty afterwards.
    std::vector<ECallBack_State> take();

  private:
    const void *m_object;
    EventQueue *m_outer;
    std::vector<ECallBack_State> m_states;
};
