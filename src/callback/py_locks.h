// SPDX-License-Identifier: MIT
#pragma once

// Guards around the interpreter lock. Both are safe on any thread, also one that the interpreter has never seen.

/// Takes the interpreter lock for a scope.
class PyGILGuard {
  public:
    PyGILGuard();
    ~PyGILGuard();
    PyGILGuard(const PyGILGuard &) = delete;
    PyGILGuard &operator=(const PyGILGuard &) = delete;

  private:
    int m_state; ///< the PyGILState_STATE that PyGILState_Ensure returned
};

/// Releases the interpreter lock for a scope if, and only if, the calling thread holds it.
class PyAllowThreads {
  public:
    PyAllowThreads();
    ~PyAllowThreads();
    PyAllowThreads(const PyAllowThreads &) = delete;
    PyAllowThreads &operator=(const PyAllowThreads &) = delete;

  private:
    void *m_saved; ///< the saved PyThreadState, or null when nothing was released
};
