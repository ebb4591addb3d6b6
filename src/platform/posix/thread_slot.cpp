// SPDX-License-Identifier: MIT
#include "platform/thread_slot.h"

#include <pthread.h>

namespace platform {

ThreadSlot::ThreadSlot(AtEnd atEnd) noexcept {
    pthread_key_t key = 0;
    m_isMade = pthread_key_create(&key, atEnd) == 0;
    m_key = key;
}

void *ThreadSlot::get() const noexcept {
    return m_isMade ? pthread_getspecific(static_cast<pthread_key_t>(m_key)) : nullptr;
}

bool ThreadSlot::set(void *value) const noexcept {
    return m_isMade && pthread_setspecific(static_cast<pthread_key_t>(m_key), value) == 0;
}

} // namespace platform
