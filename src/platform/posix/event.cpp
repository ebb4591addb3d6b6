// SPDX-License-Identifier: MIT
#include "platform/event.h"

#include "platform/portable_event.h"

namespace platform {

struct Event::State {
    std::shared_ptr<PortableEvent> event;
};

Event::Event(Reset reset, bool signalled)
    : m_state(std::make_shared<State>(State{std::make_shared<PortableEvent>(reset == Reset::Automatic, signalled)})) {}
Event::Event(const char *name, Reset reset, bool signalled)
    : m_state(std::make_shared<State>(State{PortableEvent::named(name, reset == Reset::Automatic, signalled)})) {}
Event::~Event() = default;

void Event::set() {
    m_state->event->set();
}
void Event::reset() {
    m_state->event->reset();
}
bool Event::wait(std::uint32_t milliseconds) {
    return m_state->event->wait(milliseconds);
}

} // namespace platform
