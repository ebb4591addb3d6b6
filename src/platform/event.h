// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

namespace platform {

/// Time-out of Event::wait that never runs out.
inline constexpr std::uint32_t kInfinite = 0xFFFFFFFFU;

/// A signal that threads wait for: a kernel event on Windows, where the system grants one, a mutex and a condition
/// else.
class Event {
  public:
    enum class Reset { Manual, Automatic };

    /// An unnamed event.
    Event(Reset reset, bool signalled);
    /// A named event: all objects of one name in the process (on Windows: in the session) are one event.
    Event(const char *name, Reset reset, bool signalled);
    ~Event();
    Event(const Event &) = delete;
    Event &operator=(const Event &) = delete;

    void set();
    void reset();
    /// Waits up to `milliseconds`; true when the event was signalled. An automatic event is reset by the wait it ends.
    bool wait(std::uint32_t milliseconds);
    bool isSignalled() { return wait(0); }

  private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace platform
