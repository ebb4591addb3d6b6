// SPDX-License-Identifier: MIT
#pragma once

#include "callback/py_locks.h"
#include "platform/reentrant_lock.h"

/// Takes the texture lock for a scope without ever blocking on it while holding the interpreter lock: whoever has it
/// may be about to ask for the interpreter lock. Without contention nothing is released.
class TextureLockGuard {
  public:
    explicit TextureLockGuard(platform::ReentrantLock &lock) : m_lock(lock) { enter(lock); }
    ~TextureLockGuard() { m_lock.unlock(); }
    TextureLockGuard(const TextureLockGuard &) = delete;
    TextureLockGuard &operator=(const TextureLockGuard &) = delete;

    static void enter(platform::ReentrantLock &lock) {
        if (lock.try_lock())
            return;
        const PyAllowThreads allowThreads;
        lock.lock();
    }

  private:
    platform::ReentrantLock &m_lock;
};
