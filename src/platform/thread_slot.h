// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// One pointer for each thread, and what is done with a thread's pointer when that thread ends.
///
/// The language's thread_local objects will not do where GCC emulates them: their memory is freed before their
/// destructors run. Slots are made once and never given back, so they have to be static.
class ThreadSlot {
  public:
    /// On the thread that ends, which may have no identity any more and must not wait for anybody. The main thread's
    /// end is the process's: whether it is called then is up to the system.
    using AtEnd = void (*)(void *value);

    explicit ThreadSlot(AtEnd atEnd) noexcept;
    ThreadSlot(const ThreadSlot &) = delete;
    ThreadSlot &operator=(const ThreadSlot &) = delete;

    /// The calling thread's pointer, null when it has set none.
    void *get() const noexcept;
    /// False when the system has no room for it.
    [[nodiscard]] bool set(void *value) const noexcept;

  private:
    bool m_isMade = false;
    unsigned long m_key = 0;
};

} // namespace platform
