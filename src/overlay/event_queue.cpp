// SPDX-License-Identifier: MIT
#include "overlay/event_queue.h"

#include <utility>

namespace {
thread_local EventQueue *innermost = nullptr;
}

EventQueue::EventQueue(const void *object) : m_object(object), m_outer(innermost) {
    innermost = this;
}

EventQueue::~EventQueue() {
    innermost = m_outer;
}

EventQueue *EventQueue::current(const void *object) {
    for (EventQueue *queue = innermost; queue; queue = queue->m_outer) {
        if (queue->m_object == object)
            return queue;
    }
    return nullptr;
}

std::vector<ECallBack_State> EventQueue::take() {
    return std::exchange(m_states, {});
}
