// SPDX-License-Identifier: MIT
#include "platform/event.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>

namespace platform {

struct Event::State {
    State(Reset reset, bool initially) : automatic(reset == Reset::Automatic), signalled(initially) {}

    std::mutex mutex;
    std::condition_variable changed;
    const bool automatic;
    bool signalled; ///< guarded by mutex
};

Event::Event(Reset reset, bool signalled) : m_state(std::make_shared<State>(reset, signalled)) {}

Event::Event(const char *name, Reset reset, bool signalled) {
    struct Registry {
        std::mutex mutex;
        std::map<std::string, std::weak_ptr<State>> events;
    };
    // Never destroyed: objects may outlive static destruction.
    static Registry *const registry = new Registry;
    const std::lock_guard guard(registry->mutex);
    std::weak_ptr<State> &named = registry->events[name];
    m_state = named.lock();
    // Like a kernel event, a name keeps the kind and the state that its first holder gave it.
    if (!m_state)
        named = m_state = std::make_shared<State>(reset, signalled);
}

Event::~Event() = default;

void Event::set() {
    const std::lock_guard guard(m_state->mutex);
    m_state->signalled = true;
    // Inside the lock: a waiter that this wakes may end the event's life at once.
    m_state->changed.notify_all();
}

void Event::reset() {
    const std::lock_guard guard(m_state->mutex);
    m_state->signalled = false;
}

bool Event::wait(std::uint32_t milliseconds) {
    std::unique_lock guard(m_state->mutex);
    const auto isSignalled = [this] { return m_state->signalled; };
    if (milliseconds == kInfinite)
        m_state->changed.wait(guard, isSignalled);
    else if (!m_state->changed.wait_for(guard, std::chrono::milliseconds(milliseconds), isSignalled))
        return false;
    if (m_state->automatic)
        m_state->signalled = false;
    return true;
}

} // namespace platform
