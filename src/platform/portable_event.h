// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

namespace platform {

/// An event without the system's help, for one process: a mutex and a condition.
class PortableEvent {
  public:
    PortableEvent(bool automatic, bool signalled) : m_automatic(automatic), m_signalled(signalled) {}
    PortableEvent(const PortableEvent &) = delete;
    PortableEvent &operator=(const PortableEvent &) = delete;

    /// The event of that name in this process. Like a kernel event, it keeps the kind and the state that its first
    /// holder gave it, and goes with its last one.
    static std::shared_ptr<PortableEvent> named(const char *name, bool automatic, bool signalled);

    void set();
    void reset();
    /// As Event::wait.
    bool wait(std::uint32_t milliseconds);

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    const bool m_automatic;
    bool m_signalled; ///< guarded by m_mutex
};

} // namespace platform
