// SPDX-License-Identifier: MIT
#pragma once

// Guards around the interpreter lock. All of it is safe on any thread, also one that the interpreter has never seen,
// and at any time, also when the interpreter is ending or gone.

/// Whether the calling thread holds the interpreter lock. Also safe when there is no interpreter.
bool holdsInterpreterLock();

/// Takes the interpreter lock for a scope. Test it before touching anything of Python's: once the interpreter has begun
/// to end, a thread that does not hold the lock already gets nothing.
class PyGILGuard {
  public:
    PyGILGuard();
    ~PyGILGuard();
    PyGILGuard(const PyGILGuard &) = delete;
    PyGILGuard &operator=(const PyGILGuard &) = delete;

    /// Whether the scope runs with the lock held.
    explicit operator bool() const { return m_held; }

  private:
    bool m_entered = false; ///< went through the gate of interpreter_gate.h
    bool m_held = false;
    int m_state = 0; ///< the PyGILState_STATE that PyGILState_Ensure returned
};

/// Releases the interpreter lock for a scope if, and only if, the calling thread holds it, the interpreter is not taking
/// itself down, and it is worth it: a thread that lets go may wait for a whole turn of another one.
class PyAllowThreads {
  public:
    explicit PyAllowThreads(bool worthIt = true);
    ~PyAllowThreads();
    PyAllowThreads(const PyAllowThreads &) = delete;
    PyAllowThreads &operator=(const PyAllowThreads &) = delete;

  private:
    void *m_saved; ///< the saved PyThreadState, or null when nothing was released
};
