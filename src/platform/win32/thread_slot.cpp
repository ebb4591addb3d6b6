// SPDX-License-Identifier: MIT
#include "platform/thread_slot.h"

#include <windows.h>

namespace platform {

// On 64-bit Windows there is one calling convention, so the system can call AtEnd itself.
ThreadSlot::ThreadSlot(AtEnd atEnd) noexcept : m_key(FlsAlloc(atEnd)) {
    m_isMade = m_key != FLS_OUT_OF_INDEXES;
}

void *ThreadSlot::get() const noexcept {
    return m_isMade ? FlsGetValue(m_key) : nullptr;
}

bool ThreadSlot::set(void *value) const noexcept {
    return m_isMade && FlsSetValue(m_key, value);
}

} // namespace platform
