// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <string>

#include "callback/python_fwd.h"

/// Holds the host's callable and calls it with the interpreter lock taken, on the thread that raises the event.
///
/// Nothing but the interpreter lock guards the callable: SetCallback and the destructor run on a thread that holds it.
/// The callable may raise, unregister or replace itself, call back into the object, drop the last reference to it, or
/// ask for its destruction: a call in progress keeps both the callable and the object. Once the interpreter has begun
/// to end, events are dropped, and an object that outlives the interpreter leaves its callable alone.
///
/// A format is the interpreter's value-building format: null or empty calls without arguments, one character passes one
/// value, anything longer must describe a tuple. A Python error is printed and dropped, SystemExit too: the host's
/// process does not end from within an event. An error that was pending before is pending again afterwards.
class PyCallback {
  public:
    PyCallback();
    virtual ~PyCallback();
    PyCallback(const PyCallback &) = delete;
    PyCallback &operator=(const PyCallback &) = delete;

    /// Drops the callable held and stores `callable` with a reference of its own; null or None unregisters.
    /// Returns what is stored (borrowed) or null.
    PyObject *SetCallback(PyObject *callable);

    /// Delivers an event. Without a callable nothing happens and no lock is taken.
    void Call(const char *format, ...) const;

    // The result-bearing forms give 0, 0.0 or an empty text when there is no callable, or when the call or the
    // conversion of its result failed.

    /// An int or long of 32 bits.
    std::int32_t CallInt(const char *format, ...) const;
    double CallDouble(const char *format, ...) const;
    /// A byte string.
    std::string CallString(const char *format, ...) const;
    /// A unicode text.
    std::wstring CallWString(const char *format, ...) const;
    /// Whatever the callable returned. New reference, to be used with the interpreter lock held; null after a failure.
    PyObject *CallObject(const char *format, ...) const;

    /// The number of the host's main window, for the host; nothing here uses it.
    std::int32_t hostMainWindow() const { return m_hostMainWindow; }

    /// Keeps the object alive for a scope in which code of its own runs, against a destruction asked for in between: by
    /// a callable that the code delivers to, or by another thread while the interpreter lock is released. Lock held at
    /// both ends.
    class Use {
      public:
        explicit Use(const PyCallback &object) : m_object(object) { ++object.m_uses; }
        ~Use() {
            if (--m_object.m_uses == 0 && m_object.m_doomed)
                m_object.destroyKeepingError();
        }
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;

      private:
        const PyCallback &m_object;
    };

    /// Deletes an object made with new, at once or at the end of the last Use. Lock held.
    void DestroyWhenUnused();

  private:
    /// Calls the callable and hands its result, if there is one, to `consume`, all with the lock held.
    template <typename Consume>
    void deliver(const char *format, std::va_list arguments, Consume consume) const;
    void destroyKeepingError() const;

    std::atomic<PyObject *> m_callable{nullptr}; ///< other threads test it for null without the lock
    std::int32_t m_hostMainWindow;               ///< read from the environment at construction
    mutable int m_uses = 0;                      ///< guarded by the interpreter lock, as is m_doomed
    bool m_doomed = false;                       ///< to be deleted when m_uses comes to 0
};
