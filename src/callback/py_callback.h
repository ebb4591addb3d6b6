// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "callback/python_fwd.h"

/// Holds the host's callable and calls it with the interpreter lock taken, on the thread that raises the event.
///
/// Nothing but the interpreter lock guards the callable: SetCallback and the destructor run on a thread that holds it.
/// A format is the interpreter's value-building format: null or empty calls without arguments, one character passes one
/// value, anything longer must describe a tuple.
class PyCallback {
  public:
    PyCallback();
    virtual ~PyCallback();
    PyCallback(const PyCallback &) = delete;
    PyCallback &operator=(const PyCallback &) = delete;

    /// Drops the callable held and stores `callable` with a reference of its own; null or None unregisters.
    /// Returns what is stored (borrowed) or null.
    PyObject *SetCallback(PyObject *callable);

    /// Delivers an event. A Python error is printed and dropped; without a callable nothing happens and no lock is
    /// taken.
    void Call(const char *format, ...) const;

    // The result-bearing forms give 0, 0.0 or an empty text when there is no callable or the call failed.
    std::int32_t CallInt(const char *format, ...) const;
    double CallDouble(const char *format, ...) const;
    std::string CallString(const char *format, ...) const;
    std::wstring CallWString(const char *format, ...) const;
    /// New reference, or null after a failure. Must only be used when a callable is stored.
    PyObject *CallObject(const char *format, ...) const;

    /// Keeps the object alive for a scope in which code of its own runs, against a destruction asked for in between: by
    /// a callable that the code delivers to, or by another thread while the interpreter lock is released.
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

    /// Deletes an object made with new, at once or at the end of the last Use.
    void DestroyWhenUnused();

  private:
    void destroyKeepingError() const;

    mutable int m_uses = 0; ///< guarded by the interpreter lock, as is m_doomed
    bool m_doomed = false;  ///< to be deleted when m_uses comes to 0
    PyObject *m_callable = nullptr;
    std::int32_t m_hostMainWindow; ///< kept for the host; read from its environment at construction
};
