// SPDX-License-Identifier: MIT
#include "platform/event.h"

#include "platform/win32/handles.h"

namespace platform {

struct Event::State {
    State(const char *name, Reset reset, bool signalled)
        : handle(CreateEventA(nullptr, reset == Reset::Manual, signalled, name)) {}

    KernelHandle handle;
};

Event::Event(Reset reset, bool signalled) : m_state(std::make_shared<State>(nullptr, reset, signalled)) {}
Event::Event(const char *name, Reset reset, bool signalled)
    : m_state(std::make_shared<State>(name, reset, signalled)) {}
Event::~Event() = default;

void Event::set() {
    SetEvent(m_state->handle.get());
}
void Event::reset() {
    ResetEvent(m_state->handle.get());
}
bool Event::wait(std::uint32_t milliseconds) {
    return WaitForSingleObject(m_state->handle.get(), milliseconds) == WAIT_OBJECT_0;
}

} // namespace platform
