// SPDX-License-Identifier: MIT
#include "platform/win32/event_trace.h"

#include <utility>

namespace platform {
namespace {

template <typename Function>
void resolve(Function *&function, FARPROC address) {
    // Through void *: the loader's type has nothing to do with the function's.
    function = reinterpret_cast<Function *>(reinterpret_cast<void *>(address));
}

} // namespace

const GUID EventTrace::kProvider = {0x9AD3F8FA, 0xB0D3, 0x45A2, {0x8E, 0x95, 0x5D, 0x18, 0x99, 0xE0, 0xAD, 0x05}};

bool EventTrace::open() {
    const std::lock_guard guard(m_mutex);
    if (m_library)
        return true;
    m_library = m_loader.load("advapi32.dll");
    if (!m_library)
        return false;
    resolve(m_writeString, m_loader.find(m_library, "EventWriteString"));
    resolve(m_register, m_loader.find(m_library, "EventRegister"));
    resolve(m_unregister, m_loader.find(m_library, "EventUnregister"));
    if (m_register)
        m_register(&kProvider, nullptr, nullptr, &m_registration);
    return true;
}

void EventTrace::close() {
    const std::lock_guard guard(m_mutex);
    if (m_registration && m_unregister)
        m_unregister(std::exchange(m_registration, 0));
    if (!m_library)
        return;
    m_writeString = nullptr;
    m_register = nullptr;
    m_unregister = nullptr;
    m_loader.free(std::exchange(m_library, nullptr));
}

void EventTrace::write(const wchar_t *line) {
    const std::lock_guard guard(m_mutex);
    if (m_writeString)
        m_writeString(m_registration, kLevel, kKeyword, line);
}

} // namespace platform
