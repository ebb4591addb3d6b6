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
    bool automatic;
    bool signalled;
};

Event::Event(Reset reset, bool signalled) : m_state(std::make_shared<State>(reset, signalled)) {}

Event::Event(const char *name, Reset reset, bool signalled) {
    static std::mutex mutex;
    static std::map<std::string, std::weak_ptr<State>> named;
    const std::lock_guard guard(mutex);
    std::weak_ptr<State> &slot = named[name];
    m_state = slot.lock();
    if (!m_state)
        slot = m_state = std::make_shared<State>(reset, signalled);
}

Event::~Event() = default;

void Event::set() {
    {
        const std::lock_guard guard(m_state->mutex);
        m_state->signalled = true;
    }
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
