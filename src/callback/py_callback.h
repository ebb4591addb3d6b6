// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>

#include "callback/callback_fields.h"
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
    PyCallback(const PyCallback &) = delete;
    PyCallback &operator=(const PyCallback &) = delete;

    /// Slot 0: destroys an object made with new, at once or at the end of the last use. Lock held. In a process that was
    /// forked since the object was made it stays where it is, without its callable: it is a copy, whose threads are
    /// elsewhere.
    virtual void Destroy() = 0;

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
    std::int32_t hostMainWindow() const { return m_fields.hostMainWindow; }

    /// Keeps the object alive for a scope in which code of its own runs, against a destruction asked for in between: by
    /// a callable that the code delivers to, or by another thread while the interpreter lock is released. Lock held at
    /// both ends.
    class Use {
      public:
        Use() = default;
        explicit Use(const PyCallback &object) { begin(object); }
        ~Use() {
            if (m_object)
                m_object->endUse();
        }
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;

        /// At most once, for a Use made without an object.
        void begin(const PyCallback &object) {
            m_object = &object;
            object.beginUse();
        }

        const PyCallback *object() const { return m_object; }

      private:
        const PyCallback *m_object = nullptr;
    };

  protected:
    // A virtual destructor takes one slot with one compiler and two with the other.
    ~PyCallback();

    /// Destroy, in the class of which the object was made.
    template <typename Object>
    static void destroyWhenUnused(Object *object) {
        object->destroyWith([](PyCallback *self) { delete static_cast<Object *>(self); });
    }

    /// Destroy was asked for, and waits for the last use to end. Lock held.
    bool isDoomed() const { return m_fields.doomed; }
    /// A use that no scope brackets. Lock held.
    void beginUse() const { ++m_fields.uses; }
    /// The object may be gone afterwards.
    void endUse() const {
        if (--m_fields.uses == 0 && m_fields.doomed)
            const_cast<PyCallback *>(this)->Destroy();
    }

    CallbackFields m_fields;

  private:
    /// Calls the callable and hands its result, if there is one, to `consume`, all with the lock held.
    template <typename Consume>
    void deliver(const char *format, std::va_list arguments, Consume consume) const;
    void destroyWith(void (*destroy)(PyCallback *));
};

static_assert(sizeof(PyCallback) == sizeof(void *) + sizeof(CallbackFields));
