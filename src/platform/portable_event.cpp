// SPDX-License-Identifier: MIT
#include "platform/portable_event.h"

#include <chrono>
#include <map>
#include <string>
#include <utility>

#include "platform/event.h"
#include "platform/fork.h"

namespace platform {

std::shared_ptr<PortableEvent> PortableEvent::named(const char *name, bool automatic, bool signalled) {
    struct Registry {
        std::mutex mutex;
        std::map<std::string, std::weak_ptr<PortableEvent>> events;
        unsigned madeIn = 0; ///< forkCount() of `events`
    };
    // Never destroyed: objects may outlive static destruction.
    static Registry *const registry = [] {
        Registry *const made = new Registry;
        holdAcrossForks(made->mutex);
        return made;
    }();
    const std::lock_guard guard(registry->mutex);
    // Threads of the process before a fork may have been at work on an event; this one makes its own.
    if (std::exchange(registry->madeIn, forkCount()) != forkCount())
        registry->events.clear();
    std::weak_ptr<PortableEvent> &entry = registry->events[name];
    std::shared_ptr<PortableEvent> event = entry.lock();
    if (!event)
        entry = event = std::make_shared<PortableEvent>(automatic, signalled);
    return event;
}

void PortableEvent::set() {
    const std::lock_guard guard(m_mutex);
    m_signalled = true;
    // Inside the lock: a waiter that this wakes may end the event's life at once.
    m_changed.notify_all();
}

void PortableEvent::reset() {
    const std::lock_guard guard(m_mutex);
    m_signalled = false;
}

bool PortableEvent::wait(std::uint32_t milliseconds) {
    std::unique_lock guard(m_mutex);
    const auto isSignalled = [this] { return m_signalled; };
    if (milliseconds == kInfinite)
        m_changed.wait(guard, isSignalled);
    else if (!m_changed.wait_for(guard, std::chrono::milliseconds(milliseconds), isSignalled))
        return false;
    if (m_automatic)
        m_signalled = false;
    return true;
}

} // namespace platform
