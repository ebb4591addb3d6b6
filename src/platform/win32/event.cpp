// SPDX-License-Identifier: MIT
#include "platform/event.h"

#include "platform/win_types.h"

namespace platform {

struct Event::State {
    State(const char *name, Reset reset, bool signalled)
        : handle(CreateEventA(nullptr, reset == Reset::Manual, signalled, name)) {}
    ~State() { CloseHandle(handle); }

    HANDLE handle;
};

Event::Event(Reset reset, bool signalled) : m_state(std::make_shared<State>(nullptr, reset, signalled)) {}
Event::Event(const char *name, Reset reset, bool signalled)
    : m_state(std::make_shared<State>(name, reset, signalled)) {}
Event::~Event() = default;

void Event::set() {
    SetEvent(m_state->handle);
}
void Event::reset() {
    ResetEvent(m_state->handle);
}
bool Event::wait(std::uint32_t milliseconds) {
    return WaitForSingleObject(m_state->handle, milliseconds) == WAIT_OBJECT_0;
}

} // namespace platform
