// SPDX-License-Identifier: MIT
#include "platform/event.h"

#include "platform/portable_event.h"
#include "platform/win32/handles.h"

namespace platform {

/// A kernel event. Where the system refuses one (no handles left, or a name that something else has) an event of the
/// process's own takes its place: a wait for nothing would return at once, and its thread spin.
struct Event::State {
    State(const char *name, Reset reset, bool signalled)
        : handle(CreateEventA(nullptr, reset == Reset::Manual, signalled, name)) {
        if (handle)
            return;
        const bool automatic = reset == Reset::Automatic;
        substitute = name ? PortableEvent::named(name, automatic, signalled)
                          : std::make_shared<PortableEvent>(automatic, signalled);
    }

    KernelHandle handle;
    std::shared_ptr<PortableEvent> substitute;
};

Event::Event(Reset reset, bool signalled) : m_state(std::make_shared<State>(nullptr, reset, signalled)) {}
Event::Event(const char *name, Reset reset, bool signalled)
    : m_state(std::make_shared<State>(name, reset, signalled)) {}
Event::~Event() = default;

void Event::set() {
    if (m_state->substitute)
        m_state->substitute->set();
    else
        SetEvent(m_state->handle.get());
}
void Event::reset() {
    if (m_state->substitute)
        m_state->substitute->reset();
    else
        ResetEvent(m_state->handle.get());
}
bool Event::wait(std::uint32_t milliseconds) {
    if (m_state->substitute)
        return m_state->substitute->wait(milliseconds);
    return WaitForSingleObject(m_state->handle.get(), milliseconds) == WAIT_OBJECT_0;
}

} // namespace platform
